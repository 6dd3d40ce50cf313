#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"

// Between the model's coordinates and those of its survey point, in metres. The host is asked anew each
// time, because a person may move the survey point. Without an answer the coordinates stay as they are.

/// The point in survey coordinates. Directions are passed through it too and normalised by the caller.
API_Coord3D TransformVector(double x, double y, double z);

/// The point of the model that has these survey coordinates.
API_Coord3D TransformToModel(const API_Coord3D& point);
