#include "Workbench/view/SectionRings.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace workbench {
namespace {

constexpr double straight = 1e-5;  // metres that a point may lie beside the line between its neighbours

using Node = std::uint32_t;
constexpr Node none = std::numeric_limits<Node>::max();

// Gives points that are one the same number.
class Welder {
  public:
    explicit Welder(std::size_t mostPoints) : table(std::bit_ceil(2 * mostPoints + 1), none) {
        nodes.reserve(mostPoints);
        cells.reserve(mostPoints);
    }

    Node NodeAt(QPointF point) {
        const QPointF scaled = point / (2 * weldDistance);
        const Cell cell{Whole(scaled.x()), Whole(scaled.y())};
        // A neighbour that is near enough lies in this cell or in those at the nearer sides.
        const std::int64_t sideX = scaled.x() - static_cast<double>(cell.x) < 0.5 ? -1 : 1;
        const std::int64_t sideY = scaled.y() - static_cast<double>(cell.y) < 0.5 ? -1 : 1;
        for (const Cell& one : {cell, Cell{cell.x + sideX, cell.y}, Cell{cell.x, cell.y + sideY},
                                Cell{cell.x + sideX, cell.y + sideY}}) {
            const Node found = table[SlotOf(one, point)];
            if (found != none) return found;
        }
        const auto added = static_cast<Node>(nodes.size());
        table[FreeSlot(cell)] = added;
        nodes.push_back(point);
        cells.push_back(cell);
        return added;
    }

    const std::vector<QPointF>& Nodes() const { return nodes; }

  private:
    struct Cell {
        std::int64_t x = 0;
        std::int64_t y = 0;
        friend bool operator==(const Cell&, const Cell&) = default;
    };

    static std::int64_t Whole(double value) {
        constexpr double most = 1e18;
        return static_cast<std::int64_t>(std::floor(std::clamp(value, -most, most)));
    }

    std::size_t FirstSlot(const Cell& cell) const {
        const auto x = static_cast<std::uint64_t>(cell.x);
        const auto y = static_cast<std::uint64_t>(cell.y);
        const std::uint64_t hash = (x * 0x9E3779B97F4A7C15 ^ std::rotl(y, 32)) * 0xBF58476D1CE4E5B9;
        return (hash ^ (hash >> 32)) & (table.size() - 1);
    }
    std::size_t Next(std::size_t slot) const { return (slot + 1) & (table.size() - 1); }

    // Of a node in the cell that is one with the point; an empty one when there is none.
    std::size_t SlotOf(const Cell& cell, QPointF point) const {
        std::size_t slot = FirstSlot(cell);
        for (; table[slot] != none; slot = Next(slot)) {
            if (cells[table[slot]] != cell) continue;
            const QPointF apart = nodes[table[slot]] - point;
            if (QPointF::dotProduct(apart, apart) <= weldDistance * weldDistance) break;
        }
        return slot;
    }
    std::size_t FreeSlot(const Cell& cell) const {
        std::size_t slot = FirstSlot(cell);
        while (table[slot] != none)
            slot = Next(slot);
        return slot;
    }

    std::vector<Node> table;
    std::vector<QPointF> nodes;
    std::vector<Cell> cells;
};

using Segment = std::pair<Node, Node>;  // the lower number first

// Lines that are there twice bound nothing under the even-odd rule: faces where two bodies touch.
void DropPairs(std::vector<Segment>& segments) {
    std::ranges::sort(segments);
    std::size_t kept = 0;
    for (std::size_t at = 0; at < segments.size();) {
        std::size_t behind = at + 1;
        while (behind < segments.size() && segments[behind] == segments[at])
            ++behind;
        if ((behind - at) % 2 == 1) segments[kept++] = segments[at];
        at = behind;
    }
    segments.resize(kept);
}

// Walks along segments until all are used up. Under the even-odd rule it does not matter which way a walk
// takes where more than two of them meet.
class Tracer {
  public:
    Tracer(const std::vector<Segment>& segments, std::size_t nodeCount)
        : first(nodeCount + 1), ends(2 * segments.size()), next(nodeCount), placeOnPath(nodeCount, none) {
        for (const auto& [a, b] : segments) {
            ++first[a + 1];
            ++first[b + 1];
        }
        for (std::size_t node = 0; node < nodeCount; ++node) {
            first[node + 1] += first[node];
            next[node] = first[node];
        }
        for (std::size_t at = 0; at < segments.size(); ++at) {
            const auto& [a, b] = segments[at];
            ends[next[a]++] = {b, static_cast<std::uint32_t>(at)};
            ends[next[b]++] = {a, static_cast<std::uint32_t>(at)};
        }
        std::copy_n(first.begin(), nodeCount, next.begin());
        used.resize(segments.size());
    }

    // Open chains are among them, as if closed.
    std::vector<std::vector<Node>> Rings() {
        const auto nodeCount = static_cast<Node>(next.size());
        for (Node node = 0; node < nodeCount; ++node)
            if ((first[node + 1] - first[node]) % 2 == 1) Walk(node);
        for (Node node = 0; node < nodeCount; ++node)
            Walk(node);
        return std::move(rings);
    }

  private:
    struct End {
        Node node = 0;
        std::uint32_t segment = 0;
    };

    Node Step(Node from) {
        for (std::uint32_t& at = next[from]; at < first[from + 1]; ++at) {
            const End& end = ends[at];
            if (used[end.segment]) continue;
            used[end.segment] = true;
            return end.node;
        }
        return none;
    }

    void Walk(Node start) {
        std::vector<Node> path;
        for (Node node = start; node != none; node = Step(node)) {
            if (placeOnPath[node] == none) {
                placeOnPath[node] = static_cast<std::uint32_t>(path.size());
                path.push_back(node);
                continue;
            }
            const auto loop = path.begin() + placeOnPath[node];
            rings.emplace_back(loop, path.end());
            std::for_each(loop + 1, path.end(), [&](Node left) { placeOnPath[left] = none; });
            path.erase(loop + 1, path.end());
        }
        for (const Node node : path)
            placeOnPath[node] = none;
        if (path.size() > 1) rings.push_back(std::move(path));
    }

    std::vector<std::uint32_t> first;  // of a node's ends; one more than there are nodes
    std::vector<End> ends;
    std::vector<std::uint32_t> next;  // end of a node to try
    std::vector<std::uint32_t> placeOnPath;
    std::vector<bool> used;
    std::vector<std::vector<Node>> rings;
};

// How far a point lies beside the line between its neighbours, to the left positive.
double Aside(QPointF before, QPointF point, QPointF after) {
    const QPointF way = after - before;
    const QPointF there = point - before;
    const double length = std::hypot(way.x(), way.y());
    if (length < weldDistance) return 0;  // there and back
    return (way.x() * there.y() - way.y() * there.x()) / length;
}

// A point of a ring that stays, and how far those dropped before it lay beside the line in sum: noise
// cancels out, but a curve of many tiny steps adds up and so keeps its shape.
struct Corner {
    QPointF point;
    double dropped = 0;
};

void DropCollinear(QPolygonF& ring) {
    std::vector<Corner> kept;
    kept.reserve(static_cast<std::size_t>(ring.size()));
    // Whether the middle one may go; the last one remembers it.
    const auto drops = [](const Corner& before, const Corner& middle, Corner& after) {
        const double sum = middle.dropped + after.dropped + Aside(before.point, middle.point, after.point);
        if (std::abs(sum) > straight) return false;
        after.dropped = sum;
        return true;
    };
    for (const QPointF& point : std::as_const(ring)) {
        Corner corner{point};
        while (kept.size() >= 2 && drops(kept[kept.size() - 2], kept.back(), corner))
            kept.pop_back();
        kept.push_back(corner);
    }
    std::size_t from = 0;
    while (kept.size() - from >= 3) {
        if (drops(kept[kept.size() - 2], kept.back(), kept[from]))
            kept.pop_back();
        else if (drops(kept.back(), kept[from], kept[from + 1]))
            ++from;
        else
            break;
    }
    ring.clear();
    for (; from < kept.size(); ++from)
        ring.push_back(kept[from].point);
}

}  // namespace

std::vector<QPolygonF> RingsOf(std::span<const QPointF> segmentEnds) {
    Welder welder(segmentEnds.size());
    std::vector<Segment> segments;
    for (std::size_t at = 0; at + 1 < segmentEnds.size(); at += 2) {
        const Node a = welder.NodeAt(segmentEnds[at]);
        const Node b = welder.NodeAt(segmentEnds[at + 1]);
        if (a != b) segments.emplace_back(std::min(a, b), std::max(a, b));
    }
    DropPairs(segments);

    std::vector<QPolygonF> rings;
    for (const std::vector<Node>& nodes : Tracer(segments, welder.Nodes().size()).Rings()) {
        QPolygonF ring;
        ring.reserve(static_cast<qsizetype>(nodes.size()));
        for (const Node node : nodes)
            ring.push_back(welder.Nodes()[node]);
        DropCollinear(ring);
        if (ring.size() >= 3) rings.push_back(std::move(ring));
    }
    return rings;
}

}  // namespace workbench
