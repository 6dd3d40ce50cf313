#include "Workbench/view/PlanDrawing.hpp"

#include <gmock/gmock.h>

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
        EXPECT_THAT(records, ElementsAre(1, 2, 8, 3, 4, 7));  // the largest first
        EXPECT_NEAR(drawing.elements[0].area, 6.6 * 0.3, 1e-6);
        EXPECT_NEAR(drawing.elements[5].thickness, 0.5, 1e-6);
        EXPECT_NEAR(drawing.bounds.left(), origin.x - 0.3, 1e-6);
        EXPECT_NEAR(drawing.bounds.bottom(), origin.y + 4.3, 1e-6);
        EXPECT_NEAR(BoundsOf(drawing, {3, 7, 99}).width(), 3.3, 1e-6);
    }
    const PlanDrawing above = DrawPlan(Room({}), 3);
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
            {{5, 3}, 0.05, std::nullopt},    {{0.04, 2}, 0.05, 3},       // near the wall
            {{0.06, 2}, 0.05, std::nullopt}, {{5.99, 4.005}, 0.001, 2},  //
            {{5.99, 3.998}, 0.05, 2},        {{-0.34, -0.34}, 0.05, std::nullopt},  // the corner is farther
        };
        for (const auto& test : cases)
            EXPECT_EQ(ElementAt(drawing, origin + test.point, test.reach), test.record)
                << test.point.x() << ' ' << test.point.y();
    }
}

TEST(PlanDrawing, HolesAreNotPicked) {
    PlanElement ring{5, {{grey, {}}}, {}, 0, 0};
    ring.parts[0].rings = {QPolygonF(QRectF(0, 0, 10, 10)), QPolygonF(QRectF(2, 2, 6, 6))};
    ring.bounds = QRectF(0, 0, 10, 10);
    const PlanDrawing drawing{{ring}, ring.bounds};
    EXPECT_EQ(ElementAt(drawing, {1, 5}, 0.1), 5u);
    EXPECT_EQ(ElementAt(drawing, {5, 5}, 0.1), std::nullopt);
    EXPECT_EQ(ElementAt(drawing, {2.05, 5}, 0.1), 5u);
}

}  // namespace
}  // namespace workbench
