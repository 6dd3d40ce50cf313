#include "Guid.hpp"

#include <string>
#include <string_view>

#include "HostKit/GSRoot/Text.hpp"

namespace GS {

namespace {

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// The number that the hexadecimal digits of a text stand for; hyphens belong at fixed places.
bool ReadGuid(std::string_view text, Guid& guid) {
    if (text.size() == 38 && text.front() == '{' && text.back() == '}') text = text.substr(1, 36);
    if (text.size() != 36) return false;

    UInt8 bytes[16] = {};
    int digits = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i == 8 || i == 13 || i == 18 || i == 23) {
            if (text[i] != '-') return false;
            continue;
        }
        const int digit = HexDigit(text[i]);
        if (digit < 0) return false;
        UInt8& byte = bytes[digits++ / 2];
        byte = static_cast<UInt8>(byte << 4 | digit);
    }
    guid.timeLow = static_cast<UInt32>(bytes[0]) << 24 | static_cast<UInt32>(bytes[1]) << 16 |
                   static_cast<UInt32>(bytes[2]) << 8 | bytes[3];
    guid.timeMid = static_cast<UInt16>(bytes[4] << 8 | bytes[5]);
    guid.timeHigh = static_cast<UInt16>(bytes[6] << 8 | bytes[7]);
    std::memcpy(guid.node, bytes + 8, sizeof(guid.node));
    return true;
}

}  // namespace

Guid::Guid(const UniString& text) {
    Guid read;
    if (ReadGuid(hostkit::ToUtf8(text), read)) *this = read;
}

UniString Guid::ToUniString() const {
    uchar_t text[36];
    uchar_t* end = text;
    const auto append = [&](std::size_t number, int digits) {
        while (digits-- > 0)
            *end++ = u"0123456789ABCDEF"[number >> 4 * digits & 0xF];
    };
    append(timeLow, 8);
    for (const UInt16 group : {timeMid, timeHigh}) {
        *end++ = u'-';
        append(group, 4);
    }
    for (int i = 0; i < 8; ++i) {
        if (i == 0 || i == 2) *end++ = u'-';
        append(node[i], 2);
    }
    return UniString(text, 36);
}

}  // namespace GS
