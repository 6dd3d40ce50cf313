#pragma once

#include "APIdefs_Base.h"
#include "APIdefs_Database.h"
#include "FourCharacters.hpp"
#include "Location.hpp"
#include "UniString.hpp"

enum API_NavigatorID : Int32 {
    APINavigator_GetNavigatorSetNumID = hostkit::FourCharacters("GNSN"),
    APINavigator_GetNavigatorSetID = hostkit::FourCharacters("GNSE"),
    APINavigator_GetNavigatorChildrenItemsID = hostkit::FourCharacters("GNCI")
};

enum API_NavigatorMapID : Int32 {
    API_UndefinedMap = 0,
    API_ProjectMap,
    API_PublicViewMap,
    API_MyViewMap,
    API_LayoutMap,
    API_PublisherSets
};

enum API_NavigatorItemTypeID : Int32 {
    API_UndefinedNavItem = 0,
    API_ProjectNavItem,
    API_StoryNavItem,
    API_SectionNavItem,
    API_PerspectiveNavItem,
    API_AxonometryNavItem,
    API_FolderNavItem
};

// The pointers stay null unless wantsExtraInfo is set.
struct API_NavigatorSet {
    char name[128];
    API_Guid guid;
    API_Guid rootGuid;
    API_NavigatorMapID mapId;
    bool wantsExtraInfo;
    char filler_0[3];
    GS::UniString* host;
    GS::UniString* dirName;
    IO::Location* path;
    Int32 filler[3];
    IO::Location* twFileServerPath;
};

struct API_NavigatorItem {
    GS::uchar_t uName[API_UniLongNameLen];
    GS::uchar_t uAutoTextedName[API_UniLongNameLen];
    char uiId[128];
    API_Guid guid;
    API_WindowInfo db;
    short floorNum;
    short vType;
    API_Guid camId;
    API_NavigatorMapID mapId;
    API_NavigatorItemTypeID itemType;
    API_Guid sourceGuid;
    Int32 owner;
    bool customName;
    bool customUiId;
};
