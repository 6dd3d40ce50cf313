#include "Workbench/view/Camera.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace workbench {
namespace {

constexpr double margin = 1.06;  // of the picture, around a fitted box

std::array<Vec3, 8> CornersOf(const Box3& box) {
    std::array<Vec3, 8> corners;
    for (unsigned at = 0; at < corners.size(); ++at)
        corners[at] = {(at & 1) != 0 ? box.max.x : box.min.x, (at & 2) != 0 ? box.max.y : box.min.y,
                       (at & 4) != 0 ? box.max.z : box.min.z};
    return corners;
}

}  // namespace

double Dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vec3 Cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double Length(const Vec3& v) {
    return std::sqrt(Dot(v, v));
}

CameraAxes AxesOf(const Camera& camera) {
    CameraAxes axes;
    const Vec3 direction = camera.target - camera.position;
    const double length = Length(direction);
    axes.forward = length > 0 ? direction * (1 / length) : Vec3{0, 1, 0};
    const Vec3 side = Cross(axes.forward, {0, 0, 1});
    const double sideLength = Length(side);
    axes.right = sideLength > 1e-9 ? side * (1 / sideLength) : Vec3{1, 0, 0};
    axes.up = Cross(axes.right, axes.forward);
    return axes;
}

Slopes SlopesOf(const Camera& camera, QSize size) {
    const double cone = std::clamp(camera.viewCone, 1.0, 170.0);
    const double x = std::tan(cone * std::numbers::pi / 360);
    const double aspect = size.isEmpty() ? 1.0 : double(size.height()) / size.width();
    return {x, x * aspect};
}

Ray RayThrough(const Camera& camera, QSize size, QPointF point) {
    const CameraAxes axes = AxesOf(camera);
    const Slopes slopes = SlopesOf(camera, size);
    const double x = (2 * point.x() / std::max(1, size.width()) - 1) * slopes.x;
    const double y = (1 - 2 * point.y() / std::max(1, size.height())) * slopes.y;
    const Vec3 direction = axes.forward + axes.right * x + axes.up * y;
    return {camera.position, direction * (1 / Length(direction))};
}

// Each corner, seen along the camera's direction, bounds the position by two lines to either side of the
// picture; the tightest of both sides meet in the position that is looked for.
Camera FitCamera(const Camera& camera, const Box3& box, QSize size) {
    if (box.Empty()) return camera;
    const CameraAxes axes = AxesOf(camera);
    Slopes slopes = SlopesOf(camera, size);
    slopes = {slopes.x / margin, slopes.y / margin};
    const Vec3 center = box.Center();
    Vec3 low{1e300, 1e300, 0};
    Vec3 high{-1e300, -1e300, 0};
    for (const Vec3& corner : CornersOf(box)) {
        const Vec3 from = corner - center;
        const Vec3 seen{Dot(from, axes.right), Dot(from, axes.up), Dot(from, axes.forward)};
        low.x = std::min(low.x, seen.x + slopes.x * seen.z);
        high.x = std::max(high.x, seen.x - slopes.x * seen.z);
        low.y = std::min(low.y, seen.y + slopes.y * seen.z);
        high.y = std::max(high.y, seen.y - slopes.y * seen.z);
    }
    const double back = std::max({(high.x - low.x) / (2 * slopes.x), (high.y - low.y) / (2 * slopes.y), 0.1});
    Camera fitted = camera;
    const Vec3 aim = center + axes.right * ((low.x + high.x) / 2) + axes.up * ((low.y + high.y) / 2);
    fitted.position = aim - axes.forward * back;
    fitted.target = aim;
    return fitted;
}

Camera DefaultCamera(const Box3& box, QSize size) {
    Camera camera;
    camera.position = {0, 0, 0};
    camera.target = {0.62, 0.78, -0.42};
    camera.viewCone = 50;
    return FitCamera(camera, box, size);
}

}  // namespace workbench
