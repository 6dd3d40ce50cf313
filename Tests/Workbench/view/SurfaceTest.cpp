#include "Workbench/view/Surface.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "Workbench/view/Boxes.hpp"

namespace workbench {
namespace {

// A closed cylinder; no two triangles share a vertex, as meshers like to deliver it.
MeshPart Cylinder(int segments) {
    MeshPart part;
    const auto corner = [&](int at, float z) {
        const double angle = 2 * std::numbers::pi * at / segments;
        part.indices.push_back(static_cast<std::uint32_t>(part.positions.size() / 3));
        for (const float value :
             {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)), z})
            part.positions.push_back(value);
    };
    const auto triangle = [&](int a, float za, int b, float zb, int c, float zc) {
        corner(a, za);
        corner(b, zb);
        corner(c, zc);
    };
    for (int at = 0; at < segments; ++at) {
        triangle(at, 0, at + 1, 0, at + 1, 1);
        triangle(at, 0, at + 1, 1, at, 1);
        if (at == 0 || at == segments - 1) continue;
        triangle(0, 0, at + 1, 0, at, 0);
        triangle(0, 1, at, 1, at + 1, 1);
    }
    return part;
}

TEST(ViewSurfaceTest, ABoxHasTwelveLinesAndSharpCorners) {
    const Surface surface = SurfaceOf(MakeBox(1, {0, 0, 0}, {2, 3, 4}, {1, 1, 1, 1})->parts[0]);
    EXPECT_EQ(surface.lines.size(), 2u * 12);
    EXPECT_EQ(surface.vertices.size(), 8u * 3);
    EXPECT_EQ(surface.triangles.size(), 3u * 12);
}

TEST(ViewSurfaceTest, ACylinderIsSmoothWithLinesAtItsRimsOnly) {
    constexpr int segments = 32;
    const Surface surface = SurfaceOf(Cylinder(segments));
    EXPECT_EQ(surface.lines.size(), 2u * 2 * segments);
    EXPECT_EQ(surface.vertices.size(), 2u * 2 * segments);
    // Flat facets would be 12 off.
    for (const SurfaceVertex& vertex : surface.vertices) {
        if (vertex.normal[2] != 0) continue;  // of a lid
        EXPECT_NEAR(vertex.normal[0], 127 * vertex.position[0], 8);
        EXPECT_NEAR(vertex.normal[1], 127 * vertex.position[1], 8);
    }
}

TEST(ViewSurfaceTest, TrianglesWithoutAreaAreDropped) {
    MeshPart part;
    part.positions = {0, 0, 0, 1, 0, 0, 2, 0, 0, 0, 1, 0};
    part.indices = {0, 1, 2, 0, 0, 3, 0, 1, 3};
    const Surface surface = SurfaceOf(part);
    EXPECT_EQ(surface.triangles.size(), 3u);
    EXPECT_EQ(surface.lines.size(), 6u);
    EXPECT_TRUE(SurfaceOf({}).vertices.empty());
}

}  // namespace
}  // namespace workbench
