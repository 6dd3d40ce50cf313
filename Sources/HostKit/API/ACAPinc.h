#pragma once

// The host's programming interface. Functions run on the main thread. Where nothing else is said they return
// NoError or an APIERR_ code: BADPARS for a missing parameter, BADID for a code they do not know, GENERAL
// when no host is running.

#include <functional>

#include "APIEnvir.h"
#include "APIdefs_Automate.h"
#include "APIdefs_Base.h"
#include "APIdefs_Database.h"
#include "APIdefs_Elements.h"
#include "APIdefs_Environment.h"
#include "APIdefs_Goodies.h"
#include "APIdefs_Navigator.h"
#include "APIdefs_Registration.h"
#include "Array.hpp"
#include "BM.hpp"
#include "File.hpp"
#include "FileSystem.hpp"
#include "Folder.hpp"
#include "GSTime.hpp"
#include "Guid.hpp"
#include "HashTable.hpp"
#include "Location.hpp"
#include "Lock.hpp"
#include "Owner.hpp"
#include "Ref.hpp"
#include "RunnableTask.hpp"
#include "Thread.hpp"
#include "TreeEnumerator.hpp"
#include "UniString.hpp"
#include "ValueToString.hpp"

// Written by the add-on, called by the host in this order.
API_AddonType __ACDLL_CALL CheckEnvironment(API_EnvirParams* envir);
GSErrCode __ACDLL_CALL RegisterInterface(void);
GSErrCode __ACENV_CALL Initialize(void);
GSErrCode __ACENV_CALL FreeData(void);

using APIMenuCommandProc = GSErrCode __ACENV_CALL(const API_MenuParams* menuParams);
using APIPaletteControlCallBackProc = GSErrCode __ACENV_CALL(Int32 referenceID,
                                                             API_PaletteMessageID messageID,
                                                             GS::IntPtr param);
using APISelectionChangeHandlerProc = GSErrCode __ACENV_CALL(const API_Neig* lastSelected);
using APIProjectEventHandlerProc = GSErrCode __ACENV_CALL(API_NotifyEventID eventID, Int32 param);

// Resources. Strings count from 1; an unknown id or index gives the empty text (and false).
GSResModule ACAPI_GetOwnResModule();
bool RSGetIndString(GS::UniString* text, GSResID id, Int32 index, GSResModule module);
GS::UniString RSGetIndString(GSResID id, Int32 index, GSResModule module);

void ACAPI_KeepInMemory(bool keep);

// Menu. Registering is refused (REFUSEDCMD) outside RegisterInterface; BADID: no such strings, or the menu is
// registered already. A handler needs a registered menu (BADID).
GSErrCode ACAPI_Register_Menu(short menuStrings, short promptStrings, APIMenuCodeID position, GSFlags flags);
GSErrCode ACAPI_Install_MenuHandler(short menuStrings, APIMenuCommandProc* handler);

// APIIo_Get/SetMenuItemFlagsID: API_MenuItemRef*, GSFlags*. BADID: no such menu, BADINDEX: no such item.
GSErrCode ACAPI_Interface(API_InterfaceID code, void* par1 = nullptr, void* par2 = nullptr,
                          void* par3 = nullptr);

// BADID: the reference is taken (or, unregistering, unknown).
GSErrCode ACAPI_RegisterModelessWindow(Int32 referenceID, APIPaletteControlCallBackProc* callback,
                                       GSFlags controlFlags, const API_Guid& paletteGuid = APINULLGuid);
GSErrCode ACAPI_UnregisterModelessWindow(Int32 referenceID);

// Null removes the handler. Complete operations are refused while a handler runs.
GSErrCode ACAPI_Notify_CatchSelectionChange(APISelectionChangeHandlerProc* handler);
GSErrCode ACAPI_Notify_CatchProjectEvent(GSFlags eventTypes, APIProjectEventHandlerProc* handler);

// APIEnv_ApplicationID: API_ServerApplicationInfo*; APIEnv_ProjectID: API_ProjectInfo* (a fresh one, else
// BADPARS), NOPLAN when nothing is open; APIEnv_GetSpecFolderID: API_SpecFolderID*, IO::Location*.
// The 3D window's settings: Get and Change3DProjectionSetsID: API_3DProjectionInfo*, and to change bool*
// (true: only switch between perspective and axonometry); Get and Change3DWindowSetsID: API_3DWindowInfo*;
// Get and Change3DCuttingPlanesID: API_3DCutPlanesInfo*, whose shapes are the caller's.
// GetSurveyPointTransformationID: API_Tranmat*.
GSErrCode ACAPI_Environment(API_EnvironmentID code, void* par1 = nullptr, void* par2 = nullptr,
                            void* par3 = nullptr);

// APIDo_SaveID: API_FileSavePars*, record of the format (API_SavePars_Ifc*, API_SavePars_Picture*,
// API_SavePars_Pdf*). Pictures show the window in front; a PDF is of the floor plan.
// APIDo_OpenID: API_FileOpenPars*; the add-on is not notified; CANCEL when the person kept the open project.
// APIDo_PublishID: API_PublishPars*, GS::Array<API_Guid>* (only these items; may be null).
// All three are complete operations: REFUSEDCMD inside notifications and undoable commands. ShowAllIn3DID,
// ShowSelectionIn3DID: none; they bring the 3D window to the front. ZoomID: none, which fits all into the
// window (REFUSEDPAR otherwise). ZoomToElementsID: GS::Array<API_Guid>*. ChangeWindowID: API_WindowInfo*.
GSErrCode ACAPI_Automate(API_AutomateID code, void* par1 = nullptr, void* par2 = nullptr,
                         void* par3 = nullptr);

// GetNavigatorSetNumID: Int32*, the count of publisher sets. GetNavigatorSetID: API_NavigatorSet* with its
// mapId set, Int32* index from 0. GetNavigatorChildrenItemsID: API_NavigatorItem* with the parent's guid and
// mapId, null, GS::Array<API_NavigatorItem>*. Only for the map of publisher sets.
GSErrCode ACAPI_Navigator(API_NavigatorID code, void* par1 = nullptr, void* par2 = nullptr,
                          void* par3 = nullptr, void* par4 = nullptr);

// APIDb_GetCurrentWindowID: API_WindowInfo*. APIDb_GetElementInfoStringID: API_Guid*, GS::UniString*; BADID:
// no such element.
GSErrCode ACAPI_Database(API_DatabaseID code, void* par1 = nullptr, void* par2 = nullptr,
                         void* par3 = nullptr);

// A list of parameters for another add-on's command, between Init and Free; the handle is the caller's.
// InitMDCLParameterListID and FreeMDCLParameterListID (which sets it to null): GSHandle*.
// AddMDCLParameterID: GSHandle, API_MDCLParameter*; BADNAME: the list has that name already.
GSErrCode ACAPI_Goodies(API_GoodiesID code, void* par1 = nullptr, void* par2 = nullptr, void* par3 = nullptr,
                        void* par4 = nullptr);

// Has another add-on run one of its commands; the result's kind is the command's. MODULNOTINSTALLED: there is
// no such add-on; MODULCMDNOTSUPPORTED, MODULCMDVERSNOTSUPPORTED: it does not know the command, or not in
// this version; REFUSEDCMD inside notifications and undoable commands.
GSErrCode ACAPI_Command_Call(const API_ModulID* mdid, GSType cmdID, Int32 cmdVersion, GSHandle params,
                             GSPtr resultData, bool silentMode);

// Replaces the list by the elements of the type (all zero: of every type) that pass the filter.
GSErrCode ACAPI_Element_GetElemList(const API_ElemType& type, GS::Array<API_Guid>* list,
                                    API_ElemFilterFlags filter = APIFilt_None,
                                    const API_Guid& renovationFilterGuid = APINULLGuid);

// Whether the element passes all these filters.
bool ACAPI_Element_Filter(const API_Guid& guid, API_ElemFilterFlags filter,
                          API_ElemVariationID variation = APIVarId_Generic,
                          const API_Guid& renovationFilterGuid = APINULLGuid);

// Read by header.guid alone. BADID: no such element.
GSErrCode ACAPI_Element_Get(API_Element* element, UInt32 mask = 0);
GSErrCode ACAPI_Element_GetHeader(API_Elem_Head* header, UInt32 mask = 0);

// Runs the body as one step that can be undone under this name, and returns its error; what a failed body did
// is undone. REFUSEDCMD inside a notification or another command.
GSErrCode ACAPI_CallUndoableCommand(const GS::UniString& undoName, const std::function<GSErrCode()>& body);

// Creates an element like the one that the record was read from, which may be of a project no longer open;
// the record's GUID becomes the new element's. The memo may be null. NEEDSUNDOSCOPE outside an undoable
// command; BADPARS for a record that was not read from an element; REFUSEDPAR when the open project cannot
// hold it.
GSErrCode ACAPI_Element_Create(API_Element* element, API_ElementMemo* memo);

// Bounds in metres. GENERAL when the element is not in the 3D model.
GSErrCode ACAPI_Element_Get3DInfo(const API_Elem_Head& header, API_ElemInfo3D* info);

// Adds to the selection, or takes from it.
GSErrCode ACAPI_Element_Select(const GS::Array<API_Neig>& elements, bool add);
GSErrCode ACAPI_Element_DeselectAll();

// NOSEL when nothing is selected. The marquee's coordinates are the caller's to kill.
GSErrCode ACAPI_Selection_Get(API_SelectionInfo* info, GS::Array<API_Neig>* elements, bool onlyEditable,
                              bool ignorePartialSelection = true,
                              API_SelRelativePosID relativePosition = API_InsidePartially);

// The host's own identifier, and the one from the file that the element came with, null for none.
GSErrCode ACAPI_Element_GetIFCIdentifier(const API_Guid& element, API_Guid& archicadIFCID,
                                         API_Guid& externalIFCID);

// Replaces the list by the elements that have the identifiers given; null: any. BADPARS when both are.
GSErrCode ACAPI_Element_GetElemListByIFCIdentifier(const API_Guid* archicadIFCID,
                                                   const API_Guid* externalIFCID,
                                                   GS::Array<API_Guid>& elements);

// The first is the default one.
GSErrCode ACAPI_IFC_GetIFCExportTranslatorsList(GS::Array<API_IFCTranslatorIdentifier>& translators);

// Between a GUID and its 22 characters in IFC files. BADPARS for a text that is none.
GSErrCode ACAPI_IFC_IFCGuidToAPIGuid(const GS::UniString& ifcGuid, API_Guid& apiGuid);
GSErrCode ACAPI_IFC_APIGuidToIFCGuid(const API_Guid& apiGuid, GS::UniString& ifcGuid);
