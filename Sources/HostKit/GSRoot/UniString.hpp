#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

#include "Definitions.hpp"

namespace GS {
class UniString;
}

namespace hostkit {

// The text's own units, without a copy; valid as long as it is not changed.
std::u16string_view Units(const GS::UniString& text);

}  // namespace hostkit

namespace GS {

// Text in UTF-16 units; lengths and positions count units. Byte texts are UTF-8, and what is not valid
// in either encoding becomes U+FFFD on conversion.
class UniString {
  public:
    enum CaseSensitivity { CaseSensitive, CaseInsensitive };

    // Holders of converted text: keep one alive while its Get() is in use.
    class CStr {
      public:
        explicit CStr(std::string text) : text(std::move(text)) {}

        const char* Get() const { return text.c_str(); }
        operator const char*() const { return text.c_str(); }

      private:
        std::string text;
    };

    class UStr {
      public:
        explicit UStr(std::u16string text) : text(std::move(text)) {}

        const uchar_t* Get() const { return text.c_str(); }
        operator const uchar_t*() const { return text.c_str(); }

      private:
        std::u16string text;
    };

    // The argument of a %T; refers to its string.
    struct PrintfText {
        const UniString* text;
    };

    UniString() = default;
    UniString(const char* text, GSCharCode code = CC_Default);
    UniString(const char* text, USize size, GSCharCode code = CC_Default);
    UniString(const uchar_t* text);
    UniString(const uchar_t* text, USize length);

    // Formats with the conversions of C's printf (length modifiers are ignored: arguments carry their
    // types) and with %T for a ToPrintf(). Throws IllegalArgumentException when an argument is missing
    // or of the wrong kind.
    template <class... Arguments>
    static UniString Printf(const char* format, const Arguments&... arguments) {
        return Format(format, {FormatArgument(Widened(arguments))...});
    }

    USize GetLength() const { return static_cast<USize>(units.size()); }
    bool IsEmpty() const { return units.empty(); }
    void Clear() { units.clear(); }

    // Throws IllegalReferenceException beyond the end.
    uchar_t operator[](UIndex index) const;

    UniString& Append(const UniString& other);
    UniString& operator+=(const UniString& other) { return Append(other); }

    bool Contains(const UniString& part) const { return FindFirst(part) != MaxUIndex; }
    bool BeginsWith(const UniString& part) const;
    bool EndsWith(const UniString& part) const;
    bool IsEqual(const UniString& other, CaseSensitivity sensitivity = CaseSensitive) const;

    // First position at or after "from", last position at or before it; MaxUIndex when there is none.
    UIndex FindFirst(const UniString& part, UIndex from = 0) const;
    UIndex FindFirst(uchar_t unit, UIndex from = 0) const;
    UIndex FindLast(const UniString& part, UIndex from = MaxUIndex) const;
    UIndex FindLast(uchar_t unit, UIndex from = MaxUIndex) const;

    // Ranges are cut to the text's length.
    UniString GetSubstring(UIndex from, USize count) const;
    UniString GetPrefix(USize count) const { return GetSubstring(0, count); }

    // Replaces from left to right without looking at replaced text again; an empty "from" changes nothing.
    UniString& ReplaceAll(const UniString& from, const UniString& to);

    CStr ToCStr(UIndex from = 0, USize count = MaxUSize, GSCharCode code = CC_Default) const;
    UStr ToUStr() const { return UStr(units); }
    PrintfText ToPrintf() const { return {this}; }

    friend bool operator==(const UniString& a, const UniString& b) { return a.units == b.units; }
    friend bool operator!=(const UniString& a, const UniString& b) { return a.units != b.units; }
    friend bool operator<(const UniString& a, const UniString& b) { return a.units < b.units; }

    friend UniString operator+(UniString a, const UniString& b) {
        a.Append(b);
        return a;
    }

  private:
    using FormatArgument = std::variant<Int64, UInt64, double, const char*, const void*, PrintfText>;
    friend class UniStringFormatter;
    friend std::u16string_view hostkit::Units(const UniString& text);

    static UniString Format(const char* format, std::initializer_list<FormatArgument> arguments);

    template <class Argument>
    static auto Widened(const Argument& argument) {
        if constexpr (std::is_same_v<Argument, PrintfText>) {
            return argument;
        } else if constexpr (std::is_floating_point_v<Argument>) {
            return static_cast<double>(argument);
        } else if constexpr (std::is_convertible_v<Argument, const char*>) {
            return static_cast<const char*>(argument);
        } else if constexpr (std::is_convertible_v<Argument, const void*>) {
            return static_cast<const void*>(argument);
        } else if constexpr (std::is_enum_v<Argument> || std::is_signed_v<Argument>) {
            return static_cast<Int64>(argument);
        } else {
            return static_cast<UInt64>(argument);
        }
    }

    std::u16string units;
};

inline const UniString EmptyUniString;

}  // namespace GS
