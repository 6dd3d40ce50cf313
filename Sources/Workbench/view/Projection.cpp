#include "Workbench/view/Projection.hpp"

#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

constexpr double nearestPlane = 0.02;       // metres
constexpr double depthRatio = 1.0 / 20000;  // of the nearest to the farthest plane, for 24 bits
constexpr double depthMargin = 0.1;         // metres, on both ends of a parallel view

// Half of what the box measures along a direction.
double Reach(const Box3& box, const Vec3& direction) {
    const Vec3 half = box.Size() * 0.5;
    return std::abs(direction.x) * half.x + std::abs(direction.y) * half.y + std::abs(direction.z) * half.z;
}

struct DepthRange {
    double from = 0;
    double to = 0;
};

DepthRange DepthOf(const Box3& box, const Camera& camera, const CameraAxes& axes) {
    if (box.Empty()) return {0.1, 100};
    const double middle = Dot(box.Center() - camera.position, axes.forward);
    const double reach = Reach(box, axes.forward);
    const double to = std::max(1.0, (middle + reach) * 1.01);
    const double from = std::max({nearestPlane, to * depthRatio, (middle - reach) * 0.99});
    return {from, to};
}

std::array<float, 16> Floats(const std::array<double, 16>& matrix) {
    std::array<float, 16> floats{};
    std::transform(matrix.begin(), matrix.end(), floats.begin(),
                   [](double v) { return static_cast<float>(v); });
    return floats;
}

Projection Perspective(const Camera& camera, QSize size, const Box3& seen) {
    const CameraAxes axes = AxesOf(camera);
    const Slopes slopes = SlopesOf(camera, size);
    const DepthRange depth = DepthOf(seen, camera, axes);
    const Vec3 x = axes.right * (1 / slopes.x);
    const Vec3 y = axes.up * (-1 / slopes.y);
    const Vec3 z = axes.forward * ((depth.to + depth.from) / (depth.to - depth.from));
    const double shift = -2 * depth.to * depth.from / (depth.to - depth.from);
    return {camera.position,
            Floats({
                x.x,
                y.x,
                z.x,
                axes.forward.x,  //
                x.y,
                y.y,
                z.y,
                axes.forward.y,  //
                x.z,
                y.z,
                z.z,
                axes.forward.z,  //
                0,
                0,
                shift,
                0,
            }),
            {0, 0, 0, 1}};
}

// The eye is where the line through the picture's middle passes the middle of what is seen.
Projection Parallel(const Camera& camera, QSize size, const Box3& seen) {
    const Slopes slopes = SlopesOf(camera, size);
    const Ray middle = RayThrough(camera, size, {size.width() / 2.0, size.height() / 2.0});
    const Vec3& forward = middle.direction;
    const Vec3 center = seen.Empty() ? Vec3{} : seen.Center();
    const double reach = (seen.Empty() ? 1 : Reach(seen, forward)) * 1.01 + depthMargin;
    const Vec3 x = camera.right * (1 / slopes.x);
    const Vec3 y = camera.up * (-1 / slopes.y);
    const Vec3 z = forward * (1 / reach);
    return {
        middle.start + forward * Dot(center - middle.start, forward),
        Floats({
            x.x,
            y.x,
            z.x,
            0,  //
            x.y,
            y.y,
            z.y,
            0,  //
            x.z,
            y.z,
            z.z,
            0,  //
            0,
            0,
            0,
            1,
        }),
        {static_cast<float>(-forward.x), static_cast<float>(-forward.y), static_cast<float>(-forward.z), 0}};
}

}  // namespace

Projection ProjectionOf(const Camera& camera, QSize size, const Box3& seen) {
    return camera.perspective ? Perspective(camera, size, seen) : Parallel(camera, size, seen);
}

bool MayShow(const Camera& camera, QSize size, const Box3& box) {
    if (box.Empty()) return false;
    const Slopes slopes = SlopesOf(camera, size);
    const Vec3 center = box.Center();
    return std::abs(Dot(camera.right, center) - camera.middleX) <= slopes.x + Reach(box, camera.right) &&
           std::abs(Dot(camera.up, center) - camera.middleY) <= slopes.y + Reach(box, camera.up);
}

}  // namespace workbench
