#include <gmock/gmock.h>

#include <fstream>

#include "ACAPinc.h"
#include "AddOn/AddOnTest.hpp"
#include "palette/Folders.hpp"
#include "palette/KestranePalette.hpp"

namespace tests {

namespace fs = std::filesystem;

namespace {

fs::path AsPath(const GS::UniString& path) {
    return ToText(path);
}

}  // namespace

TEST_F(AddOnTest, ApplicationInfoInEachLanguage) {
    StartWithPalette();
    EXPECT_EQ(CallForText("GetApplicationInfo"), "en,http://127.0.0.1:8465/api/,0.44.0.58128,26");
    EXPECT_FALSE(KestranePalette::IsGerman());
    EXPECT_EQ(ToText(application->GetSession().GetResources().String(32500, 1)), "Kestrane Palette");
}

TEST_F(AddOnTest, GermanHost) {
    StartWithPalette(workbench::Language::german);
    EXPECT_EQ(CallForText("GetApplicationInfo"), "de,http://127.0.0.1:8465/api/,0.44.0.58128,26");
    EXPECT_TRUE(KestranePalette::IsGerman());
    Faults().FailCall("APIEnv_ApplicationID", 1, APIERR_GENERAL);
    EXPECT_FALSE(KestranePalette::IsGerman());
    Faults().FailCall("APIEnv_ApplicationID", 1, APIERR_GENERAL);
    EXPECT_EQ(CallForText("GetApplicationInfo"), "en,http://127.0.0.1:8465/api/,0.44.0.58128,26");
    EXPECT_EQ(ToText(application->GetSession().GetResources().String(32500, 1)), "Kestrane-Palette");
}

TEST_F(AddOnTest, ProjectName) {
    StartWithPalette();
    EXPECT_EQ(CallForText("RequestFileName"), "Untitled");
    OpenSample();
    EXPECT_EQ(CallForText("RequestFileName"), Sample().stem().string());
    Faults().FailCall("APIEnv_ProjectID", 1, APIERR_NOPLAN);
    EXPECT_EQ(CallForText("RequestFileName"), "");
}

TEST_F(AddOnTest, ElementRecordsAreReadInTheHostsOrderAndUnreadableOnesSkipped) {
    StartWithPalette();
    EXPECT_EQ(KestranePalette::GetElementInfos().GetSize(), 0U);
    OpenSample();
    const auto& elements = application->OpenProject().Elements();
    ASSERT_GT(elements.size(), 3U);

    GS::Array<API_Element> records = KestranePalette::GetElementInfos();
    ASSERT_EQ(records.GetSize(), elements.size());
    for (USize i = 0; i < records.GetSize(); ++i)
        EXPECT_EQ(records[i].header.guid, elements[i].guid);

    Faults().FailCall("ACAPI_Element_Get", 2, APIERR_DELETED);
    records = KestranePalette::GetElementInfos();
    ASSERT_EQ(records.GetSize(), elements.size() - 1);
    EXPECT_EQ(records[1].header.guid, elements[2].guid);
    Faults().FailCall("ACAPI_Element_GetElemList", 1, APIERR_GENERAL);
    EXPECT_EQ(KestranePalette::GetElementInfos().GetSize(), 0U);
}

TEST_F(AddOnTest, FoldersAreMadeOnDemandAndMissingAnswersGiveNone) {
    StartWithPalette();
    const fs::path data = DataFolder() / "Kestrane" / "ArchiCAD";
    EXPECT_EQ(CallForText("GetResourceFolder"), (data / "resources").string());
    EXPECT_EQ(CallForText("GetResourceFolder"), (data / "resources").string());
    EXPECT_TRUE(fs::is_directory(data / "resources"));
    EXPECT_EQ(AsPath(GetKestraneDataFolder()), data);
    EXPECT_EQ(AsPath(GetFolderPath("Export Model History")), data / "Export Model History");
    EXPECT_TRUE(GetFolderPath("..").IsEmpty());

    Faults().FailCall("APIEnv_GetSpecFolderID", 1, APIERR_GENERAL);
    EXPECT_EQ(CallForText("GetResourceFolder"), "");
    Faults().FailCall("APIEnv_GetSpecFolderID", 1, APIERR_GENERAL);
    EXPECT_TRUE(CreateTemporaryFolder("Work", false).IsEmpty());

    fs::remove_all(DataFolder() / "Kestrane");
    std::ofstream(DataFolder() / "Kestrane") << "a file in the way";
    EXPECT_EQ(CallForText("GetResourceFolder"), "");
}

TEST_F(AddOnTest, TemporaryFoldersKeepOrLoseTheirFiles) {
    Start();
    const fs::path work = AsPath(CreateTemporaryFolder("Work", false));
    EXPECT_EQ(work, ExportFolder() / "Work");
    fs::create_directories(work / "deep" / "deeper");
    std::ofstream(work / "a.ifc") << "a";
    std::ofstream(work / "deep" / "a.ifc") << "b";
    std::ofstream(work / "deep" / "deeper" / "ö.pdf") << "c";

    const auto names = [&](bool recursive) {
        std::vector<std::string> found;
        for (const GS::UniString& name : GetFileNamesInFolder(IO::Location(work.c_str()), recursive)) {
            found.push_back(ToText(name));
        }
        return found;
    };
    EXPECT_THAT(names(false), testing::ElementsAre("a.ifc"));
    EXPECT_THAT(names(true), testing::UnorderedElementsAre("a.ifc", "a.ifc", "ö.pdf"));

    EXPECT_EQ(AsPath(CreateTemporaryFolder("Work", false)), work);
    EXPECT_TRUE(fs::exists(work / "a.ifc"));
    EXPECT_EQ(AsPath(CreateTemporaryFolder("Work", true)), work);
    EXPECT_TRUE(fs::is_empty(work));

    std::ofstream(AsPath(CreatePublishTemporaryFolder()) / "plan.pdf") << "old";
    EXPECT_TRUE(fs::is_empty(AsPath(CreatePublishTemporaryFolder())));
}

}  // namespace tests
