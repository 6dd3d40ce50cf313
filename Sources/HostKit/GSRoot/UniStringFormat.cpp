#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "GSException.hpp"
#include "HostKit/GSRoot/Text.hpp"
#include "UniString.hpp"

namespace GS {

namespace {

// snprintf into a string of the right size.
std::string Formatted(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string result(length > 0 ? length : 0, '\0');
    std::vsnprintf(result.data(), result.size() + 1, format, again);
    va_end(again);
    return result;
}

}  // namespace

class UniStringFormatter {
  public:
    UniStringFormatter(const char* format, std::initializer_list<UniString::FormatArgument> arguments)
        : format(format), next(arguments.begin()), end(arguments.end()) {}

    UniString Result() {
        while (*format != '\0') {
            const char* literal = format;
            while (*format != '\0' && *format != '%')
                ++format;
            result += UniString(literal, static_cast<USize>(format - literal));
            if (*format == '%') AppendConversion();
        }
        return result;
    }

  private:
    using Argument = UniString::FormatArgument;

    const Argument& Next() {
        if (next == end) throw IllegalArgumentException();
        return *next++;
    }

    template <class T>
    T NextAs() {
        const auto* value = std::get_if<T>(&Next());
        if (value == nullptr) throw IllegalArgumentException();
        return *value;
    }

    Int64 NextInteger() {
        const Argument& argument = Next();
        if (const auto* value = std::get_if<Int64>(&argument)) return *value;
        if (const auto* value = std::get_if<UInt64>(&argument)) return static_cast<Int64>(*value);
        throw IllegalArgumentException();
    }

    std::string Digits() {
        if (*format == '*') {
            ++format;
            return std::to_string(NextInteger());
        }
        std::string digits;
        while (*format >= '0' && *format <= '9')
            digits += *format++;
        return digits;
    }

    // "%", flags, width, precision: as snprintf wants them, without the length modifier.
    std::string Prefix() {
        std::string prefix(1, *format++);
        while (*format != '\0' && std::strchr("-+ #0", *format) != nullptr)
            prefix += *format++;
        prefix += Digits();
        if (*format == '.') {
            prefix += *format++;
            prefix += Digits();
        }
        while (*format != '\0' && std::strchr("hljztL", *format) != nullptr)
            ++format;
        return prefix;
    }

    void AppendConversion() {
        const std::string prefix = Prefix();
        const char conversion = *format;
        if (conversion != '\0') ++format;
        switch (conversion) {
            case '%':
                result += "%";
                return;
            case 'T':
                AppendText(prefix, *NextAs<UniString::PrintfText>().text);
                return;
            case 's':
                AppendText(prefix, UniString(NextAs<const char*>()));
                return;
            case 'd':
            case 'i':
            case 'u':
            case 'o':
            case 'x':
            case 'X':
                result += Formatted((prefix + "l" + conversion).c_str(), NextInteger()).c_str();
                return;
            case 'c':
                AppendCharacter(prefix, static_cast<uchar_t>(NextInteger()));
                return;
            case 'e':
            case 'E':
            case 'f':
            case 'F':
            case 'g':
            case 'G':
            case 'a':
            case 'A':
                result += Formatted((prefix + conversion).c_str(), NextAs<double>()).c_str();
                return;
            case 'p':
                result += Formatted((prefix + conversion).c_str(), NextPointer()).c_str();
                return;
            default:
                throw IllegalArgumentException();
        }
    }

    const void* NextPointer() {
        const Argument& argument = Next();
        if (const auto* text = std::get_if<const char*>(&argument)) return *text;
        if (const auto* pointer = std::get_if<const void*>(&argument)) return *pointer;
        throw IllegalArgumentException();
    }

    void AppendCharacter(const std::string& prefix, uchar_t unit) { AppendText(prefix, UniString(&unit, 1)); }

    // Width and precision count UTF-16 units, which snprintf would not.
    void AppendText(const std::string& prefix, const UniString& text) {
        const auto point = prefix.find('.');
        const UniString shown =
            point == std::string::npos ? text : text.GetPrefix(static_cast<USize>(Number(prefix, point + 1)));
        const std::size_t width = Number(prefix, std::min(prefix.find_first_of("123456789"), point));
        const std::size_t length = shown.GetLength();
        const std::string padding(width > length && width < 100'000 ? width - length : 0, ' ');
        const bool left = prefix.find('-') != std::string::npos;
        result += left ? shown + padding.c_str() : padding.c_str() + shown;
    }

    // The digits from a position on; 0 when there are none.
    static std::size_t Number(const std::string& prefix, std::size_t from) {
        std::size_t number = 0;
        for (; from < prefix.size() && prefix[from] >= '0' && prefix[from] <= '9'; ++from) {
            number = number * 10 + static_cast<std::size_t>(prefix[from] - '0');
        }
        return number;
    }

    const char* format;
    const Argument* next;
    const Argument* end;
    UniString result;
};

UniString UniString::Format(const char* format, std::initializer_list<FormatArgument> arguments) {
    return UniStringFormatter(format, arguments).Result();
}

}  // namespace GS
