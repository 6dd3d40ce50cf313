#include "script/ScriptValues.hpp"

namespace {

/// The value as one of its kinds; null for none. Throws by itself: not every host's own cast does.
template <typename T>
GS::Ref<T> CastTo(const GS::Ref<DG::JSBase>& value) {
    GS::Ref<T> cast = GS::DynamicCast<T>(value);
    if (value != nullptr && cast == nullptr) throw GS::ClassCastException();
    return cast;
}

/// The scalar; null for none or for one of another kind; throws for an object or array.
GS::Ref<DG::JSValue> Scalar(const GS::Ref<DG::JSBase>& value) {
    return CastTo<DG::JSValue>(value);
}

}  // namespace

GS::UniString GetStringFromJavaScriptVariable(const GS::Ref<DG::JSBase>& value) {
    const GS::Ref<DG::JSValue> scalar = Scalar(value);
    if (scalar == nullptr || scalar->GetType() != DG::JSValue::STRING) return GS::UniString();
    return scalar->GetString();
}

double GetDoubleFromJSVariable(const GS::Ref<DG::JSBase>& value) {
    const GS::Ref<DG::JSValue> scalar = Scalar(value);
    if (scalar == nullptr) return 0.0;
    if (scalar->GetType() == DG::JSValue::DOUBLE) return scalar->GetDouble();
    if (scalar->GetType() == DG::JSValue::INTEGER) return scalar->GetInteger();
    return 0.0;
}

bool GetBoolFromJSVariable(const GS::Ref<DG::JSBase>& value, bool* out) {
    const GS::Ref<DG::JSValue> scalar = Scalar(value);
    if (scalar == nullptr || scalar->GetType() != DG::JSValue::BOOL) return false;
    *out = scalar->GetBool();
    return true;
}

bool GetIntegerFromJSVariable(const GS::Ref<DG::JSBase>& value, int* out) {
    const GS::Ref<DG::JSValue> scalar = Scalar(value);
    if (scalar == nullptr || scalar->GetType() != DG::JSValue::INTEGER) return false;
    *out = scalar->GetInteger();
    return true;
}

bool GetAPI_Vector3DFromJSVariable(const GS::Ref<DG::JSBase>& value, API_Coord3D* out) {
    if (value == nullptr) return false;

    const auto& items = CastTo<DG::JSObject>(value)->GetItemTable();
    const auto read = [&items](const char* name, double& coordinate) {
        const GS::Ref<DG::JSBase> item = items[name];
        if (item == nullptr) return false;
        coordinate = GetDoubleFromJSVariable(item);
        return true;
    };
    return read("x", out->x) && read("y", out->y) && read("z", out->z);
}

GS::Array<GS::UniString> GetStringArrayFromJSVariable(const GS::Ref<DG::JSBase>& value) {
    GS::Array<GS::UniString> texts;
    if (value == nullptr) return texts;

    for (const GS::Ref<DG::JSBase>& item : CastTo<DG::JSArray>(value)->GetItemArray()) {
        const GS::UniString text = GetStringFromJavaScriptVariable(item);
        if (!text.IsEmpty()) texts.Push(text);
    }
    return texts;
}

GS::Ref<DG::JSObject> GetObjectFromJSVariable(const GS::Ref<DG::JSBase>& value) {
    return CastTo<DG::JSObject>(value);
}
