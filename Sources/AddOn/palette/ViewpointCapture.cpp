#include "geometry/SurveyPoint.hpp"
#include "geometry/Vector.hpp"
#include "host/Elements.hpp"
#include "host/View3D.hpp"
#include "palette/Viewpoint.hpp"
#include "script/JsonText.hpp"

#include "JDOMWriter.hpp"

#include <memory>
#include <utility>

namespace {

GS::UniString IntegerText(int number) {
    return GS::UniString::Printf("%d", number);
}

GS::UniString ArrayText(const GS::Array<GS::UniString>& items) {
    return WrapString(JoinStrings(items, ","), "[", "]");
}

JSON::ValueRef ToJson(const API_Coord3D& point) {
    JSON::ObjectValueRef object = new JSON::ObjectValue();
    object->AddValue("x", new JSON::NumberValue(point.x));
    object->AddValue("y", new JSON::NumberValue(point.y));
    object->AddValue("z", new JSON::NumberValue(point.z));
    return object;
}

GS::UniString SectionsText(const GS::Array<ACSection>& sections) {
    JSON::ArrayValue array;
    for (const ACSection& section : sections) {
        JSON::ObjectValueRef object = new JSON::ObjectValue();
        object->AddValue("location", ToJson(section.location));
        object->AddValue("normal", ToJson(section.normal));
        array.AddValue(object);
    }
    constexpr bool formatted = false;
    constexpr int digits = 10;
    GS::UniString text;
    const JSON::JDOMStringWriter writer(array, text, formatted, digits);
    return text;
}

ACSection ToSection(const API_3DCutShapeType& shape) {
    const API_Coord3D normal = NormalizeVector({shape.pa, shape.pb, shape.pc});
    // The distance counts along the normal of length 1, whatever the length of the coefficients.
    const API_Coord3D location = ScaleVector(normal, shape.pd);
    return {TransformVector(location.x, location.y, location.z),
            NormalizeVector(TransformVector(normal.x, normal.y, normal.z))};
}

}  // namespace

void KestranePalette::InsertViewpoint(const GS::UniString& imageId) {
    // As a whole, without a lock: the page may take a viewpoint while a job answers.
    std::atomic_store(&pendingImageId, std::make_shared<const GS::UniString>(imageId));
    browser.ExecuteJS("InsertViewpoint()");
}

GS::UniString KestranePalette::GetViewpoint() {
    const std::shared_ptr<const GS::UniString> imageId = std::atomic_load(&GetInstance().pendingImageId);
    if (!imageId || imageId->IsEmpty()) return GS::UniString();
    const std::optional<API_3DProjectionInfo> projection = GetProjection();
    if (!projection) return GS::UniString();

    ACViewpoint viewpoint;
    viewpoint.imageId = *imageId;
    if (projection->isPersp) {
        GetPerspectViewpoint(*projection, &viewpoint);
    } else {
        GetOrthogonalViewpoint(*projection, &viewpoint);
    }
    viewpoint.creatingTool = "Archicad";
    return GetJsonStringFromViewpoint(viewpoint);
}

void KestranePalette::GetPerspectViewpoint(API_3DProjectionInfo projection, ACViewpoint* viewpoint) {
    const API_PerspPars& persp = projection.u.persp;
    viewpoint->cameraType = projection.isPersp;
    viewpoint->cameraFactor = persp.viewCone;
    viewpoint->location = TransformVector(persp.pos.x, persp.pos.y, persp.cameraZ);
    const API_Coord3D target = TransformVector(persp.target.x, persp.target.y, persp.targetZ);
    viewpoint->direction = NormalizeVector(SubtractVector(target, viewpoint->location));
    // Both are zero for a camera that looks straight up or down.
    viewpoint->side = NormalizeVector(CrossProduct({0, 0, 1}, viewpoint->direction));
    viewpoint->up = NormalizeVector(CrossProduct(viewpoint->direction, viewpoint->side));
}

void KestranePalette::GetOrthogonalViewpoint(API_3DProjectionInfo projection, ACViewpoint* viewpoint) {
    // The rows as they are: other than a perspective camera, this one stays in the model's coordinates.
    const double* rows = projection.u.axono.tranmat.tmx;
    viewpoint->cameraType = false;
    viewpoint->up = {rows[0], rows[1], rows[2]};
    viewpoint->direction = {rows[4], rows[5], rows[6]};
    viewpoint->location = {rows[8], rows[9], rows[10]};
}

GS::Array<ACSection> KestranePalette::GetSections() {
    GS::Array<ACSection> sections;
    CuttingPlanes planes;
    if (planes.Load() != NoError || !planes.AreOn()) return sections;
    for (short i = 0; i < planes.GetCount(); ++i)
        sections.Push(ToSection(planes[i]));
    return sections;
}

bool KestranePalette::GetVisibilityProps(VisibilityProps* props) {
    const std::optional<GS::Array<API_Guid>> elements = ListElements(APIFilt_None);
    if (!elements) return false;

    GS::Array<API_Guid> shown;
    GS::Array<API_Guid> hidden;
    for (const API_Guid& element : *elements)
        (ACAPI_Element_Filter(element, APIFilt_In3D) ? shown : hidden).Push(element);
    props->visibility = shown.GetSize() > hidden.GetSize();
    props->exceptions = std::move(props->visibility ? hidden : shown);
    return true;
}

GS::UniString KestranePalette::GetJsonStringFromViewpoint(ACViewpoint viewpoint) {
    GS::Array<GS::UniString> members;
    const auto add = [&members](const char* name, const GS::UniString& value, bool raw = true) {
        members.Push(GetJSONElementString(name, value, raw));
    };
    add("cameraType", IntegerText(viewpoint.cameraType));
    add("location", GetUniStringFromVector(viewpoint.location));
    add("direction", GetUniStringFromVector(viewpoint.direction));
    add("up", GetUniStringFromVector(viewpoint.up));
    add("cameraFactor", GetUniStringFromDouble(viewpoint.cameraFactor));
    add("imageId", viewpoint.imageId, false);
    add("creatingTool", viewpoint.creatingTool, false);
    // The rest is the window's state as it is while the text is written.
    add("selectedGlobalIds", ArrayText(GetSelectedElements()));
    VisibilityProps props;
    if (GetVisibilityProps(&props)) {
        add("visibility", IntegerText(props.visibility));
        add("visbilityExceptionGlobalIds", ArrayText(GetComponentInfos(props.exceptions)));
    }
    add("sections", SectionsText(GetSections()));
    return WrapString(JoinStrings(members, ","), "{", "}");
}
