#include "host/Menu.hpp"

void SetMenuItemChecked(short menuId, Int32 itemIndex, bool checked) {
    API_MenuItemRef item = {};
    item.menuResID = menuId;
    item.itemIndex = itemIndex;

    GSFlags flags = 0;
    ACAPI_Interface(APIIo_GetMenuItemFlagsID, &item, &flags);
    if (checked) {
        flags |= API_MenuItemChecked;
    } else {
        flags &= ~static_cast<GSFlags>(API_MenuItemChecked);
    }
    ACAPI_Interface(APIIo_SetMenuItemFlagsID, &item, &flags);
}
