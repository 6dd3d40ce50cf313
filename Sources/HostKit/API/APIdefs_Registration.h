#pragma once

#include "APIdefs_Base.h"
#include "APIdefs_Environment.h"
#include "FourCharacters.hpp"

enum API_AddonType {
    APIAddon_DontRegister = 0,
    APIAddon_Normal = 1,
    APIAddon_Preload = 2,
    APIAddon_Unknown = 9999
};

struct API_AddOnInfo {
    GS::UniString name;
    GS::UniString description;
};

struct API_EnvirParams {
    API_ServerApplicationInfo serverInfo;
    API_AddOnInfo addOnInfo;
};

enum APIMenuCodeID {
    MenuCode_UserDef,
    MenuCode_File,
    MenuCode_Edit1,
    MenuCode_Edit2,
    MenuCode_Edit3,
    MenuCode_Tools,
    MenuCode_Options1,
    MenuCode_Options2,
    MenuCode_Image,
    MenuCode_Calculate,
    MenuCode_TeamWork,
    MenuCode_Display,
    MenuCode_Palettes,
    MenuCode_Extras,
    MenuCode_Hotlink,
    MenuCode_GDLObjects,
    MenuCode_3DView,
    MenuCode_DocExtras,
    MenuCode_Interoperability,
    MenuCode_ModelCheck
};

enum : GSFlags { MenuFlag_Default = 0, MenuFlag_SeparatorBefore = 1, MenuFlag_SeparatorAfter = 2 };

// State of a menu item.
enum : GSFlags { API_MenuItemDisabled = 1, API_MenuItemChecked = 2 };

struct API_MenuItemRef {
    short menuResID;
    short filler_1;
    Int32 itemIndex;
    Int32 filler_2[2];
};

struct API_MenuParams {
    API_MenuItemRef menuItemRef;
};

enum API_InterfaceID : Int32 {
    APIIo_GetMenuItemFlagsID = hostkit::FourCharacters("GMIF"),
    APIIo_SetMenuItemFlagsID = hostkit::FourCharacters("SMIF")
};

enum API_PaletteMessageID : Int32 {
    APIPalMsg_ClosePalette = 1,
    APIPalMsg_HidePalette_Begin,
    APIPalMsg_HidePalette_End,
    APIPalMsg_DisableItems_Begin,
    APIPalMsg_DisableItems_End,
    APIPalMsg_OpenPalette,
    APIPalMsg_IsPaletteVisible
};

// Windows beside which a palette may be used.
enum : GSFlags {
    API_PalEnabled_FloorPlan = 1,
    API_PalEnabled_Section = 2,
    API_PalEnabled_3D = 4,
    API_PalEnabled_SelOnly = 8,
    API_PalEnabled_Detail = 0x10,
    API_PalEnabled_Layout = 0x20,
    API_PalEnabled_Worksheet = 0x40,
    API_PalEnabled_Elevation = 0x80,
    API_PalEnabled_InteriorElevation = 0x100,
    API_PalEnabled_DocumentFrom3D = 0x200,
    API_PalEnabled_ModelCompare = 0x400
};

// Bits: a handler may ask for several events.
enum API_NotifyEventID : GSFlags {
    APINotify_New = 1,
    APINotify_NewAndReset = 2,
    APINotify_Open = 4,
    APINotify_PreSave = 8,
    APINotify_Save = 0x10,
    APINotify_Close = 0x20,
    APINotify_Quit = 0x40
};
