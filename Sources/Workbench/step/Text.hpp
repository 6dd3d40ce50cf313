#pragma once

#include <string>
#include <string_view>

namespace workbench::step {

/// UTF-8 text of what stands between a string's apostrophes: all directives of ISO 10303-21, doubled
/// apostrophes and backslashes, and what writers put there besides: raw UTF-8, Latin-1 and Shift-JIS bytes,
/// line ends (dropped).
std::string DecodeText(std::string_view encoded);
/// The string in apostrophes, 7-bit: everything else in hexadecimal.
std::string EncodeText(std::string_view utf8);
/// The shortest text that reads back as this number: "1.5", "0.", "1.E-5".
std::string EncodeReal(double number);

}  // namespace workbench::step
