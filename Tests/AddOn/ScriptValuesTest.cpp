#include "script/ScriptValues.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <nlohmann/json.hpp>
#include <vector>

#include "AddOn/AddOnTest.hpp"
#include "script/JsonText.hpp"

namespace {

using tests::Text;
using tests::ToText;
using Value = GS::Ref<DG::JSBase>;

const char* const badCast = "Bad cast.";

Value Integer(Int32 number) {
    return new DG::JSValue(number);
}
Value Double(double number) {
    return new DG::JSValue(number);
}
Value Boolean(bool value) {
    return new DG::JSValue(value);
}

Value ArrayOf(const std::vector<Value>& items) {
    auto* array = new DG::JSArray();
    Value owner(array);
    for (const Value& item : items)
        array->AddItem(item);
    return owner;
}

Value ObjectOf(const std::vector<std::pair<const char*, Value>>& items) {
    auto* object = new DG::JSObject();
    Value owner(object);
    for (const auto& [name, item] : items)
        object->AddItem(name, item);
    return owner;
}

// What a reader makes of a value, as text: its result, or what it throws.
std::string Outcome(const std::function<std::string()>& read) {
    try {
        return read();
    } catch (const GS::Exception& exception) {
        return ToText(exception.GetMessage());
    }
}

std::string ReadText(const Value& value) {
    return Outcome([&] { return "'" + ToText(GetStringFromJavaScriptVariable(value)) + "'"; });
}

std::string ReadDouble(const Value& value) {
    return Outcome([&] { return std::to_string(GetDoubleFromJSVariable(value)); });
}

std::string ReadBool(const Value& value) {
    return Outcome([&] {
        bool out = true;
        const bool read = GetBoolFromJSVariable(value, &out);
        return std::string(read ? "read " : "left ") + (out ? "true" : "false");
    });
}

std::string ReadInteger(const Value& value) {
    return Outcome([&] {
        int out = -7;
        const bool read = GetIntegerFromJSVariable(value, &out);
        return (read ? "read " : "left ") + std::to_string(out);
    });
}

std::string ReadTexts(const Value& value) {
    return Outcome([&] {
        std::string all;
        for (const GS::UniString& text : GetStringArrayFromJSVariable(value))
            all += "'" + ToText(text) + "'";
        return all;
    });
}

std::string ReadPoint(const Value& value) {
    return Outcome([&] {
        API_Coord3D point{-1, -1, -1};
        const bool read = GetAPI_Vector3DFromJSVariable(value, &point);
        return (read ? "read " : "left ") + ToText(GetUniStringFromVector(point));
    });
}

}  // namespace

TEST(ScriptValues, ReadScalars) {
    struct Case {
        Value value;
        std::string asText, asDouble, asBool, asInteger;
    };
    const Case cases[] = {
        {nullptr, "''", "0.000000", "left true", "left -7"},
        {Text("Größe"), "'Größe'", "0.000000", "left true", "left -7"},
        {Text("true"), "'true'", "0.000000", "left true", "left -7"},
        {Boolean(false), "''", "0.000000", "read false", "left -7"},
        {Integer(3), "''", "3.000000", "left true", "read 3"},
        {Double(3.0), "''", "3.000000", "left true", "left -7"},
        {Double(-0.5), "''", "-0.500000", "left true", "left -7"},
        {new DG::JSValue(UInt32{4}), "''", "0.000000", "left true", "left -7"},
        {ArrayOf({}), badCast, badCast, badCast, badCast},
        {ObjectOf({}), badCast, badCast, badCast, badCast},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        EXPECT_EQ(ReadText(c.value), c.asText);
        EXPECT_EQ(ReadDouble(c.value), c.asDouble);
        EXPECT_EQ(ReadBool(c.value), c.asBool);
        EXPECT_EQ(ReadInteger(c.value), c.asInteger);
    }
}

TEST(ScriptValues, ReadArraysAndPoints) {
    EXPECT_EQ(ReadTexts(nullptr), "");
    EXPECT_EQ(ReadTexts(ArrayOf({Text("a"), Text(""), Integer(5), nullptr, Boolean(true), Text("b")})),
              "'a''b'");
    EXPECT_EQ(ReadTexts(ArrayOf({Text("a"), ObjectOf({})})), badCast);
    EXPECT_EQ(ReadTexts(Text("a")), badCast);
    EXPECT_EQ(ReadTexts(ObjectOf({})), badCast);

    EXPECT_EQ(ReadPoint(ObjectOf({{"z", Integer(3)}, {"y", Text("2")}, {"x", Double(1.5)}})),
              R"(read {"x":1.5,"y":0,"z":3})");
    EXPECT_EQ(ReadPoint(nullptr), R"(left {"x":-1,"y":-1,"z":-1})");
    EXPECT_EQ(ReadPoint(ObjectOf({{"x", Integer(1)}, {"y", nullptr}, {"z", Integer(3)}})),
              R"(left {"x":1,"y":-1,"z":-1})");
    EXPECT_EQ(ReadPoint(ObjectOf({{"x", Integer(1)}, {"z", Integer(3)}})), "Illegal reference.");
    EXPECT_EQ(ReadPoint(Integer(1)), badCast);
    EXPECT_EQ(ReadPoint(ArrayOf({})), badCast);
}

TEST(JsonText, IsConcatenatedWithoutEscaping) {
    EXPECT_EQ(ToText(GetJSONElementString("n", "a\"b", false)), R"("n":"a"b")");
    EXPECT_EQ(ToText(GetJSONElementString("n", "[]", true)), R"("n":[])");
    EXPECT_EQ(ToText(WrapString("a", "<", ">>")), "<a>>");

    GS::Array<GS::UniString> items;
    EXPECT_EQ(ToText(JoinStrings(items, ",")), "");
    items.Push("a");
    EXPECT_EQ(ToText(JoinStrings(items, ",")), "a");
    items.Push("");
    items.Push("b");
    EXPECT_EQ(ToText(JoinStrings(items, ", ")), "a, , b");
}

TEST(JsonText, NumbersReadBackAsTheSameDoubles) {
    for (const double number :
         {0.0, -0.0, 0.1, 1.0 / 3, -2.5e-7, 1e21, 123456789.123456789, 5e-324, 1.7976931348623157e308}) {
        const std::string text = ToText(GetUniStringFromVector({number, -number, 1}));
        const auto point = nlohmann::json::parse(text);
        EXPECT_EQ(point["x"].get<double>(), number) << text;
        EXPECT_EQ(point["y"].get<double>(), -number) << text;
        EXPECT_EQ(text.find(' '), std::string::npos);
    }
}
