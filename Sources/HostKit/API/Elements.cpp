#include "HostKit/API/HostCall.hpp"
#include "HostKit/API/IfcGuid.hpp"
#include "HostKit/GSRoot/Text.hpp"

using hostkit::HostCall;
using hostkit::Session;

GSErrCode ACAPI_Element_GetElemList(const API_ElemType& type, GS::Array<API_Guid>* list,
                                    API_ElemFilterFlags filter, const API_Guid&) {
    return HostCall("ACAPI_Element_GetElemList", [&](Session& session) -> GSErrCode {
        if (list == nullptr) return APIERR_BADPARS;
        list->Clear();
        return session.GetHost().ElementList(type, filter, *list);
    });
}

GSErrCode ACAPI_Element_Get(API_Element* element, UInt32) {
    return HostCall("ACAPI_Element_Get", [&](Session& session) -> GSErrCode {
        if (element == nullptr) return APIERR_BADPARS;
        return session.GetHost().Element(*element);
    });
}

GSErrCode ACAPI_Element_GetHeader(API_Elem_Head* header, UInt32) {
    return HostCall("ACAPI_Element_GetHeader", [&](Session& session) -> GSErrCode {
        if (header == nullptr) return APIERR_BADPARS;
        return session.GetHost().ElementHeader(*header);
    });
}

GSErrCode ACAPI_Element_Get3DInfo(const API_Elem_Head& header, API_ElemInfo3D* info) {
    return HostCall("ACAPI_Element_Get3DInfo", [&](Session& session) -> GSErrCode {
        if (info == nullptr) return APIERR_BADPARS;
        return session.GetHost().Element3DInfo(header, *info);
    });
}

GSErrCode ACAPI_IFC_GetIFCExportTranslatorsList(GS::Array<API_IFCTranslatorIdentifier>& translators) {
    return HostCall("ACAPI_IFC_GetIFCExportTranslatorsList", [&](Session& session) {
        translators.Clear();
        return session.GetHost().ExportTranslators(translators);
    });
}

GSErrCode ACAPI_IFC_IFCGuidToAPIGuid(const GS::UniString& ifcGuid, API_Guid& apiGuid) {
    return HostCall("ACAPI_IFC_IFCGuidToAPIGuid", [&](Session&) -> GSErrCode {
        const auto guid = hostkit::FromIfcGuid(hostkit::ToUtf8(ifcGuid));
        if (!guid) return APIERR_BADPARS;
        apiGuid = *guid;
        return NoError;
    });
}

GSErrCode ACAPI_IFC_APIGuidToIFCGuid(const API_Guid& apiGuid, GS::UniString& ifcGuid) {
    return HostCall("ACAPI_IFC_APIGuidToIFCGuid", [&](Session&) {
        ifcGuid = hostkit::ToUniString(hostkit::ToIfcGuid(apiGuid));
        return NoError;
    });
}
