// What it costs to take a viewpoint and to restore it, from a thousand elements to a million: half of them
// hidden, a thousand selected. Each size is measured in a process of its own.
// Usage: ViewpointBenchmark [elements]

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "HostKit/API/AddOnLoader.hpp"
#include "HostKit/API/IfcGuid.hpp"
#include "HostKit/DG/RecordingDriver.hpp"
#include "Measuring.hpp"
#include "Workbench/api/Application.hpp"
#include "Workbench/project/GlobalId.hpp"
#include "palette/Viewpoint.hpp"

namespace {

namespace fs = std::filesystem;
using benchmarks::Expect;
using benchmarks::PeakMegabytes;

constexpr int rounds = 5;
constexpr std::size_t selectedCount = 1000;

/// Elements of the host's own without shapes: nothing here looks at those.
void WriteModel(const fs::path& file, std::size_t count) {
    std::ofstream out(file, std::ios::binary);
    out << "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
           "FILE_NAME('','2025-06-01T12:00:00',(''),(''),'','Archicad 26','');\nFILE_SCHEMA(('IFC4'));\nENDSEC;\n"
           "DATA;\n#1=IFCORGANIZATION($,'Graphisoft',$,$,$);\n#2=IFCAPPLICATION(#1,'26','Archicad','AC');\n"
           "#3=IFCPROJECT('0000000000000000000001',$,'P',$,$,$,$,$,$);\n";
    for (std::size_t number = 0; number < count; ++number) {
        const API_Guid guid = workbench::GuidFromName("element" + std::to_string(number));
        out << '#' << number + 10 << "=IFCWALL('" << workbench::GlobalIdFromGuid(guid) << "',$,'Wall "
            << number << "',$,$,$,$,'W-" << number << "',.SOLIDWALL.);\n";
    }
    out << "ENDSEC;\nEND-ISO-10303-21;\n";
}

double Milliseconds(const std::function<void()>& job) {
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        times.push_back(1000 * benchmarks::Seconds(job));
    }
    std::ranges::sort(times);
    return times[rounds / 2];
}

/// The least that any program must do: the shown elements' records, one after the other.
GS::UniString AppendPlainly(const workbench::Application& application) {
    std::string text;
    for (const workbench::Element& element : application.OpenProject().Elements()) {
        if (!application.IsShown(element)) continue;
        text += R"({"ifcGuid":")" + hostkit::ToIfcGuid(element.guid) + R"(","name":")" + element.idText +
                R"("},)";
    }
    return GS::UniString(text.data(), static_cast<USize>(text.size()));
}

KestranePalette::ACViewpoint ViewpointOf(const workbench::Application& application) {
    KestranePalette::ACViewpoint viewpoint;
    viewpoint.cameraType = true;
    viewpoint.cameraFactor = 60;
    viewpoint.direction = {1, 0, 0};
    for (const workbench::Element& element : application.OpenProject().Elements()) {
        if (!application.IsShown(element)) continue;
        viewpoint.visibilityExceptionGlobalIds.Push(hostkit::ToIfcGuid(element.guid).c_str());
        if (viewpoint.selectedGlobalIds.GetSize() < selectedCount)
            viewpoint.selectedGlobalIds.Push(viewpoint.visibilityExceptionGlobalIds.GetLast());
    }
    return viewpoint;
}

void Measure(std::size_t count) {
    const fs::path folder = fs::temp_directory_path() / ("kestrane-bench-" + std::to_string(getpid()));
    fs::create_directories(folder);
    WriteModel(folder / "model.ifc", count);

    workbench::Settings settings;
    settings.dataFolder = folder / "data";
    settings.resourcesFolder = fs::path(KESTRANE_SHARE) / "resources";
    settings.mesher.node = "false";  // no shapes
    workbench::MainQueue queue;
    hostkit::dg::RecordingDriver driver;
    workbench::Application application(settings, queue, driver);
    Expect(application.Start() == NoError && application.Open(folder / "model.ifc"));
    Expect(queue.RunUntil([&] { return !application.IsShaping(); }, std::chrono::minutes(1)));
    fs::remove_all(folder);

    const auto& elements = application.OpenProject().Elements();
    Expect(elements.size() == count);
    std::vector<API_Guid> half;
    for (std::size_t i = 0; i < count; i += 2)
        half.push_back(elements[i].guid);
    application.ShowOnly(half);
    application.Select(std::span(half).first(std::min(half.size(), selectedCount)));
    KestranePalette::CreateInstance();
    KestranePalette::GetInstance().InsertViewpoint("image");
    const double before = PeakMegabytes();

    GS::UniString text;
    const double capture = Milliseconds([&] { text = KestranePalette::GetViewpoint(); });
    const double plain = Milliseconds([&] { Expect(!AppendPlainly(application).IsEmpty()); });
    const KestranePalette::ACViewpoint viewpoint = ViewpointOf(application);
    GS::Array<API_Guid> resolved;
    const double resolving = Milliseconds([&] {
        resolved = KestranePalette::GetElementsFromJSIfcGuids(viewpoint.visibilityExceptionGlobalIds);
    });
    Expect(resolved.GetSize() == half.size());
    const double restore =
        Milliseconds([&] { Expect(KestranePalette::SelectViewpoint(viewpoint) == NoError); });
    Expect(application.ShownCount() == half.size());
    const double megabytes = static_cast<double>(std::string_view(text.ToCStr().Get()).size()) / 1e6;
    std::printf("%9zu %9.1f ms %7.2f x %9.1f ms %9.2f us %9.1f MB %9.0f MB\n", count, capture,
                capture / plain, restore, resolving * 1e3 / static_cast<double>(half.size()), megabytes,
                PeakMegabytes() - before);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1) {
        const std::size_t count = std::strtoul(argv[1], nullptr, 10);
        if (count == 0) {
            std::fprintf(stderr, "Usage: ViewpointBenchmark [elements]\n");
            return 2;
        }
        Measure(count);
        std::_Exit(0);  // what is left to tear down is no part of this
    }
    std::printf("%9s %12s %9s %12s %12s %12s %12s\n", "elements", "capture", "plain", "restore",
                "resolve one", "JSON", "peak +");
    return benchmarks::RunForEach(argv[0], {"1000", "10000", "100000", "1000000"});
}
