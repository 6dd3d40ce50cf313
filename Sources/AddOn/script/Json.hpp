#pragma once

#include "UniString.hpp"
#include "Value.hpp"

/// Null when the text does not parse, whichever way the host's parser says so.
JSON::ValueRef ParseJson(const GS::UniString& text);

/// The text of an object or array, without line breaks.
GS::UniString WriteJson(const JSON::Value& root);

/// A JSON object that is read strictly: what is no object, and a member of another kind than asked for,
/// throws "Bad cast."; a member that is missing throws "Null reference.".
class JsonObject {
  public:
    explicit JsonObject(const JSON::ValueRef& value);

    bool Has(const char* name) const;
    GS::UniString GetText(const char* name) const;
    bool GetFlag(const char* name) const;
    JSON::ArrayValueRef GetArray(const char* name) const;

  private:
    JSON::ObjectValueRef object;
};
