#include "HostKit/API/HostCall.hpp"

using hostkit::HostCall;
using hostkit::Session;
using hostkit::SessionAccess;

namespace {

constexpr GSResModule ownModule = 1;

// One string is the command itself; of several the first is the submenu's title.
std::size_t ItemCount(Int32 stringCount) {
    return static_cast<std::size_t>(stringCount > 1 ? stringCount - 1 : stringCount);
}

}  // namespace

GSResModule ACAPI_GetOwnResModule() {
    return ownModule;
}

bool RSGetIndString(GS::UniString* text, GSResID id, Int32 index, GSResModule module) {
    const SessionAccess session;
    if (text == nullptr) return false;
    text->Clear();
    if (!session || module != ownModule) return false;
    *text = session->GetResources().String(id, index);
    return index >= 1 && index <= session->GetResources().StringCount(id);
}

GS::UniString RSGetIndString(GSResID id, Int32 index, GSResModule module) {
    GS::UniString text;
    RSGetIndString(&text, id, index, module);
    return text;
}

void ACAPI_KeepInMemory(bool keep) {
    const SessionAccess session;
    if (session) session->GetRegistry().KeepInMemory(keep);
}

GSErrCode ACAPI_Register_Menu(short menuStrings, short promptStrings, APIMenuCodeID position, GSFlags flags) {
    return HostCall("ACAPI_Register_Menu", [&](Session& session) {
        const std::size_t items = ItemCount(session.GetResources().StringCount(menuStrings));
        return session.GetRegistry().RegisterMenu(
            {menuStrings, promptStrings, position, flags, std::vector<GSFlags>(items), nullptr});
    });
}

GSErrCode ACAPI_Install_MenuHandler(short menuStrings, APIMenuCommandProc* handler) {
    return HostCall("ACAPI_Install_MenuHandler", [&](Session& session) -> GSErrCode {
        if (handler == nullptr) return APIERR_BADPARS;
        return session.GetRegistry().InstallMenuHandler(menuStrings, handler);
    });
}

GSErrCode ACAPI_Interface(API_InterfaceID code, void* par1, void* par2, void*) {
    constexpr auto function = "ACAPI_Interface";
    const auto* item = static_cast<const API_MenuItemRef*>(par1);
    auto* flags = static_cast<GSFlags*>(par2);
    switch (code) {
        case APIIo_GetMenuItemFlagsID:
            return HostCall(function, "APIIo_GetMenuItemFlagsID", [&](Session& session) -> GSErrCode {
                if (item == nullptr || flags == nullptr) return APIERR_BADPARS;
                return session.GetRegistry().GetMenuItemFlags(*item, *flags);
            });
        case APIIo_SetMenuItemFlagsID:
            return HostCall(function, "APIIo_SetMenuItemFlagsID", [&](Session& session) -> GSErrCode {
                if (item == nullptr || flags == nullptr) return APIERR_BADPARS;
                const GSErrCode error = session.GetRegistry().SetMenuItemFlags(*item, *flags);
                if (error != NoError) return error;
                session.GetHost().MenuItemFlagsChanged(item->menuResID, item->itemIndex, *flags);
                return NoError;
            });
    }
    return hostkit::UnknownCode(function);
}

GSErrCode ACAPI_RegisterModelessWindow(Int32 referenceID, APIPaletteControlCallBackProc* callback,
                                       GSFlags controlFlags, const API_Guid& paletteGuid) {
    return HostCall("ACAPI_RegisterModelessWindow", [&](Session& session) -> GSErrCode {
        if (callback == nullptr) return APIERR_BADPARS;
        return session.GetRegistry().RegisterModelessWindow(
            {referenceID, callback, controlFlags, paletteGuid});
    });
}

GSErrCode ACAPI_UnregisterModelessWindow(Int32 referenceID) {
    return HostCall("ACAPI_UnregisterModelessWindow", [&](Session& session) {
        return session.GetRegistry().UnregisterModelessWindow(referenceID);
    });
}

GSErrCode ACAPI_Notify_CatchSelectionChange(APISelectionChangeHandlerProc* handler) {
    return HostCall("ACAPI_Notify_CatchSelectionChange", [&](Session& session) {
        session.GetRegistry().CatchSelectionChange(handler);
        return NoError;
    });
}

GSErrCode ACAPI_Notify_CatchProjectEvent(GSFlags eventTypes, APIProjectEventHandlerProc* handler) {
    return HostCall("ACAPI_Notify_CatchProjectEvent", [&](Session& session) {
        session.GetRegistry().CatchProjectEvent(eventTypes, handler);
        return NoError;
    });
}
