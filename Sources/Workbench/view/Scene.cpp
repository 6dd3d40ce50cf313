#include "Workbench/view/Scene.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace workbench {
namespace {

// A stretch of a ray.
struct Span {
    double from = 0;
    double to = 0;
};

// The distance at which the ray enters the box within the span.
std::optional<double> Enter(const Ray& ray, const Span& span, const Box3& box) {
    double from = span.from;
    double to = span.to;
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
    return Dot(ac, q) / determinant;
}

std::optional<double> Meet(const Ray& ray, const Span& span, const ElementMesh& mesh) {
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
            if (!distance || *distance <= span.from || *distance >= span.to) continue;
            if (!nearest || *distance < *nearest) nearest = distance;
        }
    }
    return nearest;
}

// How far along the ray it meets the plane; not a finite number when it runs along it.
double Along(const Ray& ray, const Plane& plane) {
    return (plane.distance - Dot(plane.normal, ray.start)) / Dot(plane.normal, ray.direction);
}

// What the planes leave of the ray.
Span Uncut(const Ray& ray, std::span<const Plane> planes, double farthest) {
    Span span{ray.from, farthest};
    for (const Plane& plane : planes) {
        const Plane tight{plane.normal, plane.distance - planeSlack};
        const double towards = Dot(plane.normal, ray.direction);
        if (towards > 0)
            span.to = std::min(span.to, Along(ray, tight));
        else if (towards < 0)
            span.from = std::max(span.from, Along(ray, tight));
        else if (Dot(plane.normal, ray.start) > tight.distance)
            span.to = span.from;
    }
    return span;
}

bool Holds(const Box3& box, const Vec3& point) {
    const auto within = [](double low, double value, double high) {
        return low - planeSlack <= value && value <= high + planeSlack;
    };
    return within(box.min.x, point.x, box.max.x) && within(box.min.y, point.y, box.max.y) &&
           within(box.min.z, point.z, box.max.z);
}

bool IsFilledAt(const SectionPart& part, QPointF point) {
    const auto around = std::ranges::count_if(
        part.rings, [&](const QPolygonF& ring) { return ring.containsPoint(point, Qt::OddEvenFill); });
    return around % 2 == 1;
}

std::optional<Plane> Normalised(const Plane& plane) {
    const double length = Length(plane.normal);
    if (!std::isnormal(length) || !std::isfinite(plane.distance / length)) return std::nullopt;
    return Plane{plane.normal * (1 / length), plane.distance / length};
}

}  // namespace

void Scene::Add(std::span<const ElementMeshPtr> added) {
    const std::lock_guard lock(mutex);
    for (const ElementMeshPtr& element : added) {
        const auto [entry, isNew] = indexOf.try_emplace(element->record, elements.size());
        if (isNew) {
            elements.push_back(element);
            states.push_back({IsShown(element->record), selected.contains(element->record)});
        } else {
            elements[entry->second] = element;
            ++generation;
        }
    }
    ++stateVersion;
}

void Scene::Remove(const std::unordered_set<std::uint64_t>& records) {
    const std::lock_guard lock(mutex);
    std::size_t kept = 0;
    for (std::size_t at = 0; at < elements.size(); ++at) {
        const std::uint64_t record = elements[at]->record;
        if (records.contains(record)) {
            indexOf.erase(record);
            continue;
        }
        indexOf[record] = kept;
        states[kept] = states[at];
        if (kept != at) elements[kept] = std::move(elements[at]);
        ++kept;
    }
    if (kept == elements.size()) return;
    elements.resize(kept);
    states.resize(kept);
    ++generation;
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

// The former set is freed when nobody waits for the lock any more: that takes a while for many records.
void Scene::ShowOnly(std::optional<std::unordered_set<std::uint64_t>> records) {
    const std::lock_guard lock(mutex);
    shown.swap(records);
    for (std::size_t at = 0; at < elements.size(); ++at)
        states[at].visible = IsShown(elements[at]->record);
    ++stateVersion;
}

void Scene::Select(std::unordered_set<std::uint64_t> records) {
    const std::lock_guard lock(mutex);
    for (const std::uint64_t record : selected)
        if (const auto found = indexOf.find(record); found != indexOf.end())
            states[found->second].selected = false;
    selected.swap(records);
    for (const std::uint64_t record : selected)
        if (const auto found = indexOf.find(record); found != indexOf.end())
            states[found->second].selected = true;
    ++stateVersion;
}

void Scene::Cut(const std::vector<Plane>& newPlanes) {
    const std::lock_guard lock(mutex);
    planes.clear();
    for (const Plane& plane : newPlanes)
        if (const auto usable = Normalised(plane); usable && planes.size() < mostPlanes)
            planes.push_back(*usable);
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

const ElementMesh* Scene::ElementCutAt(const Vec3& point, const Plane& plane) const {
    const PlaneFrame frame = FrameOf(plane);
    for (std::size_t at = elements.size(); at-- > 0;) {
        const ElementMesh& mesh = *elements[at];
        if (!states[at].visible || !Holds(mesh.bounds, point)) continue;
        for (const SectionPart& part : SectionOf(mesh, plane, frame))
            if (IsFilledAt(part, frame.Project(point))) return &mesh;
    }
    return nullptr;
}

std::optional<Scene::Meeting> Scene::MeetCutFace(const Ray& ray) const {
    std::vector<std::pair<double, std::size_t>> meetings;
    for (std::size_t at = 0; at < planes.size(); ++at)
        if (const double distance = Along(ray, planes[at]); std::isfinite(distance) && distance > ray.from)
            meetings.emplace_back(distance, at);
    std::ranges::sort(meetings);
    for (const auto& [distance, at] : meetings) {
        const Vec3 point = ray.start + ray.direction * distance;
        const bool cutAway = std::ranges::any_of(planes, [&](const Plane& other) {
            return Dot(other.normal, point) > other.distance + planeSlack;
        });
        if (cutAway) continue;
        if (const ElementMesh* mesh = ElementCutAt(point, planes[at])) return Meeting{distance, mesh};
    }
    return std::nullopt;
}

std::optional<Scene::Meeting> Scene::MeetSurface(const Ray& ray, double farthest) const {
    Span span = Uncut(ray, planes, farthest);
    std::vector<Meeting> candidates;
    for (std::size_t at = 0; at < elements.size(); ++at) {
        if (!states[at].visible) continue;
        if (const auto distance = Enter(ray, span, elements[at]->bounds))
            candidates.emplace_back(*distance, elements[at].get());
    }
    std::ranges::sort(candidates);
    std::optional<Meeting> nearest;
    for (const auto& [entry, mesh] : candidates) {
        if (entry > span.to) break;
        const auto distance = Meet(ray, span, *mesh);
        if (!distance) continue;
        nearest = {*distance, mesh};
        span.to = *distance;
    }
    return nearest;
}

std::optional<Hit> Scene::Cast(const Ray& ray) const {
    const std::lock_guard lock(mutex);
    const auto cutFace = MeetCutFace(ray);
    const auto surface = MeetSurface(ray, cutFace ? cutFace->first : std::numeric_limits<double>::infinity());
    const auto& nearest = surface ? surface : cutFace;
    if (!nearest) return std::nullopt;
    return Hit{nearest->second->record, ray.start + ray.direction * nearest->first};
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
    change.planes = planes;
    mark = {generation, elements.size(), stateVersion};
    return change;
}

}  // namespace workbench
