#pragma once

#include <vector>

#include "DGItem.hpp"

namespace DG {

// A list of rows with tab fields below a header. Rows, tab fields and header items count from 1; what is not
// there is passed over.
class ListBox : public Item {
  public:
    enum Justification { Left, Center, Right };
    enum Truncation { NoTruncate, EndTruncate, MiddleTruncate };

    // Pixels.
    short GetItemWidth() const;

    void SetTabFieldCount(short count) { tabFields = count; }

    // Each field is shown below the header item of its number, as wide as that one: the places given and the
    // ways to align and shorten do not count here.
    void SetTabFieldProperties(short, short, short, Justification, Truncation, bool = false, bool = true) {}

    void SetHeaderSynchronState(bool) {}
    void SetHeaderItemCount(short count);
    void SetHeaderItemSize(short item, short width);
    void SetHeaderItemText(short item, const GS::UniString& text);

    void AppendItem();
    short GetItemCount() const { return rows; }
    void SetTabItemText(short row, short tabField, const GS::UniString& text);

  protected:
    using Item::Item;

  private:
    struct HeaderItem {
        GS::UniString text;
        short width = 0;
    };

    // Shows the header item after the change, if there is one.
    template <class Change>
    void ChangeHeader(short item, Change change);

    short tabFields = 0;
    short rows = 0;
    std::vector<HeaderItem> header;
};

class SingleSelListBox : public ListBox {
  public:
    SingleSelListBox(const Reference& panel, short item) : ListBox(panel, item) {}
};

}  // namespace DG
