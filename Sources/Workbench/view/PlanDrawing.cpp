#include "Workbench/view/PlanDrawing.hpp"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

namespace workbench {
namespace {

// Relative to the ring's own corner, since far from the coordinate origin nothing else is precise.
double AreaOf(const QPolygonF& ring) {
    double twice = 0;
    for (qsizetype at = 1; at + 1 < ring.size(); ++at) {
        const QPointF a = ring[at] - ring[0];
        const QPointF b = ring[at + 1] - ring[0];
        twice += a.x() * b.y() - a.y() * b.x();
    }
    return std::abs(twice) / 2;
}

double LengthOf(const QPolygonF& ring) {
    double length = 0;
    for (qsizetype at = 0; at < ring.size(); ++at) {
        const QPointF way = ring[(at + 1) % ring.size()] - ring[at];
        length += std::hypot(way.x(), way.y());
    }
    return length;
}

double DistanceTo(const QPolygonF& ring, QPointF point) {
    double least = std::numeric_limits<double>::infinity();
    for (qsizetype at = 0; at < ring.size(); ++at) {
        const QPointF start = ring[at];
        const QPointF way = ring[(at + 1) % ring.size()] - start;
        const double squared = QPointF::dotProduct(way, way);
        const double along = squared > 0 ? QPointF::dotProduct(point - start, way) / squared : 0;
        const QPointF apart = start + way * std::clamp(along, 0.0, 1.0) - point;
        least = std::min(least, std::hypot(apart.x(), apart.y()));
    }
    return least;
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
            least = std::min(least, DistanceTo(ring, point));
    return least;
}

PlanElement ElementOf(std::uint64_t record, std::vector<SectionPart> parts) {
    PlanElement element;
    element.record = record;
    element.parts = std::move(parts);
    double length = 0;
    for (const SectionPart& part : element.parts)
        for (const QPolygonF& ring : part.rings) {
            element.bounds |= ring.boundingRect();
            element.area += AreaOf(ring);
            length += LengthOf(ring);
        }
    element.thickness = 2 * element.area / length;
    return element;
}

}  // namespace

PlanDrawing DrawPlan(std::span<const ElementMeshPtr> meshes, double elevation) {
    const Plane plane{{0, 0, 1}, elevation + planCutHeight};
    const PlaneFrame frame = FrameOf(plane);
    PlanDrawing drawing;
    for (const ElementMeshPtr& mesh : meshes) {
        std::vector<SectionPart> parts = SectionOf(*mesh, plane, frame);
        if (parts.empty()) continue;
        drawing.elements.push_back(ElementOf(mesh->record, std::move(parts)));
        drawing.bounds |= drawing.elements.back().bounds;
    }
    std::ranges::stable_sort(drawing.elements, std::greater(), &PlanElement::area);
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
