#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Workbench/mesher/Mesh.hpp"
#include "Workbench/view/Camera.hpp"
#include "Workbench/view/Section.hpp"

namespace workbench {

constexpr std::size_t mostPlanes = 6;
// A surface in a cutting plane is taken away by it; the face of a cut is not, though rounding may lift it.
constexpr double planeSlack = 1e-4;  // metres

struct ElementState {
    bool visible = true;
    bool selected = false;

    friend bool operator==(const ElementState&, const ElementState&) = default;
};

// How far a reader of the scene has come.
struct SceneMark {
    std::uint64_t generation = 0;
    std::size_t count = 0;
    std::uint64_t states = 0;
};

// What has changed since a mark, and the planes.
struct SceneChange {
    bool restarted = false;  // forget everything first
    std::vector<ElementMeshPtr> added;
    std::optional<std::vector<ElementState>> states;  // of all elements
    std::vector<Plane> planes;                        // normals of length 1, `mostPlanes` at most
};

struct Hit {
    std::uint64_t record = 0;
    Vec3 point;
};

// The elements of the 3D view with their state. May be used from several threads.
class Scene {
  public:
    void Add(std::span<const ElementMeshPtr> added);
    void Remove(const std::unordered_set<std::uint64_t>& records);
    void Clear();
    void ShowOnly(std::optional<std::unordered_set<std::uint64_t>> records);
    void Select(std::unordered_set<std::uint64_t> records);
    void Cut(const std::vector<Plane>& newPlanes);

    std::size_t Count() const;
    std::size_t VisibleCount() const;
    Box3 Bounds() const;
    std::optional<Box3> BoundsOf(std::uint64_t record) const;

    // What the ray meets first of the visible elements' surfaces, and of the faces where planes have cut
    // them.
    std::optional<Hit> Cast(const Ray& ray) const;

    // What has changed since `mark`, which is moved to now.
    SceneChange Changes(SceneMark& mark) const;

  private:
    bool IsShown(std::uint64_t record) const { return !shown || shown->contains(record); }
    // The face of a cut that the ray meets first, and how far away.
    using Meeting = std::pair<double, const ElementMesh*>;
    std::optional<Meeting> MeetCutFace(const Ray& ray) const;
    const ElementMesh* ElementCutAt(const Vec3& point, const Plane& plane) const;
    std::optional<Meeting> MeetSurface(const Ray& ray, double farthest) const;

    mutable std::mutex mutex;
    std::vector<ElementMeshPtr> elements;
    std::vector<ElementState> states;
    std::unordered_map<std::uint64_t, std::size_t> indexOf;  // by record
    std::optional<std::unordered_set<std::uint64_t>> shown;
    std::unordered_set<std::uint64_t> selected;
    std::vector<Plane> planes;
    std::uint64_t generation = 1;
    std::uint64_t stateVersion = 1;
};

}  // namespace workbench
