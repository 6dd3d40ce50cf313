#pragma once

#include <QObject>
#include <deque>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "Workbench/console/Automation.hpp"
#include "Workbench/console/DialogAnswers.hpp"

namespace workbench {

/// The line protocol: one JSON object a line comes in on standard input, one a line goes out on standard
/// output: an answer for each command, in order, and events as they happen.
class Console : public QObject, public ApplicationObserver {
    Q_OBJECT

  public:
    using Json = nlohmann::ordered_json;

    /// Commands are done from the queue, never in the middle of other work.
    Console(Application& application, Automation& automation, QtDriver& driver, MainQueue& queue,
            bool allowFaults);
    ~Console() override;

    /// Begins to read; returns at once. Leaves the event loop at "quit" and at the end of the input.
    void Start();

    /// An alert is about to be shown: reports it, and answers from the queue.
    std::optional<short> OnAlert(const hostkit::dg::AlertTexts& texts);
    /// The same for a modal dialog.
    std::optional<DialogAnswer> OnDialog(const ShownDialog& dialog);
    std::optional<hostkit::dg::FileAnswer> OnFile(const hostkit::dg::FileQuestion& question);

    void ProjectReady(const MeshOutcome& outcome) override;
    void ProjectOpened() override;
    void ProjectEdited() override;
    void PropertiesMapped(const MappingCounts& counts) override;
    void SelectionChanged() override;
    void MenuFlagsChanged() override;

    static void Write(const Json& line);

  private:
    using Command = Json (Console::*)(const Json&);

    void Read();
    void Run();
    Json Do(const std::string& line);

    Json Open(const Json& command);
    Json Save(const Json& command);
    Json Undo(const Json& command);
    Json Redo(const Json& command);
    Json Select(const Json& command);
    Json Show(const Json& command);
    Json Window(const Json& command);
    Json Projection(const Json& command);
    Json Cut(const Json& command);
    Json Survey(const Json& command);
    Json Answer(const Json& command);
    Json Publisher(const Json& command);
    Json Menu(const Json& command);
    Json Palette(const Json& command);
    Json Eval(const Json& command);
    Json Fault(const Json& command);
    Json Picture(const Json& command);
    Json State(const Json& command);
    Json Quit(const Json& command);

    std::vector<API_Guid> ElementsOf(const Json& ifcGuids) const;

    Application& application;
    Automation& automation;
    QtDriver& driver;
    MainQueue& queue;
    const bool allowFaults;
    std::string input;
    std::deque<std::string> lines;
    std::deque<short> alertAnswers;  // 0: the last button
    DialogAnswers dialogAnswers;
    bool running = false;
    bool ended = false;
};

}  // namespace workbench
