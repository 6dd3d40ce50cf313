#pragma once

#include <QPointF>
#include <QPolygonF>
#include <vector>

#include "Workbench/mesher/Mesh.hpp"

namespace workbench {

// A plane in the model's space: the points p with Dot(normal, p) = distance, in metres. The normal has length
// 1 and points to the side that a cut takes away.
struct Plane {
    Vec3 normal{0, 0, 1};
    double distance = 0;

    friend bool operator==(const Plane&, const Plane&) = default;
};

// Axes in a plane, so that its points can be drawn: u to the right and v up when the normal points at the
// viewer. For a horizontal plane with its normal up they are X and Y.
struct PlaneFrame {
    Vec3 origin;  // in the plane
    Vec3 u;
    Vec3 v;

    QPointF Project(const Vec3& point) const;
    Vec3 Lift(QPointF point) const;
};
PlaneFrame FrameOf(const Plane& plane);

// What a plane cuts of an element: rings in the plane's frame, filled by the even-odd rule. Chains that a
// mesh leaves open are closed by a straight line.
struct SectionPart {
    std::array<float, 4> colour{};  // of the part that was cut: red, green, blue, alpha: 0 to 1
    std::vector<QPolygonF> rings;
};
// Empty when the plane misses the element. Neighbouring triangles give the same points, and collinear points
// are dropped.
std::vector<SectionPart> SectionOf(const ElementMesh& mesh, const Plane& plane, const PlaneFrame& frame);

}  // namespace workbench
