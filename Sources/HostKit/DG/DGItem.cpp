#include "DGItem.hpp"

#include "HostKit/DG/PanelState.hpp"

namespace DG {

Item::Item(const Reference& panel, short number) : panel(panel.Panel()), number(number) {
    this->panel->items[number] = this;
}

Item::~Item() {
    panel->items.erase(number);
}

void TextItem::SetText(const GS::UniString& text) {
    if (auto* dialog = Panel()->Dialog()) dialog->SetText(GetId(), text);
}

GS::UniString TextItem::GetText() const {
    const auto* dialog = Panel()->Dialog();
    return dialog == nullptr ? GS::EmptyUniString : dialog->Text(GetId());
}

void Button::Attach(ButtonItemObserver& observer) {
    observers.push_back(&observer);
}

void Button::Detach(ButtonItemObserver& observer) {
    std::erase(observers, &observer);
}

void ButtonItemObserver::ButtonClicked(const ButtonClickEvent&) {}

}  // namespace DG
