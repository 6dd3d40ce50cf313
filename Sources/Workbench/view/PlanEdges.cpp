#include "Workbench/view/PlanEdges.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <tuple>

#include "Workbench/view/Camera.hpp"
#include "Workbench/view/PlanCover.hpp"

namespace workbench {
namespace {

constexpr double weld = 1e-4;      // metres, in which corners are rounded
constexpr double upwards = 0.05;   // of a normal's length, from which a face shows its upper side
constexpr double covering = 0.25;  // the same, from which it hides what lies below: steeper ones are narrow
constexpr double bend = 0.94;      // cosine of the least angle between faces that shows
constexpr double flat = 1e-6;      // cubic metres, up to which a shape encloses nothing
constexpr double gap = 1e-3;       // of a skin's area, from which what it lacks makes it open
constexpr double beside = 3e-3;    // metres, to look for a surface at both sides of a border

struct Face {
    std::array<std::uint32_t, 3> corners;  // of the welded points
    Vec3 normal;                           // of length 1
};

// A part with its corners in the model's space, those that are one being one. Faces point outwards.
struct Skin {
    std::vector<Vec3> points;
    std::vector<Face> faces;
    bool isOpen = false;  // it encloses nothing: each face shows both of its sides
};

std::vector<std::uint32_t> Welded(const MeshPart& part, const Vec3& origin, std::vector<Vec3>& points) {
    using Key = std::tuple<std::int64_t, std::int64_t, std::int64_t>;
    std::vector<std::pair<Key, std::uint32_t>> keys(part.positions.size() / 3);
    for (std::uint32_t at = 0; at < keys.size(); ++at) {
        const float* place = &part.positions[3 * at];
        const auto round = [](float value) { return std::llround(std::clamp(value / weld, -1e15, 1e15)); };
        keys[at] = {{round(place[0]), round(place[1]), round(place[2])}, at};
    }
    std::ranges::sort(keys);
    std::vector<std::uint32_t> numbers(keys.size());
    for (std::size_t at = 0; at < keys.size(); ++at) {
        const float* place = &part.positions[3 * keys[at].second];
        if (at == 0 || keys[at].first != keys[at - 1].first)
            points.push_back(origin + Vec3{place[0], place[1], place[2]});
        numbers[keys[at].second] = static_cast<std::uint32_t>(points.size() - 1);
    }
    return numbers;
}

Skin SkinOf(const MeshPart& part, const Vec3& origin) {
    Skin skin;
    const std::vector<std::uint32_t> numbers = Welded(part, origin, skin.points);
    double volume = 0, area = 0;
    Vec3 facing;  // the sum of all faces, nothing for a closed body
    for (std::size_t at = 0; at + 2 < part.indices.size(); at += 3) {
        Face face{{numbers[part.indices[at]], numbers[part.indices[at + 1]], numbers[part.indices[at + 2]]},
                  {}};
        const Vec3 fromFirst = skin.points[face.corners[0]] - skin.points[0];
        const Vec3 across = Cross(skin.points[face.corners[1]] - skin.points[face.corners[0]],
                                  skin.points[face.corners[2]] - skin.points[face.corners[0]]);
        const double length = Length(across);
        if (length < weld * weld) continue;
        volume += Dot(fromFirst, across);
        area += length;
        facing = facing + across;
        face.normal = across * (1 / length);
        skin.faces.push_back(face);
    }
    skin.isOpen = Length(facing) > gap * area || std::abs(volume) < flat;
    if (skin.isOpen || volume >= 0) return skin;
    for (Face& face : skin.faces) {
        std::swap(face.corners[1], face.corners[2]);
        face.normal = face.normal * -1;
    }
    return skin;
}

// Corners of what lies below the cut.
std::vector<Vec3> Below(const Skin& skin, const Face& face, double cut) {
    std::vector<Vec3> corners;
    for (std::size_t at = 0; at < 3; ++at) {
        const Vec3& a = skin.points[face.corners[at]];
        const Vec3& b = skin.points[face.corners[(at + 1) % 3]];
        if (a.z <= cut) corners.push_back(a);
        if ((a.z <= cut) != (b.z <= cut)) corners.push_back(a + (b - a) * ((cut - a.z) / (b.z - a.z)));
    }
    return corners;
}

void AddTo(PlanCover& cover, const Skin& skin, double cut) {
    for (const Face& face : skin.faces) {
        const bool isTurned = skin.isOpen && face.normal.z < 0;
        if ((isTurned ? -face.normal.z : face.normal.z) <= covering) continue;
        const std::vector<Vec3> corners = Below(skin, face, cut);
        for (std::size_t at = 2; at < corners.size(); ++at) {
            if (isTurned)
                cover.Add(corners[0], corners[at], corners[at - 1]);
            else
                cover.Add(corners[0], corners[at - 1], corners[at]);
        }
    }
}

struct Edge {
    std::uint32_t a = 0;  // the lower number
    std::uint32_t b = 0;
    std::uint32_t face = 0;
};

bool Shows(const Skin& skin, std::span<const Edge> sides) {
    const auto isUp = [&](const Edge& side) {
        const double z = skin.faces[side.face].normal.z;
        return (skin.isOpen ? std::abs(z) : z) > upwards;
    };
    if (std::ranges::none_of(sides, isUp)) return false;
    if (sides.size() == 1 || !std::ranges::all_of(sides, isUp)) return true;
    return std::ranges::any_of(sides, [&](const Edge& side) {
        return std::abs(Dot(skin.faces[side.face].normal, skin.faces[sides[0].face].normal)) < bend;
    });
}

// A line within a surface, left where triangles do not share their sides.
bool IsSeam(const PlanCover& cover, const Vec3& from, const Vec3& to) {
    const Vec3 way = to - from;
    const Vec3 aside = Vec3{-way.y, way.x, 0} * (beside / std::hypot(way.x, way.y));
    const Vec3 middle = (from + to) * 0.5;
    return cover.IsOnSurface(middle + aside) && cover.IsOnSurface(middle - aside);
}

void Append(std::vector<QLineF>& lines, const PlanCover& cover, const Skin& skin, double cut) {
    std::vector<Edge> edges;
    for (std::uint32_t number = 0; number < skin.faces.size(); ++number) {
        const auto& corners = skin.faces[number].corners;
        for (std::size_t at = 0; at < 3; ++at) {
            const auto [a, b] = std::minmax(corners[at], corners[(at + 1) % 3]);
            if (skin.points[a].z <= cut || skin.points[b].z <= cut) edges.push_back({a, b, number});
        }
    }
    std::ranges::sort(edges, {}, [](const Edge& edge) { return std::pair(edge.a, edge.b); });
    for (std::size_t at = 0, behind = 0; at < edges.size(); at = behind) {
        while (behind < edges.size() && edges[behind].a == edges[at].a && edges[behind].b == edges[at].b)
            ++behind;
        const std::span<const Edge> sides(&edges[at], behind - at);
        if (!Shows(skin, sides)) continue;
        Vec3 from = skin.points[edges[at].a];
        Vec3 to = skin.points[edges[at].b];
        if (from.z > cut) std::swap(from, to);
        if (to.z > cut) to = from + (to - from) * ((cut - from.z) / (to.z - from.z));
        const std::vector<QLineF> pieces = cover.Visible(from, to);
        if (pieces.empty() || (sides.size() == 1 && IsSeam(cover, from, to))) continue;
        lines.insert(lines.end(), pieces.begin(), pieces.end());
    }
}

}  // namespace

std::vector<std::vector<QLineF>> EdgesBelow(std::span<const ElementMeshPtr> meshes, double cut,
                                            std::span<const std::array<Vec3, 3>> caps) {
    const auto isBelow = [cut](const ElementMeshPtr& mesh) { return mesh->bounds.min.z < cut; };
    PlanCover cover;
    for (const auto& [a, b, c] : caps)
        cover.Add(a, b, c);
    std::vector<std::vector<Skin>> skins(meshes.size());
    for (std::size_t at = 0; at < meshes.size(); ++at) {
        if (!isBelow(meshes[at])) continue;
        for (const MeshPart& part : meshes[at]->parts) {
            skins[at].push_back(SkinOf(part, meshes[at]->origin));
            AddTo(cover, skins[at].back(), cut);
        }
    }
    cover.Arrange();
    std::vector<std::vector<QLineF>> lines(meshes.size());
    for (std::size_t at = 0; at < meshes.size(); ++at)
        for (const Skin& skin : skins[at])
            Append(lines[at], cover, skin, cut);
    return lines;
}

}  // namespace workbench
