#include "DGPanel.hpp"

#include "DGItem.hpp"
#include "DGModalDialog.hpp"
#include "DGPalette.hpp"
#include "HostKit/DG/DialogState.hpp"
#include "HostKit/DG/PanelState.hpp"

using hostkit::dg::DialogState;
using hostkit::dg::PaletteState;

namespace DG {

void PanelObserver::PanelOpened(const PanelOpenEvent&) {}

void PanelObserver::PanelClosed(const PanelCloseEvent&) {}

void PanelObserver::PanelResized(const PanelResizeEvent&) {}

void PanelObserver::PanelCloseRequested(const PanelCloseRequestEvent&, bool*) {}

Panel::Panel(std::shared_ptr<hostkit::dg::PanelState> state) : reference(std::move(state)) {}

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

void Panel::AttachToAllItems(CompoundItemObserver& observer) {
    reference.Panel()->itemObservers.push_back(&observer);
}

void Panel::DetachFromAllItems(CompoundItemObserver& observer) {
    std::erase(reference.Panel()->itemObservers, &observer);
}

void Panel::EnableItems() {
    if (auto* peer = reference.Panel()->Palette()) peer->SetItemsEnabled(true);
}

void Panel::DisableItems() {
    if (auto* peer = reference.Panel()->Palette()) peer->SetItemsEnabled(false);
}

void ModelessBase::Show() {
    if (auto* peer = GetReference().Panel()->Palette()) peer->Show();
}

void ModelessBase::Hide() {
    if (auto* peer = GetReference().Panel()->Palette()) peer->Hide();
}

bool ModelessBase::IsVisible() const {
    const auto* peer = GetReference().Panel()->Palette();
    return peer != nullptr && peer->IsVisible();
}

void ModelessBase::BeginEventProcessing() {
    GetReference().Panel()->processesEvents = true;
}

void ModelessBase::EndEventProcessing() {
    GetReference().Panel()->processesEvents = false;
}

Palette::Palette(GSResModule, GSResID dialog, GSResModule, const GS::Guid&)
    : ModelessBase(PaletteState::Make(dialog)) {}

ModalDialog::ModalDialog(GSResModule, GSResID dialog, GSResModule) : ModalDialog(DialogState::Make(dialog)) {}

ModalDialog::ModalDialog(const std::shared_ptr<DialogState>& state) : Panel(state), state(state) {}

bool ModalDialog::Invoke() {
    return state->Run();
}

void ModalDialog::PostCloseRequest(CloseRequest request) {
    state->UserRequestedClose(request == Accept);
}

}  // namespace DG
