#pragma once

#include "APIdefs_Base.h"
#include "FourCharacters.hpp"
#include "Location.hpp"

enum API_EnvironmentID : Int32 {
    APIEnv_ApplicationID = hostkit::FourCharacters("APPL"),
    APIEnv_ProjectID = hostkit::FourCharacters("PROJ"),
    APIEnv_GetSpecFolderID = hostkit::FourCharacters("GSPF"),
    APIEnv_Get3DProjectionSetsID = hostkit::FourCharacters("GP3D"),
    APIEnv_Change3DProjectionSetsID = hostkit::FourCharacters("CP3D"),
    APIEnv_Get3DWindowSetsID = hostkit::FourCharacters("GW3D"),
    APIEnv_Change3DWindowSetsID = hostkit::FourCharacters("CW3D"),
    APIEnv_Get3DCuttingPlanesID = hostkit::FourCharacters("GC3D"),
    APIEnv_Change3DCuttingPlanesID = hostkit::FourCharacters("CC3D"),
    APIEnv_GetSurveyPointTransformationID = hostkit::FourCharacters("SPTR")
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

struct API_SunAngleSettings {
    double sunAzimuth, sunAltitude;
    Int32 filler[4];
};

// Angles in degrees, lengths in metres.
struct API_PerspPars {
    double azimuth;
    API_SunAngleSettings sunAngSets;
    double viewCone;
    double rollAngle, distance;
    double cameraZ, targetZ;
    bool isTwoPointPersp;
    bool filler_0[7];
    double filler_1[7];
    API_Coord pos, target;
    double filler_2[8];
};

struct API_AxonoPars {
    double azimuth;
    API_SunAngleSettings sunAngSets;
    short projMod;
    short filler_1;
    Int32 filler_2;
    API_Tranmat tranmat;     // of a point to its projection: right, up, depth
    API_Tranmat invtranmat;  // its inverse
    double filler_3[8];
};

// Null GUIDs: the parameters count, not a camera of the floor plan.
struct API_3DProjectionInfo {
    bool isPersp;
    char filler_1[7];
    API_Guid camGuid, actCamSet;
    union {
        API_PerspPars persp;
        API_AxonoPars axono;
    } u;
};

// A projected point (x, y) lies at the pixel (x * zoomScaleX + zoomDispX, y * zoomScaleY + zoomDispY), with
// the origin at the window's upper left corner and y upwards.
struct API_3DWindowInfo {
    bool setWindowSize;
    short hSize, vSize;
    bool setZoom;
    double zoomScaleX, zoomScaleY;
    double zoomDispX, zoomDispY;
};

// The points p with (pa, pb, pc) . p = pd, for (pa, pb, pc) brought to length 1.
struct API_3DCutShapeType {
    short cutStatus;
    short cutPen;
    API_AttributeIndex cutMater;
    short filler_1;
    double pa, pb, pc, pd;
    double filler_2[5];
};

// The shapes are the caller's to kill, also after a get; they may be null.
struct API_3DCutPlanesInfo {
    bool isCutPlanes;
    bool useCustom;
    short customPen;
    API_AttributeIndex customMater;
    short nShapes;
    API_3DCutShapeType** shapes;
    Int32 filler_2[9];
};
