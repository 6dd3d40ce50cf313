// How fast IFC is read, indexed and written, beside the least that any program must do with the same bytes.
// Usage: StepBenchmark [megabytes] [file.ifc]

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "SyntheticModel.hpp"
#include "Workbench/exchange/Exchange.hpp"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 9;

class TemporaryFolder {
  public:
    TemporaryFolder() : path(fs::temp_directory_path() / ("kestrane-bench-" + std::to_string(getpid()))) {
        fs::create_directories(path);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    fs::path path;
};

struct Job {
    const char* name;
    std::function<void()> run;
    fs::path makes = {};  // a file that must not be there before
    std::vector<double> seconds = {};

    double Median() {
        std::ranges::sort(seconds);
        return seconds[seconds.size() / 2];
    }
};

/// The jobs take turns, so that what else the machine does meets all of them alike.
void Run(std::vector<Job>& jobs) {
    for (int round = 0; round < rounds; ++round) {
        for (Job& job : jobs) {
            if (!job.makes.empty()) fs::remove(job.makes);
            const auto begin = Clock::now();
            job.run();
            job.seconds.push_back(std::chrono::duration<double>(Clock::now() - begin).count());
        }
    }
}

void Print(std::vector<Job>& jobs, double megabytes) {
    const double first = jobs.front().Median();
    for (Job& job : jobs) {
        const double median = job.Median();
        std::printf("  %-36s %8.1f ms %8.0f MB/s %8.2f x\n", job.name, median * 1e3, megabytes / median,
                    median / first);
    }
}

/// Keeps the compiler from leaving out what is measured.
void Expect(bool right) {
    if (right) return;
    std::fprintf(stderr, "A measured step went wrong.\n");
    std::exit(1);
}

}  // namespace

int main(int argc, char** argv) {
    const size_t size = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100;
    if (size == 0) {
        std::fprintf(stderr, "Usage: StepBenchmark [megabytes] [file.ifc]\n");
        return 2;
    }
    const TemporaryFolder folder;
    fs::path model = folder.path / "model.ifc";
    if (argc > 2) {
        model = argv[2];
    } else {
        benchmarks::WriteSyntheticModel(model, size * 1000 * 1000);
    }

    const auto document = workbench::step::Document::Read(model);
    const workbench::OpenResult opened = workbench::OpenIfc(model);
    Expect(opened.project != nullptr);
    const workbench::Project& project = *opened.project;
    const std::string_view bytes = document->Bytes();
    const auto lines = std::ranges::count(bytes, '\n');
    const double megabytes = static_cast<double>(bytes.size()) / 1e6;
    std::printf("IFC model: %.1f MB, %zu records, %zu elements; median of %d\n", megabytes,
                document->Records().size(), project.Elements().size(), rounds);

    std::vector<Job> reading = {
        {"count the newlines in memory", [&] { Expect(std::ranges::count(bytes, '\n') == lines); }},
        {"read the file and index it",
         [&] {
             Expect(workbench::step::Document::Read(model)->Records().size() == document->Records().size());
         }},
        {"open it as a project", [&] { Expect(workbench::OpenIfc(model).project != nullptr); }}};
    Run(reading);
    Print(reading, megabytes);

    std::vector<API_Guid> half;
    for (size_t i = 0; i < project.Elements().size(); i += 2)
        half.push_back(project.Elements()[i].guid);
    const fs::path copy = folder.path / "copy.ifc", whole = folder.path / "whole.ifc",
                   part = folder.path / "part.ifc";
    const auto saved = [](const workbench::SaveResult& result) {
        return result.outcome == workbench::SaveOutcome::done;
    };
    std::vector<Job> writing = {
        {"copy the file", [&] { Expect(fs::copy_file(model, copy)); }, copy},
        {"save the whole project", [&] { Expect(saved(workbench::SaveIfc(project, whole))); }, whole},
        {"save every second element", [&] { Expect(saved(workbench::SaveIfcSubset(project, half, part))); },
         part}};
    Run(writing);
    Print(writing, megabytes);
    return 0;
}
