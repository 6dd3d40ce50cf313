#pragma once

#include <deque>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "Workbench/desktop/QtDialog.hpp"

namespace workbench {

/// What the console's command "answer" has prepared for the add-on's modal dialogs, by their kind.
class DialogAnswers {
  public:
    /// "report", "property-name", or "dialog" for others.
    static std::string KindOf(const ShownDialog& dialog);

    /// Throws AutomationError for a kind that there is not. A report is closed whatever the value is; a
    /// property name and a file are texts, or null to cancel.
    void Add(const std::string& kind, const nlohmann::ordered_json& value);
    /// The next one for this kind, if there is one.
    std::optional<DialogAnswer> Take(const std::string& kind);
    std::optional<hostkit::dg::FileAnswer> TakeFile();

  private:
    std::map<std::string, std::deque<DialogAnswer>> answers;
};

}  // namespace workbench
