#include "HostKit/API/Registry.hpp"

#include <algorithm>

namespace hostkit {

namespace {

// The flags of an item, or null.
template <class Menu>
auto* FindItem(Menu& menu, Int32 item) {
    const bool known = item >= 1 && static_cast<std::size_t>(item) <= menu.itemFlags.size();
    return known ? &menu.itemFlags[static_cast<std::size_t>(item - 1)] : nullptr;
}

}  // namespace

GSErrCode Registry::RegisterMenu(const Menu& menu) {
    if (stage != Stage::registering) return APIERR_REFUSEDCMD;
    if (menu.itemFlags.empty() || Find(menu.strings) != nullptr) return APIERR_BADID;
    menus.push_back(menu);
    return NoError;
}

GSErrCode Registry::InstallMenuHandler(short menuStrings, APIMenuCommandProc* handler) {
    Menu* menu = Find(menuStrings);
    if (menu == nullptr) return APIERR_BADID;
    menu->handler = handler;
    return NoError;
}

GSErrCode Registry::GetMenuItemFlags(const API_MenuItemRef& item, GSFlags& flags) const {
    const Menu* menu = Find(item.menuResID);
    if (menu == nullptr) return APIERR_BADID;
    const GSFlags* found = FindItem(*menu, item.itemIndex);
    if (found == nullptr) return APIERR_BADINDEX;
    flags = *found;
    return NoError;
}

GSErrCode Registry::SetMenuItemFlags(const API_MenuItemRef& item, GSFlags flags) {
    Menu* menu = Find(item.menuResID);
    if (menu == nullptr) return APIERR_BADID;
    GSFlags* found = FindItem(*menu, item.itemIndex);
    if (found == nullptr) return APIERR_BADINDEX;
    *found = flags;
    return NoError;
}

GSErrCode Registry::RegisterModelessWindow(const ModelessWindow& window) {
    const bool taken = std::any_of(windows.begin(), windows.end(), [&](const ModelessWindow& known) {
        return known.reference == window.reference;
    });
    if (taken) return APIERR_BADID;
    windows.push_back(window);
    return NoError;
}

GSErrCode Registry::UnregisterModelessWindow(Int32 reference) {
    const auto count =
        std::erase_if(windows, [&](const ModelessWindow& window) { return window.reference == reference; });
    return count == 0 ? static_cast<GSErrCode>(APIERR_BADID) : NoError;
}

void Registry::CatchProjectEvent(GSFlags events, APIProjectEventHandlerProc* handler) {
    projectEvents = events;
    projectHandler = handler;
}

GSErrCode Registry::ChooseMenuItem(short menuStrings, Int32 item) {
    const Menu* menu = Find(menuStrings);
    if (menu == nullptr || menu->handler == nullptr) return APIERR_BADID;
    const GSFlags* flags = FindItem(*menu, item);
    if (flags == nullptr) return APIERR_BADINDEX;
    if ((*flags & API_MenuItemDisabled) != 0) return APIERR_REFUSEDCMD;
    const API_MenuParams params = {{menuStrings, 0, item, {}}};
    return menu->handler(&params);
}

GSErrCode Registry::SendPaletteMessage(API_PaletteMessageID message) {
    GSErrCode result = NoError;
    const std::vector<ModelessWindow> told = windows;
    for (const ModelessWindow& window : told) {
        bool visible = false;  // what message 7 writes to
        const GSErrCode error =
            window.callback(window.reference, message, reinterpret_cast<GS::IntPtr>(&visible));
        if (result == NoError) result = error;
    }
    return result;
}

bool Registry::IsPaletteVisible() {
    return std::any_of(windows.begin(), windows.end(), [](const ModelessWindow& window) {
        bool visible = false;
        window.callback(window.reference, APIPalMsg_IsPaletteVisible, reinterpret_cast<GS::IntPtr>(&visible));
        return visible;
    });
}

GSErrCode Registry::NotifySelectionChange(const API_Neig* lastSelected) {
    if (selectionHandler == nullptr) return NoError;
    return Notify([&] { return selectionHandler(lastSelected); });
}

GSErrCode Registry::NotifyProjectEvent(API_NotifyEventID event, Int32 param) {
    if (projectHandler == nullptr || (projectEvents & event) == 0) return NoError;
    return Notify([&] { return projectHandler(event, param); });
}

GSErrCode Registry::Notify(const std::function<GSErrCode()>& handler) {
    struct Level {
        explicit Level(int& count) : count(count) { ++count; }
        ~Level() { --count; }
        int& count;
    };
    const Level level(notifying);
    return handler();
}

const Registry::Menu* Registry::Find(short menuStrings) const {
    const auto found = std::find_if(menus.begin(), menus.end(),
                                    [&](const Menu& menu) { return menu.strings == menuStrings; });
    return found == menus.end() ? nullptr : &*found;
}

Registry::Menu* Registry::Find(short menuStrings) {
    return const_cast<Menu*>(static_cast<const Registry*>(this)->Find(menuStrings));
}

}  // namespace hostkit
