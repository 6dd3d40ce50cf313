#include "Workbench/view/PlanDrawing.hpp"

#include <gmock/gmock.h>

#include <map>

#include "Workbench/view/Boxes.hpp"

namespace workbench {
namespace {

using testing::ElementsAre;

constexpr std::array<float, 4> grey{0.5F, 0.5F, 0.5F, 1};

// A room of 6 by 4 metres with walls of 0.3, a table in it, and things that the cut misses.
std::vector<ElementMeshPtr> Room(const Vec3& origin) {
    const auto box = [&](std::uint64_t record, const Vec3& from, const Vec3& to) {
        return MakeBox(record, origin + from, origin + to, grey);
    };
    return {box(7, {2, 1, 0}, {3, 2, 1.2}),             // table
            box(1, {-0.3, -0.3, 0}, {6.3, 0, 3}),       // walls
            box(2, {-0.3, 4, 0}, {6.3, 4.3, 3}),        //
            box(3, {-0.3, 0, 0}, {0, 4, 3}),            //
            box(4, {6, 0, 0}, {6.3, 4, 3}),             //
            box(5, {-1, -1, -0.3}, {7, 5, 0}),          // floor
            box(6, {4, 1, 0}, {5, 2, 0.4}),             // stool
            box(8, {1.9, 0.9, 0.7}, {3.1, 2.1, 1.1})};  // its top, overhanging
}

TEST(PlanDrawing, HoldsWhatACutAboveTheFloorMeets) {
    for (const Vec3& origin : {Vec3{}, Vec3{3.5e6, 5.6e6, 112}}) {
        const PlanDrawing drawing = DrawPlan(Room(origin), origin.z);
        std::vector<std::uint64_t> records;
        for (const PlanElement& element : drawing.elements)
            records.push_back(element.record);
        EXPECT_THAT(records, ElementsAre(1, 2, 8, 3, 4, 7, 5, 6));  // the largest first
        EXPECT_NEAR(drawing.elements[0].area, 6.6 * 0.3, 1e-6);
        EXPECT_NEAR(drawing.elements[5].thickness, 0.5, 1e-6);
        EXPECT_NEAR(drawing.bounds.left(), origin.x - 1, 1e-6);
        EXPECT_NEAR(drawing.bounds.bottom(), origin.y + 5, 1e-6);
        EXPECT_NEAR(BoundsOf(drawing, {3, 7, 99}).width(), 3.3, 1e-6);
    }
    const PlanDrawing above = DrawPlan(Room({}), -2);
    EXPECT_TRUE(above.elements.empty());
    EXPECT_TRUE(above.bounds.isNull());
    EXPECT_FALSE(ElementAt(above, {0, 0}, 1));
}

TEST(PlanDrawing, PicksTheSmallestAndReachesForOutlines) {
    for (const QPointF& origin : {QPointF(), QPointF(3.5e6, 5.6e6)}) {
        const PlanDrawing drawing = DrawPlan(Room({origin.x(), origin.y(), 0}), 0);
        const struct {
            QPointF point;
            double reach;
            std::optional<std::uint64_t> record;
        } cases[] = {
            {{2.5, 1.5}, 0.05, 7},           {{1.95, 1.5}, 0.02, 8},     // beside the table, on its top
            {{1.95, 1.5}, 0.2, 8},           {{-0.1, 2}, 0.05, 3},       // within wins over near
            {{5, 3}, 0.05, std::nullopt},    {{4.4, 1.02}, 0.05, 6},     // an edge below the cut
            {{-0.98, 0}, 0.05, 5},           {{0.04, 2}, 0.05, 3},       // near the wall
            {{0.06, 2}, 0.05, std::nullopt}, {{5.99, 4.005}, 0.001, 2},  //
            {{5.99, 3.998}, 0.05, 2},        {{-0.34, -0.34}, 0.05, std::nullopt},  // the corner is farther
        };
        for (const auto& test : cases)
            EXPECT_EQ(ElementAt(drawing, origin + test.point, test.reach), test.record)
                << test.point.x() << ' ' << test.point.y();
    }
}

double LengthOf(const PlanElement& element) {
    double length = 0;
    for (const QLineF& edge : element.edges)
        length += edge.length();
    return length;
}

TEST(PlanDrawing, ShowsBelowTheCutWhatIsNotHidden) {
    const auto box = [&](std::uint64_t record, const Vec3& from, const Vec3& to) {
        return MakeBox(record, from, to, grey);
    };
    const auto lengths = [](std::vector<ElementMeshPtr> meshes) {
        std::map<std::uint64_t, double> found;
        for (const PlanElement& element : DrawPlan(meshes, 0).elements)
            found[element.record] = LengthOf(element);
        return found;
    };
    const ElementMeshPtr slab = box(1, {0, 0, -0.3}, {10, 8, 0});
    auto bowl = std::make_shared<ElementMesh>(*box(2, {2, 2, 0}, {4, 4, 0.5}));
    bowl->parts[0].positions = {0, 0, 0.5F, 2, 0, 0.5F, 2, 2, 0.5F, 0, 2, 0.5F, 1, 1, 0};
    bowl->parts[0].indices = {1, 0, 4, 2, 1, 4, 3, 2, 4, 0, 3, 4};  // its outer side
    using Lengths = std::map<std::uint64_t, double>;
    const std::pair<std::vector<ElementMeshPtr>, Lengths> cases[] = {
        {{slab}, {{1, 36}}},
        {{slab, box(2, {2, 2, 0}, {4, 3, 0.8})}, {{1, 36}, {2, 6}}},     // on it
        {{slab, box(2, {-1, 3, 0.2}, {1, 5, 0.8})}, {{1, 34}, {2, 8}}},  // across its rim
        {{slab, box(2, {-1, 3, 0.2}, {1, 5, 2})}, {{1, 34}, {2, 0}}},    // the same, cut
        {{slab, box(2, {-1, 3, 1.2}, {1, 5, 2})}, {{1, 36}}},            // above the cut
        {{slab, box(2, {0, 0, 0}, {10, 0.3, 3})}, {{1, 25.4}, {2, 0}}},  // along its rim
        {{slab, box(2, {-1, -1, 0.5}, {11, 9, 0.6})}, {{2, 44}}},        // hidden
        {{box(2, {0, 0, 0}, {1, 1, 0.5}), box(3, {0.5, 0, 0}, {1.5, 1, 0.9})}, {{2, 2}, {3, 4}}},
        {{bowl}, {{2, 8 + 4 * std::sqrt(2)}}},
    };
    for (const auto& [meshes, expected] : cases) {
        const Lengths found = lengths(meshes);
        EXPECT_EQ(found.size(), expected.size());
        for (const auto& [record, length] : expected)
            EXPECT_NEAR(found.contains(record) ? found.at(record) : -1, length, 0.01) << record;
    }

    // The same surface in triangles that do not meet at their corners, and turned inside out.
    auto seamed = std::make_shared<ElementMesh>(*slab);
    MeshPart& part = seamed->parts[0];
    part.positions.insert(part.positions.end(), {5, 4, 0.3F});  // in the middle of the top's diagonal
    part.indices.erase(part.indices.begin() + 6, part.indices.begin() + 9);
    part.indices.insert(part.indices.end(), {4, 5, 8, 4, 8, 6});
    EXPECT_NEAR(lengths({seamed}).at(1), 36, 0.01);
    for (std::size_t at = 0; at < part.indices.size(); at += 3)
        std::swap(part.indices[at], part.indices[at + 1]);
    EXPECT_NEAR(lengths({seamed}).at(1), 36, 0.01);
}

TEST(PlanDrawing, HolesAreNotPicked) {
    PlanElement ring{.record = 5, .parts = {{grey, {}}}};
    ring.parts[0].rings = {QPolygonF(QRectF(0, 0, 10, 10)), QPolygonF(QRectF(2, 2, 6, 6))};
    ring.bounds = QRectF(0, 0, 10, 10);
    const PlanDrawing drawing{{ring}, ring.bounds};
    EXPECT_EQ(ElementAt(drawing, {1, 5}, 0.1), 5u);
    EXPECT_EQ(ElementAt(drawing, {5, 5}, 0.1), std::nullopt);
    EXPECT_EQ(ElementAt(drawing, {2.05, 5}, 0.1), 5u);
}

}  // namespace
}  // namespace workbench
