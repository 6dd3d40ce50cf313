#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "API_Guid.hpp"

namespace hostkit {

// The 22 characters of an IFC GlobalId, and back: nothing for a text that stands for no 128-bit number.
std::array<char, 22> IfcGuidCharacters(const API_Guid& guid);
std::string ToIfcGuid(const API_Guid& guid);
std::optional<API_Guid> FromIfcGuid(std::string_view text);

}  // namespace hostkit
