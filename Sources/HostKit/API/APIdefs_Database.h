#pragma once

#include "API_Guid.hpp"
#include "Definitions.hpp"
#include "FourCharacters.hpp"

enum API_DatabaseID : Int32 {
    APIDb_GetCurrentWindowID = hostkit::FourCharacters("GWIN"),
    APIDb_GetElementInfoStringID = hostkit::FourCharacters("GEIS")
};

inline constexpr int API_UniLongNameLen = 256;

enum API_WindowTypeID : Int32 {
    API_ZombieWindowID = 0,
    APIWind_FloorPlanID,
    APIWind_SectionID,
    APIWind_DetailID,
    APIWind_3DModelID,
    APIWind_LayoutID,
    APIWind_DrawingID,
    APIWind_MyTextID,
    APIWind_MyDrawID,
    APIWind_MasterLayoutID,
    APIWind_ElevationID,
    APIWind_InteriorElevationID,
    APIWind_WorksheetID,
    APIWind_ReportID,
    APIWind_DocumentFrom3DID
};

struct API_DatabaseUnId {
    API_Guid elemSetId;
};

struct API_WindowInfo {
    API_WindowTypeID typeID;
    Int32 index;
    API_DatabaseUnId databaseUnId;
    GS::uchar_t title[API_UniLongNameLen];
};
