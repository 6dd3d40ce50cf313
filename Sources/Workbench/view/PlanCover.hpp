#pragma once

#include <QLineF>
#include <QPointF>
#include <cstdint>
#include <limits>
#include <vector>

#include "Workbench/mesher/Mesh.hpp"

namespace workbench {

// Surfaces that are looked at from above, and hide what lies below them. Metres.
class PlanCover {
  public:
    // A triangle that shows its upper side.
    void Add(const Vec3& a, const Vec3& b, const Vec3& c);
    // After the last triangle, before the first question.
    void Arrange();

    // The pieces of a line that nothing lies above, from one end to the other. What lies along the border of
    // something higher is hidden, too.
    std::vector<QLineF> Visible(const Vec3& from, const Vec3& to) const;
    // Whether some surface lies at that point, at most a few millimetres above or below it.
    bool IsOnSurface(const Vec3& point) const;

  private:
    struct Triangle {
        QPointF corners[3];  // anticlockwise
        double level = 0;    // at the first corner
        QPointF slope;       // rise to the right and upwards

        double HeightAt(QPointF point) const;
    };
    struct Bounds {
        QPointF min{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
        QPointF max{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
        double top = -std::numeric_limits<double>::infinity();

        void Add(const Bounds& other);
    };
    struct Branch {
        Bounds bounds;
        std::uint32_t first = 0;  // of its triangles
        std::uint32_t count = 0;
        std::uint32_t second = 0;  // its second half; the first half follows it; 0: it has none
    };
    struct Span {
        double begin = 0;
        double end = 1;
    };

    std::uint32_t Split(std::uint32_t first, std::uint32_t count);
    Bounds BoundsOf(const Triangle& triangle) const;
    static Span Hidden(const Triangle& triangle, const Vec3& from, const Vec3& way);
    // Calls for each triangle that may cover a part of the line.
    template <typename Call>
    void Above(const Vec3& from, const Vec3& to, Call call) const;

    std::vector<Triangle> triangles;
    std::vector<Branch> branches;
};

}  // namespace workbench
