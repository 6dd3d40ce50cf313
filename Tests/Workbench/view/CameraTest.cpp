#include "Workbench/view/Camera.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace workbench {
namespace {

constexpr QSize wide(1200, 600);

// Where the picture shows a point, in pixels; nothing behind the camera.
std::optional<QPointF> Project(const Camera& camera, QSize size, const Vec3& point) {
    const CameraAxes axes = AxesOf(camera);
    const Slopes slopes = SlopesOf(camera, size);
    if (!camera.perspective)
        return QPointF(
            size.width() * (0.5 + (Dot(camera.right, point) - camera.middleX) / camera.across),
            size.height() * 0.5 - size.width() * (Dot(camera.up, point) - camera.middleY) / camera.across);
    const Vec3 seen = point - camera.position;
    const double depth = Dot(seen, axes.forward);
    if (depth <= 0) return std::nullopt;
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

Camera ParallelCamera(const Vec3& right, const Vec3& up, const Vec3& middle = {}) {
    Camera camera;
    camera.perspective = false;
    camera.right = right;
    camera.up = up;
    camera.middleX = Dot(right, middle);
    camera.middleY = Dot(up, middle);
    return camera;
}

TEST(ViewCameraTest, ParallelRaysAreThePointsThatThePictureShowsThere) {
    const struct {
        Vec3 right;
        Vec3 up;
        Vec3 direction;  // of any length
    } cases[] = {
        {{1, 0, 0}, {0, 0, 1}, {0, 1, 0}},    // from the south
        {{-1, 0, 0}, {0, 0, 1}, {0, -1, 0}},  // from the north
        {{1, 0, 0}, {0, 1, 0}, {0, 0, -1}},   // a plan
        {{1, 0, 0}, {0, -1, 0}, {0, 0, 1}},   // from below
        {{1, 0, 0}, {0.5, 0, 1}, {0, 1, 0}},  // sheared
        {{2, 0, 0}, {0, 0, 0.1}, {0, 1, 0}},  // stretched
        {{0.7, -0.7, 0}, {0.35, 0.35, 1}, {0.7, 0.7, -0.49}},
    };
    for (const auto& test : cases)
        for (const Vec3& middle : {Vec3{}, Vec3{1e7, -3e6, 200}})
            for (const QPointF& point : {QPointF(600, 300), QPointF(0, 0), QPointF(1100, 20)}) {
                SCOPED_TRACE(testing::Message() << test.right.x << ' ' << test.up.x << ' ' << middle.x);
                const Camera camera = ParallelCamera(test.right, test.up, middle);
                const Ray ray = RayThrough(camera, wide, point);
                EXPECT_NEAR(Length(ray.direction), 1, 1e-12);
                EXPECT_GT(Dot(ray.direction, test.direction), 0);
                EXPECT_NEAR(Length(Cross(ray.direction, test.direction)), 0, 1e-9);
                EXPECT_TRUE(std::isinf(ray.from));
                for (const double distance : {0.0, 1000.0}) {
                    const auto seen = Project(camera, wide, ray.start + ray.direction * distance);
                    EXPECT_NEAR(seen->x(), point.x(), 1e-5);
                    EXPECT_NEAR(seen->y(), point.y(), 1e-5);
                }
                const CameraAxes axes = AxesOf(camera);
                EXPECT_NEAR(Dot(axes.right, camera.up), 0, 1e-12);  // shown to the right, no higher
                EXPECT_GT(Dot(axes.right, camera.right), 0);
                EXPECT_GT(Dot(axes.up, camera.up), 0);
            }
}

TEST(ViewCameraTest, TellsUsableCamerasFromOthers) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    const auto parallel = [](const Vec3& right, const Vec3& up, double across = 20, double middle = 0) {
        Camera camera = ParallelCamera(right, up);
        camera.across = across;
        camera.middleY = middle;
        camera.viewCone = -1;  // no business of this projection
        return camera;
    };
    const struct {
        Camera camera;
        bool usable;
    } cases[] = {
        {{{0, 0, 0}, {0, 1, 0}, 60}, true},
        {{{1e7, 1e7, 0}, {1e7, 1e7 + 0.01, 0}, 179.9}, true},
        {{{1, 2, 3}, {1, 2, 3}, 60}, false},
        {{{0, 0, 0}, {0, 1, 0}, 0}, false},
        {{{0, 0, 0}, {0, 1, 0}, 180}, false},
        {{{0, 0, 0}, {0, std::nan(""), 0}, 60}, false},
        {{{infinite, 0, 0}, {infinite, 1, 0}, 60}, false},
        {{{0, 0, 0}, {0, 1, 0}, std::nan("")}, false},
        {parallel({1, 0, 0}, {0, 0, 1}), true},
        {parallel({1e-3, 0, 0}, {0.9e-3, 0, 1e-4}, 1e-3, 1e5), true},
        {parallel({1, 0, 0}, {-2, 0, 0}), false},
        {parallel({1, 0, 0}, {1, 1e-12, 0}), false},
        {parallel({0, 0, 0}, {0, 0, 1}), false},
        {parallel({std::nan(""), 0, 0}, {0, 0, 1}), false},
        {parallel({1e-200, 0, 0}, {0, 0, 1e-200}), false},
        {parallel({1, 0, 0}, {0, 0, 1}, 0), false},
        {parallel({1, 0, 0}, {0, 0, 1}, -5), false},
        {parallel({1, 0, 0}, {0, 0, 1}, infinite), false},
        {parallel({1, 0, 0}, {0, 0, 1}, 20, std::nan("")), false},
    };
    for (const auto& test : cases)
        EXPECT_EQ(IsUsable(test.camera), test.usable) << (&test - cases);
}

void ExpectFits(const Camera& before, const Box3& box, const QSize& picture) {
    const Camera camera = FitCamera(before, box, picture);
    double least = 1;  // room to the nearest border, of the picture's size
    for (unsigned at = 0; at < 8; ++at) {
        const Vec3 corner{(at & 1) != 0 ? box.max.x : box.min.x, (at & 2) != 0 ? box.max.y : box.min.y,
                          (at & 4) != 0 ? box.max.z : box.min.z};
        const auto seen = Project(camera, picture, corner);
        ASSERT_TRUE(seen);
        least = std::min({least, seen->x() / picture.width(), 1 - seen->x() / picture.width(),
                          seen->y() / picture.height(), 1 - seen->y() / picture.height()});
    }
    EXPECT_GT(least, 0);
    EXPECT_LT(least, 0.05);
    EXPECT_NEAR(Length(Cross(AxesOf(camera).forward, AxesOf(before).forward)), 0, 1e-6);
    EXPECT_EQ(camera.right, before.right);
    EXPECT_EQ(camera.up, before.up);
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
                    const Camera perspective{{}, direction, 60};
                    const CameraAxes axes = AxesOf(perspective);
                    for (const Camera& before : {perspective, ParallelCamera(axes.right, axes.up),
                                                 ParallelCamera(axes.right * 3, axes.up + axes.right)})
                        ExpectFits(before, box, picture);
                }
    const Camera before{{1, 2, 3}, {4, 5, 6}, 60};
    EXPECT_EQ(FitCamera(before, Box3{}, wide), before);
}

TEST(ViewCameraTest, TheFirstViewIsTheSameInBothProjections) {
    Box3 box;
    box.Add(Vec3{3e6, 5e6, 0});
    box.Add(Vec3{3e6 + 20, 5e6 + 12, 9});
    Camera camera = DefaultCamera(box, wide);
    EXPECT_TRUE(camera.perspective);
    const CameraAxes axes = AxesOf(camera);
    ExpectFits(camera, box, wide);
    camera.perspective = false;
    EXPECT_EQ(FitCamera(camera, box, wide), camera);
    ExpectFits(camera, box, wide);
    EXPECT_LT(Length(AxesOf(camera).forward - axes.forward), 1e-9);
    EXPECT_LT(Length(AxesOf(camera).up - axes.up), 1e-9);
}

}  // namespace
}  // namespace workbench
