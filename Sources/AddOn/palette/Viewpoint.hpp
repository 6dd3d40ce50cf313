#pragma once

#include "palette/KestranePalette.hpp"

/// A plane that cuts the model.
struct ACSection {
    API_Coord3D location;  // a point of the plane, metres
    API_Coord3D normal;    // of length 1
};

/// What the host's 3D window shows, as it is kept beside an issue. Captured, locations are survey
/// coordinates; read back, they are the model's. Metres.
struct KestranePalette::ACViewpoint {
    bool cameraType = false;  // true: perspective
    API_Coord3D location = {};
    API_Coord3D direction = {};
    API_Coord3D up = {};
    API_Coord3D side = {};    // horizontal, never written
    double cameraFactor = 0;  // full angle of the view cone in degrees; 0 for axonometric cameras
    bool visibility = false;  // true: all is shown but the exceptions; false: only the exceptions are
    GS::UniString imageId;
    GS::UniString creatingTool;
    GS::Array<GS::UniString> selectedGlobalIds;  // filled on reading only, as is the next
    GS::Array<GS::UniString> visibilityExceptionGlobalIds;
    GS::Array<ACSection> sections;
};

/// How to tell which elements are shown with the shorter list.
struct KestranePalette::VisibilityProps {
    bool visibility = false;
    GS::Array<API_Guid> exceptions;
};
