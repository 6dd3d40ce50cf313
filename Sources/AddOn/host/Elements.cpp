#include "host/Elements.hpp"

std::optional<GS::Array<API_Guid>> ListElements(API_ElemFilterFlags filter) {
    GS::Array<API_Guid> guids;
    if (ACAPI_Element_GetElemList(API_ZombieElemID, &guids, filter) != NoError) return std::nullopt;
    return guids;
}

std::optional<API_Element> GetElement(const API_Guid& guid) {
    API_Element element = {};
    element.header.guid = guid;
    if (ACAPI_Element_Get(&element) != NoError) return std::nullopt;
    return element;
}

GSErrCode CreateElement(const API_Element& element) {
    API_Element created = element;
    return ACAPI_Element_Create(&created, nullptr);
}

GSErrCode RunUndoable(const GS::UniString& name, const std::function<GSErrCode()>& body) {
    return ACAPI_CallUndoableCommand(name, body);
}

std::optional<API_Box3D> GetElementBounds(const API_Guid& guid) {
    API_Elem_Head header = {};
    header.guid = guid;
    if (ACAPI_Element_GetHeader(&header) != NoError) return std::nullopt;

    API_ElemInfo3D info = {};
    if (ACAPI_Element_Get3DInfo(header, &info) != NoError) return std::nullopt;
    return info.bounds;
}

GS::UniString GetElementIdText(const API_Guid& guid) {
    API_Guid element = guid;
    GS::UniString text;
    if (ACAPI_Database(APIDb_GetElementInfoStringID, &element, &text) != NoError) return GS::UniString();
    return text;
}

std::optional<IfcIdentifiers> GetIfcIdentifiers(const API_Guid& guid) {
    IfcIdentifiers identifiers = {APINULLGuid, APINULLGuid};
    if (ACAPI_Element_GetIFCIdentifier(guid, identifiers.own, identifiers.external) != NoError)
        return std::nullopt;
    return identifiers;
}

GS::Array<API_Guid> FindElementsByIfcIdentifier(const API_Guid& identifier) {
    GS::Array<API_Guid> elements;
    if (ACAPI_Element_GetElemListByIFCIdentifier(nullptr, &identifier, elements) != NoError) return {};
    if (elements.IsEmpty() &&
        ACAPI_Element_GetElemListByIFCIdentifier(&identifier, nullptr, elements) != NoError) {
        return {};
    }
    return elements;
}

GS::Array<API_Neig> GetSelection() {
    API_SelectionInfo info = {};
    GS::Array<API_Neig> elements;
    const GSErrCode error = ACAPI_Selection_Get(&info, &elements, false, false, API_InsidePartially);
    auto* marquee = reinterpret_cast<GSHandle>(info.marquee.coords);
    if (marquee != nullptr) BMKillHandle(&marquee);
    return error == NoError ? elements : GS::Array<API_Neig>();
}
