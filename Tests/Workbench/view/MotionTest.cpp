#include "Workbench/view/Motion.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace workbench {
namespace {

Camera Parallel(const Vec3& right, const Vec3& up) {
    Camera camera;
    camera.perspective = false;
    camera.right = right;
    camera.up = up;
    return camera;
}

// Whatever hangs on the viewer's side of the pivot follows the pointer, also in a picture that is upside down
// or from right above.
TEST(ViewMotionTest, TheModelFollowsThePointer) {
    const struct {
        const char* situation;
        Camera camera;
    } cases[] = {
        {"perspective", {{3, -8, 5}, {0, 0, 0}, 60}},
        {"perspective from below", {{3, -8, -5}, {0, 0, 0}, 60}},
        {"parallel", Parallel({1, 0, 0}, {0, 0.4, 0.9})},
        {"stretched and sheared", Parallel({3, 0, 0}, {0.3, 0.4, 0.9})},
        {"upside down", Parallel({1, 0, 0}, {0, 0.4, -0.9})},
        {"from below", Parallel({1, 0, 0}, {0, -0.4, 0.9})},
        {"horizontal", Parallel({0, -1, 0}, {0, 0, 1})},
        {"plan", Parallel({1, 0, 0}, {0, 1, 0})},
        {"plan, turned", Parallel({0, 1, 0}, {-1, 0, 0})},
    };
    const Vec3 pivot{1, 2, 3};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.situation);
        const CameraAxes axes = AxesOf(test.camera);
        const Vec3 nearer = axes.forward * -1;
        // What the picture shows of a direction to the right and up.
        const auto shown = [](const Camera& camera, const Vec3& direction) {
            const CameraAxes now = AxesOf(camera);
            return camera.perspective ? QPointF(Dot(now.right, direction), Dot(now.up, direction))
                                      : QPointF(Dot(camera.right, direction), Dot(camera.up, direction));
        };
        const Camera up = Turned(test.camera, pivot, {0, -10});
        EXPECT_GT(shown(up, nearer).y(), 0.01);
        const bool vertical = std::abs(axes.forward.z) > 0.99;
        const Camera right = Turned(test.camera, pivot, {10, 0});
        if (!vertical) {
            EXPECT_GT(shown(right, nearer).x(), 0.01);
        }
        for (const Camera& turned : {up, right})
            if (turned.perspective) {
                EXPECT_NEAR(Length(turned.position - pivot), Length(test.camera.position - pivot), 1e-9);
            } else {
                EXPECT_NEAR(Dot(turned.right, pivot) - turned.middleX, Dot(test.camera.right, pivot), 1e-9);
                EXPECT_NEAR(Dot(turned.up, pivot) - turned.middleY, Dot(test.camera.up, pivot), 1e-9);
            }
    }
}

TEST(ViewMotionTest, ZoomingHasLimits) {
    Camera parallel = Parallel({1, 0, 0}, {0, 0.4, 0.9});
    Camera perspective{{3, -8, 5}, {0, 0, 0}, 60};
    for (const double factor : {0.5, 2.0})
        for (int round = 0; round < 2000; ++round) {
            parallel = Zoomed(parallel, {400, 300}, {}, {10, 20}, factor);
            if (factor < 1) perspective = Zoomed(perspective, {400, 300}, {}, {10, 20}, factor);
            ASSERT_TRUE(IsUsable(parallel) && IsUsable(perspective)) << round;
        }
}

}  // namespace
}  // namespace workbench
