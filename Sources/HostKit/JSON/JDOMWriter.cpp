#include "JDOMWriter.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace JSON {

namespace {

class Writer {
  public:
    Writer(bool formatted, int digits)
        : formatted(formatted), digits(std::clamp(digits, 1, std::numeric_limits<double>::max_digits10)) {
        text.reserve(96);  // most are small
    }

    void Write(const Value& value) {
        switch (value.GetType()) {
            case Value::NullType:
                text += u"null";
                break;
            case Value::BoolType:
                text += BoolValue::Cast(value).Get() ? u"true" : u"false";
                break;
            case Value::NumberType:
                WriteNumber(NumberValue::Cast(value));
                break;
            case Value::StringType:
                WriteString(StringValue::Cast(value).Get());
                break;
            case Value::ArrayType:
                WriteArray(ArrayValue::Cast(value));
                break;
            case Value::ObjectType:
                WriteObject(ObjectValue::Cast(value));
                break;
        }
    }

    const std::u16string& Text() const { return text; }

  private:
    void WriteNumber(const NumberValue& number) {
        const double value = number.GetDouble();
        if (!std::isfinite(value)) {
            text += u"null";
            return;
        }
        char buffer[64];
        const int precision = number.IsDouble() ? digits : std::numeric_limits<UInt32>::digits10 + 1;
        const auto written =
            std::to_chars(buffer, buffer + sizeof(buffer), value, std::chars_format::general, precision);
        text.append(buffer, written.ptr);  // ASCII
    }

    void WriteString(const GS::UniString& string) {
        text += u'"';
        for (const char16_t unit : hostkit::Units(string))
            WriteUnit(unit);
        text += u'"';
    }

    // RFC 8259, section 7.
    void WriteUnit(char16_t unit) {
        constexpr std::u16string_view escaped = u"\"\\\b\f\n\r\t";
        constexpr std::u16string_view letters = u"\"\\bfnrt";
        if (unit >= 0x20 && unit != u'"' && unit != u'\\') {
            text += unit;
        } else if (const auto found = escaped.find(unit); found != escaped.npos) {
            text += {u'\\', letters[found]};
        } else {
            constexpr std::u16string_view digits = u"0123456789abcdef";
            text += u"\\u00";
            text += {digits[unit >> 4], digits[unit & 0xF]};
        }
    }

    void WriteArray(const ArrayValue& array) {
        Begin(u'[');
        array.Enumerate([this](const ValueRef& item) {
            BeginItem();
            Write(*item);
        });
        End(u']');
    }

    void WriteObject(const ObjectValue& object) {
        Begin(u'{');
        object.Enumerate([this](const GS::UniString& name, const ValueRef& member) {
            BeginItem();
            WriteString(name);
            text += formatted ? u": " : u":";
            Write(*member);
        });
        End(u'}');
    }

    void Begin(char16_t bracket) {
        text += bracket;
        ++depth;
    }

    void BeginItem() {
        if (text.back() != u'[' && text.back() != u'{') text += u',';
        NewLine();
    }

    void End(char16_t bracket) {
        --depth;
        if (text.back() != u'[' && text.back() != u'{') NewLine();
        text += bracket;
    }

    void NewLine() {
        if (formatted) text += u'\n' + std::u16string(depth * 4, u' ');
    }

    bool formatted;
    int digits;
    std::size_t depth = 0;
    std::u16string text;
};

}  // namespace

JDOMStringWriter::JDOMStringWriter(const Value& root, GS::UniString& destination, bool formatOutput,
                                   int numberOfDigits) {
    if (!root.IsObject() && !root.IsArray()) throw GS::IllegalArgumentException();
    Writer writer(formatOutput, numberOfDigits);
    writer.Write(root);
    destination = GS::UniString(writer.Text().data(), static_cast<USize>(writer.Text().size()));
}

}  // namespace JSON
