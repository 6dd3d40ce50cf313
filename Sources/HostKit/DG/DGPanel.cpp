#include "DGPanel.hpp"

#include "DGPalette.hpp"
#include "HostKit/DG/PanelState.hpp"

namespace DG {

void PanelObserver::PanelResized(const PanelResizeEvent&) {}

void PanelObserver::PanelCloseRequested(const PanelCloseRequestEvent&, bool*) {}

Panel::Panel(GSResModule, GSResID dialog) : reference(hostkit::dg::PanelState::Make(dialog)) {}

// Items may still hold the state: the peer goes now, and with it every event.
Panel::~Panel() {
    reference.Panel()->SessionEnds();
}

void Panel::Attach(PanelObserver& observer) {
    reference.Panel()->observers.push_back(&observer);
}

void Panel::Detach(PanelObserver& observer) {
    std::erase(reference.Panel()->observers, &observer);
}

void Panel::EnableItems() {
    if (auto* peer = reference.Panel()->Peer()) peer->SetItemsEnabled(true);
}

void Panel::DisableItems() {
    if (auto* peer = reference.Panel()->Peer()) peer->SetItemsEnabled(false);
}

void ModelessBase::Show() {
    if (auto* peer = GetReference().Panel()->Peer()) peer->Show();
}

void ModelessBase::Hide() {
    if (auto* peer = GetReference().Panel()->Peer()) peer->Hide();
}

bool ModelessBase::IsVisible() const {
    const auto* peer = GetReference().Panel()->Peer();
    return peer != nullptr && peer->IsVisible();
}

void ModelessBase::BeginEventProcessing() {
    GetReference().Panel()->processesEvents = true;
}

void ModelessBase::EndEventProcessing() {
    GetReference().Panel()->processesEvents = false;
}

Palette::Palette(GSResModule dialogModule, GSResID dialog, GSResModule, const GS::Guid&)
    : ModelessBase(dialogModule, dialog) {}

}  // namespace DG
