#include "Workbench/step/Document.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <system_error>

#include "Workbench/step/Arguments.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench::step {
namespace {

using testing::ElementsAre;

std::vector<uint64_t> Ids(const Document& document) {
    std::vector<uint64_t> ids;
    for (const Record& record : document.Records())
        ids.push_back(record.id);
    return ids;
}

std::vector<ProblemKind> Kinds(const Document& document) {
    std::vector<ProblemKind> kinds;
    for (const Problem& problem : document.Problems())
        kinds.push_back(problem.kind);
    return kinds;
}

struct Reading {
    const char* what;
    std::string data;
    std::vector<uint64_t> ids;
    std::vector<ProblemKind> problems;
};

TEST(StepDocument, ReadsOddButLegalFilesWhole) {
    const Reading cases[] = {
        {"shifted apostrophe", "#1=IFCX('\\S\\'');\n#2=IFCX('a\\S\\'b;');\n#3=IFCX();\n", {1, 2, 3}, {}},
        {"backslashes before S", "#1=IFCX('C:\\\\S\\');\n#2=IFCX('x');\n", {1, 2}, {}},
        {"doubled apostrophes", "#1=IFCX('it''s; ''#2=''');\n#3=IFCX('''');\n#4=IFCX('');\n", {1, 3, 4}, {}},
        {"comments",
         "/* a *//* ; ' */#1=/**/IFCX/* #9=IFCX( */(1 /*;*/) /*'*/;\n#2=IFCX('/*');\n#3=IFCX('*/');\n",
         {1, 2, 3},
         {}},
        {"comment of a slash", "/*/ #1=IFCX(); /*/#2=IFCX();\n", {2}, {}},
        {"record in many lines", "#1=IFCX(\n#2,\n#3\n,\n'a\nb'\n)\n;\n#2=IFCX();\n", {1, 2}, {}},
        {"records in one line", "#1=IFCX();#2=IFCX(); #3=IFCX();", {1, 2, 3}, {}},
        {"blanks", " # 1=IFCX();\n", {}, {ProblemKind::damagedRecord}},
        {"blanks around", "\t#1 = IFCX ( 1 ) ;\r\n  #2\n=\nIFCX\n(\n)\n;", {1, 2}, {}},
        {"complex instance", "#1=(IFCA(1)IFCB('x'));\n#2=IFCX();\n", {1, 2}, {}},
        {"lower case", "#1=ifcWall();\n#2=IFCWALL();\n", {1, 2}, {}},
        {"large and sparse ids", "#92147483647=IFCX();\n#2=IFCX();\n#18=IFCX();\n", {92147483647, 2, 18}, {}},
    };
    for (const Reading& reading : cases) {
        const auto document = Document::FromBytes(StepFile(reading.data));
        EXPECT_EQ(Ids(*document), reading.ids) << reading.what;
        EXPECT_EQ(Kinds(*document), reading.problems) << reading.what;
        for (const uint64_t id : reading.ids) {
            ASSERT_NE(document->Find(id), nullptr) << reading.what;
            EXPECT_EQ(document->Find(id)->id, id) << reading.what;
            EXPECT_TRUE(document->Text(*document->Find(id)).starts_with('#')) << reading.what;
            EXPECT_TRUE(document->Text(*document->Find(id)).ends_with(';')) << reading.what;
        }
        EXPECT_EQ(document->Find(77), nullptr) << reading.what;
        EXPECT_EQ(document->Find(1ull << 63), nullptr) << reading.what;
    }
}

TEST(StepDocument, LosesOnlyTheDamagedRecord) {
    const auto damaged = ProblemKind::damagedRecord;
    const Reading cases[] = {
        {"apostrophe missing", "#1=IFCX('a);\n#2=IFCX('b');\n#3=IFCX();\n", {2, 3}, {damaged}},
        {"apostrophe too many", "#1=IFCX('a'');\n#2=IFCX('b');\n#3=IFCX();\n", {2, 3}, {damaged}},
        {"semicolon missing", "#1=IFCX()\n#2=IFCX();\n", {2}, {damaged}},
        {"last semicolon missing", "#1=IFCX();\n#2=IFCX()\n", {1}, {damaged}},
        {"bracket missing", "#1=IFCX(1;\n#2=IFCX();\n", {2}, {damaged}},
        {"no type", "#1=;\n#2=IFCX();\n", {2}, {damaged}},
        {"no equals sign", "#1 IFCX();\n#2=IFCX();\n", {2}, {damaged}},
        {"no id", "#=IFCX();\n#2=IFCX();\n", {2}, {damaged}},
        {"id too long", "#123456789012345678901=IFCX();\n#2=IFCX();\n", {2}, {damaged}},
        {"other text", "What is this?\n#2=IFCX();\n;\n#3=IFCX();\n", {2, 3}, {damaged, damaged}},
    };
    for (const Reading& reading : cases) {
        const auto document = Document::FromBytes(StepFile(reading.data));
        EXPECT_EQ(Ids(*document), reading.ids) << reading.what;
        EXPECT_EQ(Kinds(*document), reading.problems) << reading.what;
        EXPECT_FALSE(document->IsWhole()) << reading.what;
    }
}

TEST(StepDocument, NamesLineAndByteOfAProblem) {
    const std::string bytes = StepFile("#1=IFCX();\n#2=IFCX('a);\n#3=IFCX();\n");
    const auto document = Document::FromBytes(bytes);
    ASSERT_EQ(document->Problems().size(), 1u);
    EXPECT_EQ(document->Problems()[0].line, 9u);
    EXPECT_EQ(document->Problems()[0].byte, bytes.find("#2"));
    EXPECT_EQ(document->Problems()[0].id, 2u);
}

TEST(StepDocument, OfDuplicateIdsTheLastWins) {
    for (const char* far : {"", "#99999999=IFCX();\n"}) {
        const auto document =
            Document::FromBytes(StepFile("#1=IFCX(1);\n#2=IFCX();\n#1=IFCX(2);\n" + std::string(far)));
        EXPECT_EQ(document->Text(*document->Find(1)), "#1=IFCX(2);");
        ASSERT_EQ(document->Problems().size(), 1u);
        EXPECT_EQ(document->Problems()[0].kind, ProblemKind::duplicateId);
        EXPECT_EQ(document->Problems()[0].line, 10u);
        EXPECT_TRUE(document->IsWhole());
    }
}

TEST(StepDocument, TellsWhatIsNoStepAndWhatIsCutOff) {
    const std::string whole = StepFile("#1=IFCX('a');\n#2=IFCX();\n");
    const std::string withoutEnd = whole.substr(0, whole.rfind("ENDSEC"));
    struct Case {
        std::string bytes;
        std::vector<ProblemKind> problems;
    };
    const Case cases[] = {
        {"", {ProblemKind::empty}},
        {std::string(3, '\0'), {ProblemKind::notStep}},
        {"PK\x03\x04", {ProblemKind::notStep}},
        {"<?xml version='1.0'?>", {ProblemKind::notStep}},
        {"\n/* x */ ISO-10303-28;", {ProblemKind::notStep}},
        {"ISO-10303-21;", {ProblemKind::cutOff}},
        {"ISO-10303-21;\nHEADER;\nENDSEC;\nEND-ISO-10303-21;", {ProblemKind::noData}},
        {whole.substr(0, whole.find("FILE_NAME") + 14), {ProblemKind::cutOff}},
        {whole.substr(0, whole.find("#2")), {ProblemKind::cutOff}},
        {whole.substr(0, whole.find("#2") + 5), {ProblemKind::cutOff}},
        {whole.substr(0, whole.find("'a'") + 1), {ProblemKind::cutOff}},
        {whole.substr(0, whole.find("#2")) + "/* #2=IFCX();", {ProblemKind::cutOff}},
        {withoutEnd, {ProblemKind::cutOff}},
        {withoutEnd + "END-ISO-10303-21;", {ProblemKind::missingEndsec}},
        {"\xEF\xBB\xBF" + whole, {}},
    };
    for (const Case& one : cases)
        EXPECT_EQ(Kinds(*Document::FromBytes(one.bytes)), one.problems) << one.bytes;
}

TEST(StepDocument, KnowsLineEndsOfOldSystems) {
    std::string bytes = StepFile("#1=IFCX('a);\n#2=IFCX();\n");
    std::ranges::replace(bytes, '\n', '\r');
    const auto document = Document::FromBytes(bytes);
    EXPECT_EQ(Ids(*document), std::vector<uint64_t>{2});
    ASSERT_EQ(document->Problems().size(), 1u);
    EXPECT_EQ(document->Problems()[0].line, 8u);
}

TEST(StepDocument, ReadsTheHeader) {
    const auto document = Document::FromBytes(
        "ISO-10303-21;\nHEADER;\n/* c; */FILE_DESCRIPTION(('View','Option'),'2;1');\n"
        "FILE_NAME('C:\\\\H\\X\\E4user.ifc','2010-10-07',('A'),('B'),'pre','ArchiCAD 14','x');\n"
        "FILE_SCHEMA((' IFC2X3 '));\nENDSEC;\nDATA;\nENDSEC;\nEND-ISO-10303-21;");
    const Header& header = document->FileHeader();
    EXPECT_EQ(header.description, "View\nOption");
    EXPECT_EQ(header.name, "C:\\Häuser.ifc");
    EXPECT_EQ(header.timeStamp, "2010-10-07");
    EXPECT_EQ(header.preprocessor, "pre");
    EXPECT_EQ(header.originatingSystem, "ArchiCAD 14");
    EXPECT_THAT(header.schemas, ElementsAre("IFC2X3"));
    EXPECT_TRUE(document->HeaderText().ends_with("ENDSEC;"));
    EXPECT_EQ(document->Bytes().substr(document->DataEnd(), 7), "ENDSEC;");
}

TEST(StepDocument, KeepsItsBytesWhenTheFileChanges) {
    const TemporaryFolder folder;
    const std::string bytes = StepFile("#1=IFCX('a');\n");
    const auto file = WriteFile(folder / "model.ifc", bytes);
    const auto document = Document::Read(file);
    std::filesystem::resize_file(file, 0);
    EXPECT_EQ(document->Bytes(), bytes);
    EXPECT_EQ(document->Text(*document->Find(1)), "#1=IFCX('a');");
}

TEST(StepDocument, ReadingStopsWhenAskedAndFailsWithTheSystemsWords) {
    const TemporaryFolder folder;
    const auto file = WriteFile(folder / "model.ifc", StepFile("#1=IFCX();\n"));
    double last = 0;
    EXPECT_EQ(Document::Read(file,
                             [&](double fraction) {
                                 last = fraction;
                                 return false;
                             }),
              nullptr);
    EXPECT_GT(last, 0);
    EXPECT_THROW(Document::Read(folder / "none.ifc"), std::system_error);
    EXPECT_THROW(Document::Read(folder.Path()), std::system_error);
}

}  // namespace
}  // namespace workbench::step
