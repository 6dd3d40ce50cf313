#include "Workbench/view/Motion.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace workbench {
namespace {

constexpr double steepest = 89;         // degrees
constexpr double leastDistance = 0.05;  // metres: from the camera to its target, or across a parallel picture
constexpr double mostAcross = 1e9;      // metres

double Radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

// Rodrigues' formula; `axis` has length 1.
Vec3 Rotated(const Vec3& v, const Vec3& axis, double angle) {
    return v * std::cos(angle) + Cross(axis, v) * std::sin(angle) +
           axis * (Dot(axis, v) * (1 - std::cos(angle)));
}

// The horizontal direction square to the direction of view. A sheared picture shows it at a slant.
Vec3 Level(const CameraAxes& axes) {
    const Vec3 side = Cross(axes.forward, {0, 0, 1});
    const double length = Length(side);
    return length > 1e-9 ? side * (1 / length) : axes.right;
}

Camera ZoomedParallel(const Camera& camera, QSize size, QPointF place, double factor) {
    const double unit = Length(camera.right);
    const double across = std::clamp(camera.across * factor, leastDistance * unit, mostAcross * unit);
    // Off the picture's middle, as part of its width.
    const QPointF off = (place - QPointF(size.width(), size.height()) / 2) / std::max(1, size.width());
    Camera zoomed = camera;
    zoomed.across = across;
    zoomed.middleX += off.x() * (camera.across - across);
    zoomed.middleY -= off.y() * (camera.across - across);
    return zoomed;
}

}  // namespace

Camera Turned(const Camera& camera, const Vec3& pivot, QPointF degrees) {
    const CameraAxes axes = AxesOf(camera);
    const double upright = axes.up.z < 0 ? -1 : 1;
    const double elevation = std::asin(std::clamp(axes.forward.z, -1.0, 1.0));
    const double wanted = elevation - upright * Radians(degrees.y());
    const double pitch = std::clamp(wanted, -Radians(steepest), Radians(steepest)) - elevation;
    const double yaw = -upright * Radians(degrees.x());
    const Vec3 level = Level(axes);
    const auto turn = [&](const Vec3& direction) {
        return Rotated(Rotated(direction, level, pitch), {0, 0, 1}, yaw);
    };
    Camera turned = camera;
    if (camera.perspective) {
        turned.position = pivot + turn(camera.position - pivot);
        turned.target = pivot + turn(camera.target - pivot);
        return turned;
    }
    turned.right = turn(camera.right);
    turned.up = turn(camera.up);
    turned.middleX += Dot(turned.right - camera.right, pivot);
    turned.middleY += Dot(turned.up - camera.up, pivot);
    return turned;
}

Camera Shifted(const Camera& camera, QSize size, const Vec3& point, QPointF delta) {
    Camera shifted = camera;
    const QPointF part = delta / std::max(1, size.width());
    if (!camera.perspective) {
        shifted.middleX -= part.x() * camera.across;
        shifted.middleY += part.y() * camera.across;
        return shifted;
    }
    const CameraAxes axes = AxesOf(camera);
    const double depth = std::max(leastDistance, Dot(point - camera.position, axes.forward));
    const double across = 2 * SlopesOf(camera, size).x * depth;
    const Vec3 shift = axes.right * (-part.x() * across) + axes.up * (part.y() * across);
    shifted.position = camera.position + shift;
    shifted.target = camera.target + shift;
    return shifted;
}

Camera Zoomed(const Camera& camera, QSize size, const Vec3& point, QPointF place, double factor) {
    if (!camera.perspective) return ZoomedParallel(camera, size, place, factor);
    Camera zoomed = camera;
    zoomed.position = point + (camera.position - point) * factor;
    zoomed.target = point + (camera.target - point) * factor;
    if (Length(zoomed.target - zoomed.position) < leastDistance)
        zoomed.target = zoomed.position + AxesOf(camera).forward * leastDistance;
    return zoomed;
}

}  // namespace workbench
