// The host's questions about its windows.

#include "Workbench/api/Application.hpp"
#include "Workbench/api/WorkbenchHost.hpp"

namespace workbench {

GSErrCode WorkbenchHost::Projection3D(API_3DProjectionInfo& info) {
    info = application.Window3D().Projection();
    return NoError;
}

GSErrCode WorkbenchHost::ChangeProjection3D(const API_3DProjectionInfo& info, bool onlyMode) {
    GSErrCode error = NoError;
    application.ChangeView(
        [&](ModelWindow& window) {
            if (onlyMode) {
                window.SwitchTo(info.isPersp, application.ShownBox());
            } else {
                error = window.ChangeProjection(info, application.ShownBox());
            }
        },
        Who::addOn);
    return error;
}

GSErrCode WorkbenchHost::Window3D(API_3DWindowInfo& info) {
    info = application.Window3D().Window();
    return NoError;
}

GSErrCode WorkbenchHost::ChangeWindow3D(const API_3DWindowInfo& info) {
    GSErrCode error = NoError;
    application.ChangeView([&](ModelWindow& window) { error = window.ChangeWindow(info); }, Who::addOn);
    return error;
}

GSErrCode WorkbenchHost::CuttingPlanes(API_3DCutPlanesInfo& info) {
    return application.Window3D().CuttingPlanes(info);
}

GSErrCode WorkbenchHost::ChangeCuttingPlanes(const API_3DCutPlanesInfo& info) {
    GSErrCode error = NoError;
    application.ChangeView([&](ModelWindow& window) { error = window.ChangeCuttingPlanes(info); },
                           Who::addOn);
    return error;
}

GSErrCode WorkbenchHost::SurveyPointTransformation(API_Tranmat& matrix) {
    matrix = application.Survey();
    return NoError;
}

GSErrCode WorkbenchHost::ShowAllIn3D() {
    application.ShowAll(Who::addOn);
    application.BringToFront({}, Who::addOn);
    return NoError;
}

GSErrCode WorkbenchHost::ShowSelectionIn3D() {
    application.ShowSelection(Who::addOn);
    application.BringToFront({}, Who::addOn);
    return NoError;
}

GSErrCode WorkbenchHost::ZoomToFit() {
    application.ChangeView([&](ModelWindow& window) { window.Fit(application.ShownBox()); }, Who::addOn);
    return NoError;
}

GSErrCode WorkbenchHost::ZoomToElements(const GS::Array<API_Guid>& elements) {
    if (elements.IsEmpty()) return NoError;
    const std::vector<API_Guid> guids(elements.begin(), elements.end());
    if (!KnowsAny(guids)) return APIERR_BADID;
    if (!application.ZoomTo(guids, Who::addOn)) return APIERR_GENERAL;
    application.BringToFront({}, Who::addOn);
    return NoError;
}

GSErrCode WorkbenchHost::ChangeWindow(const API_WindowInfo& window) {
    if (window.typeID == APIWind_3DModelID) {
        application.BringToFront({}, Who::addOn);
        return NoError;
    }
    if (window.typeID != APIWind_FloorPlanID) return APIERR_BADWINDOW;
    if (window.index < 0) return APIERR_BADPARS;
    const auto storey = static_cast<std::size_t>(window.index);
    const bool brought = application.BringToFront({FrontWindow::Kind::plan, storey}, Who::addOn);
    return brought ? NoError : static_cast<GSErrCode>(APIERR_NOPLAN);
}

GSErrCode WorkbenchHost::CurrentWindow(API_WindowInfo& window) {
    const FrontWindow& front = application.Front();
    window.typeID = front.kind == FrontWindow::Kind::model ? APIWind_3DModelID : APIWind_FloorPlanID;
    window.index = static_cast<Int32>(front.storey);
    return NoError;
}

}  // namespace workbench
