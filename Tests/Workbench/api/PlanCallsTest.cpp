#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>
#include <fstream>

#include "ACAPinc.h"
#include "Workbench/HeadlessApplication.hpp"

namespace workbench {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::StartsWith;

constexpr API_ModulID dxfDwg = {1198731108, 1322668197};
constexpr auto getConfiguration = static_cast<GSType>(hostkit::FourCharacters("GDCO"));
constexpr auto saveFile = static_cast<GSType>(hostkit::FourCharacters("SAV2"));

using Texts = std::vector<std::pair<const char*, std::string>>;

class PlanCallsTest : public HeadlessApplicationTest {
  protected:
    void SetUp() override {
        HeadlessApplicationTest::SetUp();
        fs::create_directory(Plans());
    }

    static GSErrCode Command(const Texts& texts, GSType command, void* result, API_ModulID module = dxfDwg,
                             Int32 version = 1) {
        GSHandle list = nullptr;
        EXPECT_EQ(ACAPI_Goodies(APIAny_InitMDCLParameterListID, &list), NoError);
        for (const auto& [name, text] : texts) {
            API_MDCLParameter parameter = {};
            parameter.name = name;
            parameter.string_par = text.c_str();
            EXPECT_EQ(ACAPI_Goodies(APIAny_AddMDCLParameterID, list, &parameter), NoError);
        }
        const GSErrCode error =
            ACAPI_Command_Call(&module, command, version, list, static_cast<GSPtr>(result), true);
        ACAPI_Goodies(APIAny_FreeMDCLParameterListID, &list);
        return error;
    }
    static IO::Location Configuration() {
        IO::Location location;
        EXPECT_EQ(Command({{"Mode", "Default"}}, getConfiguration, &location), NoError);
        return location;
    }
    static std::string Url(const IO::Location& location) {
        GS::UniString url;
        EXPECT_EQ(location.ToURLString(&url), NoError);
        return url.ToCStr().Get();
    }

    /// As the extension says.
    GSErrCode Save(const char* name) {
        IO::Location file = hostkit::ToLocation(Plans() / name);
        const fs::path extension = fs::path(name).extension();
        if (extension == ".dwg")
            return Command({{"FileName", Url(file)}, {"ConfigFile", Url(Configuration())}}, saveFile,
                           nullptr);
        API_SavePars_Pdf page = {};
        page.sizeX = page.sizeY = 20000;
        API_SavePars_Picture picture = {};
        picture.view2D = true;
        API_FileSavePars pars = {};
        pars.fileTypeID = extension == ".pdf"   ? APIFType_PdfFile
                          : extension == ".png" ? APIFType_PNGFile
                                                : APIFType_JPEGFile;
        pars.file = &file;
        return ACAPI_Automate(APIDo_SaveID, &pars,
                              extension == ".pdf" ? static_cast<void*>(&page) : &picture);
    }
    fs::path Plans() const { return folder / "plans"; }
    std::vector<std::string> Left() const {
        std::vector<std::string> names;
        for (const auto& file : fs::directory_iterator(Plans()))
            names.push_back(file.path().filename());
        return names;
    }
    std::string Bytes(const char* name) const { return step::FileBytes(Plans() / name); }
    const char* const names[4] = {"ä plan.dwg", "plan.pdf", "plan.png", "plan.jpg"};
};

TEST_F(PlanCallsTest, TheStoreyInFrontIsWrittenInEachFormat) {
    for (const char* name : names)
        EXPECT_EQ(Save(name), APIERR_NOPLAN) << "no project";
    ASSERT_TRUE(application->Open(fs::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc"));
    for (const char* name : names)
        EXPECT_NE(Save(name), NoError) << "the shapes are still to come";
    EXPECT_THAT(Left(), IsEmpty());
    OpenSample();
    ASSERT_TRUE(application->BringToFront({FrontWindow::Kind::plan, 0}));
    const char* const beginnings[] = {"AC1015", "%PDF-1.", "\x89PNG\r\n", "\xFF\xD8\xFF"};
    std::string former[4];
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(Save(names[i]), NoError) << names[i];
        former[i] = Bytes(names[i]);
        EXPECT_THAT(former[i], StartsWith(beginnings[i]));
    }
    // The window in front decides about pictures; drawings are always plans.
    application->BringToFront({});
    EXPECT_EQ(Save("plan.png"), NoError);
    EXPECT_NE(Bytes("plan.png"), former[2]);
    EXPECT_EQ(Save(names[0]), NoError);
    EXPECT_EQ(Bytes(names[0]).size(), former[0].size());
}

TEST_F(PlanCallsTest, AStoreyWithoutElementsHasNoPlan) {
    std::string model = step::FileBytes(fs::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc");
    const auto contained = model.find("#816=IFCRELCONTAINEDINSPATIALSTRUCTURE");
    model.erase(contained, model.find('\n', contained) - contained);
    ASSERT_TRUE(application->Open(step::WriteFile(folder / "Empty.ifc", model)));
    ASSERT_TRUE(queue.RunUntil([this] { return !application->IsShaping(); }, std::chrono::minutes(1)));
    application->BringToFront({FrontWindow::Kind::plan, 0});
    for (const char* name : names)
        EXPECT_EQ(Save(name), APIERR_GENERAL) << name;
    EXPECT_THAT(Left(), IsEmpty());
}

TEST_F(PlanCallsTest, WhatCannotBeWrittenLeavesNothing) {
    OpenSample();
    std::signal(SIGXFSZ, SIG_IGN);
    application->BringToFront({FrontWindow::Kind::plan, 0});
    Configuration();
    rlimit former = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit full = {1000, former.rlim_max};
    for (const char* name : names) {
        std::ofstream(Plans() / name) << "former";
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
        const GSErrCode error = Save(name);
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &former), 0);
        EXPECT_EQ(error, APIERR_GENERAL) << name;
        EXPECT_EQ(Bytes(name), "former");
        EXPECT_EQ(Left().size(), 1U);
        fs::remove(Plans() / name);
    }
    fs::remove(Plans());
    for (const char* name : names)
        EXPECT_EQ(Save(name), APIERR_GENERAL) << "there is no folder for " << name;
}

TEST_F(PlanCallsTest, CommandsAreAnsweredAsFarAsTheyAreKnown) {
    OpenSample();
    application->BringToFront({FrontWindow::Kind::plan, 0});
    const Texts mode = {{"Mode", "Default"}};
    IO::Location location;
    const auto call = [&](API_ModulID module, GSType command, Int32 version) {
        return Command(mode, command, &location, module, version);
    };
    EXPECT_EQ(call({dxfDwg.developerID, 1}, getConfiguration, 1), APIERR_MODULNOTINSTALLED);
    EXPECT_EQ(call({1, dxfDwg.localID}, getConfiguration, 1), APIERR_MODULNOTINSTALLED);
    EXPECT_EQ(call(dxfDwg, getConfiguration + 1, 1), APIERR_MODULCMDNOTSUPPORTED);
    EXPECT_EQ(call(dxfDwg, getConfiguration, 2), APIERR_MODULCMDVERSNOTSUPPORTED);
    EXPECT_EQ(Command(mode, getConfiguration, nullptr), APIERR_BADPARS);
    EXPECT_EQ(Command({{"Mode", "Other"}}, getConfiguration, &location), APIERR_BADPARS);
    EXPECT_EQ(Command({}, getConfiguration, &location), APIERR_BADPARS);
    EXPECT_TRUE(location.IsEmpty());

    const fs::path configuration = hostkit::ToPath(Configuration());
    const std::string target = Url(hostkit::ToLocation(Plans() / "plan.dwg"));
    const std::string settings = Url(hostkit::ToLocation(configuration));
    const Texts bad[] = {{{"FileName", target}},
                         {{"ConfigFile", settings}},
                         {{"FileName", "plan.dwg"}, {"ConfigFile", settings}},
                         {{"FileName", target}, {"ConfigFile", "file:///no/where.json"}}};
    for (const Texts& texts : bad)
        EXPECT_EQ(Command(texts, saveFile, nullptr), APIERR_BADPARS);
    std::ofstream(configuration) << R"({"version": "AC1032"})";
    EXPECT_EQ(Command({{"FileName", target}, {"ConfigFile", settings}}, saveFile, nullptr), APIERR_BADPARS);
    EXPECT_THAT(Left(), IsEmpty());
    EXPECT_EQ(Save("plan.dwg"), NoError) << "the default settings are there again";
}

}  // namespace
}  // namespace workbench
