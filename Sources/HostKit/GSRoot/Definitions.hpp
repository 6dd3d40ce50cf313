#pragma once

// Basic types and codes of the host's base library.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

using Int8 = std::int8_t;
using Int16 = std::int16_t;
using Int32 = std::int32_t;
using Int64 = std::int64_t;
using UInt8 = std::uint8_t;
using UInt16 = std::uint16_t;
using UInt32 = std::uint32_t;
using UInt64 = std::uint64_t;

using UIndex = UInt32;
using USize = UInt32;
inline constexpr UIndex MaxUIndex = 0xFFFFFFFF;
inline constexpr USize MaxUSize = 0xFFFFFFFF;

using GSErrCode = Int32;
inline constexpr GSErrCode NoError = 0;

using GSFlags = UInt32;
using GSType = UInt32;
using GSHandle = char**;
using GSPtr = char*;
using GSSize = std::intptr_t;
using GSResID = short;
using GSResModule = Int32;

// Code of a byte text. The default code of this host is UTF-8.
enum GSCharCode { CC_Default, CC_UTF8 };

namespace GS {

using ::Int16;
using ::Int32;
using ::Int64;
using ::Int8;
using ::MaxUIndex;
using ::MaxUSize;
using ::UIndex;
using ::UInt16;
using ::UInt32;
using ::UInt64;
using ::UInt8;
using ::USize;

using IntPtr = std::intptr_t;
using uchar_t = char16_t;

}  // namespace GS

// Zeroes a plain record; records with texts or destructors are cleared with "= {}" instead.
template <class Record>
void BNZeroMemory(Record* record, std::size_t size) {
    static_assert(std::is_void_v<Record> || std::is_trivially_copyable_v<Record>, "not a plain record");
    std::memset(record, 0, size);
}
