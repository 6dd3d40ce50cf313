#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "DGBrowser.hpp"
#include "DGModule.hpp"
#include "Location.hpp"
#include "UniString.hpp"

#include <functional>
#include <memory>

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
    /// "CompleteExportModel()" or "FailExportModel()".
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

    static GS::UniString SaveIfcModel(const GS::UniString& fileName, bool onlyVisible);
    static GSErrCode SaveIfcFile(const IO::Location& location, bool onlyVisible);
    static GS::UniString ReadIfcFile(const IO::Location& location);

    DG::Browser browser;
    bool addComponentFlag = false;
    GS::UniString ifcFileName;
    std::shared_ptr<const GS::UniString> exportedModelResult;  // none yet: empty
};
