#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "palette/PropertyMapping.hpp"

#include "DGBrowser.hpp"
#include "DGModule.hpp"
#include "Location.hpp"
#include "Thread.hpp"
#include "UniString.hpp"

#include <functional>
#include <memory>
#include <vector>

class PublishRun;
struct ACSection;

/// Identifies the palette to the host, which stores its place in workspaces under it.
inline constexpr const char* KESTPALETTEGUID = "{7498d1c2-c932-48ec-b06c-98fb0cc9c1ee}";

/// The one palette: a browser that fills it, and whatever outlives a single call of the page. It is created
/// on first demand and then only shown and hidden. Everything runs on the main thread, except for what is
/// marked "job thread".
///
/// Failures are values: an empty string, false, or a page call. What the host's base library throws passes
/// through.
class KestranePalette : public DG::Palette, public DG::PanelObserver {
  public:
    /// Menu string resource and menu of the one command.
    static constexpr short menuId = 32500;

    // -- The one palette ------------------------------------------------------------------------------------

    static bool HasInstance();

    /// Creates the palette, hidden, with the web application loading in it; takes the place of an earlier
    /// one.
    static void CreateInstance();

    /// The palette; throws "Null reference." when there is none.
    static KestranePalette& GetInstance();

    /// Any thread: calls the action with the palette, which cannot go away meanwhile; does nothing when there
    /// is none. The action must not wait for the main thread.
    static void WithInstance(const std::function<void(KestranePalette&)>& action);

    ~KestranePalette() override;
    KestranePalette(const KestranePalette&) = delete;
    KestranePalette& operator=(const KestranePalette&) = delete;

    // -- Shell: visibility, the menu's check mark, what the host tells --------------------------------------

    /// Shows the palette in front and checks the menu item.
    void Show();

    /// Hides the palette and unchecks the menu item; the page lives on.
    void Hide();

    /// Checks or unchecks the menu item only.
    void SetMenuItemCheckedState(bool checked);

    /// Registers the callback below for the palette's GUID. Returns the host's error.
    static GSErrCode RegisterPaletteControlCallBack();

    /// The host's palette messages. The reference value is not examined; always NoError.
    static GSErrCode __ACENV_CALL PaletteControlCallBack(Int32 referenceValue, API_PaletteMessageID messageId,
                                                         GS::IntPtr param);

    /// Tells the page that the selection changed, when it asked to be told. Always NoError.
    static GSErrCode __ACENV_CALL SelectionChangeHandler(const API_Neig* selected);

    /// Records the model's centre, then asks the page for a file name. Always NoError.
    static GSErrCode __ACENV_CALL OpenProjectHandler(API_NotifyEventID event, Int32 param);

    // -- Elements -------------------------------------------------------------------------------------------

    /// Whether selection changes are told to the page; ignored without a palette.
    static void SetAddComponentFlag(bool flag);

    /// Executes "UpdateSelectedElements()" when the flag is set.
    void UpdateSelectedElements();

    /// The element that has, or came with, this GUID of IFC files (22 characters); the null GUID for none.
    static API_Guid GetElementGuidFromIfcGuid(const GS::UniString& ifcGuid);

    /// The elements found, in order and with repetitions; the others' GUIDs go to `unresolved`.
    static GS::Array<API_Guid> GetElementsFromJSIfcGuids(const GS::Array<GS::UniString>& ifcGuids,
                                                         GS::Array<GS::UniString>* unresolved = nullptr);

    static GS::Array<API_Neig> GetElementNeigs(const GS::Array<API_Guid>& elements);

    /// The record that names an element to the page: JSON of an object with "ifcGuid" and "name".
    static GS::UniString MakeComponentJSONString(const API_Guid& element);
    static GS::UniString MakeComponentJSONString(const GS::UniString& ifcGuid, const GS::UniString& name);

    /// Their component records, in order.
    static GS::Array<GS::UniString> GetComponentInfos(const GS::Array<API_Guid>& elements);
    static GS::Array<GS::UniString> GetElementInfos(const GS::Array<API_Neig>& elements);

    /// The component records of the elements found, then of those GUIDs that no element has, without a name.
    static GS::Array<GS::UniString> GetElementNames(const GS::Array<GS::UniString>& ifcGuids);

    /// The component records of the host's selection.
    static GS::Array<GS::UniString> GetSelectedElements();

    /// Switches cutting planes off and makes these the selection.
    static void HighlightSelectedElements(const GS::Array<API_Neig>& elements);

    /// Adds these to the selection.
    static void HighlightElements(const GS::Array<API_Neig>& elements);

    /// True when the host did zoom.
    static bool ZoomToElement(const API_Guid& element);

    /// The records of all elements of the open model that can be read, in the host's order.
    static GS::Array<API_Element> GetElementInfos();

    /// Centre of the model's bounding box as of the last opening of a project, in metres; the origin before.
    /// It is kept without a palette too.
    static const API_Coord3D& GetModelCentre();

    // -- Folders --------------------------------------------------------------------------------------------

    /// Path of the folder that receives models from the service (created), or empty.
    GS::UniString GetResourceFolder();

    // -- IFC export -----------------------------------------------------------------------------------------

    /// Remembers the page's file name for the project; ignored without a palette.
    static void SetIfcFileName(const GS::UniString& name);

    /// ExportModel of the one palette.
    static void ExportIFCModel(const GS::UniString& json);

    /// Saves the model and starts its upload. The request is an object with the strings "token", "projectId",
    /// "folderId", "fileName" (without extension) and the boolean "onlyVisible"; the page is told
    /// "CompleteExportModel()" or "FailExportModel()". With the boolean "useMapFile" the host applies the
    /// property mapping that was read last.
    void ExportModel(const GS::UniString& json);

    /// The whole project as the text of an IFC file; empty when the name is empty or the file cannot be read.
    static GS::UniString ExportIfcFile(const GS::UniString& fileName);

    /// Job thread: stores the service's answer, then executes "CompleteExportModel()".
    void CompleteExportModel(const GS::UniString& body);

    /// Job thread: executes "FailExportModel()".
    void FailExportModel();

    /// The service's answer to the last upload of a model; empty before the first and without a palette.
    static GS::UniString GetIfcDoucments();
    static GS::UniString GetIfcDocumentFile();

    // -- IFC import -----------------------------------------------------------------------------------------

    /// ImportIfcFiles of the one palette.
    static void ImportIfcModels(const GS::UniString& json);

    /// Starts the downloads of models. The request is an object with the string "token" and the array
    /// "modelInfos" of objects with the strings "id", "name" and "extension" (without the dot) and the whole
    /// number "version"; the page is told "CompleteImportModels()" when all have ended, at once when there
    /// are none. Throws "Null reference." for a model without one of its members and "Bad cast." for one of
    /// another kind; then nothing has started.
    void ImportIfcFiles(const GS::UniString& json);

    /// Path of a model's file: "<resource folder>/<name>-V<version>.<extension>", as the parts are. Empty
    /// without the folder.
    GS::UniString GetFileName(const GS::UniString& name, Int32 version, const GS::UniString& extension);

    /// Starts the download of a model on a thread named by its id. The thread object is the caller's.
    static GS::Thread* ImportIfcAsync(const GS::UniString& token, const GS::UniString& modelId,
                                      const GS::UniString& targetPath);

    /// Any thread: makes these the models to open, then executes "CompleteImportModels()".
    void CompleteImportModels(const GS::Array<GS::UniString>& filePaths);

    /// Tells the person, then opens the downloaded models one after the other and creates the elements of all
    /// others in the last one, each as an undoable step of its own. Passes over what cannot be opened or
    /// created; without the last one nothing is created. Then there are no models to open any more.
    void OpenAndMergeIFCFiles();
    static void OpenIfcModels();

    /// Opens the text of an IFC file, written to the resource folder under the page's file name.
    static void ImportIfcModel(const GS::UniString& content);

    /// Path of the file written; empty without a file name, or when it cannot be written.
    GS::UniString WriteIfcContent(const GS::UniString& content);

    /// True when the host did open it. An empty path opens nothing.
    static bool OpenIfcModel(const GS::UniString& path);

    // -- Viewpoints -----------------------------------------------------------------------------------------

    struct ACViewpoint;
    struct VisibilityProps;

    /// Job thread: keeps the id of the uploaded picture for the viewpoints that follow, then executes
    /// "InsertViewpoint()".
    void InsertViewpoint(const GS::UniString& imageId);

    /// The 3D window's state as JSON; empty before the first picture, or when the host does not answer.
    static GS::UniString GetViewpoint();
    static void GetPerspectViewpoint(API_3DProjectionInfo projection, ACViewpoint* viewpoint);
    static void GetOrthogonalViewpoint(API_3DProjectionInfo projection, ACViewpoint* viewpoint);
    /// The planes that cut at the moment.
    static GS::Array<ACSection> GetSections();
    /// False when the host does not list its elements.
    static bool GetVisibilityProps(VisibilityProps* props);
    /// Camera and image are the viewpoint's; selection, visibility and sections are the host's of now.
    static GS::UniString GetJsonStringFromViewpoint(ACViewpoint viewpoint);

    /// False when the camera is missing, or a member is of another kind than it should be.
    static bool GetViewpointFromJSObject(const GS::Ref<DG::JSObject>& object, ACViewpoint* viewpoint);
    static bool GetSectionsFromJSVariable(const GS::Ref<DG::JSBase>& value, GS::Array<ACSection>* sections);
    static bool GetSectionFromJSVariable(const GS::Ref<DG::JSBase>& value, ACSection* section);

    /// Makes the 3D window show the viewpoint; returns the host's error.
    static GSErrCode SelectViewpoint(const ACViewpoint& viewpoint);
    static void HandleVisualStates(const ACViewpoint& viewpoint);
    static void ShowVisibleElements(const ACViewpoint& viewpoint);
    static GSErrCode SetSections(const ACViewpoint& viewpoint);

    static bool Is3DView();
    static GSErrCode Open3DView();
    static void Switch3DView(bool perspective);
    /// Half of the 3D window's larger side, in pixels; 0 when the host does not answer.
    static double GetMaxHalfLength();
    static GSErrCode FitWindow();

    // -- Snapshots ------------------------------------------------------------------------------------------

    /// Uploads a picture of the 3D window, which must be in front and show a perspective. The request is an
    /// object with the strings "token" and "projectId"; the page is told "InsertViewpoint()".
    static void ExportImage(const GS::UniString& json);
    static void ExportViewpointImage(const GS::UniString& json);

    /// Saves the view as a PNG file and returns its path, or empty.
    static GS::UniString GetSnapshot();

    /// The local time as it may stand in a file name: "2026-11-21T09_30_00+01_00".
    static GS::UniString GetTimeString();

    // -- Plan documents -------------------------------------------------------------------------------------

    /// Makes a document of the current plan: 1 DWG, 2 PNG, 3 JPEG, 4 PDF. Returns its path, or empty: the
    /// host could not, or it is another number. The path, also the empty one, is what an export then sends;
    /// one made before and never sent is deleted.
    static GS::UniString Create2dPlan(Int32 kind);

    // The documents are files named by the time. Each returns its path, or empty when the host could not.
    static GS::UniString CreateDwgFile();
    static GS::UniString CreatePictureFile(bool png);
    /// On one page that holds the model's extent.
    static GS::UniString CreatePdfFile();

    /// Sends the document made last to the service, under the person's name for it. The request is an object
    /// with the strings "token", "projectId", "folderId" and "fileName" (without extension); one of another
    /// kind throws "Bad cast.". The page is told "CompleteExportPlan()" or "FailExportPlan()", but nothing
    /// when the service cannot be reached.
    static void Export2dPlan(const GS::UniString& json);
    /// False when nothing was started.
    bool ExportPlanData(const GS::UniString& json);

    /// Puts the name in place of the document's own, before the extension. Returns the new path, or empty:
    /// the document is gone, a file has that name, or it is no name of a file.
    GS::UniString RenameFile(const GS::UniString& name);

    /// Job thread: stores the service's answer, then executes "CompleteExportPlan()".
    void CompleteExportPlan(const GS::UniString& body);

    /// Job thread: executes "FailExportPlan()".
    void FailExportPlan();

    /// The service's answer to the last upload of a plan; empty before the first and without a palette.
    static GS::UniString GetPlanDocuments();

    // -- Property mapping -----------------------------------------------------------------------------------

    /// OpenMapFile of the one palette; empty without one.
    static GS::UniString OpenMappingFile();

    /// Lets the person choose a mapping file and reads it. Returns its path; empty when none was chosen, or
    /// it is no mapping file.
    GS::UniString OpenMapFile();

    /// False when the person chose none.
    static bool GetMapFileLocation(IO::Location* location);

    /// Replaces the mapping by the file's. False, and no change, when the file cannot be read or has another
    /// root.
    bool GetPropertyMapData(const IO::Location& location);

    /// Reads the node when it is a "SchemeProperty".
    void ReadElement(const xercesc::DOMNode& node);

    /// Adds the one property that the element describes; nothing when something is missing that it needs.
    void ReadPropertyElement(const xercesc::DOMElement& element);

    /// Null when the mapping has no such set yet.
    SchemeProperty* GetSchemePropertyByName(const GS::UniString& entityType, const GS::UniString& setName);

    void CleanPropertyMaps();

    /// Has the host make the preset that the next export applies.
    static void CreatePreset();

    /// Adds the mapping to the preset.
    void AddNewPropertyMappingForExport();

    /// The name that the person gives to a property, which is none of these; empty when it was cancelled.
    static GS::UniString GetNewPropertyName(const GS::Array<GS::UniString>& namesInUse);

    // -- Publisher sets: what could be published, made ready, and sent to the service -----------------------

    /// The remembered selection of this project: JSON of an object with the strings "publishSet" and
    /// "publishItems"; "[]" when another's is remembered, or none.
    static GS::UniString GetPublishItems(const GS::UniString& projectId);

    /// PreparePublishDocuments of the one palette; empty without one.
    static GS::UniString PreparePublishDoc(const GS::UniString& json);

    /// Tells the person that it takes a while, then has the picked items published that have no prepared file
    /// yet, makes them the remembered selection, and reports those that could not be published. Returns
    /// PreparePublishDocs.
    GS::UniString PreparePublishDocuments(const GS::UniString& json);

    /// PublisherItems of the one palette; nothing without one.
    static void PublishSeletedItems(const GS::UniString& json);

    /// Starts a run of uploads, one for each file of the request; the page is told "CompleteExportPublish()"
    /// when all have ended, or "FailedExportPublish()" when there are none. The run takes the place of an
    /// earlier one, whose uploads go on without a word to the page.
    void PublisherItems(const GS::UniString& json);

    /// Job thread: counts an upload of the run that has ended; after the last one of the palette's own run
    /// executes "CompleteExportPublish()".
    void CompleteExportPublishItem(PublishRun& run);

    /// JSON of an object: the ids of the documents that the run has led to so far, by their items' keys.
    GS::UniString GetExportedPublishItemData();
    static GS::UniString GetExportedPublishItemIds();

    // -- Histories ------------------------------------------------------------------------------------------

    /// Keeps the page's text about its exports in a file of the project, beyond the host's end. The request
    /// is an object with the strings "projectId" and "data" and the boolean "isModel". A text that needs more
    /// bytes than it has characters loses its end.
    static void SaveExportHistoryData(const GS::UniString& json);
    void SaveExportHistory(const GS::UniString& json);

    /// The text kept last, or empty. The request is an object with the string "projectId" and the boolean
    /// "model".
    static GS::UniString GetExportHistoryData(const GS::UniString& json);
    GS::UniString GetExportHistory(const GS::UniString& json);
    static GS::UniString GetExportHistoryFolderPath(bool isModel);

    /// The selection of a project that was published last: the page's texts for the set and for its items.
    struct PublishHistory {
        GS::UniString projectId;  // empty: of none
        GS::UniString publishSet;
        GS::UniString publishItems = "[]";
    };

    /// Writes the remembered selection to its project's file; nothing when there is none.
    void RegisterPublishHistory();
    static void SavePublishHistory();

    /// Remembers the selection in the project's file, without the items whose prepared file is gone. What is
    /// remembered stays when it is of this project, or the file cannot be used.
    static void GetPublishHistory(const GS::UniString& projectId);
    void RetrievePublishHistory(const GS::UniString& projectId);

    /// Remembers the page's own: an object with the strings "projectId", "publishItems" and "publishSet".
    static void SetPublishHistory(const GS::UniString& json);
    void ClearPublishHistory();

    // -- Application and project ----------------------------------------------------------------------------

    /// True when the host speaks German. A host that does not answer counts as English.
    static bool IsGerman();

    /// Language ("de" or "en"), API address with a trailing slash, add-on version and host version, separated
    /// by commas.
    static GS::UniString GetApplicationInfo();

    /// The project's name, "Untitled" for one never saved, or empty when the host does not answer.
    static GS::UniString GetProjectName();

  protected:
    void PanelResized(const DG::PanelResizeEvent& event) override;
    void PanelCloseRequested(const DG::PanelCloseRequestEvent& event, bool* accepted) override;

  private:
    KestranePalette();

    void InitBrowserControl();
    void OpenedProject();

    static void ZoomAxonometry(const ACViewpoint& viewpoint);

    static GS::UniString SaveIfcModel(const GS::UniString& fileName, bool onlyVisible);
    static GSErrCode SaveIfcFile(const IO::Location& location, bool onlyVisible);
    static GS::UniString ReadIfcFile(const IO::Location& location);

    DG::Browser browser;
    bool addComponentFlag = false;
    GS::UniString ifcFileName;
    std::shared_ptr<const GS::Array<GS::UniString>> importedModelPaths;  // none yet: empty, as the next
    GS::UniString planFilePath;
    std::shared_ptr<const GS::UniString> pendingImageId;
    std::shared_ptr<const GS::UniString> exportedModelResult;
    std::shared_ptr<const GS::UniString> exportedPlanResult;
    std::shared_ptr<PublishRun> publishRun;  // none yet: empty
    GS::Array<SchemeProperty> mappingProperties;
    std::vector<UInt32> mappingKeys;  // in the same order: what a search looks at before the names
    PublishHistory publishHistory;
};
