#include "geometry/SurveyPoint.hpp"
#include "geometry/Vector.hpp"
#include "host/Elements.hpp"
#include "host/View3D.hpp"
#include "palette/Viewpoint.hpp"
#include "script/ScriptValues.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;

API_3DProjectionInfo PerspectiveOf(const KestranePalette::ACViewpoint& viewpoint) {
    API_3DProjectionInfo projection = {};
    projection.isPersp = true;
    API_PerspPars& persp = projection.u.persp;
    persp.viewCone = viewpoint.cameraFactor;
    persp.pos = {viewpoint.location.x, viewpoint.location.y};
    persp.cameraZ = viewpoint.location.z;
    persp.target = {viewpoint.location.x + viewpoint.direction.x,
                    viewpoint.location.y + viewpoint.direction.y};
    persp.targetZ = viewpoint.location.z + viewpoint.direction.z;
    return projection;
}

/// Not the way back from a captured axonometry, whose rows are up, direction and location.
API_3DProjectionInfo AxonometryOf(const KestranePalette::ACViewpoint& viewpoint) {
    API_3DProjectionInfo projection = {};
    projection.isPersp = false;
    const API_Coord3D rows[] = {viewpoint.side, viewpoint.up, viewpoint.direction};
    double* matrix = projection.u.axono.tranmat.tmx;
    for (const API_Coord3D& row : rows) {
        *matrix++ = row.x;
        *matrix++ = row.y;
        *matrix++ = row.z;
        *matrix++ = 0;
    }
    return projection;
}

API_3DCutShapeType ToShape(const ACSection& section) {
    API_3DCutShapeType shape = {};
    shape.cutStatus = 0;
    shape.cutPen = 3;
    shape.cutMater = 11;
    shape.pa = section.normal.x;
    shape.pb = section.normal.y;
    shape.pc = section.normal.z;
    const double length = GetNorm(section.normal);
    shape.pd = length == 0 ? 0 : DotProduct(section.normal, section.location) / length;
    return shape;
}

/// Adds the elements to the selection, all at once, or takes them from it; the host is not bothered with
/// none.
void Select(const GS::Array<API_Guid>& elements, bool add) {
    if (!elements.IsEmpty()) ACAPI_Element_Select(KestranePalette::GetElementNeigs(elements), add);
}

}  // namespace

GSErrCode KestranePalette::SelectViewpoint(const ACViewpoint& viewpoint) {
    // A camera that the host refuses leaves the one before; what is shown, selected and cut still follows.
    ChangeProjection(viewpoint.cameraType ? PerspectiveOf(viewpoint) : AxonometryOf(viewpoint));
    const GSErrCode error = ShowAllIn3D();
    if (error != NoError) return error;

    if (!viewpoint.cameraType) ZoomAxonometry(viewpoint);
    HandleVisualStates(viewpoint);
    SetSections(viewpoint);
    return Open3DView();
}

void KestranePalette::ZoomAxonometry(const ACViewpoint& viewpoint) {
    double pixelsPerMetre = 0;
    Switch3DView(true);
    if (const std::optional<API_3DProjectionInfo> projection = GetProjection()) {
        const double distance = GetDistanceBetweenTwoPoints(viewpoint.location, GetModelCentre());
        pixelsPerMetre =
            GetMaxHalfLength() / (distance * std::tan(projection->u.persp.viewCone * radiansPerDegree * 0.5));
    }
    Switch3DView(false);
    const double scale = pixelsPerMetre / viewpoint.cameraFactor;

    const API_3DWindowInfo size = Get3DWindow().value_or(API_3DWindowInfo{});
    const API_Coord3D& p = viewpoint.location;
    const double a1 = std::atan2(viewpoint.up.x, viewpoint.side.x);
    const double a2 = std::atan2(viewpoint.up.y, viewpoint.side.y);
    const double a3 = std::atan2(viewpoint.up.z, viewpoint.side.z);
    const double x = p.x * std::cos(a1) + p.y * std::cos(a2) + p.z * std::cos(a3);
    const double y = p.x * std::sin(a1) + p.y * std::sin(a2) + p.z * std::sin(a3);

    API_3DWindowInfo window = {};
    window.setZoom = true;
    window.zoomScaleX = scale;
    window.zoomScaleY = scale;
    window.zoomDispX = 0.5 * size.hSize - x * scale;
    window.zoomDispY = -0.5 * size.vSize - y * scale;
    Change3DWindow(window);
    FitWindow();
}

void KestranePalette::HandleVisualStates(const ACViewpoint& viewpoint) {
    ShowVisibleElements(viewpoint);
    const GS::Array<API_Guid> selected = GetElementsFromJSIfcGuids(viewpoint.selectedGlobalIds);
    ACAPI_Element_DeselectAll();
    Select(selected, true);
}

void KestranePalette::ShowVisibleElements(const ACViewpoint& viewpoint) {
    const GS::Array<API_Guid> exceptions = GetElementsFromJSIfcGuids(viewpoint.visibilityExceptionGlobalIds);
    ACAPI_Element_DeselectAll();
    if (viewpoint.visibility) {
        if (const std::optional<GS::Array<API_Guid>> all = ListElements(APIFilt_None)) Select(*all, true);
        Select(exceptions, false);
    } else {
        Select(exceptions, true);
    }
    ShowSelectionIn3D();
}

GSErrCode KestranePalette::SetSections(const ACViewpoint& viewpoint) {
    if (viewpoint.sections.IsEmpty()) return NoError;

    CuttingPlanes planes;
    GSErrCode error = planes.Load();
    if (error != NoError) return error;

    planes.Switch(true);
    constexpr USize most = std::numeric_limits<short>::max();
    const auto count = static_cast<short>(std::min(viewpoint.sections.GetSize(), most));
    error = planes.Allocate(count);
    if (error != NoError) return error;
    for (short i = 0; i < count; ++i)
        planes[i] = ToShape(viewpoint.sections[static_cast<UIndex>(i)]);
    return planes.Apply();
}

bool KestranePalette::Is3DView() {
    return GetCurrentWindowType() == APIWind_3DModelID;
}

GSErrCode KestranePalette::Open3DView() {
    return OpenWindow(APIWind_3DModelID);
}

void KestranePalette::Switch3DView(bool perspective) {
    SwitchProjection(perspective);
    Open3DView();
}

double KestranePalette::GetMaxHalfLength() {
    const std::optional<API_3DWindowInfo> window = Get3DWindow();
    return window ? 0.5 * std::max(window->hSize, window->vSize) : 0;
}

GSErrCode KestranePalette::FitWindow() {
    return ZoomToFit();
}
