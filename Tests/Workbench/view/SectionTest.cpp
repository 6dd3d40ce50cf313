#include "Workbench/view/Section.hpp"

#include <gtest/gtest.h>

#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "Workbench/view/Boxes.hpp"
#include "Workbench/view/Camera.hpp"

namespace workbench {
namespace {

constexpr std::array<float, 4> red{1, 0, 0, 1};
constexpr std::array<float, 4> blue{0, 0, 1, 1};

using Outline = std::vector<std::array<double, 2>>;

// The walls and lids over some rings, from z 0 to `height`, no vertex shared. The lids' triangles fan out
// from the first ring's first corner: right under the even-odd rule, whatever the rings look like.
MeshPart Prism(const std::vector<Outline>& rings, double height, const std::array<float, 4>& colour = red) {
    MeshPart part;
    part.colour = colour;
    const auto corner = [&](const std::array<double, 2>& point, double z) {
        part.indices.push_back(static_cast<std::uint32_t>(part.indices.size()));
        for (const double value : {point[0], point[1], z})
            part.positions.push_back(static_cast<float>(value));
    };
    const auto& centre = rings.front().front();
    for (const Outline& ring : rings)
        for (std::size_t at = 0; at < ring.size(); ++at) {
            const auto& a = ring[at];
            const auto& b = ring[(at + 1) % ring.size()];
            for (const auto& [point, z] :
                 {std::pair(a, 0.0), {b, 0.0}, {b, height}, {a, 0.0}, {b, height}, {a, height}})
                corner(point, z);
            for (const double z : {0.0, height})
                for (const auto& point : {centre, a, b})
                    corner(point, z);
        }
    return part;
}

ElementMesh ElementOf(std::vector<MeshPart> parts, const Vec3& origin = {}) {
    ElementMesh mesh{1, origin, std::move(parts), {}};
    for (const MeshPart& part : mesh.parts)
        for (std::size_t at = 0; at + 2 < part.positions.size(); at += 3)
            mesh.bounds.Add(origin +
                            Vec3{part.positions[at], part.positions[at + 1], part.positions[at + 2]});
    return mesh;
}

std::vector<SectionPart> Cut(const ElementMesh& mesh, const Plane& plane) {
    return SectionOf(mesh, plane, FrameOf(plane));
}

double Area(const QPolygonF& ring) {
    double twice = 0;
    for (qsizetype at = 0; at < ring.size(); ++at) {
        const QPointF a = ring[at] - ring[0];
        const QPointF b = ring[(at + 1) % ring.size()] - ring[0];
        twice += a.x() * b.y() - a.y() * b.x();
    }
    return std::abs(twice) / 2;
}

double LargestArea(const std::vector<SectionPart>& section) {
    double largest = 0;
    for (const SectionPart& part : section)
        for (const QPolygonF& ring : part.rings)
            largest = std::max(largest, Area(ring));
    return largest;
}

TEST(Section, FramesAreRightHandedAndLiftWhatTheyProject) {
    const Vec3 normals[] = {{0, 0, 1},
                            {0, 0, -1},
                            {1, 0, 0},
                            {0, -1, 0},
                            {0.6, 0, 0.8},
                            {0, -0.8, -0.6},
                            {1e-12, 0, 1},
                            {2. / 3, -2. / 3, 1. / 3},
                            {-1, 0, 0},
                            {0, 1, 0},
                            {0.001, 0, 0.9999995}};
    for (const Vec3& normal : normals) {
        SCOPED_TRACE(testing::Message() << normal.x << ' ' << normal.y << ' ' << normal.z);
        const Plane plane{normal, -3.5};
        const PlaneFrame frame = FrameOf(plane);
        EXPECT_NEAR(Length(Cross(frame.u, frame.v) - normal), 0, 1e-6);
        EXPECT_NEAR(Length(frame.u), 1, 1e-9);
        EXPECT_GE(frame.v.z, 0);
        EXPECT_NEAR(Dot(normal, frame.origin), plane.distance, 1e-9);
        const QPointF back = frame.Project(frame.Lift({7, -2}));
        EXPECT_NEAR(back.x(), 7, 1e-6);
        EXPECT_NEAR(back.y(), -2, 1e-6);
    }
    const PlaneFrame plan = FrameOf({{0, 0, 1}, 4});
    EXPECT_EQ(plan.Project({5, 6, 4}), QPointF(5, 6));
    const PlaneFrame fromSouth = FrameOf({{0, -1, 0}, 0});
    EXPECT_EQ(fromSouth.Project({5, 0, 6}), QPointF(5, 6));
}

TEST(Section, CubeGivesOneRingOfTheRightSize) {
    const double root = std::sqrt(0.5);
    const double third = std::sqrt(1. / 3);
    const struct {
        Plane plane;
        qsizetype corners;
        double area;
    } cases[] = {
        {{{0, 0, 1}, 0.3}, 4, 4},
        {{{0, 0, -1}, -0.3}, 4, 4},
        {{{0, 1, 0}, 1.999}, 4, 4},
        {{{root, root, 0}, 2 * root}, 4, 4 * std::numbers::sqrt2},   // through two edges
        {{{root, 0, root}, root}, 4, 2 * std::numbers::sqrt2},       // cuts one edge off
        {{{third, third, third}, 3 * third}, 6, 3 * std::sqrt(3.)},  // the regular hexagon
        {{{third, third, third}, 2 * third}, 3, 2 * std::sqrt(3.)},  // through three corners
        {{{third, -third, third}, 0.5 * third}, 6, 2.75 * std::sqrt(3.)},
    };
    for (const Vec3& origin : {Vec3{}, Vec3{5e6, -1e7, 400}}) {
        const ElementMeshPtr cube = MakeBox(1, origin, origin + Vec3{2, 2, 2}, red);
        for (const auto& test : cases) {
            const Vec3& n = test.plane.normal;
            SCOPED_TRACE(testing::Message() << n.x << ' ' << n.y << ' ' << n.z << " at " << origin.x);
            const auto section = Cut(*cube, {n, test.plane.distance + Dot(n, origin)});
            ASSERT_EQ(section.size(), 1u);
            EXPECT_EQ(section[0].colour, red);
            ASSERT_EQ(section[0].rings.size(), 1u);
            EXPECT_EQ(section[0].rings[0].size(), test.corners);
            EXPECT_NEAR(Area(section[0].rings[0]), test.area, 1e-6);
        }
    }
}

TEST(Section, FarFromTheOriginTheRingLiesWhereTheElementDoes) {
    const Vec3 from{3.5e6, 5.6e6, 112};
    const auto section = Cut(*MakeBox(1, from, from + Vec3{0.24, 8, 3}, red), {{0, 0, 1}, 113});
    ASSERT_EQ(section.size(), 1u);
    const QRectF box = section[0].rings.at(0).boundingRect();
    EXPECT_NEAR(box.left(), from.x, 1e-6);
    EXPECT_NEAR(box.top(), from.y, 1e-6);
    EXPECT_NEAR(box.width(), 0.24, 1e-6);
    EXPECT_NEAR(box.height(), 8, 1e-6);
}

// What lies on the plane belongs to the normal's side: a slab's upper face is filled, its lower is not.
TEST(Section, TouchingPlanesCountOneSide) {
    const ElementMeshPtr cube = MakeBox(1, {}, {2, 2, 2}, red);
    const double root = std::sqrt(0.5);
    const double third = std::sqrt(1. / 3);
    const struct {
        Plane plane;
        double area;
    } cases[] = {
        {{{0, 0, 1}, 2}, 4},
        {{{0, 0, 1}, 0}, 0},
        {{{0, 0, 1}, 2.001}, 0},
        {{{0, 0, 1}, -0.001}, 0},
        {{{0, 0, 1}, 2 - 1e-7}, 4},
        {{{0, 0, 1}, 2 + 1e-7}, 4},  // noise
        {{{0, 0, 1}, 1e-7}, 0},
        {{{root, root, 0}, 0}, 0},
        {{{root, root, 0}, 4 * root}, 0},
        {{{third, third, third}, 0}, 0},
        {{{third, third, third}, 6 * third}, 0},
    };
    for (const auto& test : cases)
        EXPECT_NEAR(LargestArea(Cut(*cube, test.plane)), test.area, 1e-4)
            << test.plane.normal.x << ' ' << test.plane.normal.z << ' ' << test.plane.distance;
    EXPECT_TRUE(Cut(ElementMesh{}, {}).empty());
}

TEST(Section, HolesAreRingsOfTheirOwn) {
    const Outline ell{{0, 0}, {4, 0}, {4, 1}, {1, 1}, {1, 3}, {0, 3}};
    const Outline hole{{2, 0.25}, {3, 0.25}, {3, 0.75}, {2, 0.75}};
    const auto section = Cut(ElementOf({Prism({ell, hole}, 2.5)}), {{0, 0, 1}, 1});
    ASSERT_EQ(section.size(), 1u);
    ASSERT_EQ(section[0].rings.size(), 2u);
    QPainterPath filled;
    filled.setFillRule(Qt::OddEvenFill);
    double areas[2] = {};
    for (int at = 0; at < 2; ++at) {
        filled.addPolygon(section[0].rings[static_cast<std::size_t>(at)]);
        areas[at] = Area(section[0].rings[static_cast<std::size_t>(at)]);
    }
    EXPECT_NEAR(std::max(areas[0], areas[1]), 6, 1e-6);
    EXPECT_NEAR(std::min(areas[0], areas[1]), 0.5, 1e-6);
    EXPECT_EQ(section[0].rings[0].size() + section[0].rings[1].size(), 10);
    EXPECT_TRUE(filled.contains({0.5, 2}));
    EXPECT_FALSE(filled.contains({2.5, 0.5}));
}

TEST(Section, OpenMeshesAreClosedByAStraightLine) {
    MeshPart part = Prism({{{0, 0}, {4, 0}, {4, 3}, {0, 3}}}, 2);
    part.indices.erase(part.indices.begin(), part.indices.begin() + 6);  // the wall at y 0
    const auto section = Cut(ElementOf({part}), {{0, 0, 1}, 1});
    ASSERT_EQ(section.size(), 1u);
    ASSERT_EQ(section[0].rings.size(), 1u);
    EXPECT_NEAR(Area(section[0].rings[0]), 12, 1e-6);

    MeshPart sheet;  // one wall bounds nothing
    sheet.positions = {0, 0, 0, 4, 0, 0, 4, 0, 2, 0, 0, 2};
    sheet.indices = {0, 1, 2, 0, 2, 3};
    EXPECT_TRUE(Cut(ElementOf({sheet}), {{0, 0, 1}, 1}).empty());
}

TEST(Section, BodiesOfOnePartMayTouchAndMeetInACorner) {
    const auto joined = [](const Outline& one, const Outline& other) {
        MeshPart part = Prism({one}, 2);
        const MeshPart more = Prism({other}, 2);
        const auto shift = static_cast<std::uint32_t>(part.positions.size() / 3);
        part.positions.insert(part.positions.end(), more.positions.begin(), more.positions.end());
        for (const std::uint32_t index : more.indices)
            part.indices.push_back(index + shift);
        return ElementOf({part});
    };
    const Outline square{{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    // The second body is 0.05 mm off, as different tools round.
    const auto wall = Cut(joined(square, {{1.00005, 0}, {3, 0}, {3, 1}, {1.00005, 1}}), {{0, 0, 1}, 1});
    ASSERT_EQ(wall.size(), 1u);
    ASSERT_EQ(wall[0].rings.size(), 1u);
    EXPECT_EQ(wall[0].rings[0].size(), 4);
    EXPECT_NEAR(Area(wall[0].rings[0]), 3, 1e-3);

    const auto corner = Cut(joined(square, {{1, 1}, {2, 1}, {2, 2}, {1, 2}}), {{0, 0, 1}, 1});
    ASSERT_EQ(corner.size(), 1u);
    ASSERT_EQ(corner[0].rings.size(), 2u);
    for (const QPolygonF& ring : corner[0].rings)
        EXPECT_NEAR(Area(ring), 1, 1e-6);
}

TEST(Section, CurvesKeepTheirPointsAndFlatFacesDoNot) {
    Outline circle;
    constexpr int corners = 720;
    for (int at = 0; at < corners; ++at) {
        const double angle = 2 * std::numbers::pi * at / corners;
        circle.push_back({10 * std::cos(angle), 10 * std::sin(angle)});
    }
    const auto round = Cut(ElementOf({Prism({circle}, 2)}), {{0, 0, 1}, 1});
    ASSERT_EQ(round.size(), 1u);
    EXPECT_NEAR(LargestArea(round), 100 * std::numbers::pi, 0.01);
    EXPECT_EQ(round[0].rings.at(0).size(), corners);  // the triangles' other edges are cut as well

    // Steps of 1.6 mm are straight one by one, and yet must not make a polygon of the circle.
    Outline fine;
    for (int at = 0; at < 40000; ++at) {
        const double angle = 2 * std::numbers::pi * at / 40000;
        fine.push_back({10 * std::cos(angle), 10 * std::sin(angle)});
    }
    const QPolygonF ring = Cut(ElementOf({Prism({fine}, 2)}), {{0, 0, 1}, 1}).at(0).rings.at(0);
    for (qsizetype at = 1; at < ring.size(); ++at) {
        const QPointF middle = (ring[at - 1] + ring[at]) / 2;
        ASSERT_NEAR(std::hypot(middle.x(), middle.y()), 10, 1e-4);
    }

    Outline even{{0, 0}, {9, 0}, {9, 1}};
    for (int at = 8; at >= 0; --at)
        even.push_back({static_cast<double>(at), 1});
    EXPECT_EQ(Cut(ElementOf({Prism({even}, 2)}), {{0, 0, 1}, 1}).at(0).rings.at(0).size(), 4);
}

TEST(Section, PartsKeepTheirColours) {
    const auto section = Cut(ElementOf({Prism({{{0, 0}, {4, 0}, {4, 1}, {0, 1}}}, 2, red),
                                        Prism({{{0, 1}, {4, 1}, {4, 3}, {0, 3}}}, 2, blue),
                                        Prism({{{0, 3}, {4, 3}, {4, 4}, {0, 4}}}, 0.5, red)}),
                             {{0, 0, 1}, 1});
    ASSERT_EQ(section.size(), 2u);  // the third is too low
    EXPECT_EQ(section[0].colour, red);
    EXPECT_NEAR(Area(section[0].rings.at(0)), 4, 1e-6);
    EXPECT_EQ(section[1].colour, blue);
    EXPECT_NEAR(Area(section[1].rings.at(0)), 8, 1e-6);
}

}  // namespace
}  // namespace workbench
