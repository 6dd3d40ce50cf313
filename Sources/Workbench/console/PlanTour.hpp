#pragma once

#include <string>
#include <vector>

#include "Workbench/console/Automation.hpp"

namespace workbench {

/// Plan documents of the ground floor through the page's Plans tab.
class PlanTour {
  public:
    PlanTour(Application& application, Automation& automation)
        : application(application), automation(automation) {}

    /// The page's names of the formats.
    static std::vector<std::string> Formats() { return {"dwg", "pdf", "png", "jpeg"}; }

    /// Has the plan made and uploaded in this format; what the service then has.
    std::string Upload(const std::string& format);

  private:
    Application& application;
    Automation& automation;
};

}  // namespace workbench
