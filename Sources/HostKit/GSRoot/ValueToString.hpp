#pragma once

#include "Definitions.hpp"

namespace GS {

// Writes the shortest text that reads back as the same number, zero-terminated, with "." as decimal mark.
// Throws IllegalArgumentException when the buffer is too small.
void valuetostr(double value, char* buffer, USize bufferSize);

}  // namespace GS
