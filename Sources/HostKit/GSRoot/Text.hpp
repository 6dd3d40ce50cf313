#pragma once

#include <string>
#include <string_view>

#include "UniString.hpp"

namespace hostkit {

// Bytes to UTF-16; each ill-formed sequence becomes one U+FFFD.
std::u16string Utf16(std::string_view utf8);

// UTF-16 to bytes; a surrogate without its partner becomes U+FFFD.
std::string Utf8(std::u16string_view utf16);

// The host's text from and to the standard library's (UTF-8, embedded zeros kept).
GS::UniString ToUniString(std::string_view utf8);
std::string ToUtf8(const GS::UniString& text);

}  // namespace hostkit
