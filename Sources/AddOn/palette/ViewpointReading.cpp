#include "geometry/SurveyPoint.hpp"
#include "geometry/Vector.hpp"
#include "palette/Viewpoint.hpp"
#include "script/ScriptValues.hpp"

// What the page hands over: the captured text as a script object, or the viewpoint of another tool. The
// camera must be there; without visibility all is shown, without a selection nothing is selected, and
// without sections the cutting planes stay as they are. A member of another kind than it should have makes
// the viewpoint unreadable; so does a missing coordinate, which throws.

namespace {

using Value = GS::Ref<DG::JSBase>;

/// The object's item; null when it is missing or empty.
Value Find(const DG::JSObject& object, const char* name) {
    const auto& items = object.GetItemTable();
    return items.ContainsKey(name) ? items[name] : Value();
}

/// The value as one of its kinds; null when it is of another, without throwing.
template <typename T>
const T* As(const Value& value) {
    return value == nullptr ? nullptr : dynamic_cast<const T*>(&*value);
}

bool ReadVector(const DG::JSObject& object, const char* name, API_Coord3D* vector) {
    const Value value = Find(object, name);
    return As<DG::JSObject>(value) != nullptr && GetAPI_Vector3DFromJSVariable(value, vector);
}

bool ReadDirection(const DG::JSObject& object, const char* name, API_Coord3D* direction) {
    if (!ReadVector(object, name, direction)) return false;
    *direction = NormalizeVector(*direction);
    return true;
}

bool ReadLocation(const DG::JSObject& object, API_Coord3D* location) {
    if (!ReadVector(object, "location", location)) return false;
    *location = TransformToModel(*location);
    return true;
}

bool ReadCameraType(const DG::JSObject& object, bool* perspective) {
    const Value value = Find(object, "cameraType");
    int type = 0;
    if (As<DG::JSValue>(value) == nullptr || !GetIntegerFromJSVariable(value, &type)) return false;
    *perspective = type != 0;
    return true;
}

bool ReadNumber(const DG::JSObject& object, const char* name, double* number) {
    const Value value = Find(object, name);
    const auto* const scalar = As<DG::JSValue>(value);
    if (scalar == nullptr) return false;
    if (scalar->GetType() != DG::JSValue::DOUBLE && scalar->GetType() != DG::JSValue::INTEGER) return false;
    *number = GetDoubleFromJSVariable(value);
    return true;
}

/// Both a boolean and what a captured text holds, 0 or 1.
bool ReadVisibility(const DG::JSObject& object, bool* visibility) {
    const Value value = Find(object, "visibility");
    *visibility = true;
    if (value == nullptr) return true;
    if (As<DG::JSValue>(value) == nullptr) return false;
    int number = 0;
    if (GetBoolFromJSVariable(value, visibility)) return true;
    if (!GetIntegerFromJSVariable(value, &number)) return false;
    *visibility = number != 0;
    return true;
}

/// Both IFC GUIDs and what a captured text holds, component records.
bool ReadComponents(const DG::JSObject& object, const char* name, GS::Array<GS::UniString>* ifcGuids) {
    const Value value = Find(object, name);
    if (value == nullptr) return true;
    const auto* const array = As<DG::JSArray>(value);
    if (array == nullptr) return false;

    for (const Value& item : array->GetItemArray()) {
        const auto* const component = As<DG::JSObject>(item);
        const Value ifcGuid = component != nullptr ? Find(*component, "ifcGuid") : item;
        if (ifcGuid != nullptr && As<DG::JSValue>(ifcGuid) == nullptr) return false;
        const GS::UniString text = GetStringFromJavaScriptVariable(ifcGuid);
        if (!text.IsEmpty()) ifcGuids->Push(text);
    }
    return true;
}

}  // namespace

bool KestranePalette::GetSectionFromJSVariable(const GS::Ref<DG::JSBase>& value, ACSection* section) {
    const auto* const object = As<DG::JSObject>(value);
    return object != nullptr && ReadLocation(*object, &section->location) &&
           ReadDirection(*object, "normal", &section->normal);
}

bool KestranePalette::GetSectionsFromJSVariable(const GS::Ref<DG::JSBase>& value,
                                                GS::Array<ACSection>* sections) {
    if (value == nullptr) return true;
    const auto* const array = As<DG::JSArray>(value);
    if (array == nullptr) return false;
    for (const Value& item : array->GetItemArray()) {
        ACSection section = {};
        if (!GetSectionFromJSVariable(item, &section)) return false;
        sections->Push(section);
    }
    return true;
}

bool KestranePalette::GetViewpointFromJSObject(const GS::Ref<DG::JSObject>& object, ACViewpoint* viewpoint) {
    if (object == nullptr) return false;
    const DG::JSObject& source = *object;
    const bool readable =
        ReadCameraType(source, &viewpoint->cameraType) && ReadLocation(source, &viewpoint->location) &&
        ReadDirection(source, "direction", &viewpoint->direction) &&
        ReadDirection(source, "up", &viewpoint->up) &&
        ReadNumber(source, "cameraFactor", &viewpoint->cameraFactor) &&
        ReadVisibility(source, &viewpoint->visibility) &&
        ReadComponents(source, "selectedGlobalIds", &viewpoint->selectedGlobalIds) &&
        ReadComponents(source, "visbilityExceptionGlobalIds", &viewpoint->visibilityExceptionGlobalIds) &&
        GetSectionsFromJSVariable(Find(source, "sections"), &viewpoint->sections);
    if (!readable) return false;
    viewpoint->side = CrossProduct(viewpoint->direction, viewpoint->up);
    return true;
}
