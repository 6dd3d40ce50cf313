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
    history.Reset(project);
    std::error_code ignored;  // a folder that cannot be made shows itself where it is written to
    std::filesystem::create_directories(this->settings.dataFolder / "GRAPHISOFT" / "Archicad", ignored);
    std::filesystem::create_directories(this->settings.dataFolder / "Temporary", ignored);
}

Application::~Application() {
    generation.reset();
    std::error_code ignored;
    if (!meshed.empty()) std::filesystem::remove(meshed, ignored);
}

GSErrCode Application::Start() {
    return hostkit::LoadAddOn();
}

void Application::Tell(const std::function<void(ApplicationObserver&)>& call) {
    const std::vector<ApplicationObserver*> told = observers;
    for (ApplicationObserver* observer : told)
        call(*observer);
}

bool Application::TellWorking(const std::string& what, double fraction) {
    bool goOn = true;
    Tell([&](ApplicationObserver& observer) { goOn = observer.Working(what, fraction) && goOn; });
    return goOn;
}

/// A long piece of work in the main thread, which observers watch and may stop; they see its end, too.
class Application::Work {
  public:
    Work(Application& application, std::string what) : application(application), what(std::move(what)) {}
    ~Work() { Report(1); }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    Progress OnProgress() {
        return [this](double fraction) { return Report(fraction); };
    }

  private:
    bool Report(double fraction) { return application.TellWorking(what, fraction); }

    Application& application;
    std::string what;
};

Application::OpenOutcome Application::Open(const std::filesystem::path& file, Who who) {
    // Who stopped one opening of an add-on's call has stopped them all.
    if (who == Who::addOn && addOnMayLeave == false) return OpenOutcome::kept;
    if (!MayLeaveProject(who)) return OpenOutcome::kept;
    OpenResult opened;
    {
        Work work(*this, say("Opening ", "Wird geöffnet: ") + file.filename().string());
        opened = OpenIfc(file, work.OnProgress());
    }
    if (!opened.project) {
        if (!opened.refusal) {
            if (who == Who::addOn) RememberForAddOn(false);
            return OpenOutcome::kept;
        }
        ShowAlert(say("The model was not opened.", "Das Modell wurde nicht geöffnet."),
                  Describe(*opened.refusal, settings.language));
        return OpenOutcome::failed;
    }
    Replace(std::move(opened.project), who);

    const auto& problems = project->Document().Problems();
    if (!problems.empty()) {
        ShowAlert(say("The model is damaged; what could be read was opened.",
                      "Das Modell ist beschädigt; geöffnet wurde, was lesbar ist."),
                  Describe(problems.front(), settings.language));
    }
    if (!publisher.FileProblem().empty()) {
        ShowAlert(say("The file with the publisher sets was not used; these are the usual ones.",
                      "Die Datei mit den Publisher-Sets wurde nicht verwendet; dies sind die üblichen."),
                  publisher.FileProblem());
    }
    return OpenOutcome::opened;
}

void Application::Replace(std::shared_ptr<const Project> opened, Who who) {
    const bool selectionGoes = !Selection().empty() || (changed & selectionChange) != 0;
    publisher = PublisherSets(*opened, say);
    hiddenView.reset();
    project = std::move(opened);
    generation = std::make_shared<int>();
    history.Reset(project);
    historyMoved = false;
    states.Reset(*project);
    survey = SurveyTransformation(*project);
    window3D.Reset(Box3{});
    front = {};
    changed = 0;
    view->Clear();
    viewOutdated = selectionChange | visibilityChange | viewChange;
    UpdateView();
    openedByPerson = who == Who::person;
    unshaped.clear();
    // From the queue: an add-on may open the next model at once.
    mesher.Cancel();
    shaping = Shaping::coming;
    queue.Post([this, of = std::weak_ptr(generation)] {
        if (!of.expired()) ShapeAll();
    });
    Tell([](ApplicationObserver& observer) { observer.ProjectReplaced(); });
    if (selectionGoes) Changed(selectionChange, who);
}

bool Application::Save(const std::filesystem::path& file) {
    Settle();
    const SaveResult result = Write(file, nullptr);
    if (result.outcome == SaveOutcome::done) {
        history.MarkSaved();
        HistoryMoved();
        return true;
    }
    if (result.outcome != SaveOutcome::stopped) {
        ShowAlert(say("The model was not saved.", "Das Modell wurde nicht gesichert."),
                  Describe(result, settings.language));
    }
    return false;
}

SaveResult Application::Write(const std::filesystem::path& file, const GS::Array<API_Guid>* elements,
                              std::span<const MappedSet> mapping) {
    Work work(*this, say("Saving the model", "Modell wird gesichert"));
    const Progress progress = work.OnProgress();
    const auto write = [&] {
        if (elements == nullptr) return SaveIfc(*project, file, progress, mapping);
        std::vector<API_Guid> chosen;
        chosen.reserve(elements->GetSize());
        for (const API_Guid& guid : *elements)
            chosen.push_back(guid);
        return SaveIfcSubset(*project, chosen, file, progress, mapping);
    };
    SaveResult result = write();
    if (!mapping.empty() && result.outcome == SaveOutcome::done)
        Tell([&](ApplicationObserver& observer) { observer.PropertiesMapped(result.mapped); });
    return result;
}

void Application::Settle() {
    if (!history.IsOutdated()) return;
    Work work(*this, say("Creating elements", "Elemente werden erzeugt"));
    auto edited = history.CurrentProject(work.OnProgress());
    if (!edited && history.ReturnToMade()) {
        HistoryMoved();
        return;
    }
    Replace(edited ? std::move(edited) : history.CurrentProject());
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
