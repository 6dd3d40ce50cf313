// What the plan of a storey costs, and its files: of a model, and of a made-up storey with twenty thousand
// elements, of which all or only a thousandth are tall enough to be cut.
// Usage: PlanBenchmark [model.ifc]

#include <unistd.h>

#include <QGuiApplication>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "HostKit/DG/RecordingDriver.hpp"
#include "Measuring.hpp"
#include "Workbench/api/Application.hpp"
#include "Workbench/navigator/PlanFiles.hpp"

namespace {

namespace fs = std::filesystem;
using benchmarks::Expect;
using workbench::ElementMeshPtr;
using workbench::PlanDrawing;
using workbench::Vec3;

constexpr int rounds = 3;

double Milliseconds(const std::function<void()>& job) {
    double best = 1e9;
    for (int round = 0; round < rounds; ++round)
        best = std::min(best, 1000 * benchmarks::Seconds(job));
    return best;
}

class Bench {
  public:
    Bench() : folder(fs::temp_directory_path() / ("kestrane-bench-" + std::to_string(getpid()))) {
        fs::create_directories(folder);
    }
    ~Bench() { fs::remove_all(folder); }

    void Measure(const std::string& name, const std::function<PlanDrawing()>& draw) const {
        PlanDrawing drawing;
        const double section = Milliseconds([&] { drawing = draw(); });
        std::size_t cut = 0;
        std::size_t edges = 0;
        for (const workbench::PlanElement& element : drawing.elements) {
            cut += element.parts.empty() ? 0 : 1;
            edges += element.edges.size();
        }
        std::printf("%-22s %7zu %8zu %8.1f ms", name.c_str(), cut, edges, section);
        Write("plan.pdf", [&](const fs::path& file) { WritePlanPdf(drawing, name, file); });
        Write("plan.png", [&](const fs::path& file) {
            WritePlanPicture(drawing, name, workbench::PictureFormat::png, file);
        });
        Write("plan.dwg", [&](const fs::path& file) { WritePlanDwg(drawing, name, file); });
        std::printf("\n");
        std::fflush(stdout);
    }

    void MeasureModel(const fs::path& file) const {
        workbench::Settings settings;
        settings.dataFolder = folder / "data";
        settings.resourcesFolder = fs::path(KESTRANE_SHARE) / "resources";
        settings.mesher.script = fs::path(KESTRANE_SHARE) / "mesher" / "mesher.mjs";
        workbench::MainQueue queue;
        hostkit::dg::RecordingDriver driver;
        workbench::Application application(settings, queue, driver);
        Expect(application.Open(file));
        Expect(queue.RunUntil([&] { return !application.IsShaping(); }, std::chrono::minutes(5)));
        const workbench::Project& project = application.OpenProject();
        for (std::size_t storey = 0; storey < project.Storeys().size(); ++storey) {
            const std::vector<ElementMeshPtr> shapes = application.ShapesOn(storey);
            if (shapes.empty()) continue;
            Measure(project.Storeys()[storey].name, [&] { return DrawPlan(project, storey, shapes); });
        }
    }

  private:
    void Write(const char* name, const std::function<void(const fs::path&)>& write) const {
        const fs::path file = folder / name;
        const double milliseconds = Milliseconds([&] { write(file); });
        std::printf(" %8.1f ms %7.2f MB", milliseconds, static_cast<double>(fs::file_size(file)) / 1e6);
    }

    fs::path folder;
};

ElementMeshPtr Box(std::uint64_t record, const Vec3& from, const Vec3& size) {
    auto mesh = std::make_shared<workbench::ElementMesh>();
    mesh->record = record;
    mesh->origin = from;
    workbench::MeshPart part;
    part.colour = {0.7F, 0.7F, 0.65F, 1};
    for (unsigned at = 0; at < 8; ++at)
        for (const double value :
             {(at & 1) != 0 ? size.x : 0.0, (at & 2) != 0 ? size.y : 0.0, (at & 4) != 0 ? size.z : 0.0})
            part.positions.push_back(static_cast<float>(value));
    part.indices = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                    2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
    mesh->parts.push_back(std::move(part));
    mesh->bounds.Add(from);
    mesh->bounds.Add(from + size);
    return mesh;
}

/// Rows of walls 3 m long, on a slab; every `cutEach`-th one is tall, the others are low.
std::vector<ElementMeshPtr> Storey(std::size_t count, std::size_t cutEach) {
    constexpr std::size_t perRow = 200;
    std::vector<ElementMeshPtr> meshes{Box(1, {-1, -1, -0.3}, {4.0 * perRow, 2.0 * count / perRow + 2, 0.3})};
    for (std::size_t at = 0; at + 1 < count; ++at)
        meshes.push_back(Box(at + 2, {4.0 * (at % perRow), 2.0 * (at / perRow), 0},
                             {3, 0.25, at % cutEach == 0 ? 2.8 : 0.6}));
    return meshes;
}

}  // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    const QGuiApplication fonts(argc, argv);
    const Bench bench;
    std::printf("%-22s %7s %8s %11s %11s %10s %11s %10s %11s %10s\n", "storey", "cut", "edges", "drawing",
                "PDF", "", "PNG", "", "DWG", "");
    const fs::path model = argc > 1 ? argv[1] : "/usr/share/assimp/models/IFC/AC14-FZK-Haus.ifc";
    if (fs::exists(model)) bench.MeasureModel(model);
    for (const std::size_t count : {5000, 20000}) {
        const std::vector<ElementMeshPtr> all = Storey(count, 1);
        const std::vector<ElementMeshPtr> few = Storey(count, 1000);
        bench.Measure(std::to_string(count) + ", all cut", [&] { return workbench::DrawPlan(all, 0); });
        bench.Measure(std::to_string(count) + ", few cut", [&] { return workbench::DrawPlan(few, 0); });
    }
}
