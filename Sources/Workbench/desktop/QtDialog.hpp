#pragma once

#include <QDialog>
#include <QStringList>
#include <functional>
#include <map>
#include <optional>

#include "HostKit/DG/Driver.hpp"

class QTreeWidget;

namespace workbench {

/// A modal dialog that is about to be shown: every text that it shows, its title first and the rows of its
/// lists in their places.
struct ShownDialog {
    GSResID id = 0;
    QStringList texts;
};

/// Answers a dialog without showing it.
struct DialogAnswer {
    short item = 1;               // the button to click; 0 cancels
    std::optional<QString> text;  // for its first field
};

/// A dialog of the add-on in Qt. Its items stand in the rows that their places in the resource make, and grow
/// with the window. Enter clicks item 1, Escape and the close box item 2, when these are buttons.
class QtDialog : public hostkit::dg::DialogPeer {
  public:
    /// Nothing to ask the person. A dialog that the answer leaves open is cancelled.
    using OnDialog = std::function<std::optional<DialogAnswer>(const ShownDialog&)>;

    QtDialog(const hostkit::DialogResource& resource, hostkit::dg::DialogEvents& events, QWidget* parent,
             OnDialog onDialog);
    ~QtDialog() override;

    bool Run() override;
    void End(bool accepted) override;

    void SetText(short item, const GS::UniString& text) override;
    GS::UniString Text(short item) const override;

    short ListWidth(short item) const override;
    void SetListHeader(short item, short column, const GS::UniString& text, short width) override;
    void AppendListRow(short item) override;
    void SetListCell(short item, short row, short column, const GS::UniString& text) override;

  private:
    class Window;

    QWidget* MakeItem(const hostkit::DialogItem& item, short number);
    void LayOut(const hostkit::DialogResource& resource);
    bool IsButton(short item) const;
    /// A click on the item when it is a button, else the key's meaning.
    void ClickOrClose(short item, bool accepting);
    ShownDialog Shown() const;
    void Answer(const DialogAnswer& answer);
    QTreeWidget* List(short item) const;

    hostkit::dg::DialogEvents& events;
    OnDialog onDialog;
    GSResID id;
    std::unique_ptr<Window> window;
    std::map<short, QWidget*> items;  // owned by the window
    std::optional<bool> ended;        // accepted or not; nothing while it runs
};

}  // namespace workbench
