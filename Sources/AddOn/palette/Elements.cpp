#include "palette/Elements.hpp"

#include "host/Elements.hpp"
#include "palette/KestranePalette.hpp"

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
