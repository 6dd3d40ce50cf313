#include "host/View3D.hpp"

#include "BM.hpp"

std::optional<API_3DProjectionInfo> GetProjection() {
    API_3DProjectionInfo projection = {};
    if (ACAPI_Environment(APIEnv_Get3DProjectionSetsID, &projection) != NoError) return std::nullopt;
    return projection;
}

GSErrCode ChangeProjection(const API_3DProjectionInfo& projection) {
    API_3DProjectionInfo changed = projection;
    return ACAPI_Environment(APIEnv_Change3DProjectionSetsID, &changed);
}

GSErrCode SwitchProjection(bool perspective) {
    API_3DProjectionInfo projection = {};
    projection.isPersp = perspective;
    bool onlyMode = true;
    return ACAPI_Environment(APIEnv_Change3DProjectionSetsID, &projection, &onlyMode);
}

std::optional<API_3DWindowInfo> Get3DWindow() {
    API_3DWindowInfo window = {};
    if (ACAPI_Environment(APIEnv_Get3DWindowSetsID, &window) != NoError) return std::nullopt;
    return window;
}

GSErrCode Change3DWindow(const API_3DWindowInfo& window) {
    API_3DWindowInfo changed = window;
    return ACAPI_Environment(APIEnv_Change3DWindowSetsID, &changed);
}

std::optional<API_Tranmat> GetSurveyTransformation() {
    API_Tranmat matrix = {};
    if (ACAPI_Environment(APIEnv_GetSurveyPointTransformationID, &matrix) != NoError) return std::nullopt;
    return matrix;
}

GSErrCode ShowAllIn3D() {
    return ACAPI_Automate(APIDo_ShowAllIn3DID);
}

GSErrCode ShowSelectionIn3D() {
    return ACAPI_Automate(APIDo_ShowSelectionIn3DID);
}

GSErrCode ZoomToFit() {
    return ACAPI_Automate(APIDo_ZoomID);
}

GSErrCode ZoomTo(const GS::Array<API_Guid>& elements) {
    GS::Array<API_Guid> zoomed = elements;
    return ACAPI_Automate(APIDo_ZoomToElementsID, &zoomed);
}

std::optional<API_WindowTypeID> GetCurrentWindowType() {
    API_WindowInfo window = {};
    if (ACAPI_Database(APIDb_GetCurrentWindowID, &window) != NoError) return std::nullopt;
    return window.typeID;
}

GSErrCode OpenWindow(API_WindowTypeID type) {
    API_WindowInfo window = {};
    window.typeID = type;
    return ACAPI_Automate(APIDo_ChangeWindowID, &window);
}

CuttingPlanes::~CuttingPlanes() {
    ReleaseShapes();
}

GSErrCode CuttingPlanes::Load() {
    return ACAPI_Environment(APIEnv_Get3DCuttingPlanesID, &info);
}

short CuttingPlanes::GetCount() const {
    return info.shapes == nullptr ? short{0} : info.nShapes;
}

GSErrCode CuttingPlanes::Allocate(short count) {
    ReleaseShapes();
    const auto size = static_cast<GSSize>(count) * static_cast<GSSize>(sizeof(API_3DCutShapeType));
    info.shapes = reinterpret_cast<API_3DCutShapeType**>(BMAllocateHandle(size, ALLOCATE_CLEAR, 0));
    if (info.shapes == nullptr) return APIERR_MEMFULL;
    info.nShapes = count;
    return NoError;
}

GSErrCode CuttingPlanes::Apply() {
    return ACAPI_Environment(APIEnv_Change3DCuttingPlanesID, &info);
}

void CuttingPlanes::ReleaseShapes() {
    auto* handle = reinterpret_cast<GSHandle>(info.shapes);
    if (handle != nullptr) BMKillHandle(&handle);
    info.shapes = nullptr;
    info.nShapes = 0;
}
