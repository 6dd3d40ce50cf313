// The part of the application that gets the shapes of its project from the mesher.

#include "HostKit/API/Registry.hpp"
#include "Workbench/api/Application.hpp"
#include "Workbench/exchange/Archive.hpp"

namespace workbench {

void Application::ShapeAll() {
    Settle();
    shaping = Shaping::all;
    unshaped.clear();
    // An archive, or a model that is not what was opened any more, is written out for the mesher.
    std::error_code ignored;
    if (history.UndoCount() > 0 || IsArchive(project->Location())) {
        const std::filesystem::path file = settings.dataFolder / "Temporary" / "Meshed.ifc";
        if (SaveIfc(*project, file).outcome == SaveOutcome::done) meshed = file;
        Shape(file);
    } else {
        Shape(project->Location());
    }
}

// Only the new ones, in a file that keeps their record ids.
void Application::ShapeAdded() {
    shaping = Shaping::added;
    states.ShapesAreComing();
    std::vector<API_Guid> added;
    for (const std::uint64_t record : std::exchange(unshaped, {}))
        if (const Element* element = project->FindByRecord(record)) added.push_back(element->guid);
    const std::filesystem::path file = settings.dataFolder / "Temporary" / "Meshed.ifc";
    if (SaveIfcSubset(*project, added, file).outcome == SaveOutcome::done) meshed = file;
    Shape(file);
}

void Application::Shape(const std::filesystem::path& file) {
    const std::weak_ptr<int> of = generation;
    mesher.Mesh(
        file,
        [this, of](MeshBatch batch) {
            queue.Post([this, of, batch = std::move(batch)] {
                if (!of.expired()) TakeShapes(batch);
            });
        },
        [this, of](MeshOutcome outcome) {
            queue.Post([this, of, outcome = std::move(outcome)] {
                if (!of.expired()) FinishShaping(outcome);
            });
        });
}

void Application::TakeShapes(const MeshBatch& batch) {
    MeshBatch taken = batch;
    // What was undone meanwhile is gone.
    std::erase_if(taken.elements,
                  [this](const ElementMeshPtr& mesh) { return !project->Document().Find(mesh->record); });
    for (const ElementMeshPtr& mesh : taken.elements)
        states.AddShape(mesh);
    const bool first = view->Count() == 0;
    view->Add(taken.elements);
    if (first) window3D.LookAtFirst(view->Bounds());
    Tell([&](ApplicationObserver& observer) { observer.ShapesArrived(taken); });
}

void Application::FinishShaping(const MeshOutcome& outcome) {
    const bool wasAll = shaping == Shaping::all;
    shaping = Shaping::none;
    if (outcome.status == MeshOutcome::Status::Done) states.ShapesAreKnown();
    viewOutdated |= visibilityChange;  // hiding what has no shape hides nothing
    if (wasAll) window3D.LookAtFirst(view->Bounds());
    if (!unshaped.empty()) {
        ShapeAdded();
        if (!wasAll) return;
    }
    Tell([&](ApplicationObserver& observer) { observer.ProjectReady(outcome); });
    Changed(viewChange, Who::person);
    if (!wasAll || !openedByPerson) return;
    Tell([](ApplicationObserver& observer) { observer.ProjectOpened(); });
    session.GetRegistry().NotifyProjectEvent(APINotify_Open);
}

}  // namespace workbench
