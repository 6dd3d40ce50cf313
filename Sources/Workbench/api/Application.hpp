#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "HostKit/API/Session.hpp"
#include "Workbench/api/MainQueue.hpp"
#include "Workbench/api/Say.hpp"
#include "Workbench/api/WorkbenchHost.hpp"
#include "Workbench/exchange/Exchange.hpp"
#include "Workbench/mesher/MesherProcess.hpp"

namespace workbench {

struct Settings {
    Language language = Language::english;
    std::filesystem::path dataFolder;       // everything that is kept for this user
    std::filesystem::path resourcesFolder;  // the add-on's resources
    MesherSettings mesher;
};

/// What the desktop, the console and tests may watch. Called on the main thread.
class ApplicationObserver {
  public:
    virtual ~ApplicationObserver() = default;
    /// Another project is open; its elements are known, their shapes are not yet.
    virtual void ProjectReplaced() {}
    virtual void ShapesArrived(const MeshBatch&) {}
    /// All shapes are there that will be; the add-on is told of the opened project next.
    virtual void ProjectReady(const MeshOutcome&) {}
    virtual void SelectionChanged() {}
    virtual void VisibilityChanged() {}
    virtual void MenuFlagsChanged() {}
    /// Long work goes on in the main thread. Answers false to stop it.
    virtual bool Working(const std::string& /*what*/, double /*fraction*/) { return true; }
};

/// The running host without its windows: the open project, its selection and visibility, and the loaded
/// add-on. Used from the main thread only.
class Application {
  public:
    /// Starts the mesher. The queue and the driver outlive the application.
    Application(Settings settings, MainQueue& queue, hostkit::dg::Driver& driver);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Loads the add-on; the host's error code when it could not be.
    GSErrCode Start();

    /// Opens a model as a person does: the add-on is notified when the shapes are known. A file that cannot
    /// be opened is told in an alert, and the open project stays.
    bool Open(const std::filesystem::path& file);
    /// Saves the whole model as a person does. A failure is told in an alert.
    bool Save(const std::filesystem::path& file);
    /// Saves the whole model, or only `elements`, without telling anybody.
    SaveResult Write(const std::filesystem::path& file, const GS::Array<API_Guid>* elements);

    const Project& OpenProject() const { return *project; }
    /// True from the opening of a project until its shapes are known.
    bool IsShaping() const { return shaping; }
    const Settings& GetSettings() const { return settings; }
    hostkit::Session& GetSession() { return session; }

    /// Replaces the selection, as a person does. GUIDs that are not in the project are passed over.
    void Select(std::span<const API_Guid> elements);
    const std::vector<const Element*>& Selection() const { return selection; }

    /// What the 3D window shows: all, or these elements.
    void ShowAll();
    void ShowOnly(std::span<const API_Guid> elements);
    /// Shows or hides these, the others stay as they are.
    void SetShown(std::span<const Element* const> elements, bool shown);
    /// Neither hidden nor without a shape. Shapes that are not known yet count as there.
    bool IsShown(const Element& element) const;
    std::size_t ShownCount() const;

    /// The element's box in metres; nothing while or when it has no shape.
    std::optional<Box3> BoundsOf(const Element& element) const;

    /// An observer must be taken off before it goes.
    void Watch(ApplicationObserver& observer);
    void Unwatch(ApplicationObserver& observer);

  private:
    friend class WorkbenchHost;
    void Tell(const std::function<void(ApplicationObserver&)>& call);
    Progress ProgressOf(std::string what);
    void Shape();
    void FinishShaping(const MeshOutcome& outcome);
    void ShowAlert(const std::string& large, const std::string& small);

    Settings settings;
    Say say;
    MainQueue& queue;
    hostkit::dg::Driver& driver;
    std::vector<ApplicationObserver*> observers;
    std::shared_ptr<const Project> project;
    std::vector<const Element*> selection;
    std::optional<std::unordered_set<std::uint64_t>> shownOnly;
    std::unordered_map<std::uint64_t, Box3> bounds;
    bool shaping = false;
    bool shapesKnown = false;
    std::filesystem::path unpacked;  // the plain file that the mesher reads when the model came in an archive
    std::shared_ptr<int> generation;  // of the open project; shapes of an earlier one are dropped
    WorkbenchHost host;
    hostkit::Session session;
    MesherProcess mesher;
};

}  // namespace workbench
