#pragma once

#include <filesystem>
#include <string>

#include "Workbench/console/Automation.hpp"

namespace workbench {

/// Jobs for those of the add-on's functions that the rest of the tour does not need, and the count of all.
class FunctionTour {
  public:
    FunctionTour(Application& application, Automation& automation)
        : application(application), automation(automation) {}

    /// From now on the page notes what is called; until it is loaded anew.
    std::string Watch();
    /// Fails when there is a function that nobody has called.
    std::string AllUsed();

    /// Exports the model with the sample mapping, after a property was given a new name.
    std::string ExportWithMapping();
    /// Selects an element of the page's choice, names it and goes there.
    std::string FindElement();
    /// Takes the model as a text, and opens that.
    std::string ReopenFromText();

  private:
    std::string StatusOf(const std::string& id);

    Application& application;
    Automation& automation;
};

}  // namespace workbench
