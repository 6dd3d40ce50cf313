#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace workbench {

// A point or direction of the model's space: metres, Z up.
struct Vec3 {
    double x = 0;
    double y = 0;
    double z = 0;

    friend bool operator==(const Vec3&, const Vec3&) = default;
    friend Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend Vec3 operator*(const Vec3& a, double s) { return {a.x * s, a.y * s, a.z * s}; }
};

// An axis-aligned box in metres. A new box is empty and grows with Add.
struct Box3 {
    Vec3 min{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
             std::numeric_limits<double>::infinity()};
    Vec3 max{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
             -std::numeric_limits<double>::infinity()};

    bool Empty() const { return !(min.x <= max.x && min.y <= max.y && min.z <= max.z); }
    Vec3 Center() const { return (min + max) * 0.5; }
    Vec3 Size() const { return max - min; }
    void Add(const Vec3& point);
    void Add(const Box3& box);
};

// Triangles of one colour.
struct MeshPart {
    std::array<float, 4> colour{};       // red, green, blue, alpha: 0 to 1
    std::vector<float> positions;        // x y z of each vertex, metres from the element's origin
    std::vector<std::uint32_t> indices;  // three for each triangle, all below the count of vertices
};

// The shape of one building element. Vertices are floats near a double origin of the element's own, so
// that a site far from the coordinate origin costs no precision.
struct ElementMesh {
    std::uint64_t record = 0;  // the element's record number in its file
    Vec3 origin;               // metres, world
    std::vector<MeshPart> parts;
    Box3 bounds;  // metres, world
};

// Meshes are shared between the project, the 3D view and the section; nobody changes one.
using ElementMeshPtr = std::shared_ptr<const ElementMesh>;

}  // namespace workbench
