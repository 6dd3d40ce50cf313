#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "HostKit/DG/Driver.hpp"

namespace hostkit::dg {

// A driver without a screen: it notes what is asked of it and acts the person and the page on demand. Where
// it speaks of the palette and the browser it means the ones made last. Reading is allowed from any thread.
class RecordingDriver : public Driver {
  public:
    struct Script {
        std::string text;
        std::thread::id thread;
    };

    // What a modal dialog showed, by the numbers of its items.
    struct ShownDialog {
        struct List {
            std::vector<std::string> header;
            std::vector<std::vector<std::string>> rows;
        };

        GSResID id = 0;
        std::string title;
        std::map<short, std::string> texts;
        std::map<short, List> lists;
        bool accepted = false;
    };

    RecordingDriver();
    ~RecordingDriver() override;

    short Alert(const AlertTexts& texts) override;
    std::unique_ptr<PalettePeer> CreatePalette(const DialogResource& resource,
                                               PaletteEvents& events) override;

    std::unique_ptr<DialogPeer> CreateDialog(const DialogResource& resource, DialogEvents& events) override;

    FileAnswer AskForFile(const FileQuestion& question) override;

    // The item that is clicked in the next dialog after these texts were typed into its fields, or nothing:
    // it is cancelled. Answers are used in order; without one a dialog gets a click on its item 1. One that
    // stays open then is cancelled.
    void QueueDialogAnswer(std::optional<short> item, std::map<short, std::string> typed = {});

    // What is chosen when the next file is asked for, or nothing: that is cancelled, as it is without an
    // answer.
    void QueueFileAnswer(FileAnswer file);
    std::vector<FileQuestion> FileQuestions() const;

    // Those that were closed, in that order.
    std::vector<ShownDialog> Dialogs() const;

    // Answers are used in order; without one an alert gets its first button.
    void QueueAlertAnswer(short button);
    std::vector<AlertTexts> Alerts() const;

    bool HasPalette() const;
    bool IsPaletteVisible() const;
    bool AreItemsEnabled() const;

    // The browser's size in pixels, begun with its place in the dialog resource.
    short BrowserWidth() const;
    short BrowserHeight() const;
    std::string Url() const;
    std::string Html() const;
    bool HasContextMenu() const;

    // Everything asked of palette and browser in order: "Show", "Hide", "EnableItems", "DisableItems",
    // "CreateBrowser", "LoadURL", "LoadHTML", "DisableContextMenu", "RegisterAsynchJSObject", "ExecuteJS",
    // "Resize".
    std::vector<std::string> Calls() const;

    std::vector<Script> Scripts() const;

    // Waits for a script of exactly this text and uses it up: a second wait needs a second execution.
    bool WaitForScript(const std::string& text, std::chrono::milliseconds timeout);

    // As the page would. The object is the one registered last; null before that.
    GS::Ref<DG::JSObject> PageObject() const;

    // Exceptions of the function pass through. Throws std::out_of_range when the page has no such function.
    GS::Ref<DG::JSBase> Call(const std::string& functionName, const GS::Ref<DG::JSBase>& argument = nullptr);

    // As a person would, on the main thread. Closing answers whether it was accepted.
    void ResizePalette(short horizontalChange, short verticalChange);
    bool ClosePalette();

  private:
    class Record;
    class Palette;
    class Browser;
    class Dialog;

    std::shared_ptr<Record> record;
};

}  // namespace hostkit::dg
