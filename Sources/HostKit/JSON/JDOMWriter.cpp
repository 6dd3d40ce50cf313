#include "JDOMWriter.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>

#include "HostKit/GSRoot/Text.hpp"

namespace JSON {

namespace {

class Writer {
  public:
    Writer(bool formatted, int digits)
        : formatted(formatted), digits(std::clamp(digits, 1, std::numeric_limits<double>::max_digits10)) {}

    void Write(const Value& value) {
        switch (value.GetType()) {
            case Value::NullType:
                text += "null";
                break;
            case Value::BoolType:
                text += BoolValue::Cast(value).Get() ? "true" : "false";
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

    const std::string& Text() const { return text; }

  private:
    void WriteNumber(const NumberValue& number) {
        const double value = number.GetDouble();
        if (!std::isfinite(value)) {
            text += "null";
            return;
        }
        char buffer[64];
        const int precision = number.IsDouble() ? digits : std::numeric_limits<UInt32>::digits10 + 1;
        const auto written =
            std::to_chars(buffer, buffer + sizeof(buffer), value, std::chars_format::general, precision);
        text.append(buffer, written.ptr);
    }

    void WriteString(const GS::UniString& string) { text += nlohmann::json(hostkit::ToUtf8(string)).dump(); }

    void WriteArray(const ArrayValue& array) {
        Begin('[');
        array.Enumerate([this](const ValueRef& item) {
            BeginItem();
            Write(*item);
        });
        End(']');
    }

    void WriteObject(const ObjectValue& object) {
        Begin('{');
        object.Enumerate([this](const GS::UniString& name, const ValueRef& member) {
            BeginItem();
            WriteString(name);
            text += formatted ? ": " : ":";
            Write(*member);
        });
        End('}');
    }

    void Begin(char bracket) {
        text += bracket;
        ++depth;
    }

    void BeginItem() {
        if (text.back() != '[' && text.back() != '{') text += ',';
        NewLine();
    }

    void End(char bracket) {
        --depth;
        if (text.back() != '[' && text.back() != '{') NewLine();
        text += bracket;
    }

    void NewLine() {
        if (formatted) text += '\n' + std::string(depth * 4, ' ');
    }

    bool formatted;
    int digits;
    std::size_t depth = 0;
    std::string text;
};

}  // namespace

JDOMStringWriter::JDOMStringWriter(const Value& root, GS::UniString& destination, bool formatOutput,
                                   int numberOfDigits) {
    if (!root.IsObject() && !root.IsArray()) throw GS::IllegalArgumentException();
    Writer writer(formatOutput, numberOfDigits);
    writer.Write(root);
    destination = hostkit::ToUniString(writer.Text());
}

}  // namespace JSON
