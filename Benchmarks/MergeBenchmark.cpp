// What it costs to create the elements of two models in a third, one undoable command each as the add-on does
// it, and to undo all that. Without shapes. Each size is measured in a process of its own.
// Usage: MergeBenchmark [megabytes of each model]

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "ACAPinc.h"
#include "HostKit/DG/RecordingDriver.hpp"
#include "Measuring.hpp"
#include "SyntheticModel.hpp"
#include "Workbench/api/Application.hpp"

namespace {

namespace fs = std::filesystem;
using benchmarks::Expect;
using benchmarks::PeakMegabytes;
using benchmarks::Seconds;

void Open(const fs::path& file) {
    IO::Location location{GS::UniString(file.c_str(), CC_UTF8)};
    API_FileOpenPars pars = {};
    pars.fileTypeID = APIFType_IfcFile;
    pars.file = &location;
    Expect(ACAPI_Automate(APIDo_OpenID, &pars) == NoError);
}

void Collect(std::vector<API_Element>& records) {
    GS::Array<API_Guid> guids;
    Expect(ACAPI_Element_GetElemList(API_ZombieElemID, &guids) == NoError);
    for (const API_Guid& guid : guids) {
        API_Element element;
        element.header.guid = guid;
        Expect(ACAPI_Element_Get(&element) == NoError);
        records.push_back(element);
    }
}

void Measure(std::size_t megabytes) {
    const fs::path folder = fs::temp_directory_path() / ("kestrane-bench-" + std::to_string(getpid()));
    fs::create_directories(folder);
    std::vector<fs::path> models;
    double files = 0;
    for (const char* name : {"first", "second", "third"}) {
        models.push_back(folder / (std::string(name) + ".ifc"));
        benchmarks::WriteSyntheticModel(models.back(), megabytes << 20, name);
        files += static_cast<double>(fs::file_size(models.back())) / (1 << 20);
    }
    workbench::Settings settings;
    settings.dataFolder = folder / "data";
    settings.resourcesFolder = fs::path(KESTRANE_SHARE) / "resources";
    settings.mesher.node = "false";  // no shapes
    workbench::MainQueue queue;
    hostkit::dg::RecordingDriver driver;
    workbench::Application application(settings, queue, driver);
    const double before = PeakMegabytes();

    std::vector<API_Element> records;
    const double reading = Seconds([&] {
        Open(models[0]);
        Collect(records);
        Open(models[1]);
        Collect(records);
        Open(models[2]);
    });
    const std::size_t before3 = application.OpenProject().Elements().size();
    const double creating = Seconds([&] {
        for (API_Element& record : records) {
            Expect(ACAPI_CallUndoableCommand(
                       "Create Element", [&] { return ACAPI_Element_Create(&record, nullptr); }) == NoError);
        }
    });
    const double merging = Seconds([&] { queue.RunPending(); });
    Expect(application.OpenProject().Elements().size() == before3 + records.size());
    const double peak = PeakMegabytes() - before;
    const double one = Seconds([&] {
        application.Undo();
        queue.RunPending();
    });
    const double all = Seconds([&] {
        for (std::size_t step = 1; step < records.size(); ++step)
            application.Undo();
        queue.RunPending();
    });
    Expect(application.OpenProject().Elements().size() == before3);
    std::printf("%9zu %8.2f s %8.2f us %8.2f s %8.2f us %8.2f s %8.3f s %10.2f x\n", records.size(), reading,
                creating * 1e6 / static_cast<double>(records.size()), merging,
                merging * 1e6 / static_cast<double>(records.size()), one, all, peak / files);
    std::fflush(stdout);
    fs::remove_all(folder);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1) {
        const std::size_t megabytes = std::strtoul(argv[1], nullptr, 10);
        if (megabytes == 0) {
            std::fprintf(stderr, "Usage: MergeBenchmark [megabytes of each model]\n");
            return 2;
        }
        Measure(megabytes);
        std::_Exit(0);  // what is left to tear down is no part of this
    }
    std::printf("%9s %10s %11s %10s %11s %10s %10s %12s\n", "created", "open three", "one command", "merge",
                "an element", "undo one", "undo rest", "memory/files");
    return benchmarks::RunForEach(argv[0], {"2", "7", "20", "50"});
}
