#include "HostKit/Resources/Resources.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>

#include "Support.hpp"

using hostkit::Resources;

namespace {

void Write(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << text;
}

}  // namespace

TEST(Resources, ReadWhatTheConverterTakes) {
    Resources resources;
    resources.AddText(
        "\xEF\xBB\xBF// identity\r\n"
        "'MDID' 32500 \"Add-on\" { 1 2 { 3 } }\r\n"
        "'STR#' 32000 \"Name\" { /* [1] \n */ \"The \\\"name\\\"\" \"Gr\xC3\xB6\xC3\x9F"
        "e\\nzwei\" }\n"
        "'STR#' 1 \"\" {}",
        "strings.grc");
    resources.AddText(R"(
'GDLG' 32510 Modal | noGrow 10 -5 300 120 "Name" {
/* [1] */ Button 200 90 80 23 LargePlain "OK"
/* [2] */ TextEdit 10 10 280 23 LargePlain 256
/* [3] */ SingleSelList 10 40 280 40 SmallPlain NoPartialItems 16 HasHeader 18
/* [4] */ LeftText 10 80 10 10 SmallPlain vCenter "Text"
}
'DLGH' 32510 DLG_32510 { 1 "Accept" Button_0 3 "" List_0 }
)",
                      "dialogs.grc");

    EXPECT_EQ(resources.StringCount(32000), 2);
    EXPECT_EQ(resources.String(32000, 1), "The \"name\"");
    EXPECT_EQ(resources.String(32000, 2),
              "Gr\xC3\xB6\xC3\x9F"
              "e\nzwei");
    for (const auto& [id, index] : {std::pair{32000, 0}, {32000, 3}, {32000, -1}, {1, 1}, {5, 1}}) {
        EXPECT_EQ(resources.String(static_cast<GSResID>(id), index), "");
    }
    const hostkit::DialogResource* dialog = resources.Dialog(32510);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->type, "Modal");
    EXPECT_EQ(dialog->flags, std::vector<std::string>{"noGrow"});
    EXPECT_EQ(dialog->rect.y, -5);
    ASSERT_EQ(dialog->items.size(), 4U);
    EXPECT_EQ(dialog->items[0].text, "OK");
    EXPECT_EQ(dialog->items[0].tooltip, "Accept");
    EXPECT_EQ(dialog->items[1].options, (std::vector<std::string>{"LargePlain", "256"}));
    EXPECT_EQ(dialog->items[2].options,
              (std::vector<std::string>{"SmallPlain", "NoPartialItems", "16", "HasHeader", "18"}));
    EXPECT_EQ(dialog->items[3].rect.width, 10);
    EXPECT_EQ(resources.Dialog(1), nullptr);
}

TEST(Resources, NameTheLineThatIsWrong) {
    const std::pair<const char*, const char*> cases[] = {
        {"'STR#' 5 \"\" { \"a\"\n\"b", "f.grc:2: the text has no closing quote"},
        {"\n'STR#' 5 \"\" { \"a\"", "f.grc:2: expected a text"},
        {"'STR#' 5 \"\" {}\n'STR#' 5 \"\" {}", "f.grc:2: strings 5 exist already"},
        {"'STR#' 70000 \"\" {}", "f.grc:1: the number 70000 is too large"},
        {"/* a\nb", "f.grc:1: the comment has no end"},
        {"STR 5", "f.grc:1: expected a resource type in single quotes before STR"},
        {"'STR#' 5 \"\" { \"\\q\" }", "f.grc:1: unknown escape \\q"},
        {"'GDLG' 5 Modal 0 0 9 \"\" {}", "f.grc:1: expected a height before "},
        {"'GDLG' 5 Modal 0 0 9 9 \"\" { Button 1 2 }", "f.grc:1: expected a width before }"},
        {"'GDLG' 5 Modal 0 0 9 9 \"\" {}\n'DLGH' 5 D { 1 \"\" A }", "f.grc:2: the dialog has no such item"},
        {"'DLGH' 5 D {}", "f.grc:1: no dialog 5 above"},
        {"'MDID' 5 { 1\n{ }", "f.grc:2: expected }"},
        {"'STR#' 5 \"\" { \"a\", }", "f.grc:1: unexpected character ,"},
    };
    for (const auto& [text, message] : cases) {
        Resources resources;
        try {
            resources.AddText(text, "f.grc");
            ADD_FAILURE() << text;
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(std::string(error.what()), message);
        }
    }
}

TEST(Resources, LoadOneLanguage) {
    const TemporaryFolder folder;
    Write(folder.Path() / "RFIX/Fix.grc", "'STR#' 1 \"\" { \"fixed\" }");
    Write(folder.Path() / "RINT/A.grc", "'STR#' 2 \"\" { \"English\" }");
    Write(folder.Path() / "RINT/notes.txt", "not a resource");
    Write(folder.Path() / "RGER/A.grc", "'STR#' 2 \"\" { \"Deutsch\" }");
    EXPECT_EQ(Resources::Load(folder.Path(), "INT").String(2, 1), "English");
    const Resources german = Resources::Load(folder.Path(), "GER");
    EXPECT_EQ(german.String(2, 1), "Deutsch");
    EXPECT_EQ(german.String(1, 1), "fixed");
    EXPECT_THROW(Resources::Load(folder.Path(), "FRA"), std::runtime_error);
}
