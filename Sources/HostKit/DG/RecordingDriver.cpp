#include "HostKit/DG/RecordingDriver.hpp"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <stdexcept>

#include "HostKit/GSRoot/Text.hpp"

namespace hostkit::dg {

// Shared with the peers; every member is read and written under the mutex.
class RecordingDriver::Record {
  public:
    mutable std::mutex mutex;
    std::condition_variable changed;

    std::deque<short> answers;
    std::vector<AlertTexts> alerts;
    std::deque<std::pair<std::optional<short>, std::map<short, std::string>>> dialogAnswers;
    std::vector<ShownDialog> dialogs;
    std::deque<FileAnswer> fileAnswers;
    std::vector<FileQuestion> fileQuestions;
    std::vector<std::string> calls;
    std::vector<Script> scripts;
    std::map<std::string, std::size_t> scriptsUsedUp;

    PaletteEvents* events = nullptr;  // null: there is no palette
    bool visible = false;
    bool enabled = true;
    DialogRect browserRect;
    std::string url;
    std::string html;
    bool contextMenu = true;
    GS::Ref<DG::JSObject> pageObject;

    // Notes a call, and what it changes, as one step.
    template <class Change>
    void Note(const char* call, Change change) {
        {
            const std::lock_guard lock(mutex);
            calls.emplace_back(call);
            change();
        }
        changed.notify_all();
    }

    template <class Read>
    auto Get(Read read) const {
        const std::lock_guard lock(mutex);
        return read(*this);
    }
};

class RecordingDriver::Browser : public BrowserPeer {
  public:
    explicit Browser(std::shared_ptr<Record> record) : record(std::move(record)) {}

    // The page is gone, and with it what it could call.
    ~Browser() override {
        GS::Ref<DG::JSObject> ending;
        const std::lock_guard lock(record->mutex);
        if (record->pageObject == registered) std::swap(ending, record->pageObject);
    }

    void LoadURL(const GS::UniString& url) override {
        record->Note("LoadURL", [&] { record->url = ToUtf8(url); });
    }

    void LoadHTML(const GS::UniString& html) override {
        record->Note("LoadHTML", [&] { record->html = ToUtf8(html); });
    }

    void ExecuteJS(const GS::UniString& script) override {
        record->Note("ExecuteJS", [&] {
            record->scripts.push_back({ToUtf8(script), std::this_thread::get_id()});
        });
    }

    bool RegisterAsynchJSObject(const GS::Ref<DG::JSObject>& object) override {
        registered = object;
        record->Note("RegisterAsynchJSObject", [&] { record->pageObject = object; });
        return true;
    }

    void DisableContextMenu() override {
        record->Note("DisableContextMenu", [&] { record->contextMenu = false; });
    }

    void Resize(short horizontalChange, short verticalChange) override {
        record->Note("Resize", [&] {
            record->browserRect.width = static_cast<short>(record->browserRect.width + horizontalChange);
            record->browserRect.height = static_cast<short>(record->browserRect.height + verticalChange);
        });
    }

  private:
    std::shared_ptr<Record> record;
    GS::Ref<DG::JSObject> registered;
};

class RecordingDriver::Palette : public PalettePeer {
  public:
    Palette(std::shared_ptr<Record> record, const DialogResource& resource, PaletteEvents& events)
        : record(std::move(record)), resource(resource), events(events) {}

    ~Palette() override {
        const std::lock_guard lock(record->mutex);
        if (record->events == &events) record->events = nullptr;
    }

    void Show() override {
        record->Note("Show", [this] { record->visible = true; });
    }

    void Hide() override {
        record->Note("Hide", [this] { record->visible = false; });
    }

    bool IsVisible() const override {
        return record->Get([](const Record& read) { return read.visible; });
    }

    void SetItemsEnabled(bool enabled) override {
        record->Note(enabled ? "EnableItems" : "DisableItems", [&] { record->enabled = enabled; });
    }

    std::unique_ptr<BrowserPeer> CreateBrowser(short item) override {
        const auto index = static_cast<std::size_t>(item - 1);
        if (index >= resource.items.size() || resource.items[index].kind != "Browser") return nullptr;
        record->Note("CreateBrowser", [&] { record->browserRect = resource.items[index].rect; });
        return std::make_unique<Browser>(record);
    }

  private:
    std::shared_ptr<Record> record;
    DialogResource resource;
    PaletteEvents& events;
};

// Main thread only, but for what it leaves in the record.
class RecordingDriver::Dialog : public DialogPeer {
  public:
    Dialog(std::shared_ptr<Record> record, const DialogResource& resource, DialogEvents& events)
        : record(std::move(record)), resource(resource), events(events) {
        shown.id = resource.id;
        shown.title = ToUtf8(resource.title);
        for (std::size_t i = 0; i < resource.items.size(); ++i)
            shown.texts[static_cast<short>(i + 1)] = ToUtf8(resource.items[i].text);
    }

    bool Run() override {
        std::optional<short> answer = 1;
        {
            const std::lock_guard lock(record->mutex);
            if (!record->dialogAnswers.empty()) {
                answer = record->dialogAnswers.front().first;
                for (const auto& [item, text] : record->dialogAnswers.front().second)
                    shown.texts[item] = text;
                record->dialogAnswers.pop_front();
            }
        }
        ended = false;
        if (answer) events.UserClicked(*answer);
        if (!ended) events.UserRequestedClose(false);
        const std::lock_guard lock(record->mutex);
        record->dialogs.push_back(shown);
        return shown.accepted;
    }

    void End(bool accepted) override {
        ended = true;
        shown.accepted = accepted;
    }

    void SetText(short item, const GS::UniString& text) override { shown.texts[item] = ToUtf8(text); }
    GS::UniString Text(short item) const override {
        const auto found = shown.texts.find(item);
        return found == shown.texts.end() ? GS::EmptyUniString : ToUniString(found->second);
    }

    short ListWidth(short item) const override {
        return resource.items.at(static_cast<std::size_t>(item - 1)).rect.width;
    }

    void SetListHeader(short item, short column, const GS::UniString& text, short) override {
        Put(shown.lists[item].header, column, text);
    }

    void AppendListRow(short item) override { shown.lists[item].rows.emplace_back(); }

    void SetListCell(short item, short row, short column, const GS::UniString& text) override {
        Put(shown.lists[item].rows.at(static_cast<std::size_t>(row - 1)), column, text);
    }

  private:
    static void Put(std::vector<std::string>& cells, short column, const GS::UniString& text) {
        const auto index = static_cast<std::size_t>(column - 1);
        if (cells.size() <= index) cells.resize(index + 1);
        cells[index] = ToUtf8(text);
    }

    std::shared_ptr<Record> record;
    DialogResource resource;
    DialogEvents& events;
    ShownDialog shown;
    bool ended = false;
};

RecordingDriver::RecordingDriver() : record(std::make_shared<Record>()) {}

RecordingDriver::~RecordingDriver() = default;

short RecordingDriver::Alert(const AlertTexts& texts) {
    const std::lock_guard lock(record->mutex);
    record->alerts.push_back(texts);
    if (record->answers.empty()) return 1;
    const short answer = record->answers.front();
    record->answers.pop_front();
    return answer;
}

std::unique_ptr<PalettePeer> RecordingDriver::CreatePalette(const DialogResource& resource,
                                                            PaletteEvents& events) {
    const std::lock_guard lock(record->mutex);
    record->events = &events;
    record->visible = false;
    record->enabled = true;
    return std::make_unique<Palette>(record, resource, events);
}

std::unique_ptr<DialogPeer> RecordingDriver::CreateDialog(const DialogResource& resource,
                                                          DialogEvents& events) {
    return std::make_unique<Dialog>(record, resource, events);
}

void RecordingDriver::QueueDialogAnswer(std::optional<short> item, std::map<short, std::string> typed) {
    const std::lock_guard lock(record->mutex);
    record->dialogAnswers.emplace_back(item, std::move(typed));
}

FileAnswer RecordingDriver::AskForFile(const FileQuestion& question) {
    const std::lock_guard lock(record->mutex);
    record->fileQuestions.push_back(question);
    if (record->fileAnswers.empty()) return std::nullopt;
    FileAnswer answer = std::move(record->fileAnswers.front());
    record->fileAnswers.pop_front();
    return answer;
}

void RecordingDriver::QueueFileAnswer(FileAnswer file) {
    const std::lock_guard lock(record->mutex);
    record->fileAnswers.push_back(std::move(file));
}

std::vector<FileQuestion> RecordingDriver::FileQuestions() const {
    return record->Get([](const Record& read) { return read.fileQuestions; });
}

std::vector<RecordingDriver::ShownDialog> RecordingDriver::Dialogs() const {
    return record->Get([](const Record& read) { return read.dialogs; });
}

void RecordingDriver::QueueAlertAnswer(short button) {
    const std::lock_guard lock(record->mutex);
    record->answers.push_back(button);
}

std::vector<AlertTexts> RecordingDriver::Alerts() const {
    return record->Get([](const Record& read) { return read.alerts; });
}

bool RecordingDriver::HasPalette() const {
    return record->Get([](const Record& read) { return read.events != nullptr; });
}

bool RecordingDriver::IsPaletteVisible() const {
    return record->Get([](const Record& read) { return read.events != nullptr && read.visible; });
}

bool RecordingDriver::AreItemsEnabled() const {
    return record->Get([](const Record& read) { return read.enabled; });
}

short RecordingDriver::BrowserWidth() const {
    return record->Get([](const Record& read) { return read.browserRect.width; });
}

short RecordingDriver::BrowserHeight() const {
    return record->Get([](const Record& read) { return read.browserRect.height; });
}

std::string RecordingDriver::Url() const {
    return record->Get([](const Record& read) { return read.url; });
}

std::string RecordingDriver::Html() const {
    return record->Get([](const Record& read) { return read.html; });
}

bool RecordingDriver::HasContextMenu() const {
    return record->Get([](const Record& read) { return read.contextMenu; });
}

std::vector<std::string> RecordingDriver::Calls() const {
    return record->Get([](const Record& read) { return read.calls; });
}

std::vector<RecordingDriver::Script> RecordingDriver::Scripts() const {
    return record->Get([](const Record& read) { return read.scripts; });
}

bool RecordingDriver::WaitForScript(const std::string& text, std::chrono::milliseconds timeout) {
    std::unique_lock lock(record->mutex);
    std::size_t& usedUp = record->scriptsUsedUp[text];
    const auto isNew = [&] {
        const auto executed = std::count_if(record->scripts.begin(), record->scripts.end(),
                                            [&](const Script& script) { return script.text == text; });
        return static_cast<std::size_t>(executed) > usedUp;
    };
    if (!record->changed.wait_for(lock, timeout, isNew)) return false;
    ++usedUp;
    return true;
}

GS::Ref<DG::JSObject> RecordingDriver::PageObject() const {
    return record->Get([](const Record& read) { return read.pageObject; });
}

GS::Ref<DG::JSBase> RecordingDriver::Call(const std::string& functionName,
                                          const GS::Ref<DG::JSBase>& argument) {
    const GS::Ref<DG::JSObject> object = PageObject();
    GS::Ref<DG::JSBase> function;
    if (object == nullptr || !object->GetItemTable().Get(ToUniString(functionName), &function)) {
        throw std::out_of_range("The page has no function " + functionName);
    }
    return GS::DynamicCast<DG::JSFunction>(function)->Call(argument);
}

void RecordingDriver::ResizePalette(short horizontalChange, short verticalChange) {
    PaletteEvents* events = record->Get([](const Record& read) { return read.events; });
    if (events != nullptr) events->UserResized(horizontalChange, verticalChange);
}

bool RecordingDriver::ClosePalette() {
    PaletteEvents* events = record->Get([](const Record& read) { return read.events; });
    return events != nullptr && events->UserRequestedClose();
}

}  // namespace hostkit::dg
