#include "Workbench/view/CutFace.hpp"

#include <GL/glu.h>

#include <cmath>
#include <deque>
#include <memory>

namespace workbench {
namespace {

struct DeleteTessellator {
    void operator()(GLUtesselator* tessellator) const { gluDeleteTess(tessellator); }
};

// Fills rings by the even-odd rule. One serves for many faces, on one thread.
class Tessellator {
  public:
    Tessellator() : tessellator(gluNewTess()) {
        Set(GLU_TESS_VERTEX_DATA, &Tessellator::OnVertex);
        Set(GLU_TESS_COMBINE_DATA, &Tessellator::OnCrossing);
        Set(GLU_TESS_EDGE_FLAG_DATA, &Tessellator::OnEdgeFlag);
        gluTessProperty(tessellator.get(), GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_ODD);
        gluTessNormal(tessellator.get(), 0, 0, 1);
    }

    // Starts with the rings' points in their order; crossings of lines follow.
    const std::deque<QPointF>& Points() const { return points; }

    // Three numbers of points for each triangle.
    std::vector<std::uint32_t> Fill(const std::vector<QPolygonF>& rings) {
        points.clear();
        triangles.clear();
        gluTessBeginPolygon(tessellator.get(), this);
        for (const QPolygonF& ring : rings) {
            gluTessBeginContour(tessellator.get());
            for (const QPointF& point : ring) {
                std::array<GLdouble, 3> place{point.x(), point.y(), 0};
                gluTessVertex(tessellator.get(), place.data(), Add(point));
            }
            gluTessEndContour(tessellator.get());
        }
        gluTessEndPolygon(tessellator.get());
        triangles.resize(triangles.size() / 3 * 3);
        return std::move(triangles);
    }

  private:
    template <typename... Arguments>
    void Set(GLenum which, void (*callback)(Arguments...)) {
        gluTessCallback(tessellator.get(), which, reinterpret_cast<_GLUfuncptr>(callback));
    }

    static void OnVertex(void* number, void* self) {
        static_cast<Tessellator*>(self)->triangles.push_back(
            static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(number)));
    }
    static void OnCrossing(GLdouble place[3], void* [4], GLfloat[4], void** number, void* self) {
        *number = static_cast<Tessellator*>(self)->Add({place[0], place[1]});
    }
    // Its presence makes the tessellator give triangles only, no strips and fans.
    static void OnEdgeFlag(GLboolean, void*) {}

    void* Add(QPointF point) {
        points.push_back(point);
        return reinterpret_cast<void*>(static_cast<std::uintptr_t>(points.size() - 1));
    }

    std::unique_ptr<GLUtesselator, DeleteTessellator> tessellator;
    std::deque<QPointF> points;
    std::vector<std::uint32_t> triangles;
};

std::array<std::int8_t, 4> BytesOf(const Vec3& normal) {
    const auto byte = [](double value) { return static_cast<std::int8_t>(std::lround(127 * value)); };
    return {byte(normal.x), byte(normal.y), byte(normal.z), 0};
}

}  // namespace

Surface CutFaceOf(const SectionPart& part, const Plane& plane, const PlaneFrame& frame, const Vec3& origin) {
    // The tessellator compares coordinates that it has computed: they have to be small.
    std::vector<QPolygonF> rings = part.rings;
    const QPointF shift = frame.Project(origin);
    for (QPolygonF& ring : rings)
        ring.translate(-shift);

    thread_local Tessellator tessellator;
    Surface face;
    face.triangles = tessellator.Fill(rings);
    const Vec3 start = frame.Lift(shift) - origin;
    const auto normal = BytesOf(plane.normal);
    for (const QPointF& point : tessellator.Points()) {
        const Vec3 place = start + frame.u * point.x() + frame.v * point.y();
        face.vertices.push_back(
            {{static_cast<float>(place.x), static_cast<float>(place.y), static_cast<float>(place.z)},
             normal});
    }
    std::uint32_t first = 0;
    for (const QPolygonF& ring : rings) {
        const auto count = static_cast<std::uint32_t>(ring.size());
        for (std::uint32_t at = 0; at < count; ++at) {
            face.lines.push_back(first + at);
            face.lines.push_back(first + (at + 1) % count);
        }
        first += count;
    }
    return face;
}

}  // namespace workbench
