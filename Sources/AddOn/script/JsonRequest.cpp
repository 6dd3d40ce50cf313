#include "script/JsonRequest.hpp"

#include "script/Json.hpp"

JsonRequest::JsonRequest(const GS::UniString& text) : root(ParseJson(text)) {}

std::optional<GS::UniString> JsonRequest::GetString(const char* name) const {
    const JSON::ValueRef value = Find(name);
    if (value == nullptr || !value->IsString()) return std::nullopt;
    return JSON::StringValue::Cast(*value).Get();
}

std::optional<bool> JsonRequest::GetBool(const char* name) const {
    const JSON::ValueRef value = Find(name);
    if (value == nullptr || !value->IsBool()) return std::nullopt;
    return JSON::BoolValue::Cast(*value).Get();
}

JSON::ArrayValueRef JsonRequest::GetArray(const char* name) const {
    const JSON::ValueRef value = Find(name);
    if (value == nullptr || !value->IsArray()) return nullptr;
    return JSON::ArrayValue::Cast(value);
}

JSON::ValueRef JsonRequest::Find(const char* name) const {
    if (root == nullptr || !root->IsObject()) return nullptr;
    return JSON::ObjectValue::Cast(*root).Get(name);
}
