#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "ACAPinc.h"
#include "Workbench/HeadlessApplication.hpp"
#include "Workbench/desktop/OffscreenApplication.hpp"

namespace workbench {
namespace {

namespace fs = std::filesystem;

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
    const OffscreenApplication qt;  // for texts
    const char* const names[4] = {"ä plan.dwg", "plan.pdf", "plan.png", "plan.jpg"};
};

TEST_F(PlanCallsTest, WhatHasNoPlanLeavesNoFile) {
    const fs::path sample = fs::path(KESTRANE_SAMPLES) / "Gartenpavillon.ifc";
    EXPECT_EQ(Save("plan.dwg"), APIERR_NOPLAN);
    ASSERT_TRUE(application->Open(sample));
    application->BringToFront({FrontWindow::Kind::plan, 0});
    for (const char* name : names)
        EXPECT_EQ(Save(name), APIERR_REFUSEDCMD) << "the shapes are still to come";

    std::string model = step::FileBytes(sample);
    const std::string storeys = "(#68,#72));";
    model.replace(
        model.find(storeys), storeys.size(),
        "(#68,#72,#9000));\n#9000=IFCBUILDINGSTOREY('0w726bMUr2riuNmBWWMsl0',#5,'Empty',$,$,#71,$,$,"
        ".ELEMENT.,9.);");
    const std::string site = "#55=IFCAXIS2PLACEMENT3D(#11,";
    model.replace(model.find(site), site.size(),
                  "#9001=IFCCARTESIANPOINT((0.,0.,53.4));\n#55=IFCAXIS2PLACEMENT3D(#9001,");
    ASSERT_TRUE(application->Open(step::WriteFile(folder / "Empty.ifc", model)));
    ASSERT_TRUE(queue.RunUntil([this] { return !application->IsShaping(); }, std::chrono::minutes(1)));
    ASSERT_TRUE(application->BringToFront({FrontWindow::Kind::plan, 2}));
    for (const char* name : names)
        EXPECT_EQ(Save(name), APIERR_GENERAL) << "no elements";
    EXPECT_TRUE(fs::is_empty(Plans()));
    application->BringToFront({FrontWindow::Kind::plan, 0});
    EXPECT_EQ(Save("plan.dwg"), NoError) << "on its hill";
}

TEST_F(PlanCallsTest, WhatCannotBeWrittenLeavesWhatWasThere) {
    OpenSample();
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    application->BringToFront({FrontWindow::Kind::plan, 0});
    Configuration();
    rlimit former = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit full = {1000, former.rlim_max};
    for (const char* name : names) {
        step::WriteFile(Plans() / name, "former");
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
        const GSErrCode error = Save(name);
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &former), 0);
        EXPECT_EQ(error, APIERR_GENERAL) << name;
        EXPECT_EQ(step::FileBytes(Plans() / name), "former");
        EXPECT_EQ(std::distance(fs::directory_iterator(Plans()), {}), 1);
        fs::remove(Plans() / name);
    }
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(Save("plan.pdf"), NoError);
    application->BringToFront({});
    EXPECT_EQ(Save("plan.dwg"), NoError) << "drawings are plans, whatever is in front";
}

TEST_F(PlanCallsTest, CommandsAreAnsweredAsFarAsTheyAreKnown) {
    OpenSample();
    IO::Location location;
    const Texts mode = {{"Mode", "Default"}};
    EXPECT_EQ(Command(mode, getConfiguration, &location, {dxfDwg.developerID, 99}), APIERR_MODULNOTINSTALLED);
    EXPECT_EQ(Command(mode, getConfiguration + 1, &location), APIERR_MODULCMDNOTSUPPORTED);
    EXPECT_EQ(Command(mode, getConfiguration, &location, dxfDwg, 2), APIERR_MODULCMDVERSNOTSUPPORTED);
    EXPECT_EQ(Command({{"Mode", "Other"}}, getConfiguration, &location), APIERR_BADPARS);

    const fs::path configuration = hostkit::ToPath(Configuration());
    const std::string target = Url(hostkit::ToLocation(Plans() / "plan.dwg"));
    const std::string settings = Url(hostkit::ToLocation(configuration));
    step::WriteFile(folder / "other.json", R"({"version": "AC1032"})");
    const Texts bad[] = {
        {{"FileName", target}},
        {{"ConfigFile", settings}},
        {{"FileName", "plan.dwg"}, {"ConfigFile", settings}},
        {{"FileName", target}, {"ConfigFile", "file:///no/where.json"}},
        {{"FileName", target}, {"ConfigFile", Url(hostkit::ToLocation(folder / "other.json"))}}};
    for (const Texts& texts : bad)
        EXPECT_EQ(Command(texts, saveFile, nullptr), APIERR_BADPARS);
    EXPECT_TRUE(fs::is_empty(Plans()));
    step::WriteFile(configuration, "");
    EXPECT_EQ(Save("plan.dwg"), NoError) << "the default settings are there again";
}

}  // namespace
}  // namespace workbench
