#include "HostKit/API/HostCall.hpp"
#include "HostKit/API/IfcGuid.hpp"
#include "HostKit/GSRoot/Text.hpp"

using hostkit::HostCall;
using hostkit::Session;

namespace {

// From the beginning of an undoable command to its end, also when its body throws.
class UndoScope {
  public:
    UndoScope(Session& session, const GS::UniString& name) : session(session) {
        session.GetRegistry().SetInUndoScope(true);
        session.GetHost().BeginUndoable(name);
    }
    ~UndoScope() {
        session.GetRegistry().SetInUndoScope(false);
        session.GetHost().EndUndoable(succeeded);
    }
    UndoScope(const UndoScope&) = delete;
    UndoScope& operator=(const UndoScope&) = delete;

    GSErrCode Run(const std::function<GSErrCode()>& body) {
        const GSErrCode error = body();
        succeeded = error == NoError;
        return error;
    }

  private:
    Session& session;
    bool succeeded = false;
};

}  // namespace

GSErrCode ACAPI_Element_GetElemList(const API_ElemType& type, GS::Array<API_Guid>* list,
                                    API_ElemFilterFlags filter, const API_Guid&) {
    return HostCall("ACAPI_Element_GetElemList", [&](Session& session) -> GSErrCode {
        if (list == nullptr) return APIERR_BADPARS;
        list->Clear();
        return session.GetHost().ElementList(type, filter, *list);
    });
}

bool ACAPI_Element_Filter(const API_Guid& guid, API_ElemFilterFlags filter, API_ElemVariationID,
                          const API_Guid&) {
    bool passes = false;
    const GSErrCode error = HostCall("ACAPI_Element_Filter", [&](Session& session) {
        passes = session.GetHost().PassesFilter(guid, filter);
        return NoError;
    });
    return error == NoError && passes;
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

GSErrCode ACAPI_CallUndoableCommand(const GS::UniString& undoName, const std::function<GSErrCode()>& body) {
    return HostCall("ACAPI_CallUndoableCommand", [&](Session& session) -> GSErrCode {
        if (!body) return APIERR_BADPARS;
        hostkit::Registry& registry = session.GetRegistry();
        if (registry.RefusesCompleteOperations()) return APIERR_REFUSEDCMD;
        UndoScope scope(session, undoName);
        return scope.Run(body);
    });
}

GSErrCode ACAPI_Element_Create(API_Element* element, API_ElementMemo*) {
    return HostCall("ACAPI_Element_Create", [&](Session& session) -> GSErrCode {
        if (element == nullptr) return APIERR_BADPARS;
        if (!session.GetRegistry().IsInUndoScope()) return APIERR_NEEDSUNDOSCOPE;
        return session.GetHost().CreateElement(*element);
    });
}

GSErrCode ACAPI_Element_Get3DInfo(const API_Elem_Head& header, API_ElemInfo3D* info) {
    return HostCall("ACAPI_Element_Get3DInfo", [&](Session& session) -> GSErrCode {
        if (info == nullptr) return APIERR_BADPARS;
        return session.GetHost().Element3DInfo(header, *info);
    });
}

GSErrCode ACAPI_Element_Select(const GS::Array<API_Neig>& elements, bool add) {
    return HostCall("ACAPI_Element_Select",
                    [&](Session& session) { return session.GetHost().Select(elements, add); });
}

GSErrCode ACAPI_Element_DeselectAll() {
    return HostCall("ACAPI_Element_DeselectAll",
                    [](Session& session) { return session.GetHost().DeselectAll(); });
}

GSErrCode ACAPI_Selection_Get(API_SelectionInfo* info, GS::Array<API_Neig>* elements, bool, bool,
                              API_SelRelativePosID) {
    return HostCall("ACAPI_Selection_Get", [&](Session& session) -> GSErrCode {
        if (info == nullptr || elements == nullptr) return APIERR_BADPARS;
        *info = {};
        elements->Clear();
        return session.GetHost().Selection(*info, *elements);
    });
}

GSErrCode ACAPI_Element_GetIFCIdentifier(const API_Guid& element, API_Guid& archicadIFCID,
                                         API_Guid& externalIFCID) {
    return HostCall("ACAPI_Element_GetIFCIdentifier", [&](Session& session) {
        return session.GetHost().IfcIdentifier(element, archicadIFCID, externalIFCID);
    });
}

GSErrCode ACAPI_Element_GetElemListByIFCIdentifier(const API_Guid* archicadIFCID,
                                                   const API_Guid* externalIFCID,
                                                   GS::Array<API_Guid>& elements) {
    return HostCall("ACAPI_Element_GetElemListByIFCIdentifier", [&](Session& session) -> GSErrCode {
        if (archicadIFCID == nullptr && externalIFCID == nullptr) return APIERR_BADPARS;
        elements.Clear();
        return session.GetHost().ElementsByIfcIdentifier(archicadIFCID, externalIFCID, elements);
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
        const auto text = hostkit::IfcGuidCharacters(apiGuid);
        ifcGuid = GS::UniString(text.data(), static_cast<USize>(text.size()));
        return NoError;
    });
}
