#include "HostKit/DG/PanelState.hpp"

namespace hostkit::dg {

std::shared_ptr<PaletteState> PaletteState::Make(GSResID dialog) {
    auto state = std::make_shared<PaletteState>();
    const SessionAccess session;
    if (!session) return state;
    if (const DialogResource* resource = session->GetResources().Dialog(dialog)) {
        state->peer = session->GetDriver().CreatePalette(*resource, *state);
        session->Add(state);
    }
    return state;
}

std::vector<DG::PanelObserver*> PanelState::Listeners() const {
    return processesEvents ? observers : std::vector<DG::PanelObserver*>();
}

bool PanelState::AsksToClose(bool accepting) const {
    bool accepted = true;
    for (DG::PanelObserver* observer : Listeners())
        observer->PanelCloseRequested(DG::PanelCloseRequestEvent(accepting), &accepted);
    return accepted;
}

void PaletteState::UserResized(short horizontalChange, short verticalChange) {
    const DG::PanelResizeEvent event(horizontalChange, verticalChange);
    for (DG::PanelObserver* observer : Listeners())
        observer->PanelResized(event);
}

bool PaletteState::UserRequestedClose() {
    const bool accepted = AsksToClose(false);
    if (accepted && peer != nullptr && peer->IsVisible()) peer->Hide();
    return accepted;
}

std::shared_ptr<BrowserState> BrowserState::Make(PanelState& panel, short item) {
    auto state = std::make_shared<BrowserState>();
    const SessionAccess session;
    if (!session || panel.Palette() == nullptr) return state;
    state->peer = panel.Palette()->CreateBrowser(item);
    session->Add(state);
    return state;
}

// The peer is destroyed outside the lock: it may wait for its page, and the page for nothing of ours.
void BrowserState::SessionEnds() {
    std::unique_ptr<BrowserPeer> ending;
    const std::lock_guard lock(mutex);
    ending.swap(peer);
}

}  // namespace hostkit::dg
