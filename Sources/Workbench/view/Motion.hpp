#pragma once

#include <QPointF>
#include <QSize>

#include "Workbench/mesher/Mesh.hpp"
#include "Workbench/view/Camera.hpp"

// How a camera moves under a hand. Points and distances of the picture are in pixels, origin top left.
namespace workbench {

// Turned about a point of the model, which stays where it is in the picture: the model follows the pointer by
// these angles to the right and down, but never turns over.
Camera Turned(const Camera& camera, const Vec3& pivot, QPointF degrees);

// Moved sideways so that a point of the model follows the pointer.
Camera Shifted(const Camera& camera, QSize size, const Vec3& point, QPointF delta);

// With everything `factor` times as far from a point of the model, which lies at `place` in the picture and
// stays there.
Camera Zoomed(const Camera& camera, QSize size, const Vec3& point, QPointF place, double factor);

}  // namespace workbench
