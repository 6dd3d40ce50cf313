#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "DGModule.hpp"
#include "UniString.hpp"

// Values to and from the page. A missing value and a scalar of another kind read as nothing, without a word.
// An object or array where a scalar is wanted, or the reverse, throws "Bad cast.".

/// The text of a string, else empty.
GS::UniString GetStringFromJavaScriptVariable(const GS::Ref<DG::JSBase>& value);

/// The number of a double or an integer, else 0.
double GetDoubleFromJSVariable(const GS::Ref<DG::JSBase>& value);

/// True when the value is a boolean, which it then writes.
bool GetBoolFromJSVariable(const GS::Ref<DG::JSBase>& value, bool* out);

/// True when the value is an integer, which it then writes. A double is none, even a whole one.
bool GetIntegerFromJSVariable(const GS::Ref<DG::JSBase>& value, int* out);

/// Reads the items "x", "y", "z" of an object, in this order. False for a missing object or an empty item,
/// with the coordinates before it written; an item that the object does not have throws.
bool GetAPI_Vector3DFromJSVariable(const GS::Ref<DG::JSBase>& value, API_Coord3D* out);

/// The non-empty strings of an array, in order; empty strings and other scalars are dropped.
GS::Array<GS::UniString> GetStringArrayFromJSVariable(const GS::Ref<DG::JSBase>& value);

/// The object; null for a missing value.
GS::Ref<DG::JSObject> GetObjectFromJSVariable(const GS::Ref<DG::JSBase>& value);

/// A script value of a boolean, number or string; of an array, a script array of its items.
template <typename T>
GS::Ref<DG::JSBase> ConvertToJavaScriptVariable(const T& value) {
    return new DG::JSValue(value);
}

template <typename T>
GS::Ref<DG::JSBase> ConvertToJavaScriptVariable(const GS::Array<T>& items) {
    GS::Ref<DG::JSArray> array = new DG::JSArray();
    for (const T& item : items) {
        array->AddItem(ConvertToJavaScriptVariable(item));
    }
    return array;
}
