#include "Workbench/view/Section.hpp"

#include <cmath>
#include <cstdint>
#include <utility>

#include "Workbench/view/Camera.hpp"
#include "Workbench/view/SectionRings.hpp"

namespace workbench {
namespace {

constexpr double onPlane = 1e-5;  // metres, up to which a vertex lies on the plane: single precision
                                  // leaves that much noise in a large element
constexpr double almostVertical = 1e-9;

// The plane and its frame as seen from an element's origin: so the numbers stay small.
struct LocalCut {
    Vec3 normal;
    double distance = 0;
    Vec3 u;
    Vec3 v;
    QPointF shift;  // from here to the frame's coordinates

    LocalCut(const Plane& plane, const PlaneFrame& frame, const Vec3& origin)
        : normal(plane.normal),
          distance(plane.distance - Dot(plane.normal, origin)),
          u(frame.u),
          v(frame.v),
          shift(frame.Project(origin)) {}

    // Above the plane where it is not negative.
    double Height(const Vec3& point) const {
        const double height = Dot(normal, point) - distance;
        return std::abs(height) <= onPlane ? 0 : height;
    }
    // Where the plane meets the edge between two vertices, told from below to above, so that both of the
    // edge's triangles get the same point to the last bit.
    QPointF Cross(const Vec3& below, double depth, const Vec3& above, double height) const {
        const Vec3 point = below + (above - below) * (depth / (depth - height));
        return {Dot(u, point), Dot(v, point)};
    }
};

Vec3 VertexAt(const MeshPart& part, std::size_t index) {
    return {part.positions[3 * index], part.positions[3 * index + 1], part.positions[3 * index + 2]};
}

// Points in pairs, one pair for each triangle that is cut.
std::vector<QPointF> Cuts(const MeshPart& part, const LocalCut& cut) {
    std::vector<double> heights(part.positions.size() / 3);
    for (std::size_t at = 0; at < heights.size(); ++at)
        heights[at] = cut.Height(VertexAt(part, at));

    std::vector<QPointF> points;
    for (std::size_t at = 0; at + 2 < part.indices.size(); at += 3) {
        const std::uint32_t* corner = &part.indices[at];
        const bool above[] = {heights[corner[0]] >= 0, heights[corner[1]] >= 0, heights[corner[2]] >= 0};
        if (above[0] == above[1] && above[1] == above[2]) continue;
        for (const auto& [a, b] : {std::pair(0, 1), std::pair(1, 2), std::pair(2, 0)}) {
            if (above[a] == above[b]) continue;
            const std::uint32_t lower = corner[above[a] ? b : a];
            const std::uint32_t upper = corner[above[a] ? a : b];
            points.push_back(
                cut.Cross(VertexAt(part, lower), heights[lower], VertexAt(part, upper), heights[upper]));
        }
    }
    return points;
}

bool Misses(const Box3& box, const Plane& plane) {
    if (box.Empty()) return true;
    const Vec3 half = box.Size() * 0.5;
    const double reach = std::abs(plane.normal.x) * half.x + std::abs(plane.normal.y) * half.y +
                         std::abs(plane.normal.z) * half.z;
    return std::abs(Dot(plane.normal, box.Center()) - plane.distance) > reach + weldDistance;
}

}  // namespace

QPointF PlaneFrame::Project(const Vec3& point) const {
    const Vec3 fromOrigin = point - origin;
    return {Dot(u, fromOrigin), Dot(v, fromOrigin)};
}

Vec3 PlaneFrame::Lift(QPointF point) const {
    return origin + u * point.x() + v * point.y();
}

PlaneFrame FrameOf(const Plane& plane) {
    const Vec3& n = plane.normal;
    const double across = std::hypot(n.x, n.y);
    PlaneFrame frame{n * plane.distance, {n.z < 0 ? -1.0 : 1.0, 0, 0}, {0, 1, 0}};
    if (across > almostVertical) {
        frame.u = {-n.y / across, n.x / across, 0};
        frame.v = Cross(n, frame.u);
    }
    return frame;
}

std::vector<SectionPart> SectionOf(const ElementMesh& mesh, const Plane& plane, const PlaneFrame& frame) {
    std::vector<SectionPart> section;
    if (Misses(mesh.bounds, plane)) return section;
    const LocalCut cut(plane, frame, mesh.origin);
    for (const MeshPart& part : mesh.parts) {
        std::vector<QPolygonF> rings = RingsOf(Cuts(part, cut));
        for (QPolygonF& ring : rings)
            ring.translate(cut.shift);
        if (!rings.empty()) section.push_back({part.colour, std::move(rings)});
    }
    return section;
}

}  // namespace workbench
