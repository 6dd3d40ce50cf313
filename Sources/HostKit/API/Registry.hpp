#pragma once

#include <functional>
#include <map>
#include <vector>

#include "ACAPinc.h"

namespace hostkit {

// What the add-on has registered, and the host's side of it. Main thread only. Results are those of the
// ACAPI_ functions and of the add-on's handlers.
class Registry {
  public:
    // How far the host has got with the add-on.
    enum class Stage { unloaded, registering, initialising, running };

    struct Menu {
        short strings;
        short prompts;
        APIMenuCodeID position;
        GSFlags flags;
        std::vector<GSFlags> itemFlags;  // item 1 first
        APIMenuCommandProc* handler;     // null until it is installed
    };

    struct ModelessWindow {
        Int32 reference;
        APIPaletteControlCallBackProc* callback;
        GSFlags controlFlags;
        API_Guid guid;
    };

    // Registering: the add-on's side.
    GSErrCode RegisterMenu(const Menu& menu);
    GSErrCode InstallMenuHandler(short menuStrings, APIMenuCommandProc* handler);
    GSErrCode GetMenuItemFlags(const API_MenuItemRef& item, GSFlags& flags) const;
    GSErrCode SetMenuItemFlags(const API_MenuItemRef& item, GSFlags flags);
    GSErrCode RegisterModelessWindow(const ModelessWindow& window);
    GSErrCode UnregisterModelessWindow(Int32 reference);
    void CatchSelectionChange(APISelectionChangeHandlerProc* handler) { selectionHandler = handler; }
    void CatchProjectEvent(GSFlags events, APIProjectEventHandlerProc* handler);
    void KeepInMemory(bool keep) { keptInMemory = keep; }

    // What the add-on said about itself in CheckEnvironment.
    const API_AddOnInfo& AddOnInfo() const { return addOnInfo; }
    void SetAddOnInfo(const API_AddOnInfo& info) { addOnInfo = info; }

    const std::vector<Menu>& Menus() const { return menus; }
    const std::vector<ModelessWindow>& ModelessWindows() const { return windows; }
    bool IsKeptInMemory() const { return keptInMemory; }
    Stage CurrentStage() const { return stage; }
    void SetStage(Stage next) { stage = next; }

    // Forgets everything: the add-on is unloaded.
    void Clear() { *this = {}; }

    // Driving: the person's side. BADID: no such menu or no handler; BADINDEX: no such item; REFUSEDCMD: the
    // item is disabled.
    GSErrCode ChooseMenuItem(short menuStrings, Int32 item);

    // To every modeless window; the first error, after all were told.
    GSErrCode SendPaletteMessage(API_PaletteMessageID message);
    bool IsPaletteVisible();

    GSErrCode NotifySelectionChange(const API_Neig* lastSelected);
    GSErrCode NotifyProjectEvent(API_NotifyEventID event, Int32 param = 0);

    // While true, complete operations are refused.
    bool RefusesCompleteOperations() const { return notifying > 0 || inUndoScope; }

    // Whether an undoable command runs.
    bool IsInUndoScope() const { return inUndoScope; }
    void SetInUndoScope(bool in) { inUndoScope = in; }
    bool IsNotifying() const { return notifying > 0; }

  private:
    GSErrCode Notify(const std::function<GSErrCode()>& handler);
    const Menu* Find(short menuStrings) const;
    Menu* Find(short menuStrings);

    API_AddOnInfo addOnInfo;
    std::vector<Menu> menus;
    std::vector<ModelessWindow> windows;
    APISelectionChangeHandlerProc* selectionHandler = nullptr;
    APIProjectEventHandlerProc* projectHandler = nullptr;
    GSFlags projectEvents = 0;
    bool keptInMemory = false;
    int notifying = 0;
    bool inUndoScope = false;
    Stage stage = Stage::unloaded;
};

}  // namespace hostkit
