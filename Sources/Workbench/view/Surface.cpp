#include "Workbench/view/Surface.hpp"

#include <algorithm>
#include <cmath>
#include <span>
#include <unordered_map>

#include "Workbench/view/Camera.hpp"

namespace workbench {
namespace {

constexpr double weldDistance = 1e-4;   // metres
constexpr double creaseCosine = 0.866;  // 30 degrees
constexpr double leastArea = 1e-10;     // square metres
// Around the tip of a large fan comparing all with all would be slow and change nothing to see.
constexpr std::size_t mostToSmooth = 64;

using Key = std::array<std::int64_t, 3>;
struct KeyHash {
    std::size_t operator()(const Key& key) const {
        std::uint64_t hash = 0;
        for (const std::int64_t value : key)
            hash = (hash ^ static_cast<std::uint64_t>(value)) * 0x9E3779B97F4A7C15ull;
        return hash ^ (hash >> 29);
    }
};

struct Triangle {
    std::array<std::uint32_t, 3> points{};  // welded
    Vec3 normal;                            // of length 1
    double area = 0;
};

struct Side {
    std::uint32_t from;
    std::uint32_t to;
    std::uint32_t triangle;
    friend bool operator<(const Side& a, const Side& b) {
        return std::tie(a.from, a.to) < std::tie(b.from, b.to);
    }
};

class Builder {
  public:
    explicit Builder(const MeshPart& part) {
        Weld(part);
        CollectTriangles(part);
        SortCorners();
    }

    Surface Build() {
        firstVertex.assign(points.size(), 0);
        surface.triangles.resize(3 * triangles.size());
        for (std::uint32_t point = 0; point < points.size(); ++point)
            EmitPoint(point);
        EmitLines();
        return std::move(surface);
    }

  private:
    void Weld(const MeshPart& part) {
        std::unordered_map<Key, std::uint32_t, KeyHash> known;
        known.reserve(part.positions.size() / 3);
        for (std::size_t at = 0; at + 2 < part.positions.size(); at += 3) {
            const std::array<float, 3> p{part.positions[at], part.positions[at + 1], part.positions[at + 2]};
            const auto [entry, isNew] =
                known.try_emplace({std::llround(p[0] / weldDistance), std::llround(p[1] / weldDistance),
                                   std::llround(p[2] / weldDistance)},
                                  static_cast<std::uint32_t>(points.size()));
            if (isNew) points.push_back(p);
            welded.push_back(entry->second);
        }
    }

    Vec3 Point(std::uint32_t point) const { return {points[point][0], points[point][1], points[point][2]}; }

    void CollectTriangles(const MeshPart& part) {
        for (std::size_t at = 0; at + 2 < part.indices.size(); at += 3) {
            Triangle triangle;
            for (std::size_t corner = 0; corner < 3; ++corner)
                triangle.points[corner] = welded[part.indices[at + corner]];
            const Vec3 a = Point(triangle.points[0]);
            const Vec3 cross = Cross(Point(triangle.points[1]) - a, Point(triangle.points[2]) - a);
            triangle.area = Length(cross);
            if (triangle.area < leastArea) continue;
            triangle.normal = cross * (1 / triangle.area);
            triangles.push_back(triangle);
        }
    }

    // Corner 3t + c belongs to triangle t; those of one point become neighbours.
    void SortCorners() {
        cornersFrom.assign(points.size() + 1, 0);
        for (const Triangle& triangle : triangles)
            for (const std::uint32_t point : triangle.points)
                ++cornersFrom[point + 1];
        for (std::size_t at = 1; at < cornersFrom.size(); ++at)
            cornersFrom[at] += cornersFrom[at - 1];
        corners.resize(3 * triangles.size());
        std::vector<std::uint32_t> next(cornersFrom.begin(), cornersFrom.end());
        for (std::uint32_t corner = 0; corner < corners.size(); ++corner)
            corners[next[triangles[corner / 3].points[corner % 3]]++] = corner;
    }

    std::array<std::int8_t, 4> NormalAt(std::uint32_t corner, std::span<const std::uint32_t> around) const {
        const Triangle& own = triangles[corner / 3];
        Vec3 sum = own.normal;
        if (around.size() <= mostToSmooth) {
            sum = {};
            for (const std::uint32_t other : around) {
                const Triangle& triangle = triangles[other / 3];
                if (Dot(own.normal, triangle.normal) > creaseCosine)
                    sum = sum + triangle.normal * triangle.area;
            }
            sum = sum * (1 / Length(sum));
        }
        const auto byte = [](double value) { return static_cast<std::int8_t>(std::lround(127 * value)); };
        return {byte(sum.x), byte(sum.y), byte(sum.z), 0};
    }

    void EmitPoint(std::uint32_t point) {
        const auto first = static_cast<std::uint32_t>(surface.vertices.size());
        firstVertex[point] = first;
        const std::span around(corners.begin() + cornersFrom[point],
                               corners.begin() + cornersFrom[point + 1]);
        for (const std::uint32_t corner : around) {
            const auto normal = NormalAt(corner, around);
            const auto same =
                std::find_if(surface.vertices.begin() + first, surface.vertices.end(),
                             [&](const SurfaceVertex& vertex) { return vertex.normal == normal; });
            surface.triangles[corner] = static_cast<std::uint32_t>(same - surface.vertices.begin());
            if (same == surface.vertices.end()) surface.vertices.push_back({points[point], normal});
        }
    }

    bool IsCrease(std::span<const Side> sides) const {
        if (sides.size() == 1) return true;
        const Vec3& normal = triangles[sides[0].triangle].normal;
        return std::any_of(sides.begin() + 1, sides.end(), [&](const Side& side) {
            return std::abs(Dot(normal, triangles[side.triangle].normal)) < creaseCosine;
        });
    }

    void EmitLines() {
        std::vector<Side> sides;
        sides.reserve(3 * triangles.size());
        for (std::uint32_t at = 0; at < triangles.size(); ++at) {
            const auto& p = triangles[at].points;
            for (std::size_t corner = 0; corner < 3; ++corner) {
                const auto [low, high] = std::minmax(p[corner], p[(corner + 1) % 3]);
                sides.push_back({low, high, at});
            }
        }
        std::sort(sides.begin(), sides.end());
        for (auto begin = sides.begin(); begin != sides.end();) {
            const auto end = std::upper_bound(begin, sides.end(), *begin);
            if (IsCrease({begin, end})) {
                surface.lines.push_back(firstVertex[begin->from]);
                surface.lines.push_back(firstVertex[begin->to]);
            }
            begin = end;
        }
    }

    std::vector<std::array<float, 3>> points;  // welded
    std::vector<std::uint32_t> welded;         // point of each vertex of the part
    std::vector<Triangle> triangles;
    std::vector<std::uint32_t> corners;
    std::vector<std::uint32_t> cornersFrom;  // of each point, in corners
    std::vector<std::uint32_t> firstVertex;  // of each point, in the surface
    Surface surface;
};

}  // namespace

Surface SurfaceOf(const MeshPart& part) {
    return Builder(part).Build();
}

}  // namespace workbench
