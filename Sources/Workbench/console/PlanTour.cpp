#include "Workbench/console/PlanTour.hpp"

#include <nlohmann/json.hpp>

#include "Workbench/console/PageScripts.hpp"

namespace workbench {

using Json = nlohmann::json;
using namespace std::chrono_literals;

std::string PlanTour::Upload(const std::string& format) {
    if (!application.BringToFront({FrontWindow::Kind::plan, 0}))
        throw AutomationError("the model has no storey");
    automation.Evaluate("document.querySelector('#tab-plans').click();" + Choose("#plan-format", format) +
                        Type("#plan-name", "Tour") + "document.querySelector('#upload-plan').click();");
    automation.WaitForPage(
        "['done', 'failed'].includes(document.querySelector('#plan-status').dataset.state)", 2min);
    const auto status =
        Json::parse(automation.Evaluate("(({dataset, textContent}) => [dataset.state, textContent.trim()])"
                                        "(document.querySelector('#plan-status'))"));
    if (status.at(0) != "done") throw AutomationError(status.at(1).get<std::string>());

    const auto answer = Json::parse(automation.Evaluate("KESTAPI.GetPlanDocuments()")).get<std::string>();
    const Json document = Json::parse(answer).at(0);
    return document.at("name").get<std::string>() + ", version " +
           std::to_string(document.at("version").get<int>()) + ", " +
           std::to_string(document.at("size").get<std::uint64_t>()) + " bytes";
}

}  // namespace workbench
