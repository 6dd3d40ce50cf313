#include "Workbench/api/Application.hpp"

#include <algorithm>
#include <system_error>
#include <utility>

#include "ACAPinc.h"
#include "HostKit/API/AddOnLoader.hpp"
#include "HostKit/API/Registry.hpp"
#include "HostKit/DG/Driver.hpp"
#include "Workbench/project/Survey.hpp"

namespace workbench {

namespace {

bool IsArchive(const std::filesystem::path& file) {
    std::string extension = file.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".ifczip";
}

}  // namespace

Application::Application(Settings settings, MainQueue& queue, hostkit::dg::Driver& driver)
    : settings(std::move(settings)),
      say{this->settings.language},
      queue(queue),
      driver(driver),
      project(Project::Untitled()),
      survey(SurveyTransformation(*project)),
      view(std::make_shared<View3D>()),
      generation(std::make_shared<int>()),
      host(*this),
      session(host, driver,
              hostkit::Resources::Load(this->settings.resourcesFolder,
                                       this->settings.language == Language::german ? "GER" : "INT")),
      mesher(this->settings.mesher) {
    states.Reset(*project);
    std::error_code ignored;  // a folder that cannot be made shows itself where it is written to
    std::filesystem::create_directories(this->settings.dataFolder / "GRAPHISOFT" / "Archicad", ignored);
    std::filesystem::create_directories(this->settings.dataFolder / "Temporary", ignored);
}

Application::~Application() {
    generation.reset();
    if (!unpacked.empty()) {
        std::error_code ignored;
        std::filesystem::remove(unpacked, ignored);
    }
}

GSErrCode Application::Start() {
    return hostkit::LoadAddOn();
}

void Application::Tell(const std::function<void(ApplicationObserver&)>& call) {
    const std::vector<ApplicationObserver*> told = observers;
    for (ApplicationObserver* observer : told)
        call(*observer);
}

Progress Application::ProgressOf(std::string what) {
    return [this, what = std::move(what)](double fraction) {
        bool goOn = true;
        Tell([&](ApplicationObserver& observer) { goOn = observer.Working(what, fraction) && goOn; });
        return goOn;
    };
}

bool Application::Open(const std::filesystem::path& file) {
    OpenResult opened = OpenIfc(file, ProgressOf(say("Opening the model", "Modell wird geöffnet")));
    if (!opened.project) {
        if (opened.refusal) {
            ShowAlert(say("The model was not opened.", "Das Modell wurde nicht geöffnet."),
                      Describe(*opened.refusal, settings.language));
        }
        return false;
    }

    const bool selectionGoes = !Selection().empty() || (changed & selectionChange) != 0;
    project = std::move(opened.project);
    generation = std::make_shared<int>();
    states.Reset(*project);
    survey = SurveyTransformation(*project);
    window3D.Reset(Box3{});
    front = {};
    changed = 0;
    view->Clear();
    viewOutdated = selectionChange | visibilityChange | viewChange;
    UpdateView();
    shaping = true;
    Tell([](ApplicationObserver& observer) { observer.ProjectReplaced(); });
    if (selectionGoes) Changed(selectionChange, Who::person);
    Shape();

    const auto& problems = project->Document().Problems();
    if (!problems.empty()) {
        ShowAlert(say("The model is damaged; what could be read was opened.",
                      "Das Modell ist beschädigt; geöffnet wurde, was lesbar ist."),
                  Describe(problems.front(), settings.language));
    }
    return true;
}

void Application::Shape() {
    std::filesystem::path file = project->Location();
    if (IsArchive(file)) {
        unpacked = settings.dataFolder / "Temporary" / "Unpacked.ifc";
        if (SaveIfc(*project, unpacked).outcome == SaveOutcome::done) file = unpacked;
    }

    const std::weak_ptr<int> of = generation;
    mesher.Mesh(
        file,
        [this, of](MeshBatch batch) {
            queue.Post([this, of, batch = std::move(batch)] {
                if (of.expired()) return;
                for (const ElementMeshPtr& mesh : batch.elements)
                    states.AddShape(mesh);
                const bool first = view->Count() == 0;
                view->Add(batch.elements);
                if (first) window3D.Reset(ShownBox());
                Tell([&](ApplicationObserver& observer) { observer.ShapesArrived(batch); });
            });
        },
        [this, of](MeshOutcome outcome) {
            queue.Post([this, of, outcome = std::move(outcome)] {
                if (!of.expired()) FinishShaping(outcome);
            });
        });
}

void Application::FinishShaping(const MeshOutcome& outcome) {
    shaping = false;
    if (outcome.status == MeshOutcome::Status::Done) states.ShapesAreKnown();
    viewOutdated |= visibilityChange;  // hiding what has no shape hides nothing
    window3D.Reset(ShownBox());
    Tell([&](ApplicationObserver& observer) { observer.ProjectReady(outcome); });
    Changed(viewChange, Who::person);
    session.GetRegistry().NotifyProjectEvent(APINotify_Open);
}

bool Application::Save(const std::filesystem::path& file) {
    const SaveResult result = Write(file, nullptr);
    if (result.outcome == SaveOutcome::done) return true;
    if (result.outcome != SaveOutcome::stopped) {
        ShowAlert(say("The model was not saved.", "Das Modell wurde nicht gesichert."),
                  Describe(result, settings.language));
    }
    return false;
}

SaveResult Application::Write(const std::filesystem::path& file, const GS::Array<API_Guid>* elements) {
    const Progress progress = ProgressOf(say("Saving the model", "Modell wird gesichert"));
    if (elements == nullptr) return SaveIfc(*project, file, progress);
    std::vector<API_Guid> chosen;
    chosen.reserve(elements->GetSize());
    for (const API_Guid& guid : *elements)
        chosen.push_back(guid);
    return SaveIfcSubset(*project, chosen, file, progress);
}

void Application::Watch(ApplicationObserver& observer) {
    observers.push_back(&observer);
}

void Application::Unwatch(ApplicationObserver& observer) {
    std::erase(observers, &observer);
}

void Application::ShowAlert(const std::string& large, const std::string& small) {
    driver.Alert(
        {GS::UniString(large.c_str(), CC_UTF8), GS::UniString(small.c_str(), CC_UTF8), {{"OK", "", ""}}});
}

}  // namespace workbench
