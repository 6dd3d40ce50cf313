#include "HostKit/API/HostCall.hpp"

using hostkit::HostCall;
using hostkit::Session;

GSErrCode ACAPI_Goodies(API_GoodiesID code, void* par1, void* par2, void*, void*) {
    constexpr auto function = "ACAPI_Goodies";
    switch (code) {
        case APIAny_InitMDCLParameterListID:
            return HostCall(function, "APIAny_InitMDCLParameterListID",
                            [par1](Session& session) -> GSErrCode {
                                auto* list = static_cast<GSHandle*>(par1);
                                if (list == nullptr) return APIERR_BADPARS;
                                *list = session.GetParameterLists().Create();
                                return *list != nullptr ? NoError : static_cast<GSErrCode>(APIERR_MEMFULL);
                            });
        case APIAny_AddMDCLParameterID:
            return HostCall(function, "APIAny_AddMDCLParameterID",
                            [par1, par2](Session& session) -> GSErrCode {
                                auto* list = session.GetParameterLists().Find(static_cast<GSHandle>(par1));
                                const auto* parameter = static_cast<const API_MDCLParameter*>(par2);
                                if (list == nullptr || parameter == nullptr) return APIERR_BADPARS;
                                return list->Add(*parameter);
                            });
        case APIAny_FreeMDCLParameterListID:
            return HostCall(function, "APIAny_FreeMDCLParameterListID",
                            [par1](Session& session) -> GSErrCode {
                                auto* list = static_cast<GSHandle*>(par1);
                                if (list == nullptr || !session.GetParameterLists().Kill(list))
                                    return APIERR_BADPARS;
                                return NoError;
                            });
    }
    return hostkit::UnknownCode(function);
}

GSErrCode ACAPI_Command_Call(const API_ModulID* mdid, GSType cmdID, Int32 cmdVersion, GSHandle params,
                             GSPtr resultData, bool silentMode) {
    return HostCall("ACAPI_Command_Call", [&](Session& session) -> GSErrCode {
        const auto* list = session.GetParameterLists().Find(params);
        if (mdid == nullptr || list == nullptr) return APIERR_BADPARS;
        if (session.GetRegistry().RefusesCompleteOperations()) return APIERR_REFUSEDCMD;
        return session.GetHost().CallCommand({*mdid, cmdID, cmdVersion, silentMode}, *list, resultData);
    });
}
