#include "Workbench/view/PlanCover.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace workbench {
namespace {

// Metres.
constexpr double least = 2e-3;   // by which something lies above, and the length of a piece
constexpr double border = 5e-4;  // around a triangle, where it still hides
constexpr double onSurface = 4e-3;
constexpr std::uint32_t leaf = 6;  // triangles that are not split any more

double Cross(QPointF a, QPointF b) {
    return a.x() * b.y() - a.y() * b.x();
}

QPointF Flat(const Vec3& point) {
    return {point.x, point.y};
}

}  // namespace

double PlanCover::Triangle::HeightAt(QPointF point) const {
    return level + QPointF::dotProduct(slope, point - corners[0]);
}

void PlanCover::Bounds::Add(const Bounds& other) {
    min = {std::min(min.x(), other.min.x()), std::min(min.y(), other.min.y())};
    max = {std::max(max.x(), other.max.x()), std::max(max.y(), other.max.y())};
    top = std::max(top, other.top);
}

PlanCover::Bounds PlanCover::BoundsOf(const Triangle& triangle) const {
    Bounds bounds;
    for (const QPointF& corner : triangle.corners)
        bounds.Add({corner, corner, triangle.HeightAt(corner)});
    return bounds;
}

void PlanCover::Add(const Vec3& a, const Vec3& b, const Vec3& c) {
    Triangle triangle{{Flat(a), Flat(b), Flat(c)}, a.z, {}};
    const QPointF right = triangle.corners[1] - triangle.corners[0];
    const QPointF left = triangle.corners[2] - triangle.corners[0];
    const double twice = Cross(right, left);
    if (!(twice > 1e-9)) return;
    const double rise = b.z - a.z;
    const double otherRise = c.z - a.z;
    triangle.slope = {(rise * left.y() - otherRise * right.y()) / twice,
                      (otherRise * right.x() - rise * left.x()) / twice};
    triangles.push_back(triangle);
}

void PlanCover::Arrange() {
    branches.clear();
    if (!triangles.empty()) Split(0, static_cast<std::uint32_t>(triangles.size()));
}

std::uint32_t PlanCover::Split(std::uint32_t first, std::uint32_t count) {
    const auto number = static_cast<std::uint32_t>(branches.size());
    branches.push_back({{}, first, count, 0});
    Bounds bounds;
    for (std::uint32_t at = first; at < first + count; ++at)
        bounds.Add(BoundsOf(triangles[at]));
    branches[number].bounds = bounds;
    if (count <= leaf) return number;

    const QPointF size = bounds.max - bounds.min;
    const bool across = size.x() > size.y();
    const auto middle = [across](const Triangle& triangle) {
        const QPointF sum = triangle.corners[0] + triangle.corners[1] + triangle.corners[2];
        return across ? sum.x() : sum.y();
    };
    const auto begin = triangles.begin() + first;
    std::nth_element(begin, begin + count / 2, begin + count,
                     [&](const Triangle& a, const Triangle& b) { return middle(a) < middle(b); });
    Split(first, count / 2);
    const std::uint32_t second = Split(first + count / 2, count - count / 2);
    branches[number].second = second;
    return number;
}

template <typename Call>
void PlanCover::Above(const Vec3& from, const Vec3& to, Call call) const {
    if (branches.empty()) return;
    const QPointF min(std::min(from.x, to.x) - border, std::min(from.y, to.y) - border);
    const QPointF max(std::max(from.x, to.x) + border, std::max(from.y, to.y) + border);
    const double lowest = std::min(from.z, to.z);
    const QPointF way = Flat(to) - Flat(from);
    const double slack = border * (std::abs(way.x()) + std::abs(way.y()));
    const auto isMissed = [&](const Bounds& bounds) {
        if (bounds.top <= lowest || bounds.max.x() < min.x() || bounds.min.x() > max.x() ||
            bounds.max.y() < min.y() || bounds.min.y() > max.y())
            return true;
        const QPointF half = (bounds.max - bounds.min) / 2;
        const double aside = Cross(way, (bounds.min + bounds.max) / 2 - Flat(from));
        return std::abs(aside) > std::abs(way.x()) * half.y() + std::abs(way.y()) * half.x() + slack;
    };
    std::array<std::uint32_t, 64> waiting;  // each level halves the triangles
    std::size_t count = 0;
    waiting[count++] = 0;
    while (count > 0) {
        const std::uint32_t number = waiting[--count];
        const Branch& branch = branches[number];
        if (isMissed(branch.bounds)) continue;
        if (branch.second != 0) {
            waiting[count++] = branch.second;
            waiting[count++] = number + 1;
            continue;
        }
        for (std::uint32_t at = branch.first; at < branch.first + branch.count; ++at)
            call(triangles[at]);
    }
}

// Inside of each side, and below: four conditions that are linear along the line.
PlanCover::Span PlanCover::Hidden(const Triangle& triangle, const Vec3& from, const Vec3& way) {
    Span hidden;
    const auto keep = [&hidden](double atBegin, double change) {  // where atBegin + t * change >= 0
        if (change > 0)
            hidden.begin = std::max(hidden.begin, -atBegin / change);
        else if (change < 0)
            hidden.end = std::min(hidden.end, -atBegin / change);
        else if (atBegin < 0)
            hidden.end = -1;
    };
    for (int at = 0; at < 3; ++at) {
        const QPointF side = triangle.corners[(at + 1) % 3] - triangle.corners[at];
        const double length = std::hypot(side.x(), side.y());
        keep(Cross(side, Flat(from) - triangle.corners[at]) / length + border,
             Cross(side, Flat(way)) / length);
    }
    keep(triangle.HeightAt(Flat(from)) - from.z - least,
         QPointF::dotProduct(triangle.slope, Flat(way)) - way.z);
    return hidden;
}

std::vector<QLineF> PlanCover::Visible(const Vec3& from, const Vec3& to) const {
    const Vec3 way = to - from;
    const double length = std::hypot(way.x, way.y);
    std::vector<QLineF> pieces;
    if (length < least) return pieces;
    std::vector<Span> hidden;
    Above(from, to, [&](const Triangle& triangle) {
        const Span span = Hidden(triangle, from, way);
        if (span.begin < span.end) hidden.push_back(span);
    });
    std::ranges::sort(hidden, {}, &Span::begin);
    hidden.push_back({1, 1});
    double seen = 0;
    for (const Span& span : hidden) {
        if ((span.begin - seen) * length >= least)
            pieces.emplace_back(Flat(from + way * seen), Flat(from + way * span.begin));
        seen = std::max(seen, span.end);
    }
    return pieces;
}

bool PlanCover::IsOnSurface(const Vec3& point) const {
    bool isOn = false;
    const Vec3 below = point - Vec3{0, 0, onSurface};
    Above(below, below, [&](const Triangle& triangle) {
        bool isInside = std::abs(triangle.HeightAt(Flat(point)) - point.z) <= onSurface;
        for (int at = 0; at < 3; ++at)
            isInside = isInside && Cross(triangle.corners[(at + 1) % 3] - triangle.corners[at],
                                         Flat(point) - triangle.corners[at]) >= 0;
        isOn = isOn || isInside;
    });
    return isOn;
}

}  // namespace workbench
