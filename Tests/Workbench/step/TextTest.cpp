#include "Workbench/step/Text.hpp"

#include <gtest/gtest.h>

namespace workbench::step {
namespace {

struct Decoding {
    const char* encoded;
    const char* text;
};

TEST(StepText, DecodesWhatFilesHold) {
    const Decoding cases[] = {
        {"", ""},
        {"plain", "plain"},
        {"it''s", "it's"},
        {R"(C:\\temp\\x)", R"(C:\temp\x)"},
        {R"(\S\d)", "ä"},
        {R"(\S\')", "§"},
        {R"(Stra\X\DFe)", "Straße"},
        {R"(\X2\004D00FC006C006C00650072\X0\)", "Müller"},
        {R"(a\X2\\X0\b)", "ab"},
        {R"(\X2\D83CDFE0\X0\)", "🏠"},
        {R"(\X4\0001F3E0\X0\)", "🏠"},
        {R"(\PE\\S\P)", "а"},  // ISO 8859-5
        // UTF-8 and Shift-JIS, byte by byte
        {R"(\X\C3\X\BC)", "ü"},
        {R"(\X\83T\X\83C\X\83g)", "サイト"},
        {"roh ü", "roh ü"},
        {"roh \xFC", "roh ü"},
        {R"(\X\C3\X\BC und \X2\03A9\X0\)", "ü und Ω"},
        // no directives
        {R"(\\X2\\00FC)", R"(\X2\00FC)"},
        {R"(\X2\00F)", R"(\X2\00F)"},
        {R"(\X\)", R"(\X\)"},
        {R"(\S\)", R"(\S\)"},
        {R"(\X2\D83C\X0\!)", "\xEF\xBF\xBD!"},
        {"two\r\nlines", "twolines"},
        {R"(\X\08)", "\b"},
    };
    for (const auto& [encoded, text] : cases)
        EXPECT_EQ(DecodeText(encoded), text) << encoded;
}

TEST(StepText, EncodedTextIsPlainAndReadsBack) {
    EXPECT_EQ(EncodeText("it's \\ Köln 🏠!"), R"('it''s \\ K\X2\00F6\X0\ln \X4\0001F3E0\X0\!')");
    for (const std::string text : {"", "'", "\\X2\\", "äöü ΑΒΓ サイト 🏠🏠x", "tab\tend", "\\S\\'"}) {
        const std::string encoded = EncodeText(text);
        EXPECT_EQ(DecodeText(std::string_view(encoded).substr(1, encoded.size() - 2)), text);
    }
    EXPECT_EQ(EncodeText("\xFF"), R"('\X2\FFFD\X0\')");
}

}  // namespace
}  // namespace workbench::step
