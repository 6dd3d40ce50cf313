#pragma once

#include <QSize>
#include <vector>

#include "ACAPinc.h"
#include "Workbench/view/Camera.hpp"
#include "Workbench/view/Section.hpp"

namespace workbench {

/// The 3D window's camera, size and cutting planes, and the host's records of them. What a record sets comes
/// back from the next one with the very same numbers. Functions that change something answer NoError, or
/// BADPARS or REFUSEDPAR, and then leave everything as it was.
class ModelWindow {
  public:
    /// As for a newly opened model: a perspective of the box, planes off. The size stays.
    void Reset(const Box3& box);
    /// More of the model is there: a camera that nobody has changed since Reset looks at this box. Planes
    /// stay.
    void LookAtFirst(const Box3& box);

    const Camera& CurrentCamera() const { return perspective ? persp : axono; }
    /// A person's camera, of either kind.
    void SetCamera(const Camera& camera);
    /// Keeps the direction and fits the box; an empty one changes nothing.
    void Fit(const Box3& box);

    /// Each kind of projection keeps its own camera; the first axonometry looks from where the perspective
    /// did.
    void SwitchTo(bool toPerspective, const Box3& visible);
    bool IsPerspective() const { return perspective; }

    /// Angles in degrees, counted from +X to +Y; a camera has no roll. In an axonometry the matrix has no
    /// translation, and its third row is what was set, or the way to the viewer.
    API_3DProjectionInfo Projection() const;
    GSErrCode ChangeProjection(const API_3DProjectionInfo& info, const Box3& visible);

    const QSize& Size() const { return size; }
    /// In pixels.
    void SetSize(QSize pixels);

    /// The zoom of a perspective is that in the plane of its target, which is the picture's middle; setting
    /// it has no effect, nor has setting the size.
    API_3DWindowInfo Window() const;
    GSErrCode ChangeWindow(const API_3DWindowInfo& info);

    /// Shapes are kept while cutting is off, and also those of no direction, which cut nothing.
    GSErrCode CuttingPlanes(API_3DCutPlanesInfo& info) const;
    GSErrCode ChangeCuttingPlanes(const API_3DCutPlanesInfo& info);

    bool IsCutting() const { return cutting; }
    void SetCutting(bool on) { cutting = on; }
    /// All planes that have a direction, on or off.
    std::vector<Plane> Planes() const;
    /// Replaces the planes by these.
    void SetPlanes(const std::vector<Plane>& planes);

  private:
    Camera persp;
    Camera untouched;  // what the perspective was at first
    Camera axono;
    bool perspective = true;
    bool hasAxono = false;
    Vec3 depth;  // third row of the axonometry's matrix
    QSize size{1280, 800};
    bool cutting = false;
    API_3DCutPlanesInfo cutSettings = {};  // pens and materials
    std::vector<API_3DCutShapeType> shapes;
};

}  // namespace workbench
