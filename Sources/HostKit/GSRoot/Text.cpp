#include "HostKit/GSRoot/Text.hpp"

#include <algorithm>
#include <limits>

#include "GSException.hpp"

namespace hostkit {

namespace {

constexpr char32_t replacement = 0xFFFD;

struct Decoded {
    char32_t character;
    std::size_t length;  // bytes used up, at least one
};

// One character, or U+FFFD for the longest beginning that could have become one (Unicode, table 3-7).
Decoded Decode(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    if (lead < 0xC2 || lead > 0xF4) return {replacement, 1};

    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    char32_t character = lead & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned low = i == 1 ? lowest : 0x80;
        const unsigned high = i == 1 ? highest : 0xBF;
        if (i >= text.size() || byte(i) < low || byte(i) > high) return {replacement, i};
        character = character << 6 | (byte(i) & 0x3F);
    }
    return {character, length};
}

void AppendUtf8(std::string& result, char32_t character) {
    const auto tail = [&](int shift) { result += static_cast<char>(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) {
        result += static_cast<char>(character);
    } else if (character < 0x800) {
        result += static_cast<char>(0xC0 | character >> 6);
        tail(0);
    } else if (character < 0x10000) {
        result += static_cast<char>(0xE0 | character >> 12);
        tail(6);
        tail(0);
    } else {
        result += static_cast<char>(0xF0 | character >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

bool IsHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
bool IsLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

}  // namespace

std::u16string Utf16(std::string_view utf8) {
    // Most texts are ASCII, where bytes are units.
    const auto ascii = std::find_if(utf8.begin(), utf8.end(), [](char c) { return (c & 0x80) != 0; });
    std::u16string result(utf8.begin(), ascii);
    result.reserve(utf8.size());
    for (std::size_t i = result.size(); i < utf8.size();) {
        const Decoded decoded = Decode(utf8.substr(i, 4));
        i += decoded.length;
        if (decoded.character < 0x10000) {
            result += static_cast<char16_t>(decoded.character);
        } else {
            const char32_t offset = decoded.character - 0x10000;
            result += static_cast<char16_t>(0xD800 + (offset >> 10));
            result += static_cast<char16_t>(0xDC00 + (offset & 0x3FF));
        }
    }
    return result;
}

std::string Utf8(std::u16string_view utf16) {
    const auto ascii = std::find_if(utf16.begin(), utf16.end(), [](char16_t unit) { return unit >= 0x80; });
    std::string result(utf16.begin(), ascii);
    result.reserve(utf16.size());
    for (std::size_t i = result.size(); i < utf16.size(); ++i) {
        const char16_t unit = utf16[i];
        if (IsHighSurrogate(unit) && i + 1 < utf16.size() && IsLowSurrogate(utf16[i + 1])) {
            ++i;
            AppendUtf8(result, 0x10000 + ((unit - 0xD800U) << 10) + (utf16[i] - 0xDC00U));
        } else {
            AppendUtf8(result, IsHighSurrogate(unit) || IsLowSurrogate(unit) ? replacement : unit);
        }
    }
    return result;
}

GS::UniString ToUniString(std::string_view utf8) {
    if (utf8.size() > std::numeric_limits<USize>::max()) throw GS::IllegalArgumentException();
    return GS::UniString(utf8.data(), static_cast<USize>(utf8.size()));
}

std::string ToUtf8(const GS::UniString& text) {
    return Utf8(Units(text));
}

}  // namespace hostkit
