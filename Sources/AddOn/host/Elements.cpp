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

std::optional<API_Box3D> GetElementBounds(const API_Guid& guid) {
    API_Elem_Head header = {};
    header.guid = guid;
    if (ACAPI_Element_GetHeader(&header) != NoError) return std::nullopt;

    API_ElemInfo3D info = {};
    if (ACAPI_Element_Get3DInfo(header, &info) != NoError) return std::nullopt;
    return info.bounds;
}
