#include <fstream>

#include "DGModule.hpp"
#include "DOMReader.hpp"
#include "Support.hpp"

namespace {

std::string Times(std::string_view part, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += part;
    return text;
}

std::string Nested(int depth) {
    return Times("<a>", depth) + Times("</a>", depth);
}

std::string Laughs() {
    std::string text = "<!DOCTYPE Root [<!ENTITY l0 \"ha\">";
    for (int i = 1; i < 10; ++i) {
        text +=
            "<!ENTITY l" + std::to_string(i) + " \"" + Times("&l" + std::to_string(i - 1) + ";", 10) + "\">";
    }
    return text + "]><Root>&l9;</Root>";
}

// The root's text, "no root", or "error: " and what was thrown.
std::string Read(const std::filesystem::path& file) {
    try {
        const GSXML::DOMReader reader(hostkit::ToLocation(file), "Root");
        const xercesc::DOMElement* root = reader.GetActualNode();
        return root == nullptr ? "no root" : hostkit::ToUtf8(GS::UniString(root->getTextContent()));
    } catch (const GS::Exception& exception) {
        return std::string("error: ") + exception.what();
    }
}

}  // namespace

TEST(DOMReaderTest, ReadsWhatIsWellFormedAndNothingElse) {
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.Path() / "Zuordnung Süd.xml";
    const std::string secret = (folder.Path() / "secret").string();
    std::ofstream(secret) << "secret";
    const std::string external = "<!DOCTYPE Root [<!ENTITY x SYSTEM \"file://" + secret + "\">]>";
    const std::string longEntity(70000, 'x');
    const char* const fiveNodes = "<a b=''/><!----><?c?><![CDATA[]]>";
    std::string attributes;
    for (int i = 0; i < 1001; ++i)
        attributes += " a" + std::to_string(i) + "=''";
    const std::pair<std::string, const char*> cases[] = {
        {"<Root>Höhe</Root>", "Höhe"},
        {"\xEF\xBB\xBF<?xml version='1.0'?><!-- c --><Root>b</Root>", "b"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?><Root>H\xF6he</Root>", "Höhe"},
        {std::string("\xFF\xFE<\0R\0o\0o\0t\0/\0>\0", 16), ""},
        {"<!DOCTYPE Root [<!ENTITY de \"Deutsch\">]><Root>&de;&amp;&#x41;</Root>", "Deutsch&A"},
        {"<!DOCTYPE Root SYSTEM \"http://127.0.0.1:1/x.dtd\"><Root/>", ""},
        {external + "<Root>a</Root>", "a"},
        {"<Root>" + Nested(199) + "</Root>", ""},
        {"<root/>", "no root"},
        {"<Root>" + Nested(200) + "</Root>", "error: The elements nest"},
        {"<Root>" + Times(fiveNodes, 399'999) + "</Root>", ""},
        {"<Root>" + Times(fiveNodes, 400'000) + "</Root>", "error: The file has too many"},
        {"<Root" + attributes + "/>", "error: An element has too"},
        {external + "<Root>&x;</Root>", "error: The file refers to another one"},
        {external + "<Root a='&x;'/>", "error: Line 1"},
        {Laughs(), "error: "},
        {"<!DOCTYPE Root [<!ENTITY x \"" + longEntity + "\">]><Root>&x;</Root>",
         "error: The entity x is too"},
        {"<!DOCTYPE Root [<!ATTLIST a b CDATA '" + longEntity + "'>]><Root/>", "error: The default of"},
        {"", "error: "},
        {"key = value", "error: Line 1"},
        {"{\"Root\": 1}", "error: Line 1"},
        {"<Root>\n<a>", "error: Line 2"},
        {"<Root>\n</Roo>", "error: Line 2"},
        {"<Root>H\xF6he</Root>", "error: "},
        {"<?xml version='1.0' encoding='x-none'?><Root/>", "error: "}};
    for (const auto& [text, expected] : cases) {
        std::ofstream(file, std::ios::binary) << text;
        const std::string read = Read(file);
        const bool isPart = std::string_view(expected).starts_with("error");
        EXPECT_EQ(isPart ? read.substr(0, std::string_view(expected).size()) : read, expected)
            << text.substr(0, 99) << " -> " << read;
        EXPECT_EQ(read.find("secret<"), std::string::npos);
    }
    std::filesystem::resize_file(file, 100 << 20);
    EXPECT_NE(Read(file).find("100 MB"), std::string::npos);
    EXPECT_NE(Read(folder.Path()).find("no file"), std::string::npos);
    EXPECT_NE(Read(folder.Path() / "none").find("no file"), std::string::npos);
}

TEST(FileDialogTest, AsksForAFileOfItsTypes) {
    hostkit::Host host;
    hostkit::dg::RecordingDriver driver;
    DG::FileDialog dialog(DG::FileDialog::OpenFile);
    EXPECT_FALSE(dialog.Invoke()) << "no host runs";
    const hostkit::Session session(host, driver, AddOnResources());
    const FTM::FileType upper("Markup", "XML", 0, 0, 0);
    {
        FTM::FileTypeManager manager("First");
        EXPECT_EQ(FTM::FileTypeManager::SearchForType(upper), FTM::UnknownType);
        const FTM::TypeID xml = manager.AddType({nullptr, "xml", 0, 0, 0});
        EXPECT_EQ(FTM::FileTypeManager::SearchForType(upper), xml);
        dialog.SetFilterText(dialog.AddFilter(xml), "Mapping");
        dialog.SetFilterText(7, "nobody's");
    }
    EXPECT_EQ(FTM::FileTypeManager::SearchForType(upper), FTM::UnknownType);
    dialog.SetTitle("Choose");
    driver.QueueFileAnswer("/tmp/Süd.xml");
    EXPECT_TRUE(dialog.Invoke());
    EXPECT_EQ(dialog.GetSelectedFile(), IO::Location("/tmp/Süd.xml"));
    EXPECT_FALSE(dialog.Invoke());
    const hostkit::dg::FileQuestion question = driver.FileQuestions().at(0);
    EXPECT_EQ(question.title, "Choose");
    ASSERT_EQ(question.filters.size(), 1U);
    EXPECT_EQ(question.filters[0].text, "Mapping");
    EXPECT_EQ(question.filters[0].extension, "xml");
}
