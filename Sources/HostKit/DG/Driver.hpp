#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "DGBrowserJSHandler.hpp"
#include "HostKit/Resources/Resources.hpp"

// What shows the dialog library's classes on a screen, or only records them. All calls come on the main
// thread unless said otherwise.
namespace hostkit::dg {

struct AlertTexts {
    GS::UniString large;
    GS::UniString small;
    std::array<GS::UniString, 3> buttons;  // an empty one is not shown
};

// Which file the person is to choose.
struct FileQuestion {
    struct Filter {
        GS::UniString text;
        GS::UniString extension;  // without the dot; empty: every file
    };

    GS::UniString title;
    std::vector<Filter> filters;  // none: every file
};

// A file that exists, or nothing when the person cancelled.
using FileAnswer = std::optional<std::filesystem::path>;

class BrowserPeer {
  public:
    virtual ~BrowserPeer() = default;

    virtual void LoadURL(const GS::UniString& url) = 0;
    virtual void LoadHTML(const GS::UniString& html) = 0;

    // From any thread, and must return without waiting for the main thread. Scripts run in call order.
    virtual void ExecuteJS(const GS::UniString& script) = 0;

    // Keeps the reference as long as the page may call the object's functions.
    virtual bool RegisterAsynchJSObject(const GS::Ref<DG::JSObject>& object) = 0;
    virtual void DisableContextMenu() = 0;
    virtual void Resize(short horizontalChange, short verticalChange) = 0;
};

// What a person does to a palette. Lives longer than the peer it was given to.
class PaletteEvents {
  public:
    virtual ~PaletteEvents() = default;

    // The palette's inside grew by so many pixels.
    virtual void UserResized(short horizontalChange, short verticalChange) = 0;

    // True when the palette may close: it has been hidden by then.
    virtual bool UserRequestedClose() = 0;
};

// A palette, hidden at first. Its browsers are destroyed before it.
class PalettePeer {
  public:
    virtual ~PalettePeer() = default;

    virtual void Show() = 0;
    virtual void Hide() = 0;
    virtual bool IsVisible() const = 0;
    virtual void SetItemsEnabled(bool enabled) = 0;

    // "item" counts the dialog resource's items from 1; null when that is no browser.
    virtual std::unique_ptr<BrowserPeer> CreateBrowser(short item) = 0;
};

// What a person does in a modal dialog.
class DialogEvents {
  public:
    virtual ~DialogEvents() = default;

    // A button, by its item's number in the dialog resource.
    virtual void UserClicked(short item) = 0;
    // By key or by the window's close box: accepting (Enter) or cancelling (Esc).
    virtual void UserRequestedClose(bool accepting) = 0;
};

// A modal dialog made from its resource; items by their number there. Columns and rows of lists count from 1.
class DialogPeer {
  public:
    virtual ~DialogPeer() = default;

    // Shows it and waits for End; its answer.
    virtual bool Run() = 0;
    virtual void End(bool accepted) = 0;

    virtual void SetText(short item, const GS::UniString& text) = 0;
    virtual GS::UniString Text(short item) const = 0;

    virtual short ListWidth(short item) const = 0;  // pixels
    virtual void SetListHeader(short item, short column, const GS::UniString& text, short width) = 0;
    virtual void AppendListRow(short item) = 0;
    virtual void SetListCell(short item, short row, short column, const GS::UniString& text) = 0;
};

class Driver {
  public:
    virtual ~Driver() = default;

    // Null when there is nobody to show it to: the dialog counts as cancelled.
    virtual std::unique_ptr<DialogPeer> CreateDialog(const DialogResource&, DialogEvents&) { return nullptr; }

    // Waits for the answer; cancelled when there is nobody to ask.
    virtual FileAnswer AskForFile(const FileQuestion&) { return std::nullopt; }

    // Waits for the answer: the number of the button, from 1.
    virtual short Alert(const AlertTexts& texts) = 0;

    virtual std::unique_ptr<PalettePeer> CreatePalette(const DialogResource& resource,
                                                       PaletteEvents& events) = 0;
};

}  // namespace hostkit::dg
