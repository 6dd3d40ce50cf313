#include "Workbench/dwg/Entities.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <tuple>
#include <utility>

#include "Workbench/dwg/Text.hpp"

namespace workbench::dwg {
namespace {

constexpr int modelMode = 2;
constexpr int paperMode = 1;
constexpr int colourByLayer = 256;

struct Look {
    int colour = colourByLayer;
    Width width = Width::byLayer;
};

Object Begin(int type, const Place& place, unsigned mode, const Look& look) {
    Object object(type, place.handle);
    object.B(false);  // no picture of its own
    object.BB(mode);
    object.BL(0);
    object.B(!place.isFirst && !place.isLast);  // neighbours follow from the handle
    object.BS(look.colour);
    object.BD(1);
    object.BB(0);  // line type by layer
    object.BB(0);  // plot style by layer
    object.BS(0);  // visible
    object.RC(static_cast<unsigned>(look.width));
    return object;
}

void Finish(Object& object, const Place& place, std::uint32_t layer) {
    object.EndData();
    object.H(Link::hardOwner, 0);
    if (place.isFirst || place.isLast) {
        object.H(Link::softPointer, place.isFirst ? 0 : place.handle - 1);
        object.H(Link::softPointer, place.isLast ? 0 : place.handle + 1);
    }
    object.H(Link::hardPointer, layer);
}

std::size_t CountOf(const Fill& fill) {
    std::size_t count = 0;
    for (const auto& ring : fill.rings)
        count += ring.size();
    return count;
}

using Coordinate = double Point::*;

// What of a ring lies on one side of a straight line. Where it comes back along that line it has no area.
std::vector<Point> Half(const std::vector<Point>& ring, Coordinate axis, double border, bool above) {
    std::vector<Point> half;
    const auto isIn = [&](const Point& point) {
        return above ? point.*axis >= border : point.*axis <= border;
    };
    for (std::size_t at = 0; at < ring.size(); ++at) {
        const Point& a = ring[at];
        const Point& b = ring[(at + 1) % ring.size()];
        if (isIn(a)) half.push_back(a);
        if (isIn(a) == isIn(b)) continue;
        const double share = (border - a.*axis) / (b.*axis - a.*axis);
        Point crossing{a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)};
        crossing.*axis = border;
        half.push_back(crossing);
    }
    return half;
}

Fill Half(const Fill& fill, Coordinate axis, double border, bool above) {
    Fill half{fill.layer, {}, fill.colour};
    for (const auto& ring : fill.rings) {
        std::vector<Point> rest = Half(ring, axis, border, above);
        if (rest.size() >= 3) half.rings.push_back(std::move(rest));
    }
    return half;
}

// In the middle of the points.
double BorderOf(const Fill& fill, Coordinate axis) {
    std::vector<double> values;
    for (const auto& ring : fill.rings)
        for (const Point& point : ring)
            values.push_back(point.*axis);
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

constexpr std::size_t mostPolylinePoints = 1000;
constexpr std::size_t mostFillPoints = 1800;

// In pieces that are short enough, unless lines cross it so often that cutting gains nothing.
void AppendCut(std::vector<Fill>& pieces, Fill fill) {
    const std::size_t count = CountOf(fill);
    if (count <= mostFillPoints) return pieces.push_back(std::move(fill));
    std::array<Fill, 2> best;
    std::size_t least = count * 3 / 4 + 1;
    for (const Coordinate axis : {&Point::x, &Point::y}) {
        const double border = BorderOf(fill, axis);
        std::array<Fill, 2> halves{Half(fill, axis, border, false), Half(fill, axis, border, true)};
        const std::size_t most = std::max(CountOf(halves[0]), CountOf(halves[1]));
        if (most >= least) continue;
        least = most;
        best = std::move(halves);
    }
    if (best[0].rings.empty() && best[1].rings.empty()) return pieces.push_back(std::move(fill));
    for (Fill& half : best)
        if (!half.rings.empty()) AppendCut(pieces, std::move(half));
}

bool Holds(const std::vector<Point>& ring, const Point& point) {
    bool holds = false;
    for (std::size_t at = 0; at < ring.size(); ++at) {
        const Point& a = ring[at];
        const Point& b = ring[(at + 1) % ring.size()];
        if ((a.y > point.y) == (b.y > point.y)) continue;
        if (a.x + (point.y - a.y) / (b.y - a.y) * (b.x - a.x) > point.x) holds = !holds;
    }
    return holds;
}

struct BoundedRing {
    const std::vector<Point>* points;
    Extents bounds;
};

// For rings that do not cross. One of three points may lie on the other ring.
bool Holds(const BoundedRing& outer, const BoundedRing& inner) {
    const Extents &a = outer.bounds, &b = inner.bounds;
    if (b.min.x < a.min.x || b.min.y < a.min.y || b.max.x > a.max.x || b.max.y > a.max.y) return false;
    int held = 0;
    for (std::size_t third = 0; third < 3; ++third)
        held += Holds(*outer.points, (*inner.points)[third * inner.points->size() / 3]) ? 1 : 0;
    return held >= 2;
}

// Outer rings, each with all that lies inside it, from left to right.
std::vector<Fill> GroupsOf(const Fill& fill) {
    std::vector<BoundedRing> rings;
    for (const auto& ring : fill.rings) {
        if (ring.empty()) continue;
        BoundedRing& added = rings.emplace_back(BoundedRing{&ring, {}});
        for (const Point& point : ring)
            added.bounds.Add(point);
    }
    // What holds another one comes before it.
    std::ranges::sort(rings, {}, [](const BoundedRing& ring) {
        const Extents& box = ring.bounds;
        return std::tuple(box.min.x, -box.max.x, box.min.y, -box.max.y);
    });
    std::vector<Fill> groups;
    std::vector<BoundedRing> outers;
    for (const BoundedRing& ring : rings) {
        const auto outer =
            std::ranges::find_if(outers, [&](const BoundedRing& one) { return Holds(one, ring); });
        const auto at = static_cast<std::size_t>(outer - outers.begin());
        if (outer == outers.end()) {
            outers.push_back(ring);
            groups.push_back({fill.layer, {}, fill.colour});
        }
        groups[at].rings.push_back(*ring.points);
    }
    return groups;
}

}  // namespace

Object BlockBegin(std::uint32_t handle, const char* name) {
    Object object = Begin(4, {handle}, handle == modelBlock ? modelMode : paperMode, {});
    object.T(name);
    Finish(object, {handle}, layerZero);
    return object;
}

Object BlockEnd(std::uint32_t handle) {
    Object object = Begin(5, {handle}, handle == modelBlockEnd ? modelMode : paperMode, {});
    Finish(object, {handle}, layerZero);
    return object;
}

Object LineObject(const Place& place, std::uint32_t layer, const Line& line) {
    Object object = Begin(19, place, modelMode, {colourByLayer, line.width});
    object.B(true);  // in the plane
    object.RD(line.from.x);
    object.DD(line.to.x, line.from.x);
    object.RD(line.from.y);
    object.DD(line.to.y, line.from.y);
    object.Bs(1, 1);  // no thickness, seen from above
    Finish(object, place, layer);
    return object;
}

Object PolylineObject(const Place& place, std::uint32_t layer, const Polyline& polyline) {
    Object object = Begin(77, place, modelMode, {colourByLayer, polyline.width});
    object.BS(polyline.closed ? 512 : 0);
    object.BL(static_cast<std::uint32_t>(polyline.points.size()));
    object.RD2(polyline.points[0].x, polyline.points[0].y);
    for (std::size_t at = 1; at < polyline.points.size(); ++at) {
        object.DD(polyline.points[at].x, polyline.points[at - 1].x);
        object.DD(polyline.points[at].y, polyline.points[at - 1].y);
    }
    Finish(object, place, layer);
    return object;
}

Object FillObject(const Place& place, std::uint32_t layer, const Fill& fill) {
    constexpr std::uint32_t outerPolyline = 3;
    Object object = Begin(78, place, modelMode, {fill.colour, Width::byLayer});
    object.BD(0);
    object.BD3(0, 0, 1);
    object.T("SOLID");
    object.Bs(1, 0);  // solid, of no other entity
    object.BL(static_cast<std::uint32_t>(fill.rings.size()));
    for (const auto& ring : fill.rings) {
        object.BL(outerPolyline);
        object.Bs(0, 1);  // straight, closed
        object.BL(static_cast<std::uint32_t>(ring.size()));
        for (const Point& point : ring)
            object.RD2(point.x, point.y);
        object.BL(0);
    }
    object.BSs(0, 1);  // even-odd; a pattern known by its name
    object.BL(1);
    object.RD2(fill.rings[0][0].x, fill.rings[0][0].y);
    Finish(object, place, layer);
    return object;
}

Object TextObject(const Place& place, std::uint32_t layer, const Text& text) {
    Object object = Begin(1, place, modelMode, {});
    object.RC(0xFF);  // nothing but what follows
    object.RD2(text.start.x, text.start.y);
    object.Bs(1, 1);  // seen from above, no thickness
    object.RD(text.height);
    object.T(EncodeText(text.text));
    Finish(object, place, layer);
    object.H(Link::hardPointer, textStyle);
    return object;
}

std::vector<Polyline> Pieces(const Polyline& polyline) {
    if (polyline.points.size() <= mostPolylinePoints) return {polyline};
    std::vector<Point> points = polyline.points;
    if (polyline.closed) points.push_back(points[0]);
    std::vector<Polyline> pieces;
    for (std::size_t from = 0; from + 1 < points.size(); from += mostPolylinePoints - 1) {
        const std::size_t count = std::min(mostPolylinePoints, points.size() - from);
        const auto first = points.begin() + static_cast<std::ptrdiff_t>(from);
        pieces.push_back(
            {polyline.layer, {first, first + static_cast<std::ptrdiff_t>(count)}, false, polyline.width});
    }
    return pieces;
}

std::vector<Fill> Pieces(const Fill& fill) {
    if (CountOf(fill) <= mostFillPoints) return {fill};
    std::vector<Fill> pieces;
    for (Fill& group : GroupsOf(fill)) {
        if (CountOf(group) > mostFillPoints) {
            AppendCut(pieces, std::move(group));
        } else if (pieces.empty() || CountOf(pieces.back()) + CountOf(group) > mostFillPoints) {
            pieces.push_back(std::move(group));
        } else {
            std::ranges::move(group.rings, std::back_inserter(pieces.back().rings));
        }
    }
    return pieces;
}

void Extents::Add(const Point& point) {
    min = {std::min(min.x, point.x), std::min(min.y, point.y)};
    max = {std::max(max.x, point.x), std::max(max.y, point.y)};
}

Extents ExtentsOf(const Drawing& drawing) {
    Extents extents;
    for (const Polyline& polyline : drawing.polylines)
        for (const Point& point : polyline.points)
            extents.Add(point);
    for (const Fill& fill : drawing.fills)
        for (const auto& ring : fill.rings)
            for (const Point& point : ring)
                extents.Add(point);
    for (const Line& line : drawing.lines) {
        extents.Add(line.from);
        extents.Add(line.to);
    }
    for (const Text& text : drawing.texts) {
        extents.Add(text.start);
        extents.Add({text.start.x, text.start.y + text.height});
    }
    return extents;
}

}  // namespace workbench::dwg
