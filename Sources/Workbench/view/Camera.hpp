#pragma once

#include <QPointF>
#include <QSize>

#include "Workbench/mesher/Mesh.hpp"

namespace workbench {

double Dot(const Vec3& a, const Vec3& b);
Vec3 Cross(const Vec3& a, const Vec3& b);
double Length(const Vec3& v);

// A view of the model, perspective or parallel: metres, Z up.
struct Camera {
    // Perspective; the picture is upright.
    Vec3 position{0, -10, 0};
    Vec3 target;
    double viewCone = 60;  // full angle across the picture's width, degrees

    bool perspective = true;

    // Parallel (axonometric): a point lies at (Dot(right, p), Dot(up, p)) of the projection plane, so the two
    // axes may be stretched or sheared, but not parallel. What is nearer lies towards Cross(right, up).
    Vec3 right{1, 0, 0};
    Vec3 up{0, 0, 1};
    double middleX = 0;  // of the plane, in the picture's middle
    double middleY = 0;
    double across = 20;  // of the plane, over the picture's width

    friend bool operator==(const Camera&, const Camera&) = default;
};

// False for a camera that shows nothing: an empty direction, parallel axes, or a number that is none.
bool IsUsable(const Camera& camera);

struct Ray {
    Vec3 start;
    Vec3 direction;   // of length 1
    double from = 0;  // where it begins, along the direction; a parallel camera's has no beginning
};

// The directions that the picture shows to the right, upwards and away from the viewer, each of length 1. A
// vertical perspective view has north up.
struct CameraAxes {
    Vec3 right;
    Vec3 up;
    Vec3 forward;
};
CameraAxes AxesOf(const Camera& camera);

// The tangents of half the view cone across the picture's width and height; for a parallel camera half of the
// plane's extents.
struct Slopes {
    double x = 1;
    double y = 1;
};
Slopes SlopesOf(const Camera& camera, QSize size);

// The ray through a point of the picture (pixels, origin top left).
Ray RayThrough(const Camera& camera, QSize size, QPointF point);

// The same camera moved along its direction and sideways until `box` fills the picture with a small margin; a
// parallel one changes its middle and its scale. An empty box or an unusable camera leaves it as it is.
Camera FitCamera(const Camera& camera, const Box3& box, QSize size);

// The view a newly opened model starts with: from the south-west, a little above, fitted. Perspective, with
// the parallel view from the same side made ready.
Camera DefaultCamera(const Box3& box, QSize size);

}  // namespace workbench
