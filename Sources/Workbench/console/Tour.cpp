#include "Workbench/console/Tour.hpp"

#include <QCryptographicHash>
#include <QFile>
#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "HostKit/API/Registry.hpp"
#include "Workbench/console/FunctionTour.hpp"
#include "Workbench/console/PageScripts.hpp"
#include "Workbench/console/PlanTour.hpp"
#include "Workbench/console/ViewpointTour.hpp"

namespace workbench {

namespace {

using Json = nlohmann::json;
using namespace std::chrono_literals;

const char* const fileName = "Tour";
const char* const copyName = "TourCopy";

std::string HashOf(const std::filesystem::path& file) {
    QFile content(QString::fromStdString(file.string()));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!content.open(QIODevice::ReadOnly) || !hash.addData(&content)) {
        throw AutomationError("cannot read " + file.string());
    }
    return hash.result().toHex().toStdString();
}

}  // namespace

Tour::Tour(Application& application, Automation& automation, const std::filesystem::path& folder)
    : application(application), automation(automation), folder(std::filesystem::absolute(folder)) {
    std::filesystem::create_directories(this->folder);
}

bool Tour::Step(const std::string& name, const std::function<std::string()>& work) {
    QElapsedTimer time;
    time.start();
    std::string outcome;
    bool succeeded = true;
    try {
        outcome = work();
    } catch (const std::exception& exception) {
        outcome = exception.what();
        succeeded = false;
    }
    std::printf("%-6s %7.2f s  %-22s %s\n", succeeded ? "ok" : "FAILED",
                static_cast<double>(time.elapsed()) / 1000, name.c_str(), outcome.c_str());
    std::fflush(stdout);
    return succeeded;
}

bool Tour::Run(const std::filesystem::path& model) {
    FunctionTour functions(application, automation);
    return Step("Open the model", [&] { return OpenModel(model); }) &&
           Step("Open the palette", [&] { return OpenPalette(); }) &&
           Step("Count what is called", [&] { return functions.Watch(); }) &&
           Step("Sign in", [&] { return SignIn(); }) &&
           Step("Upload the model", [&] { return UploadModel(); }) &&
           Step("Compare what is stored", [&] { return CompareStored(); }) &&
           Step("Export with a mapping", [&] { return functions.ExportWithMapping(); }) && UploadPlans() &&
           PublishSet() && Step("Merge with a copy", [&] { return MergeWithCopy(); }) &&
           Step("Undo the merge", [&] { return UndoMerge(); }) && ReturnToViewpoints() &&
           Step("Find an element", [&] { return functions.FindElement(); }) &&
           Step("Take pictures", [&] { return TakePictures(); }) &&
           Step("Open the model's text", [&] { return functions.ReopenFromText(); }) &&
           Step("Count the functions", [&] { return functions.AllUsed(); });
}

std::string Tour::OpenModel(const std::filesystem::path& model) {
    automation.Open(model);
    const Project& project = application.OpenProject();
    elementCount = project.Elements().size();
    const auto shaped = std::ranges::count_if(project.Elements(), [this](const Element& element) {
        return application.BoundsOf(element).has_value();
    });
    return std::to_string(elementCount) + " elements, " + std::to_string(shaped) + " with a shape, " +
           project.Schema() + ", " + project.AuthoringApplication();
}

std::string Tour::OpenPalette() {
    hostkit::Registry& registry = application.GetSession().GetRegistry();
    if (!registry.IsPaletteVisible() &&
        registry.ChooseMenuItem(registry.Menus().at(0).strings, 1) != NoError) {
        throw AutomationError("the menu command failed");
    }
    automation.WaitForPage("document.querySelector('#sign-in, #upload-model')", 30s);
    return Json::parse(automation.Evaluate("KESTAPI.GetApplicationInfo()")).get<std::string>();
}

std::string Tour::SignIn() {
    if (automation.Evaluate("Boolean(document.querySelector('#sign-in'))") == "true") {
        automation.Evaluate(Type("#user", "demo") + Type("#password", "demo") +
                            "document.querySelector('#sign-in').requestSubmit();");
    }
    automation.WaitForPage(
        "document.querySelector('#upload-model') && document.querySelector('#folder').value", 15s);
    return Json::parse(
               automation.Evaluate("[document.querySelector('#project'), document.querySelector('#folder')]"
                                   ".map(list => list.selectedOptions[0].textContent.trim()).join(' / ')"))
        .get<std::string>();
}

// What the host says of the uploaded documents.
std::string Tour::Upload(const std::string& name) {
    automation.Evaluate(Type("#file-name", name) + "document.querySelector('#upload-model').click();");
    automation.WaitForPage(
        "['done', 'failed'].includes(document.querySelector('#upload-status').dataset.state)", 10min);
    const std::string state = automation.Evaluate("document.querySelector('#upload-status').dataset.state");
    auto answer = Json::parse(automation.Evaluate("KESTAPI.GetIfcDocuments()")).get<std::string>();
    if (Json::parse(state) != "done") throw AutomationError("the upload failed: " + answer);
    return answer;
}

std::string Tour::UploadModel() {
    const Json document = Json::parse(Upload(fileName)).at(0);
    documentId = document.at("id").get<std::string>();
    automation.WaitForPage("document.querySelector('#documents [data-document-id=\"" + documentId + "\"]')",
                           10s);
    return "document " + documentId + ", " + std::to_string(document.at("size").get<std::uint64_t>()) +
           " bytes";
}

std::string Tour::CompareStored() {
    const std::filesystem::path exported =
        application.GetSettings().dataFolder / "Temporary" / (std::string(fileName) + ".ifc");
    // What the page would download, over a session of the tour's own.
    const auto stored =
        Json::parse(automation.Evaluate(
                        "(async () => { const base = (await KESTAPI.GetApplicationInfo()).split(',')[1];"
                        "const session = await (await fetch(base + 'session', {method: 'POST',"
                        "    headers: {'Content-Type': 'application/json'},"
                        "    body: JSON.stringify({user: 'demo', password: 'demo'})})).json();"
                        "const response = await fetch(base + 'document/' + " +
                        Json(documentId).dump() +
                        ","
                        "    {headers: {'X-Project-Authorization': 'bearer ' + session.token}});"
                        "const bytes = await response.arrayBuffer();"
                        "return [...new Uint8Array(await crypto.subtle.digest('SHA-256', bytes))]"
                        ".map(byte => byte.toString(16).padStart(2, '0')).join(''); })()"))
            .get<std::string>();
    const std::string sent = HashOf(exported);
    if (stored != sent) throw AutomationError("the stored document differs from " + exported.string());
    std::filesystem::copy_file(exported, folder / exported.filename(),
                               std::filesystem::copy_options::overwrite_existing);
    return "byte for byte the export, SHA-256 " + sent.substr(0, 16) + "...";
}

// All of the set that the page shows, then what became of each item.
bool Tour::PublishSet() {
    if (!Step("Publish a set", [this] { return PublishTicked(); })) return false;
    const Json items = Json::parse(automation.Evaluate(
        "(async () => { const ids = JSON.parse(await KESTAPI.CompleteExportPublish());"
        "return [...document.querySelectorAll('[data-publish-key]')].map(row => ["
        "    row.querySelector('.name').textContent, ids[row.dataset.publishKey] ?? '',"
        "    [...row.querySelectorAll(':scope > p')].map(line => line.textContent).join(' ').trim()]); })()"));
    bool succeeded = true;
    for (const Json& item : items) {
        const std::string document = item.at(1), said = item.at(2);
        const auto outcome = [&] {
            if (document.empty()) throw AutomationError(said);
            return "document " + document + ", " + said;
        };
        succeeded = Step("- " + item.at(0).get<std::string>(), outcome) && succeeded;
    }
    return succeeded;
}

std::string Tour::PublishTicked() {
    automation.Evaluate("document.querySelector('#tab-publish').click()");
    automation.WaitForPage("document.querySelector('#publish-tree input:enabled')", 10s);
    automation.Evaluate(
        "document.querySelectorAll('#publish-tree > li > div input')"
        ".forEach(box => box.checked || box.click())");
    automation.WaitForPage("!document.querySelector('#publish-all').disabled", 10s);
    automation.Evaluate("document.querySelector('#publish-all').click()");
    automation.WaitForPage(
        "['done', 'failed'].includes(document.querySelector('#publish-status').dataset.state)", 10min);
    automation.SavePicture("window", folder / "publish.png");
    return Json::parse(automation.Evaluate("[document.querySelector('#publish-set').selectedOptions[0],"
                                           " document.querySelector('#publish-status')]"
                                           ".map(shown => shown.textContent.trim()).join(': ')"))
        .get<std::string>();
}

bool Tour::UploadPlans() {
    PlanTour plans(application, automation);
    bool succeeded = true;
    for (const std::string& format : PlanTour::Formats())
        succeeded = succeeded && Step("Upload a plan: " + format, [&] { return plans.Upload(format); });
    application.BringToFront({});
    automation.Evaluate("document.querySelector('#tab-documents').click()");
    return succeeded;
}

std::string Tour::MergeWithCopy() {
    Upload(copyName);
    automation.Evaluate("document.querySelector('#tab-models').click()");
    for (const char* const name : {fileName, copyName}) {
        const std::string box =
            "document.querySelector('[data-model-name=\"" + std::string(name) + "\"] input[type=checkbox]')";
        automation.WaitForPage(box, 10s);
        automation.Evaluate("(box => box.checked || box.click())(" + box + ")");
    }
    automation.Evaluate("document.querySelector('#open-models').click()");
    automation.WaitForPage(
        "['done', 'failed'].includes(document.querySelector('#models-status').dataset.state)", 10min);
    const auto status =
        Json::parse(automation.Evaluate("(({dataset, textContent}) => [dataset.state, textContent.trim()])"
                                        "(document.querySelector('#models-status'))"));
    if (status.at(0) != "done") throw AutomationError(status.at(1).get<std::string>());
    automation.WaitForShapes();
    const std::size_t steps = application.History().UndoCount();
    if (steps == 0) throw AutomationError("nothing was merged");
    const std::size_t after = application.OpenProject().Elements().size();
    automation.SavePicture("window", folder / "merged.png");
    return std::to_string(elementCount) + " elements before, " + std::to_string(after) + " after, " +
           std::to_string(steps) + " steps to undo";
}

std::string Tour::UndoMerge() {
    automation.Undo(application.History().UndoCount());
    const std::size_t left = application.OpenProject().Elements().size();
    if (left != elementCount) throw AutomationError(std::to_string(left) + " elements are left");
    return std::to_string(left) + " elements are left";
}

bool Tour::ReturnToViewpoints() {
    ViewpointTour viewpoints(application, automation, folder);
    std::vector<ViewpointTour::View> views;
    bool succeeded = Step("Open a topic", [&] {
        views = viewpoints.Views();
        return viewpoints.OpenTopic();
    });
    for (const ViewpointTour::View& view : views)
        succeeded =
            succeeded && Step("Viewpoint: " + view.name, [&] { return viewpoints.TakeAndRestore(view); });
    // Also when one failed: the pictures show how.
    return Step("Compare viewpoints", [&] { return viewpoints.SavePictures(); }) && succeeded;
}

std::string Tour::TakePictures() {
    application.ShowAll();
    application.Select({});
    application.ChangeView([this](ModelWindow& window) { window.Reset(application.ShownBox()); });

    for (const char* of : {"window", "palette", "3d"})
        automation.SavePicture(of, folder / (std::string(of) + ".png"));
    return folder.string();
}

}  // namespace workbench
