#include "DGListBox.hpp"

#include <algorithm>
#include <limits>

#include "HostKit/DG/PanelState.hpp"

namespace DG {

short ListBox::GetItemWidth() const {
    const auto* dialog = Panel()->Dialog();
    return dialog == nullptr ? static_cast<short>(0) : dialog->ListWidth(GetId());
}

void ListBox::SetHeaderItemCount(short count) {
    header.resize(static_cast<std::size_t>(std::max<short>(count, 0)));
}

template <class Change>
void ListBox::ChangeHeader(short item, Change change) {
    if (item < 1 || static_cast<std::size_t>(item) > header.size()) return;
    HeaderItem& changed = header[static_cast<std::size_t>(item - 1)];
    change(changed);
    if (auto* dialog = Panel()->Dialog()) dialog->SetListHeader(GetId(), item, changed.text, changed.width);
}

void ListBox::SetHeaderItemSize(short item, short width) {
    ChangeHeader(item, [&](HeaderItem& changed) { changed.width = width; });
}

void ListBox::SetHeaderItemText(short item, const GS::UniString& text) {
    ChangeHeader(item, [&](HeaderItem& changed) { changed.text = text; });
}

void ListBox::AppendItem() {
    if (rows == std::numeric_limits<short>::max()) return;
    ++rows;
    if (auto* dialog = Panel()->Dialog()) dialog->AppendListRow(GetId());
}

void ListBox::SetTabItemText(short row, short tabField, const GS::UniString& text) {
    if (row < 1 || row > rows || tabField < 1 || tabField > tabFields) return;
    if (auto* dialog = Panel()->Dialog()) dialog->SetListCell(GetId(), row, tabField, text);
}

}  // namespace DG
