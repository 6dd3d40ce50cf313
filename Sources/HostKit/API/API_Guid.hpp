#pragma once

#include "Guid.hpp"

// The same sixteen bytes as a GS::Guid, as a plain record.
struct API_Guid {
    UInt32 timeLow;
    UInt16 timeMid;
    UInt16 timeHigh;
    UInt8 node[8];
};

inline constexpr API_Guid APINULLGuid = {};

inline bool operator==(const API_Guid& a, const API_Guid& b) {
    return std::memcmp(&a, &b, sizeof(a)) == 0;
}
inline bool operator!=(const API_Guid& a, const API_Guid& b) {
    return !(a == b);
}
inline bool operator<(const API_Guid& a, const API_Guid& b) {
    return std::memcmp(&a, &b, sizeof(a)) < 0;
}

API_Guid GSGuid2APIGuid(const GS::Guid& guid);
GS::Guid APIGuid2GSGuid(const API_Guid& guid);

// 8-4-4-4-12 digits, upper case; reading takes braces too and gives the null GUID for other texts.
GS::UniString APIGuidToString(const API_Guid& guid);
API_Guid APIGuidFromString(const char* text);
