#pragma once

#include <QPointF>
#include <QPolygonF>
#include <span>
#include <vector>

namespace workbench {

// Metres up to which two points of a section are one.
constexpr double weldDistance = 1e-4;

// Joins segments, given as pairs of points, to the outlines of what they bound under the even-odd rule.
// Chains that stay open count as closed by a straight line; points on a straight line and what has no area
// are dropped. The points should lie near the origin.
std::vector<QPolygonF> RingsOf(std::span<const QPointF> segmentEnds);

}  // namespace workbench
