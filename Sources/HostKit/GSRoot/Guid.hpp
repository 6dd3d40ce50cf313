#pragma once

#include "UniString.hpp"

namespace GS {

// Sixteen bytes in the layout of the system's GUID record.
struct Guid {
    Guid() = default;

    // 8-4-4-4-12 hexadecimal digits, with or without braces; any other text gives the null GUID.
    explicit Guid(const UniString& text);

    // Upper case, without braces.
    UniString ToUniString() const;

    bool IsNull() const { return *this == Guid(); }

    friend bool operator==(const Guid& a, const Guid& b) { return std::memcmp(&a, &b, sizeof(Guid)) == 0; }
    friend bool operator!=(const Guid& a, const Guid& b) { return !(a == b); }
    friend bool operator<(const Guid& a, const Guid& b) { return std::memcmp(&a, &b, sizeof(Guid)) < 0; }

    UInt32 timeLow = 0;
    UInt16 timeMid = 0;
    UInt16 timeHigh = 0;
    UInt8 node[8] = {};
};

inline const Guid NULLGuid;

}  // namespace GS
