#include "HostKit/GSRoot/Text.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>

#include "GSTime.hpp"
#include "Guid.hpp"
#include "Support.hpp"
#include "ValueToString.hpp"

using GS::UniString;

TEST(UniString, ConvertsBetweenUtf8AndUtf16) {
    struct Case {
        const char* utf8;
        std::u16string utf16;
        const char* back;  // null: the same bytes
    };
    const Case cases[] = {
        {"", u"", nullptr},
        {"Stra\xC3\x9F"
         "e",
         u"Stra\u00DFe", nullptr},
        {"\xE2\x82\xAC", u"\u20AC", nullptr},
        {"\xF0\x9F\x8F\xA0!", u"\U0001F3E0!", nullptr},
        {"\xF4\x8F\xBF\xBF", u"\U0010FFFF", nullptr},
        // Ill-formed: a stray tail, overlong forms, a surrogate, beyond the last character, cut off.
        {"a\x80z", u"a\uFFFDz", "a\xEF\xBF\xBDz"},
        {"\xC0\xAF", u"\uFFFD\uFFFD", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xF0\x9F\x8F", u"\uFFFD", "\xEF\xBF\xBD"},
        {"\xE2\x82z", u"\uFFFDz", "\xEF\xBF\xBDz"},
    };
    for (const Case& c : cases) {
        const UniString text(c.utf8);
        EXPECT_EQ(std::u16string(text.ToUStr().Get()), c.utf16) << c.utf8;
        EXPECT_STREQ(text.ToCStr().Get(), c.back == nullptr ? c.utf8 : c.back);
    }
    const char16_t lone[] = {u'a', 0xD83C, u'b', 0xDFE0, 0xD83C, 0};
    EXPECT_STREQ(UniString(lone).ToCStr().Get(),
                 "a\xEF\xBF\xBD"
                 "b\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_TRUE(UniString(static_cast<const char*>(nullptr)).IsEmpty());
    EXPECT_EQ(hostkit::ToUtf8(UniString("a\0b", 3)), std::string("a\0b", 3));
}

TEST(UniString, FindsAndCutsInUnits) {
    const UniString text("\xF0\x9F\x8F\xA0/a/b/\xF0\x9F\x8F\xA0");
    EXPECT_EQ(text.GetLength(), 9U);
    EXPECT_EQ(text.FindFirst("/"), 2U);
    EXPECT_EQ(text.FindFirst(u'/', 3), 4U);
    EXPECT_EQ(text.FindLast("/"), 6U);
    EXPECT_EQ(text.FindLast(u'/', 5), 4U);
    EXPECT_EQ(text.FindFirst("x"), MaxUIndex);
    EXPECT_EQ(text.FindFirst("a", 100), MaxUIndex);
    EXPECT_EQ(text.GetSubstring(3, 3), "a/b");
    EXPECT_EQ(text.GetSubstring(7, 100), "\xF0\x9F\x8F\xA0");
    EXPECT_EQ(text.GetSubstring(100, 1), "");
    EXPECT_STREQ(text.ToCStr(3, 1).Get(), "a");
    EXPECT_TRUE(text.BeginsWith("\xF0\x9F\x8F\xA0/a"));
    EXPECT_FALSE(UniString("ab").BeginsWith("abc"));
    EXPECT_TRUE(text.EndsWith(""));
    EXPECT_FALSE(UniString("bc").EndsWith("abc"));
    EXPECT_TRUE(UniString("\xC3\x84hre").IsEqual("\xC3\xA4HRE", UniString::CaseInsensitive));
    EXPECT_FALSE(UniString("GER").IsEqual("ger"));
    EXPECT_THROW(text[9], GS::IllegalReferenceException);
}

TEST(UniString, ReplacesWithoutLookingAtItsOwnWork) {
    EXPECT_EQ(UniString("a:b:c").ReplaceAll(":", "::"), "a::b::c");
    EXPECT_EQ(UniString("aaa").ReplaceAll("aa", "a"), "aa");
    EXPECT_EQ(UniString("abc").ReplaceAll("", "x"), "abc");
    EXPECT_EQ(UniString("abc").ReplaceAll("abc", ""), "");
    UniString self("ab");
    EXPECT_EQ(self.Append(self).ReplaceAll(self, self), "abab");
}

TEST(UniString, FormatsLikeC) {
    const UniString name("Caf\xC3\xA9");
    EXPECT_EQ(
        UniString::Printf("%T/document?folderId=%T", UniString("http://h/api").ToPrintf(), name.ToPrintf()),
        "http://h/api/document?folderId=Caf\xC3\xA9");
    EXPECT_EQ(UniString::Printf("[%6T|%-6T|%.2T|%.5T]", name.ToPrintf(), name.ToPrintf(), name.ToPrintf(),
                                UniString().ToPrintf()),
              "[  Caf\xC3\xA9|Caf\xC3\xA9  |Ca|]");
    EXPECT_EQ(
        UniString::Printf("%d %5u %-4x| %+.3f %ld %% %c %s", -7, 42U, 255, 1.5, 1L << 40, 'z', "s\xC3\xBC"),
        "-7    42 ff  | +1.500 1099511627776 % z s\xC3\xBC");
    EXPECT_EQ(UniString::Printf("%*d|%.*f", 4, 7, 1, 2.25), "   7|2.2");
    EXPECT_EQ(UniString::Printf("%u", std::numeric_limits<UInt64>::max()), "18446744073709551615");
    EXPECT_THROW(UniString::Printf("%d"), GS::IllegalArgumentException);
    EXPECT_THROW(UniString::Printf("%s", 5), GS::IllegalArgumentException);
    EXPECT_THROW(UniString::Printf("%d", 1.0), GS::IllegalArgumentException);
    EXPECT_THROW(UniString::Printf("%", 1), GS::IllegalArgumentException);
}

TEST(Numbers, AreWrittenInFewestDigitsAndReadBack) {
    for (const double value : {0.0, -0.0, 0.1, 1.0 / 3, 1e21, -2.5e-9, 123456789.123456789, 5e-324,
                               std::numeric_limits<double>::max()}) {
        char buffer[256];
        GS::valuetostr(value, buffer, sizeof(buffer));
        EXPECT_EQ(std::strtod(buffer, nullptr), value) << buffer;
        EXPECT_LE(std::strlen(buffer), 24U);
    }
    char buffer[4];
    GS::valuetostr(0.1, buffer, sizeof(buffer));
    EXPECT_STREQ(buffer, "0.1");
    EXPECT_THROW(GS::valuetostr(0.12, buffer, sizeof(buffer)), GS::IllegalArgumentException);
}

TEST(Guid, ReadsWellFormedTextOnly) {
    const UniString text("7498D1C2-C932-48EC-B06C-98FB0CC9C1EE");
    const GS::Guid guid(UniString("{7498d1c2-c932-48ec-b06c-98fb0cc9c1ee}"));
    EXPECT_EQ(guid.ToUniString(), text);
    EXPECT_EQ(guid, GS::Guid(text));
    for (const char* bad : {"", "{7498d1c2-c932-48ec-b06c-98fb0cc9c1ee", "7498d1c2c93248ecb06c98fb0cc9c1ee",
                            "7498d1c2-c932-48ec-b06c-98fb0cc9c1eg", "7498d1c2-c932-48ec-b06c+98fb0cc9c1ee"}) {
        EXPECT_TRUE(GS::Guid(UniString(bad)).IsNull()) << bad;
    }
}

TEST(Time, IsWrittenWithItsOffset) {
    EXPECT_EQ(TIGetISO8601TimeString(0, true), "1970-01-01T00:00:00Z");
    setenv("TZ", "XYZ-5:30", 1);
    tzset();
    EXPECT_EQ(TIGetISO8601TimeString(0), "1970-01-01T05:30:00+05:30");
    setenv("TZ", "XYZ3:30", 1);
    tzset();
    EXPECT_EQ(TIGetISO8601TimeString(0), "1969-12-31T20:30:00-03:30");
    unsetenv("TZ");
    tzset();
}
