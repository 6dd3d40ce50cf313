#include "Workbench/view/Camera.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

constexpr QSize wide(1200, 600);

// Where the picture shows a point, in pixels; nothing behind the camera.
std::optional<QPointF> Project(const Camera& camera, QSize size, const Vec3& point) {
    const CameraAxes axes = AxesOf(camera);
    const Vec3 seen = point - camera.position;
    const double depth = Dot(seen, axes.forward);
    if (depth <= 0) return std::nullopt;
    const Slopes slopes = SlopesOf(camera, size);
    return QPointF(size.width() * (0.5 + Dot(seen, axes.right) / depth / slopes.x / 2),
                   size.height() * (0.5 - Dot(seen, axes.up) / depth / slopes.y / 2));
}

TEST(ViewCameraTest, AxesAreOrthonormalInEveryDirection) {
    const Vec3 directions[] = {{0, 0, 0}, {0, 0, 5}, {0, 0, -5}, {1e-12, 0, -1}, {1, 0, 0}, {-3, 2, 1}};
    for (const Vec3& direction : directions) {
        SCOPED_TRACE(testing::Message() << direction.x << ' ' << direction.y << ' ' << direction.z);
        const Camera camera{{4, 5, 6}, Vec3{4, 5, 6} + direction, 60};
        const CameraAxes axes = AxesOf(camera);
        EXPECT_NEAR(Length(axes.right), 1, 1e-12);
        EXPECT_NEAR(Length(axes.up), 1, 1e-12);
        EXPECT_NEAR(Dot(axes.right, axes.up), 0, 1e-12);
        EXPECT_NEAR(Dot(axes.right, axes.forward), 0, 1e-9);
        EXPECT_GE(axes.up.z, -1e-12);  // never upside down
    }
    EXPECT_NEAR(AxesOf({{0, 0, 9}, {0, 0, 0}, 60}).up.y, 1, 1e-12);  // a plan has north up
}

TEST(ViewCameraTest, RaysHitWhatTheConePromises) {
    const Camera camera{{0, 0, 0}, {0, 10, 0}, 90};
    const struct {
        QPointF point;
        Vec3 direction;
    } cases[] = {
        {{600, 300}, {0, 1, 0}},  {{0, 300}, {-1, 1, 0}},  // half the cone of 90 degrees across the width
        {{1200, 300}, {1, 1, 0}}, {{600, 0}, {0, 1, 0.5}}, {{600, 600}, {0, 1, -0.5}},
    };
    for (const auto& test : cases) {
        const Ray ray = RayThrough(camera, wide, test.point);
        EXPECT_NEAR(Length(ray.direction), 1, 1e-12);
        EXPECT_NEAR(Length(Cross(ray.direction, test.direction)), 0, 1e-9)
            << test.point.x() << ' ' << test.point.y();
        EXPECT_GT(Dot(ray.direction, test.direction), 0);
    }
}

TEST(ViewCameraTest, FitShowsTheWholeBoxAndNoMoreThanNeeded) {
    const Vec3 directions[] = {{0, 1, 0}, {0, 0, -1}, {0.6, 0.8, -0.4}, {-1, 0.2, 0.3}};
    const Vec3 sizes[] = {{18, 16, 7}, {500, 2, 1}, {1, 1, 80}, {3, 0, 3}};
    const QSize pictures[] = {wide, {380, 900}};
    for (const double offset : {0.0, 5e6})
        for (const Vec3& direction : directions)
            for (const Vec3& size : sizes)
                for (const QSize& picture : pictures) {
                    Box3 box;
                    box.Add(Vec3{offset, offset, 0});
                    box.Add(Vec3{offset, offset, 0} + size);
                    const Camera camera = FitCamera({{}, direction, 60}, box, picture);
                    double least = 1;  // room to the nearest border, of the picture's size
                    for (unsigned at = 0; at < 8; ++at) {
                        const Vec3 corner{(at & 1) != 0 ? box.max.x : box.min.x,
                                          (at & 2) != 0 ? box.max.y : box.min.y,
                                          (at & 4) != 0 ? box.max.z : box.min.z};
                        const auto seen = Project(camera, picture, corner);
                        ASSERT_TRUE(seen);
                        least = std::min({least, seen->x() / picture.width(), 1 - seen->x() / picture.width(),
                                          seen->y() / picture.height(), 1 - seen->y() / picture.height()});
                    }
                    EXPECT_GT(least, 0);
                    EXPECT_LT(least, 0.05);
                    const Vec3 forward = AxesOf(camera).forward;
                    EXPECT_NEAR(Length(Cross(forward, direction * (1 / Length(direction)))), 0, 1e-6);
                }
    const Camera before{{1, 2, 3}, {4, 5, 6}, 60};
    EXPECT_EQ(FitCamera(before, Box3{}, wide), before);
}

}  // namespace
}  // namespace workbench
