#pragma once

#include "API_Guid.hpp"
#include "APIdefs_ErrorCodes.h"

using API_AttributeIndex = short;

struct API_Coord {
    double x, y;
};

struct API_Coord3D {
    double x, y, z;
};

struct API_Box {
    double xMin, yMin, xMax, yMax;
};

struct API_Box3D {
    double xMin, yMin, zMin, xMax, yMax, zMax;
};

// Three rows of four; elements 3, 7 and 11 are the translation.
struct API_Tranmat {
    double tmx[12];
};
