#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"

/// Extent of all elements that have a 3D body, in metres. All zero when the model is empty or cannot be
/// listed. When no element has a body, each minimum is the largest double and each maximum the smallest,
/// whose centre is the origin.
API_Box3D GetBoundingBox();
