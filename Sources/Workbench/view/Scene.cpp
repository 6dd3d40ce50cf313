#include "Workbench/view/Scene.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace workbench {
namespace {

// The distance at which the ray enters the box, 0 from inside.
std::optional<double> Enter(const Ray& ray, const Box3& box) {
    double from = 0;
    double to = std::numeric_limits<double>::infinity();
    const auto slab = [&](double start, double direction, double low, double high) {
        if (direction == 0) return low <= start && start <= high;
        double in = (low - start) / direction;
        double out = (high - start) / direction;
        if (in > out) std::swap(in, out);
        from = std::max(from, in);
        to = std::min(to, out);
        return from <= to;
    };
    if (!slab(ray.start.x, ray.direction.x, box.min.x, box.max.x) ||
        !slab(ray.start.y, ray.direction.y, box.min.y, box.max.y) ||
        !slab(ray.start.z, ray.direction.z, box.min.z, box.max.z))
        return std::nullopt;
    return from;
}

// Möller and Trumbore's test, from both sides.
std::optional<double> Meet(const Ray& ray, const Vec3& a, const Vec3& b, const Vec3& c) {
    const Vec3 ab = b - a;
    const Vec3 ac = c - a;
    const Vec3 p = Cross(ray.direction, ac);
    const double determinant = Dot(ab, p);
    if (determinant == 0) return std::nullopt;
    const Vec3 s = ray.start - a;
    const double u = Dot(s, p) / determinant;
    if (u < 0 || u > 1) return std::nullopt;
    const Vec3 q = Cross(s, ab);
    const double v = Dot(ray.direction, q) / determinant;
    if (v < 0 || u + v > 1) return std::nullopt;
    const double distance = Dot(ac, q) / determinant;
    if (distance <= 0) return std::nullopt;
    return distance;
}

std::optional<double> Meet(const Ray& ray, const ElementMesh& mesh) {
    const Ray local{ray.start - mesh.origin, ray.direction};
    std::optional<double> nearest;
    for (const MeshPart& part : mesh.parts) {
        const auto point = [&](std::uint32_t index) {
            const float* p = &part.positions[3 * std::size_t{index}];
            return Vec3{p[0], p[1], p[2]};
        };
        for (std::size_t at = 0; at + 2 < part.indices.size(); at += 3) {
            const auto distance = Meet(local, point(part.indices[at]), point(part.indices[at + 1]),
                                       point(part.indices[at + 2]));
            if (distance && (!nearest || *distance < *nearest)) nearest = distance;
        }
    }
    return nearest;
}

}  // namespace

ElementState Scene::StateOf(std::uint64_t record) const {
    return {!shown || shown->contains(record), selected.contains(record)};
}

void Scene::UpdateStates() {
    for (std::size_t at = 0; at < elements.size(); ++at)
        states[at] = StateOf(elements[at]->record);
    ++stateVersion;
}

void Scene::Add(std::span<const ElementMeshPtr> added) {
    const std::lock_guard lock(mutex);
    for (const ElementMeshPtr& element : added) {
        const auto [entry, isNew] = indexOf.try_emplace(element->record, elements.size());
        if (isNew) {
            elements.push_back(element);
            states.push_back(StateOf(element->record));
        } else {
            elements[entry->second] = element;
            ++generation;
        }
    }
    ++stateVersion;
}

void Scene::Clear() {
    const std::lock_guard lock(mutex);
    elements.clear();
    states.clear();
    indexOf.clear();
    shown.reset();
    selected.clear();
    ++generation;
    ++stateVersion;
}

void Scene::ShowOnly(std::optional<std::unordered_set<std::uint64_t>> records) {
    const std::lock_guard lock(mutex);
    shown = std::move(records);
    UpdateStates();
}

void Scene::Select(std::unordered_set<std::uint64_t> records) {
    const std::lock_guard lock(mutex);
    selected = std::move(records);
    UpdateStates();
}

std::size_t Scene::Count() const {
    const std::lock_guard lock(mutex);
    return elements.size();
}

std::size_t Scene::VisibleCount() const {
    const std::lock_guard lock(mutex);
    return static_cast<std::size_t>(
        std::count_if(states.begin(), states.end(), [](ElementState state) { return state.visible; }));
}

Box3 Scene::Bounds() const {
    const std::lock_guard lock(mutex);
    Box3 bounds;
    for (std::size_t at = 0; at < elements.size(); ++at)
        if (states[at].visible) bounds.Add(elements[at]->bounds);
    return bounds;
}

std::optional<Box3> Scene::BoundsOf(std::uint64_t record) const {
    const std::lock_guard lock(mutex);
    const auto found = indexOf.find(record);
    if (found == indexOf.end()) return std::nullopt;
    return elements[found->second]->bounds;
}

std::optional<Hit> Scene::Cast(const Ray& ray) const {
    const std::lock_guard lock(mutex);
    std::vector<std::pair<double, const ElementMesh*>> candidates;
    for (std::size_t at = 0; at < elements.size(); ++at) {
        if (!states[at].visible) continue;
        if (const auto distance = Enter(ray, elements[at]->bounds))
            candidates.emplace_back(*distance, elements[at].get());
    }
    std::sort(candidates.begin(), candidates.end());
    const ElementMesh* nearest = nullptr;
    double nearestDistance = std::numeric_limits<double>::infinity();
    for (const auto& [entry, mesh] : candidates) {
        if (entry > nearestDistance) break;
        const auto distance = Meet(ray, *mesh);
        if (!distance || *distance >= nearestDistance) continue;
        nearest = mesh;
        nearestDistance = *distance;
    }
    if (nearest == nullptr) return std::nullopt;
    return Hit{nearest->record, ray.start + ray.direction * nearestDistance};
}

SceneChange Scene::Changes(SceneMark& mark) const {
    const std::lock_guard lock(mutex);
    SceneChange change;
    if (mark.generation != generation) {
        change.restarted = true;
        mark.count = 0;
    }
    change.added.assign(elements.begin() + static_cast<std::ptrdiff_t>(mark.count), elements.end());
    if (change.restarted || mark.states != stateVersion) change.states = states;
    mark = {generation, elements.size(), stateVersion};
    return change;
}

}  // namespace workbench
