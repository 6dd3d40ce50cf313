#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Workbench/dwg/Drawing.hpp"

namespace workbench::dwg {

/// UTF-8 in the drawing's code page (Windows 1252), other characters as "\U+20AC". Bytes that are no UTF-8
/// become "?".
std::string EncodeText(std::string_view utf8);

/// The layers' names as a CAD program takes them, encoded: without the characters that it refuses, not too
/// long, and no two equal, whichever letters are capitals.
std::vector<std::string> LayerNames(const std::vector<Layer>& layers);

/// The index that comes nearest to a colour, never 7, which depends on the background. Shares of 0 to 1.
Colour NearestColour(double red, double green, double blue);

}  // namespace workbench::dwg
