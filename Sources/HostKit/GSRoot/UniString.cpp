#include "UniString.hpp"

#include <algorithm>

#include "GSException.hpp"
#include "HostKit/GSRoot/Text.hpp"

std::u16string_view hostkit::Units(const GS::UniString& text) {
    return text.units;
}

namespace GS {

namespace {

UIndex Position(std::size_t found) {
    return found == std::u16string::npos ? MaxUIndex : static_cast<UIndex>(found);
}

// Cases are told apart for Latin letters; the host needs no more.
char16_t Folded(char16_t unit) {
    const bool upper = (unit >= u'A' && unit <= u'Z') || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7);
    return upper ? static_cast<char16_t>(unit + 0x20) : unit;
}

}  // namespace

UniString::UniString(const char* text, GSCharCode) {
    if (text != nullptr) units = hostkit::Utf16(text);
}

UniString::UniString(const char* text, USize size, GSCharCode) {
    if (text != nullptr) units = hostkit::Utf16({text, size});
}

UniString::UniString(const uchar_t* text) {
    if (text != nullptr) units = text;
}

UniString::UniString(const uchar_t* text, USize length) {
    if (text != nullptr) units.assign(text, length);
}

uchar_t UniString::operator[](UIndex index) const {
    if (index >= units.size()) throw IllegalReferenceException();
    return units[index];
}

UniString& UniString::Append(const UniString& other) {
    // Room for a little more, because a long text is often closed by a bracket or a quote.
    const std::size_t needed = units.size() + other.units.size();
    if (needed > units.capacity()) units.reserve(std::max(2 * units.capacity(), needed + needed / 16));
    units += other.units;
    return *this;
}

bool UniString::BeginsWith(const UniString& part) const {
    return units.compare(0, part.units.size(), part.units) == 0;
}

bool UniString::EndsWith(const UniString& part) const {
    return units.size() >= part.units.size() &&
           units.compare(units.size() - part.units.size(), part.units.size(), part.units) == 0;
}

bool UniString::IsEqual(const UniString& other, CaseSensitivity sensitivity) const {
    if (sensitivity == CaseSensitive) return *this == other;
    return std::equal(units.begin(), units.end(), other.units.begin(), other.units.end(),
                      [](char16_t a, char16_t b) { return Folded(a) == Folded(b); });
}

UIndex UniString::FindFirst(const UniString& part, UIndex from) const {
    return Position(units.find(part.units, from));
}

UIndex UniString::FindFirst(uchar_t unit, UIndex from) const {
    return Position(units.find(unit, from));
}

UIndex UniString::FindLast(const UniString& part, UIndex from) const {
    return Position(units.rfind(part.units, from));
}

UIndex UniString::FindLast(uchar_t unit, UIndex from) const {
    return Position(units.rfind(unit, from));
}

UniString UniString::GetSubstring(UIndex from, USize count) const {
    UniString result;
    if (from < units.size()) result.units = units.substr(from, count);
    return result;
}

UniString& UniString::ReplaceAll(const UniString& from, const UniString& to) {
    if (from.IsEmpty()) return *this;
    std::u16string result;
    std::size_t position = 0;
    for (std::size_t found; (found = units.find(from.units, position)) != std::u16string::npos;) {
        result.append(units, position, found - position).append(to.units);
        position = found + from.units.size();
    }
    units = result.append(units, position);
    return *this;
}

UniString::CStr UniString::ToCStr(UIndex from, USize count, GSCharCode) const {
    if (from >= units.size()) return CStr({});
    return CStr(hostkit::Utf8(std::u16string_view(units).substr(from, count)));
}

}  // namespace GS
