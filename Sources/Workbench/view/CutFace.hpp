#pragma once

#include "Workbench/view/Section.hpp"
#include "Workbench/view/Surface.hpp"

namespace workbench {

// The face that a plane leaves on a part it has cut, with its outline as lines. Vertices are told from
// `origin` and look the way the plane's normal points.
Surface CutFaceOf(const SectionPart& part, const Plane& plane, const PlaneFrame& frame, const Vec3& origin);

}  // namespace workbench
