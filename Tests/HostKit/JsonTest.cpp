#include <gtest/gtest.h>

#include "JSON/JDOMParser.hpp"
#include "JSON/JDOMWriter.hpp"
#include "Support.hpp"

namespace {

JSON::ValueRef Parsed(const GS::UniString& text) {
    return JSON::JDOMStringParser().Parse(text);
}

std::string Written(const JSON::Value& value, bool format = false, int digits = 10) {
    GS::UniString text;
    JSON::JDOMStringWriter(value, text, format, digits);
    return hostkit::ToUtf8(text);
}

}  // namespace

TEST(Json, RoundTrips) {
    const std::pair<const char*, const char*> cases[] = {
        {"{}", nullptr},
        {"[]", nullptr},
        {" [ [ ] , { } ] ", "[[],{}]"},
        {R"({"z":1,"a":[true,false,null],"m":{"n":"x"}})", nullptr},
        {R"({"a":1,"b":2,"a":3})", R"({"a":3,"b":2})"},
        {R"(["\"\\\/\b\f\n\r\t\u0001"])", R"(["\"\\/\b\f\n\r\t\u0001"])"},
        {R"(["\u00e4\ud83c\udfe0"])", "[\"\xC3\xA4\xF0\x9F\x8F\xA0\"]"},
        {R"(["\u0000"])", nullptr},
        {"[0,-1,2147483647,2147483648,4294967295]", nullptr},
        {"[1.5,0.1,1e3,-2.5E-7,3.0]", "[1.5,0.1,1000,-2.5e-07,3]"},
        {"[3.14159265358979]", "[3.141592654]"},
    };
    for (const auto& [text, expected] : cases) {
        const JSON::ValueRef value = Parsed(text);
        ASSERT_TRUE(value != nullptr) << text;
        EXPECT_EQ(Written(*value), expected == nullptr ? text : expected);
    }
}

TEST(Json, RefusesWhatIsNotJson) {
    for (const char* text :
         {"", " ", "{", "[1,]", "{\"a\":}", "{'a':1}", "{a:1}", "[1] x", "nul", "NaN", "+1", "01", "[1e999]",
          "[\"\\ud800\"]", "[\"a\nb\"]", "\"open", "// c\n[]", "{\"a\" 1}"}) {
        EXPECT_TRUE(Parsed(text) == nullptr) << text;
    }
    std::string deep(100'000, '[');
    EXPECT_TRUE(Parsed(GS::UniString(deep.c_str())) == nullptr);
    deep = std::string(500, '[') + std::string(500, ']');
    EXPECT_TRUE(Parsed(GS::UniString(deep.c_str())) != nullptr);
}

TEST(Json, TellsNumbersApart) {
    struct Case {
        const char* text;
        bool isInt32, isUInt32;
        double value;
    };
    const Case cases[] = {{"7", true, true, 7},
                          {"-2147483648", true, false, -2147483648.0},
                          {"4294967295", false, true, 4294967295.0},
                          {"4294967296", false, false, 4294967296.0},
                          {"18446744073709551616", false, false, 18446744073709551616.0},
                          {"3.0", false, false, 3}};
    for (const Case& c : cases) {
        const JSON::NumberValueRef number = JSON::NumberValue::Cast(Parsed(c.text));
        EXPECT_EQ(number->IsInt32(), c.isInt32) << c.text;
        EXPECT_EQ(number->IsUInt32(), c.isUInt32) << c.text;
        EXPECT_EQ(number->IsDouble(), !c.isInt32 && !c.isUInt32) << c.text;
        EXPECT_EQ(number->GetDouble(), c.value);
    }
    EXPECT_THROW(JSON::NumberValue(-1).GetUInt32(), GS::ClassCastException);
    EXPECT_THROW(JSON::NumberValue(3.0).GetInt32(), GS::ClassCastException);
}

TEST(Json, MissingAndMistakenMembersThrow) {
    const JSON::ObjectValueRef object = GS::DynamicCast<JSON::ObjectValue>(Parsed(R"({"a":"x"})"));
    EXPECT_FALSE(object->HasMember("b"));
    EXPECT_THROW(object->Get("b")->IsString(), GS::NullReferenceException);
    EXPECT_THROW(JSON::NumberValue::Cast(object->Get("a")), GS::ClassCastException);
    EXPECT_THROW(JSON::NumberValue::Cast(*object->Get("a")), GS::ClassCastException);
    EXPECT_THROW(object->Get(1U), GS::IllegalReferenceException);
    EXPECT_THROW(object->AddValue("c", nullptr), GS::NullReferenceException);
    EXPECT_EQ(object->GetName(0), "a");
    EXPECT_EQ(object->GetSize(), 1U);
}

TEST(Json, WritesForPeopleToo) {
    JSON::ObjectValue object;
    object.AddValue("empty", new JSON::ArrayValue);
    const JSON::ArrayValueRef items = new JSON::ArrayValue;
    items->AddValue(new JSON::NumberValue(1.0 / 3));
    items->AddValue(new JSON::NumberValue(std::numeric_limits<double>::infinity()));
    object.AddValue("items", items);
    EXPECT_EQ(Written(object, true, 3),
              "{\n    \"empty\": [],\n    \"items\": [\n        0.333,\n        null\n    ]\n}");
    GS::UniString text;
    EXPECT_THROW(JSON::JDOMStringWriter(JSON::BoolValue(true), text), GS::IllegalArgumentException);
}
