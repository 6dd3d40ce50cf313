#include "Workbench/api/ModelWindow.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

namespace workbench {

namespace {

constexpr double degrees = 180 / std::numbers::pi;

API_PerspPars PerspectiveOf(const Camera& camera) {
    const Vec3 back = camera.position - camera.target;
    API_PerspPars persp = {};
    persp.azimuth = std::atan2(back.y, back.x) * degrees;
    persp.viewCone = camera.viewCone;
    persp.distance = Length(back);
    persp.pos = {camera.position.x, camera.position.y};
    persp.cameraZ = camera.position.z;
    persp.target = {camera.target.x, camera.target.y};
    persp.targetZ = camera.target.z;
    return persp;
}

Camera CameraOf(const API_PerspPars& persp) {
    Camera camera;
    camera.position = {persp.pos.x, persp.pos.y, persp.cameraZ};
    camera.target = {persp.target.x, persp.target.y, persp.targetZ};
    camera.viewCone = persp.viewCone;
    return camera;
}

API_Tranmat MatrixOf(const Vec3& right, const Vec3& up, const Vec3& depth) {
    return {{right.x, right.y, right.z, 0, up.x, up.y, up.z, 0, depth.x, depth.y, depth.z, 0}};
}

Vec3 RowOf(const API_Tranmat& matrix, int row) {
    const double* first = matrix.tmx + std::ptrdiff_t{4} * row;
    return {first[0], first[1], first[2]};
}

/// The adjugate by the determinant; zero when there is no inverse.
API_Tranmat InverseOf(const Vec3& a, const Vec3& b, const Vec3& c) {
    const double determinant = Dot(a, Cross(b, c));
    if (determinant == 0) return {};
    const double s = 1 / determinant;
    const Vec3 x = Cross(b, c) * s;
    const Vec3 y = Cross(c, a) * s;
    const Vec3 z = Cross(a, b) * s;
    return MatrixOf({x.x, y.x, z.x}, {x.y, y.y, z.y}, {x.z, y.z, z.z});
}

/// Pixels for a metre at the middle of the picture.
double ScaleOf(const Camera& camera, const QSize& size) {
    if (!camera.perspective) return size.width() / camera.across;
    const double halfWidth =
        Length(camera.target - camera.position) * std::tan(camera.viewCone / 2 / degrees);
    return size.width() / (2 * halfWidth);
}

std::optional<Plane> PlaneOf(const API_3DCutShapeType& shape) {
    const Vec3 normal{shape.pa, shape.pb, shape.pc};
    const double length = Length(normal);
    if (!(length > 0) || !std::isfinite(length) || !std::isfinite(shape.pd)) return std::nullopt;
    return Plane{normal * (1 / length), shape.pd};
}

short ToShort(int pixels) {
    return static_cast<short>(std::clamp<int>(pixels, 0, std::numeric_limits<short>::max()));
}

}  // namespace

void ModelWindow::Reset(const Box3& box) {
    persp = untouched = DefaultCamera(box, size);
    perspective = true;
    hasAxono = false;
    cutting = false;
    cutSettings = {};
    shapes.clear();
}

void ModelWindow::LookAtFirst(const Box3& box) {
    if (persp == untouched) persp = untouched = DefaultCamera(box, size);
}

void ModelWindow::SetCamera(const Camera& camera) {
    perspective = camera.perspective;
    if (perspective) {
        persp = camera;
        return;
    }
    if (camera.right != axono.right || camera.up != axono.up || !hasAxono)
        depth = Cross(camera.right, camera.up);
    axono = camera;
    hasAxono = true;
}

void ModelWindow::Fit(const Box3& box) {
    if (!box.Empty()) (perspective ? persp : axono) = FitCamera(CurrentCamera(), box, size);
}

void ModelWindow::SwitchTo(bool toPerspective, const Box3& visible) {
    if (!toPerspective && !hasAxono) {
        const CameraAxes axes = AxesOf(persp);
        Camera camera;
        camera.perspective = false;
        camera.right = axes.right;
        camera.up = axes.up;
        SetCamera(FitCamera(camera, visible, size));
    }
    perspective = toPerspective;
}

API_3DProjectionInfo ModelWindow::Projection() const {
    API_3DProjectionInfo info = {};
    info.isPersp = perspective;
    if (perspective) {
        info.u.persp = PerspectiveOf(persp);
        return info;
    }
    const Vec3 toViewer = Cross(axono.right, axono.up);
    info.u.axono.azimuth = std::atan2(toViewer.y, toViewer.x) * degrees;
    info.u.axono.tranmat = MatrixOf(axono.right, axono.up, depth);
    info.u.axono.invtranmat = InverseOf(axono.right, axono.up, depth);
    return info;
}

GSErrCode ModelWindow::ChangeProjection(const API_3DProjectionInfo& info, const Box3& visible) {
    // There are no cameras in the floor plan to follow.
    if (info.camGuid != APINULLGuid || info.actCamSet != APINULLGuid) return APIERR_REFUSEDPAR;
    if (info.isPersp) {
        const Camera camera = CameraOf(info.u.persp);
        if (!IsUsable(camera)) return APIERR_BADPARS;
        SetCamera(camera);
        return NoError;
    }
    Camera camera = axono;
    camera.perspective = false;
    camera.right = RowOf(info.u.axono.tranmat, 0);
    camera.up = RowOf(info.u.axono.tranmat, 1);
    if (!IsUsable(camera)) return APIERR_BADPARS;
    SetCamera(hasAxono ? camera : FitCamera(camera, visible, size));
    depth = RowOf(info.u.axono.tranmat, 2);
    return NoError;
}

void ModelWindow::SetSize(QSize pixels) {
    if (!pixels.isEmpty()) size = pixels;
}

API_3DWindowInfo ModelWindow::Window() const {
    const Camera& camera = CurrentCamera();
    API_3DWindowInfo info = {};
    info.hSize = ToShort(size.width());
    info.vSize = ToShort(size.height());
    info.zoomScaleX = info.zoomScaleY = ScaleOf(camera, size);
    info.zoomDispX = 0.5 * size.width() - (perspective ? 0 : camera.middleX * info.zoomScaleX);
    info.zoomDispY = -0.5 * size.height() - (perspective ? 0 : camera.middleY * info.zoomScaleY);
    return info;
}

GSErrCode ModelWindow::ChangeWindow(const API_3DWindowInfo& info) {
    if (!info.setZoom) return NoError;
    const double scale = (info.zoomScaleX + info.zoomScaleY) / 2;
    if (!std::isfinite(scale) || scale <= 0 || !std::isfinite(info.zoomDispX) ||
        !std::isfinite(info.zoomDispY))
        return APIERR_BADPARS;
    if (perspective) return NoError;
    axono.across = size.width() / scale;
    axono.middleX = (0.5 * size.width() - info.zoomDispX) / scale;
    axono.middleY = (-0.5 * size.height() - info.zoomDispY) / scale;
    return NoError;
}

GSErrCode ModelWindow::CuttingPlanes(API_3DCutPlanesInfo& info) const {
    info = cutSettings;
    info.isCutPlanes = cutting;
    info.nShapes = static_cast<short>(shapes.size());
    if (shapes.empty()) return NoError;
    const auto bytes = static_cast<GSSize>(shapes.size() * sizeof(API_3DCutShapeType));
    info.shapes = reinterpret_cast<API_3DCutShapeType**>(BMAllocateHandle(bytes, ALLOCATE_CLEAR, 0));
    if (info.shapes == nullptr) {
        info.nShapes = 0;
        return APIERR_MEMFULL;
    }
    std::copy(shapes.begin(), shapes.end(), *info.shapes);
    return NoError;
}

GSErrCode ModelWindow::ChangeCuttingPlanes(const API_3DCutPlanesInfo& info) {
    if (info.nShapes < 0 || (info.nShapes > 0 && info.shapes == nullptr)) return APIERR_BADPARS;
    const auto bytes = static_cast<GSSize>(info.nShapes * sizeof(API_3DCutShapeType));
    if (info.nShapes > 0 && BMGetHandleSize(reinterpret_cast<GSHandle>(info.shapes)) < bytes)
        return APIERR_BADPARS;
    cutting = info.isCutPlanes;
    cutSettings = info;
    cutSettings.shapes = nullptr;  // the caller's
    shapes.clear();
    if (info.nShapes > 0) shapes.assign(*info.shapes, *info.shapes + info.nShapes);
    return NoError;
}

std::vector<Plane> ModelWindow::Planes() const {
    std::vector<Plane> planes;
    for (const API_3DCutShapeType& shape : shapes)
        if (const auto plane = PlaneOf(shape)) planes.push_back(*plane);
    return planes;
}

void ModelWindow::SetPlanes(const std::vector<Plane>& planes) {
    shapes.clear();
    for (const Plane& plane : planes) {
        API_3DCutShapeType shape = {};
        shape.pa = plane.normal.x;
        shape.pb = plane.normal.y;
        shape.pc = plane.normal.z;
        shape.pd = plane.distance;
        shapes.push_back(shape);
    }
}

}  // namespace workbench
