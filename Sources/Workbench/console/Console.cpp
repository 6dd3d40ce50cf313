#include "Workbench/console/Console.hpp"

#include <unistd.h>

#include <QCoreApplication>
#include <QMetaObject>
#include <QPointer>
#include <QSocketNotifier>
#include <algorithm>
#include <array>
#include <iostream>
#include <map>
#include <stdexcept>

#include "ACAPinc.h"
#include "BM.hpp"
#include "HostKit/API/Registry.hpp"
#include "ThreadRegister.hpp"
#include "Workbench/desktop/ScriptValues.hpp"

namespace workbench {

namespace {

std::string ToText(const GS::UniString& text) {
    return text.ToCStr(0, MaxUSize, CC_UTF8).Get();
}

bool IsMenuChecked(const hostkit::Registry& registry) {
    const auto& menus = registry.Menus();
    return !menus.empty() && !menus.front().itemFlags.empty() &&
           (menus.front().itemFlags.front() & API_MenuItemChecked) != 0;
}

API_Tranmat MatrixOf(const nlohmann::ordered_json& numbers) {
    if (!numbers.is_array() || numbers.size() != 12)
        throw AutomationError("a matrix is 12 numbers: three rows of four");
    API_Tranmat matrix = {};
    for (std::size_t i = 0; i < 12; ++i)
        matrix.tmx[i] = numbers[i].get<double>();
    return matrix;
}

nlohmann::ordered_json ToJson(const Vec3& point) {
    return {point.x, point.y, point.z};
}

// The fields that the command "projection" sets.
nlohmann::ordered_json ProjectionOf(const ModelWindow& window) {
    const Camera& camera = window.CurrentCamera();
    if (window.IsPerspective()) {
        return {{"perspective", true},
                {"camera", ToJson(camera.position)},
                {"target", ToJson(camera.target)},
                {"viewCone", camera.viewCone}};
    }
    return {{"perspective", false}, {"matrix", window.Projection().u.axono.tranmat.tmx}};
}

nlohmann::ordered_json PlanesOf(const ModelWindow& window) {
    nlohmann::ordered_json planes = nlohmann::ordered_json::array();
    if (!window.IsCutting()) return planes;
    for (const Plane& plane : window.Planes())
        planes.push_back({plane.normal.x, plane.normal.y, plane.normal.z, plane.distance});
    return planes;
}

// Names as a tree; what is no folder is a mere name.
nlohmann::ordered_json ItemsOf(const std::vector<PublisherItem>& items) {
    nlohmann::ordered_json tree = nlohmann::ordered_json::array();
    for (const PublisherItem& item : items) {
        if (item.kind == PublisherItem::Kind::folder)
            tree.push_back({{"name", item.name}, {"items", ItemsOf(item.children)}});
        else
            tree.push_back(item.name);
    }
    return tree;
}

// The library's own words without its error code in brackets: "key 'file' not found".
std::string WordsOf(const nlohmann::ordered_json::exception& exception) {
    const std::string text = exception.what();
    const std::size_t end = text.find("] ");
    return end == std::string::npos ? text : text.substr(end + 2);
}

void ThrowOnError(GSErrCode error, const std::string& what) {
    if (error != NoError) throw AutomationError(what + " failed with code " + std::to_string(error));
}

}  // namespace

Console::Console(Application& application, Automation& automation, QtDriver& driver, MainQueue& queue,
                 bool allowFaults)
    : application(application),
      automation(automation),
      driver(driver),
      queue(queue),
      allowFaults(allowFaults) {
    application.Watch(*this);
    driver.Browsers().onPageCall = [](const QString& script) {
        Write({{"event", "page-call"}, {"script", script.toStdString()}});
    };
    hostkit::ThreadRegister::Instance().SetObserver(
        [this](const std::string& name, hostkit::ThreadRegister::Event event) {
            const bool started = event == hostkit::ThreadRegister::Event::started;
            QMetaObject::invokeMethod(this, [name, started] {
                Write({{"event", "thread"}, {"name", name}, {"state", started ? "started" : "finished"}});
            });
        });
}

Console::~Console() {
    application.Unwatch(*this);
    hostkit::ThreadRegister::Instance().SetObserver({});
    driver.Browsers().onPageCall = {};
}

void Console::Start() {
    auto* notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        Read();
        if (ended) notifier->setEnabled(false);
        queue.Post([console = QPointer(this)] {
            if (console) console->Run();
        });
    });
}

void Console::Write(const Json& line) {
    std::cout << line.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
}

void Console::Read() {
    std::array<char, 65536> chunk;
    const ssize_t count = read(STDIN_FILENO, chunk.data(), chunk.size());
    if (count <= 0) {
        ended = true;
        return;
    }
    input.append(chunk.data(), static_cast<std::size_t>(count));
    for (std::size_t end = input.find('\n'); end != std::string::npos; end = input.find('\n')) {
        if (end > 0) lines.push_back(input.substr(0, end));
        input.erase(0, end + 1);
    }
}

void Console::Run() {
    if (running) return;  // a command waits with the event loop; what comes meanwhile is done after it
    running = true;
    while (!lines.empty()) {
        const std::string line = lines.front();
        lines.pop_front();
        Write(Do(line));
    }
    running = false;
    if (ended) QCoreApplication::exit();  // unlike quit(), asks nobody about unsaved changes
}

Console::Json Console::Do(const std::string& line) {
    static const std::map<std::string, Command> commands{
        {"open", &Console::Open},
        {"save", &Console::Save},
        {"undo", &Console::Undo},
        {"redo", &Console::Redo},
        {"select", &Console::Select},
        {"show", &Console::Show},
        {"window", &Console::Window},
        {"projection", &Console::Projection},
        {"cut", &Console::Cut},
        {"survey", &Console::Survey},
        {"answer", &Console::Answer},
        {"menu", &Console::Menu},
        {"palette", &Console::Palette},
        {"eval", &Console::Eval},
        {"fault", &Console::Fault},
        {"picture", &Console::Picture},
        {"publisher", &Console::Publisher},
        {"state", &Console::State},
        {"quit", &Console::Quit},
    };
    try {
        const Json command = Json::parse(line);
        if (!command.is_object() || !command.contains("do"))
            throw AutomationError("a command is an object with \"do\", as {\"do\":\"state\"}");
        const auto found = commands.find(command.at("do").get<std::string>());
        if (found == commands.end()) {
            std::string names;
            for (const auto& [name, function] : commands)
                names += (names.empty() ? "" : ", ") + name;
            throw AutomationError("there is no command " + command.at("do").dump() + "; there are " + names);
        }
        Json answer{{"ok", true}};
        answer.update((this->*found->second)(command));
        return answer;
    } catch (const Json::exception& exception) {
        return {{"ok", false}, {"error", WordsOf(exception)}};
    } catch (const std::exception& exception) {
        return {{"ok", false}, {"error", exception.what()}};
    }
}

std::vector<API_Guid> Console::ElementsOf(const Json& ifcGuids) const {
    if (!ifcGuids.is_array()) throw AutomationError("\"ifcGuids\" is a list");
    const Project& project = application.OpenProject();
    std::map<std::string, API_Guid> known;
    for (const Element& element : project.Elements())
        known.emplace(project.GlobalIdOf(element), element.guid);
    std::vector<API_Guid> elements;
    for (const Json& text : ifcGuids) {
        const auto found = known.find(text.get<std::string>());
        if (found == known.end()) throw AutomationError("no element has the IFC GUID " + text.dump());
        elements.push_back(found->second);
    }
    return elements;
}

Console::Json Console::Open(const Json& command) {
    automation.Open(command.at("file").get<std::string>());
    return {{"elements", application.OpenProject().Elements().size()}};
}

Console::Json Console::Save(const Json& command) {
    if (!application.Save(command.at("file").get<std::string>()))
        throw AutomationError("the model was not saved");
    return {{"elements", application.OpenProject().Elements().size()}};
}

Console::Json Console::Undo(const Json& command) {
    automation.Undo(command.value("steps", std::size_t{1}));
    return {{"undo", application.History().UndoCount()},
            {"elements", application.OpenProject().Elements().size()}};
}

Console::Json Console::Redo(const Json& command) {
    automation.Redo(command.value("steps", std::size_t{1}));
    return {{"undo", application.History().UndoCount()},
            {"elements", application.OpenProject().Elements().size()}};
}

Console::Json Console::Select(const Json& command) {
    application.Select(ElementsOf(command.at("ifcGuids")));
    return {{"count", application.Selection().size()}};
}

Console::Json Console::Show(const Json& command) {
    if (command.value("all", false)) {
        application.ShowAll();
    } else {
        application.ShowOnly(ElementsOf(command.at("ifcGuids")));
    }
    return {{"shown", application.ShownCount()}};
}

Console::Json Console::Window(const Json& command) {
    const std::string type = command.at("type").get<std::string>();
    if (type != "3d" && type != "plan") throw AutomationError("the window is \"3d\" or \"plan\"");
    FrontWindow front;
    if (type == "plan") front = {FrontWindow::Kind::plan, command.value("story", std::size_t{0})};
    if (!application.BringToFront(front)) throw AutomationError("the model has no such storey");
    return Json::object();
}

Console::Json Console::Projection(const Json& command) {
    API_3DProjectionInfo info = {};
    info.isPersp = command.at("perspective").get<bool>();
    if (info.isPersp) {
        const auto camera = command.at("camera").get<std::array<double, 3>>();
        const auto target = command.at("target").get<std::array<double, 3>>();
        API_PerspPars& persp = info.u.persp;
        persp.pos = {camera[0], camera[1]};
        persp.cameraZ = camera[2];
        persp.target = {target[0], target[1]};
        persp.targetZ = target[2];
        persp.viewCone = command.value("viewCone", application.Window3D().CurrentCamera().viewCone);
    } else {
        info.u.axono.tranmat = MatrixOf(command.at("matrix"));
    }
    GSErrCode error = NoError;
    application.ChangeView(
        [&](ModelWindow& window) { error = window.ChangeProjection(info, application.ShownBox()); });
    if (error != NoError) {
        throw AutomationError(info.isPersp ? "this camera shows nothing: camera and target must differ, and "
                                             "viewCone lie between 0 and 180"
                                           : "this matrix shows nothing: its first two rows, to the right "
                                             "and upwards, must differ in direction");
    }
    return Json::object();
}

Console::Json Console::Cut(const Json& command) {
    std::vector<Plane> planes;
    if (!command.at("planes").is_array()) throw AutomationError("\"planes\" is a list of [a,b,c,d]");
    for (const Json& plane : command.at("planes")) {
        const auto numbers = plane.get<std::array<double, 4>>();
        planes.push_back({{numbers[0], numbers[1], numbers[2]}, numbers[3]});
        if (Length(planes.back().normal) == 0)
            throw AutomationError("a plane needs a normal: " + plane.dump());
    }
    application.ChangeView([&](ModelWindow& window) {
        window.SetPlanes(planes);
        window.SetCutting(!planes.empty());
    });
    return Json::object();
}

Console::Json Console::Survey(const Json& command) {
    application.SetSurvey(MatrixOf(command.at("matrix")));
    return Json::object();
}

Console::Json Console::Answer(const Json& command) {
    const std::string kind = command.at("to").get<std::string>();
    const Json& value = command.at("value");
    if (kind != "alert") {
        dialogAnswers.Add(kind, value);
        return Json::object();
    }
    alertAnswers.push_back(value.is_null() ? short{0} : value.get<short>());
    return Json::object();
}

Console::Json Console::Publisher(const Json&) {
    Json sets = Json::array();
    for (const PublisherSet& set : application.Publisher().All())
        sets.push_back({{"name", set.name}, {"items", ItemsOf(set.items)}});
    return {{"sets", std::move(sets)}};
}

Console::Json Console::Menu(const Json&) {
    hostkit::Registry& registry = application.GetSession().GetRegistry();
    if (registry.Menus().empty()) throw AutomationError("the add-on has no menu");
    ThrowOnError(registry.ChooseMenuItem(registry.Menus().front().strings, 1), "the menu command");
    return {{"visible", registry.IsPaletteVisible()}, {"checked", IsMenuChecked(registry)}};
}

Console::Json Console::Palette(const Json& command) {
    hostkit::Registry& registry = application.GetSession().GetRegistry();
    ThrowOnError(
        registry.SendPaletteMessage(static_cast<API_PaletteMessageID>(command.at("message").get<int>())),
        "the palette message");
    return {{"visible", registry.IsPaletteVisible()}};
}

Console::Json Console::Eval(const Json& command) {
    return {{"value", Json::parse(automation.Evaluate(command.at("script").get<std::string>()))}};
}

Console::Json Console::Fault(const Json& command) {
    if (!allowFaults) throw AutomationError("faults need the option --faults");
    application.GetSession().GetFaults().FailCall(command.at("call").get<std::string>(),
                                                  command.at("nth").get<std::uint64_t>(),
                                                  command.at("error").get<GSErrCode>());
    return Json::object();
}

Console::Json Console::Picture(const Json& command) {
    automation.SavePicture(command.at("of").get<std::string>(), command.at("file").get<std::string>());
    return Json::object();
}

Console::Json Console::State(const Json&) {
    const Project& project = application.OpenProject();
    hostkit::Registry& registry = application.GetSession().GetRegistry();
    Json selection = Json::array();
    for (const Element* element : application.Selection())
        selection.push_back(project.GlobalIdOf(*element));
    return {{"project", project.Name()},
            {"elements", project.Elements().size()},
            {"window", application.Front().kind == FrontWindow::Kind::plan ? "plan" : "3d"},
            {"selection", std::move(selection)},
            {"shown", application.ShownCount()},
            {"projection", ProjectionOf(application.Window3D())},
            {"planes", PlanesOf(application.Window3D())},
            {"palette", {{"visible", registry.IsPaletteVisible()}, {"checked", IsMenuChecked(registry)}}},
            {"undo", application.History().UndoNames()},
            {"redo", application.History().RedoCount()},
            {"modified", application.IsModified()},
            {"shaping", application.IsShaping()},
            {"threads", hostkit::ThreadRegister::Instance().Running()},
            {"handles", hostkit::LiveHandles()}};
}

Console::Json Console::Quit(const Json&) {
    ended = true;
    lines.clear();
    return Json::object();
}

void Console::ProjectReady(const MeshOutcome& outcome) {
    if (!outcome.detail.empty()) Write({{"event", "log"}, {"text", outcome.detail}});
}

void Console::ProjectOpened() {
    Write({{"event", "notification"}, {"name", "project-opened"}});
}

void Console::ProjectEdited() {
    Write({{"event", "edited"}, {"elements", application.OpenProject().Elements().size()}});
}

void Console::PropertiesMapped(const MappingCounts& counts) {
    Write({{"event", "mapped"}, {"written", counts.written}, {"leftOut", counts.leftOut}});
}

void Console::SelectionChanged() {
    Write({{"event", "notification"}, {"name", "selection-changed"}});
}

void Console::MenuFlagsChanged() {
    Write({{"event", "menu"}, {"checked", IsMenuChecked(application.GetSession().GetRegistry())}});
}

std::optional<short> Console::OnAlert(const hostkit::dg::AlertTexts& texts) {
    Json buttons = Json::array();
    for (const GS::UniString& button : texts.buttons) {
        if (!button.IsEmpty()) buttons.push_back(ToText(button));
    }
    Write({{"event", "alert"},
           {"large", ToText(texts.large)},
           {"small", ToText(texts.small)},
           {"buttons", buttons}});
    if (alertAnswers.empty()) return std::nullopt;
    const short answer = alertAnswers.front();
    alertAnswers.pop_front();
    return answer == 0 ? static_cast<short>(buttons.size()) : answer;
}

std::optional<DialogAnswer> Console::OnDialog(const ShownDialog& dialog) {
    const std::string kind = DialogAnswers::KindOf(dialog);
    Json texts = Json::array();
    for (const QString& text : dialog.texts)
        texts.push_back(text.toStdString());
    Write({{"event", "dialog"}, {"kind", kind}, {"texts", texts}});
    return dialogAnswers.Take(kind);
}

std::optional<hostkit::dg::FileAnswer> Console::OnFile(const hostkit::dg::FileQuestion& question) {
    Json texts{ToText(question.title)};
    for (const auto& filter : question.filters)
        texts.push_back(ToText(filter.text));
    Write({{"event", "dialog"}, {"kind", "file"}, {"texts", texts}});
    return dialogAnswers.TakeFile();
}

}  // namespace workbench
