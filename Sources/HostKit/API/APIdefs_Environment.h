#pragma once

#include "APIdefs_Base.h"
#include "FourCharacters.hpp"
#include "Location.hpp"

enum API_EnvironmentID : Int32 {
    APIEnv_ApplicationID = hostkit::FourCharacters("APPL"),
    APIEnv_ProjectID = hostkit::FourCharacters("PROJ"),
    APIEnv_GetSpecFolderID = hostkit::FourCharacters("GSPF")
};

struct API_ServerApplicationInfo {
    UInt32 mainVersion = 0;
    UInt32 releaseVersion = 0;
    UInt32 buildNum = 0;
    GS::UniString language;  // three letters: "INT", "GER"
};

// Owns what its pointers refer to: one object for each query.
struct API_ProjectInfo {
    API_ProjectInfo() = default;
    ~API_ProjectInfo();
    API_ProjectInfo(const API_ProjectInfo&) = delete;
    API_ProjectInfo& operator=(const API_ProjectInfo&) = delete;

    bool untitled = false;
    bool teamwork = false;
    short userId = 0;
    Int32 workGroupMode = 0;
    IO::Location* location = nullptr;
    IO::Location* location_team = nullptr;
    UInt64 modiStamp = 0;
    GS::UniString* projectPath = nullptr;
    GS::UniString* projectName = nullptr;
};

enum API_SpecFolderID {
    API_ApplicationPrefsFolderID = 1,
    API_GraphisoftPrefsFolderID,
    API_GraphisoftHomeFolderID,
    API_CacheFolderID,
    API_DataFolderID,
    API_UserDocumentsFolderID,
    API_TemporaryFolderID,
    API_ApplicationFolderID,
    API_DefaultsFolderID,
    API_WebObjectsFolderID,
    API_TemplatesFolderID,
    API_HelpFolderID,
    API_EmbeddedProjectLibraryFolderID,
    API_EmbeddedProjectLibraryHotlinkFolderID
};
