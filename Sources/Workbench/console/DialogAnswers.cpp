#include "Workbench/console/DialogAnswers.hpp"

#include "Workbench/console/Automation.hpp"

namespace workbench {

namespace {

// The add-on's dialog resources.
const std::map<GSResID, std::string> kinds{{32510, "property-name"}, {32520, "report"}};

}  // namespace

std::string DialogAnswers::KindOf(const ShownDialog& dialog) {
    const auto found = kinds.find(dialog.id);
    return found == kinds.end() ? "dialog" : found->second;
}

void DialogAnswers::Add(const std::string& kind, const nlohmann::ordered_json& value) {
    DialogAnswer answer;
    if (kind == "property-name" || kind == "file") {
        if (value.is_null())
            answer.item = 0;
        else
            answer.text = QString::fromStdString(value.get<std::string>());
    } else if (kind != "report") {
        throw AutomationError(
            "there are no dialogs of this kind; there are alert, file, property-name and report");
    }
    answers[kind].push_back(answer);
}

std::optional<DialogAnswer> DialogAnswers::Take(const std::string& kind) {
    auto& queued = answers[kind];
    if (queued.empty()) return std::nullopt;
    const DialogAnswer answer = queued.front();
    queued.pop_front();
    return answer;
}

std::optional<hostkit::dg::FileAnswer> DialogAnswers::TakeFile() {
    const std::optional<DialogAnswer> answer = Take("file");
    if (!answer) return std::nullopt;
    if (!answer->text) return hostkit::dg::FileAnswer();
    return answer->text->toStdString();
}

}  // namespace workbench
