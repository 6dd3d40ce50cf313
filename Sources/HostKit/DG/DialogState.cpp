#include "HostKit/DG/DialogState.hpp"

#include <algorithm>

#include "DGItem.hpp"

namespace hostkit::dg {

std::shared_ptr<DialogState> DialogState::Make(GSResID dialog) {
    auto state = std::make_shared<DialogState>();
    const SessionAccess session;
    if (!session) return state;
    if (const DialogResource* resource = session->GetResources().Dialog(dialog)) {
        state->peer = session->GetDriver().CreateDialog(*resource, *state);
        session->Add(state);
    }
    return state;
}

bool DialogState::Run() {
    if (peer == nullptr || processesEvents) return false;
    processesEvents = true;
    for (DG::PanelObserver* observer : Listeners())
        observer->PanelOpened({});
    const bool accepted = peer->Run();
    for (DG::PanelObserver* observer : Listeners())
        observer->PanelClosed({});
    processesEvents = false;
    return accepted;
}

// Each observer is told once, however often it asked to be.
void DialogState::UserClicked(short item) {
    const auto found = items.find(item);
    if (!processesEvents || found == items.end()) return;
    const auto* button = dynamic_cast<const DG::Button*>(found->second);
    if (button == nullptr) return;

    std::vector<DG::ButtonItemObserver*> told = button->Observers();
    for (DG::CompoundItemObserver* observer : itemObservers) {
        auto* ofButtons = dynamic_cast<DG::ButtonItemObserver*>(observer);
        if (ofButtons != nullptr && std::find(told.begin(), told.end(), ofButtons) == told.end())
            told.push_back(ofButtons);
    }
    for (DG::ButtonItemObserver* observer : told)
        observer->ButtonClicked(DG::ButtonClickEvent(button));
}

void DialogState::UserRequestedClose(bool accepting) {
    if (processesEvents && AsksToClose(accepting)) peer->End(accepting);
}

}  // namespace hostkit::dg
