#include "Workbench/console/Console.hpp"

#include <unistd.h>

#include <QCoreApplication>
#include <QMetaObject>
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

void ThrowOnError(GSErrCode error, const std::string& what) {
    if (error != NoError) throw AutomationError(what + " failed with code " + std::to_string(error));
}

}  // namespace

Console::Console(Application& application, Automation& automation, QtDriver& driver, bool allowFaults)
    : application(application), automation(automation), driver(driver), allowFaults(allowFaults) {
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
        Run();
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
    if (ended) QCoreApplication::quit();
}

Console::Json Console::Do(const std::string& line) {
    static const std::map<std::string, Command> commands{
        {"open", &Console::Open},       {"save", &Console::Save},     {"select", &Console::Select},
        {"show", &Console::Show},       {"answer", &Console::Answer}, {"menu", &Console::Menu},
        {"palette", &Console::Palette}, {"eval", &Console::Eval},     {"fault", &Console::Fault},
        {"picture", &Console::Picture}, {"state", &Console::State},   {"quit", &Console::Quit}};
    try {
        const Json command = Json::parse(line);
        const auto found = commands.find(command.at("do").get<std::string>());
        if (found == commands.end()) throw AutomationError("there is no such command");
        Json answer{{"ok", true}};
        answer.update((this->*found->second)(command));
        return answer;
    } catch (const std::exception& exception) {
        return {{"ok", false}, {"error", exception.what()}};
    }
}

std::vector<API_Guid> Console::ElementsOf(const Json& ifcGuids) const {
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

Console::Json Console::Answer(const Json& command) {
    if (command.at("to") != "alert") throw AutomationError("there are no dialogs of this kind");
    const Json& value = command.at("value");
    alertAnswers.push_back(value.is_null() ? short{1} : value.get<short>());
    return Json::object();
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
            {"selection", std::move(selection)},
            {"shown", application.ShownCount()},
            {"palette", {{"visible", registry.IsPaletteVisible()}, {"checked", IsMenuChecked(registry)}}},
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
    Write({{"event", "notification"}, {"name", "project-opened"}});
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
    return answer;
}

}  // namespace workbench
