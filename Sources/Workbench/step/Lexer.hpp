#pragma once

#include <cstdint>
#include <string_view>

namespace workbench::step {

inline bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}
inline bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
inline char ToUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
inline bool IsWordCharacter(char c) {
    return IsDigit(c) || c == '_' || (ToUpper(c) >= 'A' && ToUpper(c) <= 'Z');
}

/// The first character that is neither blank nor in a comment; end when a comment does not end.
inline const char* SkipBlanks(const char* p, const char* end) {
    for (;;) {
        while (p < end && IsBlank(*p))
            ++p;
        if (end - p < 2 || p[0] != '/' || p[1] != '*') return p;
        const size_t close = std::string_view(p + 2, end).find("*/");
        if (close == std::string_view::npos) return end;
        p += 2 + close + 2;
    }
}

/// In "\S\'" the apostrophe is the character that the directive shifts, not the string's end; after an even
/// run of backslashes, as in "\\S\'", it is the end.
inline bool IsShiftedApostrophe(const char* stringBegin, const char* apostrophe) {
    if (apostrophe - stringBegin < 3 || apostrophe[-1] != '\\' || apostrophe[-2] != 'S') return false;
    const char* p = apostrophe - 3;
    while (p >= stringBegin && *p == '\\')
        --p;
    return (apostrophe - 3 - p) % 2 == 1;
}

/// Behind the string that begins at p (at its apostrophe); end when it does not end.
inline const char* SkipString(const char* p, const char* end) {
    const char* begin = ++p;
    for (; p < end; ++p) {
        if (*p != '\'' || IsShiftedApostrophe(begin, p)) continue;
        if (p + 1 == end || p[1] != '\'') return p + 1;
        begin = ++p + 1;
    }
    return end;
}

/// Reads digits into value and answers where they end; null when there is none or the number is too large.
inline const char* ReadId(const char* p, const char* end, uint64_t& value) {
    const char* begin = p;
    value = 0;
    for (; p < end && IsDigit(*p); ++p)
        value = value * 10 + static_cast<uint64_t>(*p - '0');
    return p == begin || p - begin > 19 ? nullptr : p;
}

}  // namespace workbench::step
