// The part of the application that is about creating elements, undoing it, and unsaved changes.

#include <algorithm>
#include <system_error>
#include <utility>

#include "HostKit/DG/Driver.hpp"
#include "HostKit/GSRoot/Text.hpp"
#include "Workbench/api/Application.hpp"

namespace workbench {

void Application::EndCommand(bool succeeded) {
    history.End(succeeded);
    HistoryMoved();
}

EditHistory::Created Application::Create(const std::shared_ptr<const Project>& source,
                                         const API_Guid& element) {
    const EditHistory::Created created = history.Create(source, element);
    if (created.refusal == EditHistory::Refusal::otherSchema) {
        ++refused;
        refusedFrom = source;
    }
    return created;
}

void Application::Undo(std::size_t steps) {
    if (history.Undo(steps)) HistoryMoved();
}

void Application::Redo(std::size_t steps) {
    if (history.Redo(steps)) HistoryMoved();
}

void Application::HistoryMoved() {
    if (std::exchange(historyMoved, true)) return;
    queue.Post([this, of = std::weak_ptr(generation)] {
        if (of.expired()) return;
        historyMoved = false;
        Settle();
        Tell([](ApplicationObserver& observer) { observer.HistoryChanged(); });
        TellRefused();
    });
}

void Application::Replace(std::shared_ptr<const Project> edited) {
    publisher.Follow(*edited, say);
    hiddenView.reset();
    const std::shared_ptr<const Project> before = std::exchange(project, std::move(edited));
    const std::size_t selectedBefore = Selection().size();
    view->Remove(states.MoveTo(*project));
    if (front.storey < before->Storeys().size()) {
        const uint64_t storey = before->Storeys()[front.storey].record;
        const auto& now = project->Storeys();
        const auto found = std::ranges::find(now, storey, &Storey::record);
        front.storey = found == now.end() ? 0 : static_cast<std::size_t>(found - now.begin());
    }

    std::erase_if(unshaped, [this](std::uint64_t record) { return !project->FindByRecord(record); });
    for (const Element& element : project->Elements())
        if (!before->FindByRecord(element.record)) unshaped.insert(element.record);
    if (shaping == Shaping::coming) unshaped.clear();  // they come with all
    if (!unshaped.empty() && shaping == Shaping::none) ShapeAdded();

    viewOutdated |= selectionChange | visibilityChange;
    Tell([](ApplicationObserver& observer) { observer.ProjectEdited(); });
    if (Selection().size() != selectedBefore) Changed(selectionChange, Who::addOn);
}

void Application::TellRefused() {
    const std::size_t count = std::exchange(refused, 0U);
    if (count == 0) return;
    const std::string from = std::exchange(refusedFrom, nullptr)->Schema();
    const std::string reason =
        from == project->Schema()
            ? say("Models of the IFC version ", "Modelle der IFC-Version ") + from +
                  say(" can be opened, but not edited.", " lassen sich öffnen, aber nicht bearbeiten.")
            : say("They come from a model of the IFC version ",
                  "Sie stammen aus einem Modell der IFC-Version ") +
                  from + say(", the open project is ", ", das geöffnete Projekt ist ") + project->Schema() +
                  ".";
    ShowAlert(std::to_string(count) + say(" elements were not created.", " Elemente wurden nicht erzeugt."),
              reason + say(" Export all models in the same version, IFC2X3 or IFC4, and merge them again.",
                           " Exportieren Sie alle Modelle in derselben Version, IFC2X3 oder IFC4, und führen "
                           "Sie sie neu zusammen."));
}

bool Application::MayLeaveProject(Who who) {
    Settle();
    if (!IsModified()) return true;
    if (who == Who::addOn && addOnMayLeave) return *addOnMayLeave;
    constexpr short save = 1, discard = 2;
    const std::string name = project->IsUntitled() ? say("Untitled", "Unbenannt") : project->Name();
    const short answer = driver.Alert(
        {hostkit::ToUniString(say("The project “", "Das Projekt „") + name +
                              say("” has unsaved changes.", "“ hat ungesicherte Änderungen.")),
         hostkit::ToUniString(say("Without saving they are lost.", "Ohne Sichern gehen sie verloren.")),
         {hostkit::ToUniString(say("Save", "Sichern")),
          hostkit::ToUniString(say("Don't Save", "Nicht sichern")),
          hostkit::ToUniString(say("Cancel", "Abbrechen"))}});
    const bool may = answer == discard || (answer == save && SaveBeforeLeaving());
    if (who == Who::addOn) RememberForAddOn(may);
    return may;
}

void Application::RememberForAddOn(bool mayLeave) {
    addOnMayLeave = mayLeave;
    queue.Post([this] { addOnMayLeave.reset(); });
}

// A model that came from the service is kept as it came: opened again, it must not hold what was merged into
// it.
bool Application::SaveBeforeLeaving() {
    namespace fs = std::filesystem;
    const fs::path& location = project->Location();
    const auto [ofData, ignored] = std::mismatch(settings.dataFolder.begin(), settings.dataFolder.end(),
                                                 location.begin(), location.end());
    const bool isOwn = !project->IsUntitled() && ofData != settings.dataFolder.end();
    if (isOwn && location.extension() == ".ifc") return Save(location);
    const std::string name = project->IsUntitled() ? say("Untitled", "Unbenannt") : project->Name();
    if (asksForFile) {
        const auto chosen = asksForFile(location.parent_path() / (name + ".ifc"));
        return chosen && Save(*chosen);
    }
    const fs::path folder = settings.dataFolder / "Saved";
    std::error_code error;
    fs::create_directories(folder, error);
    fs::path file = folder / (name + ".ifc");
    for (int number = 2; fs::exists(file, error); ++number)
        file = folder / (name + " " + std::to_string(number) + ".ifc");
    return Save(file);
}

}  // namespace workbench
