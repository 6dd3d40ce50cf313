#pragma once

#include <QPointF>
#include <QSize>

#include "Workbench/mesher/Mesh.hpp"

namespace workbench {

double Dot(const Vec3& a, const Vec3& b);
Vec3 Cross(const Vec3& a, const Vec3& b);
double Length(const Vec3& v);

// A perspective view: metres, Z up, the picture upright.
struct Camera {
    Vec3 position{0, -10, 0};
    Vec3 target;
    double viewCone = 60;  // full angle across the picture's width, degrees

    friend bool operator==(const Camera&, const Camera&) = default;
};

struct Ray {
    Vec3 start;
    Vec3 direction;  // of length 1
};

// The camera's own axes, each of length 1. A vertical view has north up.
struct CameraAxes {
    Vec3 right;
    Vec3 up;
    Vec3 forward;
};
CameraAxes AxesOf(const Camera& camera);

// The tangents of half the view cone across the picture's width and height.
struct Slopes {
    double x = 1;
    double y = 1;
};
Slopes SlopesOf(const Camera& camera, QSize size);

// The ray through a point of the picture (pixels, origin top left).
Ray RayThrough(const Camera& camera, QSize size, QPointF point);

// The same camera moved along its direction and sideways until `box` fills the picture with a small margin.
// An empty box leaves the camera as it is.
Camera FitCamera(const Camera& camera, const Box3& box, QSize size);

// The view a newly opened model starts with: from the south-west, a little above, fitted.
Camera DefaultCamera(const Box3& box, QSize size);

}  // namespace workbench
