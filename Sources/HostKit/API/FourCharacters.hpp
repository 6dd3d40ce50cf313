#pragma once

#include "Definitions.hpp"

namespace hostkit {

// The number that a four-character code stands for: the first character in the highest byte.
constexpr Int32 FourCharacters(const char (&code)[5]) {
    UInt32 value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(code[i]);
    return static_cast<Int32>(value);
}

}  // namespace hostkit
