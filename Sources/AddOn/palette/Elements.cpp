#include "palette/Elements.hpp"

#include "host/Elements.hpp"
#include "host/View3D.hpp"
#include "palette/KestranePalette.hpp"
#include "script/Json.hpp"

#include <algorithm>
#include <limits>

namespace {

void Include(API_Box3D& box, const API_Box3D& other) {
    box.xMin = std::min(box.xMin, other.xMin);
    box.yMin = std::min(box.yMin, other.yMin);
    box.zMin = std::min(box.zMin, other.zMin);
    box.xMax = std::max(box.xMax, other.xMax);
    box.yMax = std::max(box.yMax, other.yMax);
    box.zMax = std::max(box.zMax, other.zMax);
}

}  // namespace

API_Box3D GetBoundingBox() {
    const std::optional<GS::Array<API_Guid>> guids = ListElements(APIFilt_None);
    if (!guids || guids->IsEmpty()) return {};

    constexpr double largest = std::numeric_limits<double>::max();
    API_Box3D box = {largest, largest, largest, -largest, -largest, -largest};
    for (const API_Guid& guid : *guids) {
        if (const std::optional<API_Box3D> bounds = GetElementBounds(guid)) Include(box, *bounds);
    }
    return box;
}

GS::Array<API_Element> KestranePalette::GetElementInfos() {
    GS::Array<API_Element> elements;
    const std::optional<GS::Array<API_Guid>> guids = ListElements(APIFilt_None);
    if (!guids) return elements;

    for (const API_Guid& guid : *guids) {
        if (const std::optional<API_Element> element = GetElement(guid)) elements.Push(*element);
    }
    return elements;
}

API_Guid KestranePalette::GetElementGuidFromIfcGuid(const GS::UniString& ifcGuid) {
    API_Guid guid = APINULLGuid;
    if (ACAPI_IFC_IFCGuidToAPIGuid(ifcGuid, guid) != NoError) return APINULLGuid;
    // What was made in the host bears its own GUID as IFC GUID: the common case.
    if (GetElement(guid)) return guid;
    for (const API_Guid& element : FindElementsByIfcIdentifier(guid)) {
        if (GetElement(element)) return element;
    }
    return APINULLGuid;
}

GS::Array<API_Guid> KestranePalette::GetElementsFromJSIfcGuids(const GS::Array<GS::UniString>& ifcGuids,
                                                               GS::Array<GS::UniString>* unresolved) {
    GS::Array<API_Guid> elements;
    for (const GS::UniString& ifcGuid : ifcGuids) {
        const API_Guid element = GetElementGuidFromIfcGuid(ifcGuid);
        if (element != APINULLGuid) {
            elements.Push(element);
        } else if (unresolved != nullptr) {
            unresolved->Push(ifcGuid);
        }
    }
    return elements;
}

GS::Array<API_Neig> KestranePalette::GetElementNeigs(const GS::Array<API_Guid>& elements) {
    GS::Array<API_Neig> neigs;
    for (const API_Guid& element : elements)
        neigs.PushNew(element);
    return neigs;
}

GS::UniString KestranePalette::MakeComponentJSONString(const API_Guid& element) {
    const GS::UniString name = GetElementIdText(element);
    GS::UniString ifcGuid;
    if (const std::optional<IfcIdentifiers> ifc = GetIfcIdentifiers(element))
        ACAPI_IFC_APIGuidToIFCGuid(ifc->external != APINULLGuid ? ifc->external : ifc->own, ifcGuid);
    return MakeComponentJSONString(ifcGuid, name);
}

GS::UniString KestranePalette::MakeComponentJSONString(const GS::UniString& ifcGuid,
                                                       const GS::UniString& name) {
    JSON::ObjectValue component;
    component.AddValue("ifcGuid", new JSON::StringValue(ifcGuid));
    component.AddValue("name", new JSON::StringValue(name));
    return WriteJson(component);
}

GS::Array<GS::UniString> KestranePalette::GetComponentInfos(const GS::Array<API_Guid>& elements) {
    GS::Array<GS::UniString> infos;
    for (const API_Guid& element : elements)
        infos.Push(MakeComponentJSONString(element));
    return infos;
}

GS::Array<GS::UniString> KestranePalette::GetElementInfos(const GS::Array<API_Neig>& elements) {
    GS::Array<GS::UniString> infos;
    for (const API_Neig& element : elements)
        infos.Push(MakeComponentJSONString(element.guid));
    return infos;
}

GS::Array<GS::UniString> KestranePalette::GetElementNames(const GS::Array<GS::UniString>& ifcGuids) {
    GS::Array<GS::UniString> unresolved;
    GS::Array<GS::UniString> infos = GetComponentInfos(GetElementsFromJSIfcGuids(ifcGuids, &unresolved));
    for (const GS::UniString& ifcGuid : unresolved)
        infos.Push(MakeComponentJSONString(ifcGuid, GS::UniString()));
    return infos;
}

GS::Array<GS::UniString> KestranePalette::GetSelectedElements() {
    return GetElementInfos(GetSelection());
}

void KestranePalette::HighlightSelectedElements(const GS::Array<API_Neig>& elements) {
    // What is to be seen may be cut away.
    CuttingPlanes planes;
    if (planes.Load() == NoError && planes.AreOn()) {
        planes.Switch(false);
        if (planes.Apply() == NoError) Open3DView();
    }
    ACAPI_Element_DeselectAll();
    HighlightElements(elements);
}

void KestranePalette::HighlightElements(const GS::Array<API_Neig>& elements) {
    if (!elements.IsEmpty()) ACAPI_Element_Select(elements, true);
}

bool KestranePalette::ZoomToElement(const API_Guid& element) {
    return ZoomTo({element}) == NoError;
}
