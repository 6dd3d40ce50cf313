#include "Workbench/view/PlanDrawing.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

#include "Workbench/project/Project.hpp"
#include "Workbench/view/Camera.hpp"
#include "Workbench/view/CutFace.hpp"
#include "Workbench/view/PlanEdges.hpp"

namespace workbench {
namespace {

double LengthOf(const QPolygonF& ring) {
    double length = 0;
    for (qsizetype at = 0; at < ring.size(); ++at) {
        const QPointF way = ring[(at + 1) % ring.size()] - ring[at];
        length += std::hypot(way.x(), way.y());
    }
    return length;
}

double DistanceTo(const QLineF& line, QPointF point) {
    const QPointF way = line.p2() - line.p1();
    const double squared = QPointF::dotProduct(way, way);
    const double along = squared > 0 ? QPointF::dotProduct(point - line.p1(), way) / squared : 0;
    const QPointF apart = line.p1() + way * std::clamp(along, 0.0, 1.0) - point;
    return std::hypot(apart.x(), apart.y());
}

bool Holds(const PlanElement& element, QPointF point) {
    return std::ranges::any_of(element.parts, [&](const SectionPart& part) {
        return std::ranges::count_if(
                   part.rings,
                   [&](const QPolygonF& ring) { return ring.containsPoint(point, Qt::OddEvenFill); }) %
                   2 ==
               1;
    });
}

double DistanceTo(const PlanElement& element, QPointF point) {
    double least = std::numeric_limits<double>::infinity();
    for (const SectionPart& part : element.parts)
        for (const QPolygonF& ring : part.rings)
            for (qsizetype at = 0; at < ring.size(); ++at)
                least = std::min(least, DistanceTo({ring[at], ring[(at + 1) % ring.size()]}, point));
    for (const QLineF& edge : element.edges)
        least = std::min(least, DistanceTo(edge, point));
    return least;
}

// The triangles of what a cut leaves of an element.
using Caps = std::vector<std::array<Vec3, 3>>;

Caps CapsOf(const std::vector<SectionPart>& parts, const Plane& plane, const PlaneFrame& frame,
            const Vec3& origin) {
    Caps caps;
    for (const SectionPart& part : parts) {
        const Surface face = CutFaceOf(part, plane, frame, origin);
        const auto corner = [&](std::size_t at) {
            const auto& place = face.vertices[face.triangles[at]].position;
            return origin + Vec3{place[0], place[1], place[2]};
        };
        for (std::size_t at = 0; at + 2 < face.triangles.size(); at += 3)
            caps.push_back({corner(at), corner(at + 1), corner(at + 2)});
    }
    return caps;
}

double AreaOf(const Caps& caps) {
    double area = 0;
    for (const auto& [a, b, c] : caps)
        area += Length(Cross(b - a, c - a)) / 2;
    return area;
}

double LengthOf(const std::vector<SectionPart>& parts) {
    double length = 0;
    for (const SectionPart& part : parts)
        for (const QPolygonF& ring : part.rings)
            length += LengthOf(ring);
    return length;
}

QRectF BoundsOf(const PlanElement& element) {
    Box3 box;
    for (const SectionPart& part : element.parts)
        for (const QPolygonF& ring : part.rings)
            for (const QPointF& point : ring)
                box.Add(Vec3{point.x(), point.y(), 0});
    for (const QLineF& edge : element.edges)
        for (const QPointF& point : {edge.p1(), edge.p2()})
            box.Add(Vec3{point.x(), point.y(), 0});
    return {QPointF(box.min.x, box.min.y), QPointF(box.max.x, box.max.y)};
}

}  // namespace

PlanDrawing DrawPlan(std::span<const ElementMeshPtr> meshes, double floor) {
    const Plane plane{{0, 0, 1}, floor + planCutHeight};
    const PlaneFrame frame = FrameOf(plane);
    std::vector<PlanElement> elements;
    Caps caps;
    for (const ElementMeshPtr& mesh : meshes) {
        PlanElement& element = elements.emplace_back();
        element.record = mesh->record;
        element.parts = SectionOf(*mesh, plane, frame);
        if (element.parts.empty()) continue;
        const Caps own = CapsOf(element.parts, plane, frame, mesh->origin);
        element.area = AreaOf(own);
        element.thickness = 2 * element.area / LengthOf(element.parts);
        caps.insert(caps.end(), own.begin(), own.end());
    }
    std::vector<std::vector<QLineF>> edges = EdgesBelow(meshes, plane.distance, caps);
    PlanDrawing drawing;
    for (std::size_t at = 0; at < elements.size(); ++at) {
        PlanElement& element = elements[at];
        element.edges = std::move(edges[at]);
        if (element.parts.empty() && element.edges.empty()) continue;
        element.bounds = BoundsOf(element);
        drawing.bounds |= element.bounds;
        drawing.elements.push_back(std::move(element));
    }
    std::ranges::stable_sort(drawing.elements, std::greater(), &PlanElement::area);
    return drawing;
}

PlanDrawing DrawPlan(const Project& project, std::size_t storey, std::span<const ElementMeshPtr> meshes) {
    PlanDrawing drawing = DrawPlan(meshes, project.Storeys().at(storey).floor);
    for (PlanElement& shown : drawing.elements)
        if (const Element* element = project.FindByRecord(shown.record)) shown.ifcClass = element->ifcClass;
    return drawing;
}

QRectF BoundsOf(const PlanDrawing& drawing, const std::unordered_set<std::uint64_t>& records) {
    QRectF bounds;
    for (const PlanElement& element : drawing.elements)
        if (records.contains(element.record)) bounds |= element.bounds;
    return bounds;
}

std::optional<std::uint64_t> ElementAt(const PlanDrawing& drawing, QPointF point, double reach) {
    const PlanElement* nearest = nullptr;
    double least = reach;
    for (auto element = drawing.elements.rbegin(); element != drawing.elements.rend(); ++element) {
        if (!element->bounds.adjusted(-reach, -reach, reach, reach).contains(point)) continue;
        if (Holds(*element, point)) return element->record;
        const double distance = DistanceTo(*element, point);
        if (distance > least || (nearest && distance == least)) continue;
        nearest = &*element;
        least = distance;
    }
    if (!nearest) return std::nullopt;
    return nearest->record;
}

}  // namespace workbench
