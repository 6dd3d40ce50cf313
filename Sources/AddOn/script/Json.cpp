#include "script/Json.hpp"

#include "JDOMParser.hpp"
#include "JDOMWriter.hpp"

namespace {

/// Throws by itself: not every host's own cast does.
template <typename Kind>
GS::Ref<Kind> CastTo(const JSON::ValueRef& value) {
    if (value == nullptr) throw GS::NullReferenceException();
    GS::Ref<Kind> cast = Kind::Cast(value);
    if (cast == nullptr) throw GS::ClassCastException();
    return cast;
}

}  // namespace

JSON::ValueRef ParseJson(const GS::UniString& text) {
    try {
        JSON::JDOMStringParser parser;
        return parser.Parse(text);
    } catch (const GS::Exception&) {
        return nullptr;
    }
}

GS::UniString WriteJson(const JSON::Value& root) {
    GS::UniString text;
    const JSON::JDOMStringWriter writer(root, text);
    return text;
}

JsonObject::JsonObject(const JSON::ValueRef& value) : object(CastTo<JSON::ObjectValue>(value)) {}

bool JsonObject::Has(const char* name) const {
    return object->HasMember(name);
}

GS::UniString JsonObject::GetText(const char* name) const {
    return CastTo<JSON::StringValue>(object->Get(name))->Get();
}

bool JsonObject::GetFlag(const char* name) const {
    return CastTo<JSON::BoolValue>(object->Get(name))->Get();
}

JSON::ArrayValueRef JsonObject::GetArray(const char* name) const {
    return CastTo<JSON::ArrayValue>(object->Get(name));
}
