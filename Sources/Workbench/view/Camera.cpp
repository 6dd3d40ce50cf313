#include "Workbench/view/Camera.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace workbench {
namespace {

constexpr double margin = 1.06;      // of the picture, around a fitted box
constexpr double leastAcross = 0.1;  // metres of a fitted picture's width
constexpr double leastAngle = 1e-9;  // between the axes of a parallel camera, radians

std::array<Vec3, 8> CornersOf(const Box3& box) {
    std::array<Vec3, 8> corners;
    for (unsigned at = 0; at < corners.size(); ++at)
        corners[at] = {(at & 1) != 0 ? box.max.x : box.min.x, (at & 2) != 0 ? box.max.y : box.min.y,
                       (at & 4) != 0 ? box.max.z : box.min.z};
    return corners;
}

double Larger(double a, double b) {
    return std::max(std::abs(a), std::abs(b));
}

CameraAxes PerspectiveAxes(const Camera& camera) {
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

// What a step of 1 along each of the projection plane's coordinates is in the model, square to the direction
// of view.
struct Steps {
    Vec3 x;
    Vec3 y;
    Vec3 back;  // towards the viewer
};

Steps StepsOf(const Camera& camera) {
    const Vec3 back = Cross(camera.right, camera.up);
    const double scale = 1 / Dot(back, back);
    return {Cross(camera.up, back) * scale, Cross(back, camera.right) * scale, back};
}

CameraAxes ParallelAxes(const Camera& camera) {
    if (!IsUsable(camera)) return PerspectiveAxes({});
    const Steps steps = StepsOf(camera);
    return {steps.x * (1 / Length(steps.x)), steps.y * (1 / Length(steps.y)),
            steps.back * (-1 / Length(steps.back))};
}

// Each corner, seen along the camera's direction, bounds the position by two lines to either side of the
// picture; the tightest of both sides meet in the position that is looked for.
Camera FitPerspective(const Camera& camera, const Box3& box, QSize size) {
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
    const double back =
        std::max({(high.x - low.x) / (2 * slopes.x), (high.y - low.y) / (2 * slopes.y), leastAcross});
    Camera fitted = camera;
    const Vec3 aim = center + axes.right * ((low.x + high.x) / 2) + axes.up * ((low.y + high.y) / 2);
    fitted.position = aim - axes.forward * back;
    fitted.target = aim;
    return fitted;
}

Camera FitParallel(const Camera& camera, const Box3& box, QSize size) {
    const Vec3 center = box.Center();
    double halfX = 0;
    double halfY = 0;
    for (const Vec3& corner : CornersOf(box)) {
        halfX = Larger(halfX, Dot(camera.right, corner - center));
        halfY = Larger(halfY, Dot(camera.up, corner - center));
    }
    const double aspect = size.isEmpty() ? 1.0 : double(size.height()) / size.width();
    Camera fitted = camera;
    fitted.middleX = Dot(camera.right, center);
    fitted.middleY = Dot(camera.up, center);
    fitted.across =
        std::max(2 * margin * std::max(halfX, halfY / aspect), leastAcross * Length(camera.right));
    return fitted;
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

// A product of lengths so small or so large that it leaves the range of double counts as none.
bool IsUsable(const Camera& camera) {
    if (camera.perspective) {
        const double distance = Length(camera.target - camera.position);
        return distance > 0 && std::isfinite(distance) && camera.viewCone > 0 && camera.viewCone < 180;
    }
    const double area = Length(Cross(camera.right, camera.up));
    const double most = Length(camera.right) * Length(camera.up);
    return std::isnormal(area * area) && std::isfinite(most) && area > leastAngle * most &&
           std::isfinite(camera.middleX) && std::isfinite(camera.middleY) && camera.across > 0 &&
           std::isfinite(camera.across);
}

CameraAxes AxesOf(const Camera& camera) {
    return camera.perspective ? PerspectiveAxes(camera) : ParallelAxes(camera);
}

Slopes SlopesOf(const Camera& camera, QSize size) {
    const double aspect = size.isEmpty() ? 1.0 : double(size.height()) / size.width();
    if (!camera.perspective) return {camera.across / 2, camera.across / 2 * aspect};
    const double cone = std::clamp(camera.viewCone, 1.0, 170.0);
    const double x = std::tan(cone * std::numbers::pi / 360);
    return {x, x * aspect};
}

Ray RayThrough(const Camera& camera, QSize size, QPointF point) {
    const CameraAxes axes = AxesOf(camera);
    const Slopes slopes = SlopesOf(camera, size);
    const double x = (2 * point.x() / std::max(1, size.width()) - 1) * slopes.x;
    const double y = (1 - 2 * point.y() / std::max(1, size.height())) * slopes.y;
    if (!camera.perspective) {
        const Steps steps = StepsOf(camera);
        return {steps.x * (camera.middleX + x) + steps.y * (camera.middleY + y), axes.forward,
                -std::numeric_limits<double>::infinity()};
    }
    const Vec3 direction = axes.forward + axes.right * x + axes.up * y;
    return {camera.position, direction * (1 / Length(direction))};
}

Camera FitCamera(const Camera& camera, const Box3& box, QSize size) {
    if (box.Empty() || !IsUsable(camera)) return camera;
    return camera.perspective ? FitPerspective(camera, box, size) : FitParallel(camera, box, size);
}

Camera DefaultCamera(const Box3& box, QSize size) {
    Camera camera;
    camera.position = {0, 0, 0};
    camera.target = {0.62, 0.78, -0.42};
    camera.viewCone = 50;
    const CameraAxes axes = AxesOf(camera);
    camera.right = axes.right;
    camera.up = axes.up;
    camera.perspective = false;
    camera = FitCamera(camera, box, size);
    camera.perspective = true;
    return FitCamera(camera, box, size);
}

}  // namespace workbench
