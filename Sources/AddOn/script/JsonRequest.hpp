#pragma once

#include "UniString.hpp"
#include "Value.hpp"

#include <optional>

/// A request of the page: the text of one JSON object. A text that is none has no members.
class JsonRequest {
  public:
    explicit JsonRequest(const GS::UniString& text);

    /// The member's value; none when it is missing or of another kind.
    std::optional<GS::UniString> GetString(const char* name) const;
    std::optional<bool> GetBool(const char* name) const;

    /// The member's values; null when it is missing or no array.
    JSON::ArrayValueRef GetArray(const char* name) const;

  private:
    JSON::ValueRef Find(const char* name) const;

    JSON::ValueRef root;
};
