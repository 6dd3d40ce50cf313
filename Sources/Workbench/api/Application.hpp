#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "HostKit/API/Session.hpp"
#include "Workbench/api/EditHistory.hpp"
#include "Workbench/api/ElementStates.hpp"
#include "Workbench/api/MainQueue.hpp"
#include "Workbench/api/ModelWindow.hpp"
#include "Workbench/api/Say.hpp"
#include "Workbench/api/WorkbenchHost.hpp"
#include "Workbench/exchange/Exchange.hpp"
#include "Workbench/mesher/MesherProcess.hpp"
#include "Workbench/navigator/PublisherSets.hpp"
#include "Workbench/view/View3D.hpp"

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
    /// All shapes are there that will be.
    virtual void ProjectReady(const MeshOutcome&) {}
    /// A person's opening is complete, and the add-on is told of it.
    virtual void ProjectOpened() {}
    virtual void SelectionChanged() {}
    virtual void VisibilityChanged() {}
    /// The 3D window's camera or cutting planes are others.
    virtual void ViewChanged() {}
    /// Another window is in front, or another storey in the floor plan.
    virtual void WindowChanged() {}
    virtual void MenuFlagsChanged() {}
    /// Elements of the open project were created, or their creation was undone or redone: all `Element`
    /// pointers of before are invalid; what stays keeps its place in selection and visibility.
    virtual void ProjectEdited() {}
    /// There are other steps to undo and redo, or the project was saved.
    virtual void HistoryChanged() {}
    /// A model was written with the add-on's property mapping.
    virtual void PropertiesMapped(const MappingCounts&) {}
    /// Long work goes on in the main thread. Answers false to stop it.
    virtual bool Working(const std::string& /*what*/, double /*fraction*/) { return true; }
};

/// The window in front.
struct FrontWindow {
    enum class Kind { model, plan };
    Kind kind = Kind::model;
    std::size_t storey = 0;  // of the plan: place in Project::Storeys()

    friend bool operator==(const FrontWindow&, const FrontWindow&) = default;
};

/// Whose doing a change is: a person's is told at once, to the add-on too; the add-on's own is told when its
/// call is over, however many changes it made.
enum class Who { person, addOn };

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
    /// be opened is told in an alert, and the open project stays; so it does when it has unsaved changes and
    /// the person wants to keep it.
    bool Open(const std::filesystem::path& file) { return Open(file, Who::person) == OpenOutcome::opened; }
    enum class OpenOutcome { opened, kept, failed };
    /// For the add-on: the same, but the add-on is not notified.
    OpenOutcome Open(const std::filesystem::path& file, Who who);
    /// Saves the whole model as a person does. A failure is told in an alert.
    bool Save(const std::filesystem::path& file);
    /// True when the open project may go: it has no unsaved changes, or the person was asked and saved them
    /// or gives them up. An add-on that opens several models is asked for once.
    bool MayLeaveProject(Who who = Who::person);
    /// Who asks the person for a file to save to, given a suggestion; without anybody, changes go into a file
    /// of their own in the data folder.
    using AsksForFile = std::function<std::optional<std::filesystem::path>(const std::filesystem::path&)>;
    void SetAsksForFile(AsksForFile function) { asksForFile = std::move(function); }
    /// Saves the whole model, or only `elements`, with the property sets of the mapping; tells nobody.
    SaveResult Write(const std::filesystem::path& file, const GS::Array<API_Guid>* elements,
                     std::span<const MappedSet> mapping = {});

    const Project& OpenProject() const { return *project; }
    /// What it offers for publishing, until it is replaced or edited.
    const PublisherSets& Publisher() const { return publisher; }
    /// Tells the person, and waits.
    void ShowAlert(const std::string& large, const std::string& small);
    /// Tells observers of long work in the main thread; 1 is its end. False when one of them stops it.
    bool TellWorking(const std::string& what, double fraction);

    /// The steps that can be undone and redone.
    const EditHistory& History() const { return history; }
    std::vector<std::string> UndoNames() const { return history.UndoNames(); }
    /// So many steps back or forth, or as many as there are. The project follows, and observers are told,
    /// from the queue: many steps in a row cost no more than one.
    void Undo(std::size_t steps = 1);
    void Redo(std::size_t steps = 1);
    /// Whether there is something that saving would keep.
    bool IsModified() const { return history.IsModified(); }

    /// True while shapes of the project are still to come: after its opening, or after elements were created.
    bool IsShaping() const { return shaping != Shaping::none; }
    const Settings& GetSettings() const { return settings; }
    hostkit::Session& GetSession() { return session; }

    /// What is selected and shown. GUIDs that are not in the project are passed over.
    const ElementStates& States() const { return states; }
    const std::vector<const Element*>& Selection() const { return states.Selection(); }
    /// Replaces the selection.
    void Select(std::span<const API_Guid> elements, Who who = Who::person);
    void AddToSelection(std::span<const API_Guid> elements, Who who);
    void TakeFromSelection(std::span<const API_Guid> elements, Who who);

    void ShowAll(Who who = Who::person);
    void ShowOnly(std::span<const API_Guid> elements, Who who = Who::person);
    void ShowSelection(Who who = Who::person);
    /// Shows or hides these, the others stay as they are.
    void SetShown(std::span<const Element* const> elements, bool shown);
    bool IsShown(const Element& element) const { return states.IsShown(element); }
    std::size_t ShownCount() const { return states.ShownCount(); }

    /// The 3D window. `change` is given its state; then what changed is told.
    const ModelWindow& Window3D() const { return window3D; }
    void ChangeView(const std::function<void(ModelWindow&)>& change, Who who = Who::person);
    /// The camera is turned to these elements; false when none of them has a shape.
    bool ZoomTo(std::span<const API_Guid> elements, Who who = Who::person);
    /// The box around what the 3D window shows, metres; empty without shapes. Terrain belongs to it: it is
    /// no element, and is shown together with all elements.
    Box3 ShownBox();
    /// The 3D picture, for the widget that shows it. It is up to date after observers have been told.
    const std::shared_ptr<View3D>& View() const { return view; }
    /// One that nobody sees, with all shapes, for pictures that leave the 3D window as it is. It is there
    /// until the queue goes on.
    View3D& HiddenView();
    /// What the 3D window shows, drawn in its size; null when drawing is impossible.
    QImage Picture3D(bool highlightSelection = true);
    /// What the floor plan shows.
    QImage PicturePlan(bool highlightSelection = true);
    /// Who shows the floor plan draws it, too. Without anybody it is the whole storey, in the 3D window's
    /// size.
    using DrawsPlan = std::function<QImage(bool highlightSelection)>;
    void SetDrawsPlan(DrawsPlan function) { drawsPlan = std::move(function); }

    const FrontWindow& Front() const { return front; }
    /// False when there is no such storey.
    bool BringToFront(const FrontWindow& window, Who who = Who::person);
    /// The shapes of the elements that belong to a storey.
    std::vector<ElementMeshPtr> ShapesOn(std::size_t storey) const;

    /// From the model's coordinates to those of the survey point, metres.
    const API_Tranmat& Survey() const { return survey; }
    void SetSurvey(const API_Tranmat& matrix) { survey = matrix; }

    /// The element's box in metres; nothing while or when it has no shape.
    std::optional<Box3> BoundsOf(const Element& element) const;

    /// An observer must be taken off before it goes.
    void Watch(ApplicationObserver& observer);
    void Unwatch(ApplicationObserver& observer);

  private:
    friend class WorkbenchHost;
    class Work;
    void Tell(const std::function<void(ApplicationObserver&)>& call);

    /// The add-on's commands, and what they create.
    void BeginCommand(const std::string& name) { history.Begin(name); }
    void EndCommand(bool succeeded);
    EditHistory::Created Create(const std::shared_ptr<const Project>& source, const API_Guid& element);
    void HistoryMoved();
    /// Makes the project what the steps say.
    void Settle();
    void Replace(std::shared_ptr<const Project> edited);
    void TellRefused();
    bool SaveBeforeLeaving();
    void RememberForAddOn(bool mayLeave);

    void Replace(std::shared_ptr<const Project> opened, Who who);
    void ShapeAll();
    void ShapeAdded();
    void Shape(const std::filesystem::path& file);
    void TakeShapes(const MeshBatch& batch);
    std::vector<const Element*> Find(std::span<const API_Guid> guids) const;
    enum Change : unsigned { selectionChange = 1, visibilityChange = 2, viewChange = 4, windowChange = 8 };
    void Changed(unsigned changes, Who who);
    void TellChanges();
    void UpdateView();
    void FinishShaping(const MeshOutcome& outcome);

    Settings settings;
    Say say;
    MainQueue& queue;
    hostkit::dg::Driver& driver;
    std::vector<ApplicationObserver*> observers;
    std::shared_ptr<const Project> project;
    PublisherSets publisher;
    ElementStates states;
    ModelWindow window3D;
    FrontWindow front;
    API_Tranmat survey;
    std::shared_ptr<View3D> view;
    std::unique_ptr<View3D> hiddenView;  // null while nobody needs one
    DrawsPlan drawsPlan;
    unsigned changed = 0;       // what is still to be told: bits of Change
    unsigned viewOutdated = 0;  // and what the 3D picture does not know yet
    EditHistory history;
    bool historyMoved = false;  // the queue will tell it
    std::size_t refused = 0;    // creations, because of the schema of
    std::shared_ptr<const Project> refusedFrom;
    std::optional<bool> addOnMayLeave;  // what the person said, until the add-on's call is over
    AsksForFile asksForFile;

    enum class Shaping { none, coming, all, added };  // coming: all of them, from the queue
    Shaping shaping = Shaping::none;
    bool openedByPerson = false;                 // the add-on is told when the shapes are there
    std::unordered_set<std::uint64_t> unshaped;  // records of created elements that are to get shapes
    std::filesystem::path meshed;                // a file of our own that the mesher reads
    std::shared_ptr<int> generation;             // of the open project; shapes of an earlier one are dropped
    WorkbenchHost host;
    hostkit::Session session;
    MesherProcess mesher;
};

}  // namespace workbench
