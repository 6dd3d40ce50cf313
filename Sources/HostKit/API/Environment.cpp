#include "HostKit/API/HostCall.hpp"

using hostkit::HostCall;
using hostkit::Session;

API_ProjectInfo::~API_ProjectInfo() {
    delete location;
    delete location_team;
    delete projectPath;
    delete projectName;
}

namespace {

bool IsFresh(const API_ProjectInfo& info) {
    return info.location == nullptr && info.location_team == nullptr && info.projectPath == nullptr &&
           info.projectName == nullptr;
}

// A question about one record, which must be there.
template <class Record, class Ask>
GSErrCode CallWith(std::string_view function, std::string_view constant, void* par, Ask ask) {
    return HostCall(function, constant, [&](Session& session) -> GSErrCode {
        auto* record = static_cast<Record*>(par);
        if (record == nullptr) return APIERR_BADPARS;
        return ask(session, *record);
    });
}

}  // namespace

GSErrCode ACAPI_Environment(API_EnvironmentID code, void* par1, void* par2, void*) {
    constexpr auto function = "ACAPI_Environment";
    switch (code) {
        case APIEnv_ApplicationID:
            return CallWith<API_ServerApplicationInfo>(
                function, "APIEnv_ApplicationID", par1,
                [](Session& session, auto& info) { return session.GetHost().ApplicationInfo(info); });
        case APIEnv_ProjectID:
            return CallWith<API_ProjectInfo>(
                function, "APIEnv_ProjectID", par1, [](Session& session, auto& info) -> GSErrCode {
                    return IsFresh(info) ? session.GetHost().ProjectInfo(info) : APIERR_BADPARS;
                });
        case APIEnv_GetSpecFolderID:
            return CallWith<API_SpecFolderID>(function, "APIEnv_GetSpecFolderID", par1,
                                              [par2](Session& session, auto& folder) -> GSErrCode {
                                                  auto* location = static_cast<IO::Location*>(par2);
                                                  if (location == nullptr) return APIERR_BADPARS;
                                                  return session.GetHost().SpecialFolder(folder, *location);
                                              });
        case APIEnv_Get3DProjectionSetsID:
            return CallWith<API_3DProjectionInfo>(function, "APIEnv_Get3DProjectionSetsID", par1,
                                                  [](Session& session, auto& projection) {
                                                      projection = {};
                                                      return session.GetHost().Projection3D(projection);
                                                  });
        case APIEnv_Change3DProjectionSetsID:
            return CallWith<API_3DProjectionInfo>(function, "APIEnv_Change3DProjectionSetsID", par1,
                                                  [par2](Session& session, const auto& projection) {
                                                      const auto* onlyMode = static_cast<const bool*>(par2);
                                                      return session.GetHost().ChangeProjection3D(
                                                          projection, onlyMode != nullptr && *onlyMode);
                                                  });
        case APIEnv_Get3DWindowSetsID:
            return CallWith<API_3DWindowInfo>(function, "APIEnv_Get3DWindowSetsID", par1,
                                              [](Session& session, auto& window) {
                                                  window = {};
                                                  return session.GetHost().Window3D(window);
                                              });
        case APIEnv_Change3DWindowSetsID:
            return CallWith<API_3DWindowInfo>(function, "APIEnv_Change3DWindowSetsID", par1,
                                              [](Session& session, const auto& window) {
                                                  return session.GetHost().ChangeWindow3D(window);
                                              });
        case APIEnv_Get3DCuttingPlanesID:
            return CallWith<API_3DCutPlanesInfo>(function, "APIEnv_Get3DCuttingPlanesID", par1,
                                                 [](Session& session, auto& planes) {
                                                     planes = {};
                                                     return session.GetHost().CuttingPlanes(planes);
                                                 });
        case APIEnv_Change3DCuttingPlanesID:
            return CallWith<API_3DCutPlanesInfo>(function, "APIEnv_Change3DCuttingPlanesID", par1,
                                                 [](Session& session, const auto& planes) {
                                                     return session.GetHost().ChangeCuttingPlanes(planes);
                                                 });
        case APIEnv_GetSurveyPointTransformationID:
            return CallWith<API_Tranmat>(function, "APIEnv_GetSurveyPointTransformationID", par1,
                                         [](Session& session, auto& matrix) {
                                             return session.GetHost().SurveyPointTransformation(matrix);
                                         });
    }
    return hostkit::UnknownCode(function);
}

GSErrCode ACAPI_Database(API_DatabaseID code, void* par1, void* par2, void*) {
    constexpr auto function = "ACAPI_Database";
    switch (code) {
        case APIDb_GetCurrentWindowID:
            return CallWith<API_WindowInfo>(function, "APIDb_GetCurrentWindowID", par1,
                                            [](Session& session, auto& window) {
                                                window = {};
                                                return session.GetHost().CurrentWindow(window);
                                            });
        case APIDb_GetElementInfoStringID:
            return CallWith<API_Guid>(function, "APIDb_GetElementInfoStringID", par1,
                                      [par2](Session& session, const auto& guid) -> GSErrCode {
                                          auto* text = static_cast<GS::UniString*>(par2);
                                          if (text == nullptr) return APIERR_BADPARS;
                                          return session.GetHost().ElementInfoString(guid, *text);
                                      });
    }
    return hostkit::UnknownCode(function);
}

GSErrCode ACAPI_Automate(API_AutomateID code, void* par1, void* par2, void* par3) {
    constexpr auto function = "ACAPI_Automate";
    switch (code) {
        case APIDo_SaveID:
            return CallWith<API_FileSavePars>(function, "APIDo_SaveID", par1,
                                              [par2](Session& session, const auto& pars) -> GSErrCode {
                                                  if (pars.file == nullptr) return APIERR_BADPARS;
                                                  if (session.GetRegistry().RefusesCompleteOperations())
                                                      return APIERR_REFUSEDCMD;
                                                  return session.GetHost().Save(pars, par2);
                                              });
        case APIDo_OpenID:
            return CallWith<API_FileOpenPars>(function, "APIDo_OpenID", par1,
                                              [](Session& session, const auto& pars) -> GSErrCode {
                                                  if (pars.file == nullptr) return APIERR_BADPARS;
                                                  if (session.GetRegistry().RefusesCompleteOperations())
                                                      return APIERR_REFUSEDCMD;
                                                  return session.GetHost().Open(pars);
                                              });
        case APIDo_PublishID:
            return CallWith<API_PublishPars>(
                function, "APIDo_PublishID", par1, [par2](Session& session, const auto& pars) -> GSErrCode {
                    if (pars.path == nullptr) return APIERR_BADPARS;
                    if (session.GetRegistry().RefusesCompleteOperations()) return APIERR_REFUSEDCMD;
                    return session.GetHost().Publish(pars, static_cast<const GS::Array<API_Guid>*>(par2));
                });
        case APIDo_ShowAllIn3DID:
            return HostCall(function, "APIDo_ShowAllIn3DID",
                            [](Session& session) { return session.GetHost().ShowAllIn3D(); });
        case APIDo_ShowSelectionIn3DID:
            return HostCall(function, "APIDo_ShowSelectionIn3DID",
                            [](Session& session) { return session.GetHost().ShowSelectionIn3D(); });
        case APIDo_ZoomID:
            return HostCall(function, "APIDo_ZoomID", [&](Session& session) -> GSErrCode {
                if (par1 != nullptr || par2 != nullptr || par3 != nullptr) return APIERR_REFUSEDPAR;
                return session.GetHost().ZoomToFit();
            });
        case APIDo_ZoomToElementsID:
            return CallWith<GS::Array<API_Guid>>(function, "APIDo_ZoomToElementsID", par1,
                                                 [](Session& session, const auto& elements) {
                                                     return session.GetHost().ZoomToElements(elements);
                                                 });
        case APIDo_ChangeWindowID:
            return CallWith<API_WindowInfo>(
                function, "APIDo_ChangeWindowID", par1,
                [](Session& session, const auto& window) { return session.GetHost().ChangeWindow(window); });
    }
    return hostkit::UnknownCode(function);
}
