#include <gtest/gtest.h>

#include "Workbench/exchange/Exchange.hpp"
#include "Workbench/step/StepTexts.hpp"

namespace workbench {
namespace {

using step::FileBytes;
using step::StepFile;
using step::TemporaryFolder;
using step::WriteFile;

TEST(SaveIfc, WritesTheProjectByteForByte) {
    const TemporaryFolder folder;
    const std::filesystem::path files[] = {std::filesystem::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc",
                                           "/usr/share/assimp/models/IFC/AC14-FZK-Haus.ifc"};
    for (const auto& file : files) {
        const OpenResult opened = OpenIfc(file);
        ASSERT_TRUE(opened.project) << file;
        const auto copy = folder / file.filename();
        EXPECT_EQ(SaveIfc(*opened.project, copy).outcome, SaveOutcome::done);
        EXPECT_TRUE(FileBytes(file) == FileBytes(copy)) << file;
        EXPECT_EQ(SaveIfc(*opened.project, copy).outcome, SaveOutcome::done) << "and again over itself";
    }
}

TEST(SaveIfc, NeverReplacesADamagedSource) {
    const TemporaryFolder folder;
    const std::string bytes = StepFile("#1=IFCX('a);\n#2=IFCWALL('x',$,$,$,$,$,$,$,$);\n");
    const auto file = WriteFile(folder / "damaged.ifc", bytes);
    std::filesystem::create_symlink(file, folder / "link.ifc");
    const OpenResult opened = OpenIfc(file);
    ASSERT_TRUE(opened.project);
    EXPECT_EQ(SaveIfc(*opened.project, file).outcome, SaveOutcome::refused);
    EXPECT_EQ(SaveIfc(*opened.project, folder / "link.ifc").outcome, SaveOutcome::refused);
    EXPECT_EQ(SaveIfcSubset(*opened.project, {}, file).outcome, SaveOutcome::refused);
    EXPECT_EQ(FileBytes(file), bytes);
    EXPECT_EQ(SaveIfc(*opened.project, folder / "copy.ifc").outcome, SaveOutcome::done);
    EXPECT_EQ(FileBytes(folder / "copy.ifc"), bytes);
}

TEST(SaveIfc, TellsFailuresApart) {
    const TemporaryFolder folder;
    const auto project = Project::Untitled();
    const std::pair<SaveResult, SaveOutcome> cases[] = {
        {SaveIfc(*project, folder / "none" / "a.ifc"), SaveOutcome::cannotWrite},
        {SaveIfc(*project, folder.Path()), SaveOutcome::cannotWrite},
        {SaveIfc(*project, folder / "a.IFCZIP"), SaveOutcome::refused},
        {SaveIfc(*project, folder / "a.ifcxml"), SaveOutcome::refused},
        {{.outcome = SaveOutcome::diskFull, .file = folder / "a.ifc", .detail = "full"},
         SaveOutcome::diskFull},
    };
    for (const auto& [result, outcome] : cases) {
        EXPECT_EQ(result.outcome, outcome) << result.file;
        for (const Language language : {Language::english, Language::german}) {
            const std::string text = Describe(result, language);
            EXPECT_NE(text.find(result.file.string()), std::string::npos);
            EXPECT_NE(text.find(result.detail), std::string::npos);
            EXPECT_EQ(text.find('{'), std::string::npos) << text;
        }
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

}  // namespace
}  // namespace workbench
