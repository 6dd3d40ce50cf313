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

}  // namespace

GSErrCode ACAPI_Environment(API_EnvironmentID code, void* par1, void* par2, void*) {
    constexpr auto function = "ACAPI_Environment";
    switch (code) {
        case APIEnv_ApplicationID:
            return HostCall(function, "APIEnv_ApplicationID", [&](Session& session) -> GSErrCode {
                auto* info = static_cast<API_ServerApplicationInfo*>(par1);
                if (info == nullptr) return APIERR_BADPARS;
                return session.GetHost().ApplicationInfo(*info);
            });
        case APIEnv_ProjectID:
            return HostCall(function, "APIEnv_ProjectID", [&](Session& session) -> GSErrCode {
                auto* info = static_cast<API_ProjectInfo*>(par1);
                if (info == nullptr || !IsFresh(*info)) return APIERR_BADPARS;
                return session.GetHost().ProjectInfo(*info);
            });
        case APIEnv_GetSpecFolderID:
            return HostCall(function, "APIEnv_GetSpecFolderID", [&](Session& session) -> GSErrCode {
                const auto* folder = static_cast<const API_SpecFolderID*>(par1);
                auto* location = static_cast<IO::Location*>(par2);
                if (folder == nullptr || location == nullptr) return APIERR_BADPARS;
                return session.GetHost().SpecialFolder(*folder, *location);
            });
    }
    return hostkit::UnknownCode(function);
}

GSErrCode ACAPI_Automate(API_AutomateID code, void* par1, void* par2, void*) {
    constexpr auto function = "ACAPI_Automate";
    switch (code) {
        case APIDo_SaveID:
            return HostCall(function, "APIDo_SaveID", [&](Session& session) -> GSErrCode {
                const auto* pars = static_cast<const API_FileSavePars*>(par1);
                if (pars == nullptr || pars->file == nullptr) return APIERR_BADPARS;
                if (session.GetRegistry().IsNotifying()) return APIERR_REFUSEDCMD;
                return session.GetHost().Save(*pars, par2);
            });
    }
    return hostkit::UnknownCode(function);
}
