#include "Workbench/console/FunctionTour.hpp"

#include <nlohmann/json.hpp>

namespace workbench {

using Json = nlohmann::json;
using namespace std::chrono_literals;

namespace {

void Require(bool met, const std::string& problem) {
    if (!met) throw AutomationError(problem);
}

}  // namespace

std::string FunctionTour::Watch() {
    return automation.Evaluate(
               "window.called = new Set();"
               "for (const [name, call] of Object.entries(KESTAPI))"
               "    KESTAPI[name] = argument => (called.add(name), call(argument));"
               "Object.keys(KESTAPI).length") +
           " functions";
}

std::string FunctionTour::AllUsed() {
    const Json unused =
        Json::parse(automation.Evaluate("Object.keys(KESTAPI).filter(name => !called.has(name))"));
    Require(unused.empty(), "nobody called " + unused.dump());
    return automation.Evaluate("called.size") + " functions called";
}

// The text that it shows at its end.
std::string FunctionTour::StatusOf(const std::string& id) {
    const std::string status = "document.querySelector('#" + id + "')";
    automation.WaitForPage("['done', 'failed'].includes(" + status + ".dataset.state)", 10min);
    const Json shown = Json::parse(automation.Evaluate(
        "(({dataset, textContent}) => [dataset.state, textContent.trim()])(" + status + ")"));
    Require(shown.at(0) == "done", shown.at(1).get<std::string>());
    return shown.at(1).get<std::string>();
}

std::string FunctionTour::ExportWithMapping() {
    const std::filesystem::path samples = application.GetSettings().resourcesFolder.parent_path() / "Samples";
    automation.AnswerFile(samples / "PropertyMapping.xml");
    automation.AnswerName("Tour");
    automation.Evaluate(
        "document.querySelector('#tab-mapping').click();"
        "document.querySelector('#choose-mapping').click();");
    automation.WaitForPage("!document.querySelector('#use-map-file').closest('label').hidden", 30s);
    automation.Evaluate("document.querySelector('#new-property').click();");
    automation.WaitForPage("document.querySelector('#property-names li')", 30s);
    automation.Evaluate("document.querySelector('#upload-model').click();");
    StatusOf("upload-status");
    return Json::parse(automation.Evaluate("document.querySelector('#mapping-path').textContent"))
        .get<std::string>();
}

std::string FunctionTour::FindElement() {
    const Project& project = application.OpenProject();
    for (const Element& element : project.Elements()) {
        if (!application.BoundsOf(element)) continue;
        const std::string guids = Json::array({project.GlobalIdOf(element)}).dump();
        automation.Evaluate("KESTAPI.AddComponent(true)");
        automation.Evaluate("KESTAPI.HighlightElements(" + guids + ")");
        Require(automation.Evaluate("KESTAPI.ZoomToElement(" + guids + ")") == "true",
                "the host did not go to the element");
        const std::string named = automation.Evaluate("KESTAPI.GetElementNames(" + guids + ")");
        Require(automation.Evaluate("KESTAPI.GetSelectedElements()") == named,
                "the selected element is not " + named);
        automation.Evaluate("KESTAPI.AddComponent(false)");
        automation.Evaluate("KESTAPI.AlertAPI('Tour')");
        return Json::parse(named).at(0).get<std::string>();
    }
    throw AutomationError("the model has no element with a shape");
}

std::string FunctionTour::ReopenFromText() {
    const std::size_t elements = application.OpenProject().Elements().size();
    automation.Evaluate(
        "KESTAPI.RegisterIfcFileName('TourText').then(() => KESTAPI.GetIfcFile('TourText'))"
        ".then(text => KESTAPI.ImportIfcModel(text))");
    automation.WaitForShapes();
    const Project& project = application.OpenProject();
    Require(project.Name() == "TourText" && project.Elements().size() == elements,
            "what was opened is " + project.Name() + " of " + std::to_string(project.Elements().size()) +
                " elements");
    return std::to_string(elements) + " elements, " + project.Location().string();
}

}  // namespace workbench
