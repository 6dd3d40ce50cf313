#include <gmock/gmock.h>

#include <fstream>
#include <regex>

#include "AddOn/PlainServer.hpp"
#include "AddOn/PlayedHost.hpp"
#include "ThreadRegister.hpp"

namespace tests {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Json = nlohmann::ordered_json;
using Manner = PlainServer::Manner;

enum Kind { dwg = 1, png, jpeg, pdf };

class PlanDocumentsTest : public PlayedHostTest {
  protected:
    PlanDocumentsTest() {
        host.front = APIWind_FloorPlanID;
        host.elements[0].bounds = API_Box3D{0, 1, 0, 10, 5, 3};
        host.elements[1].bounds = API_Box3D{-2.5, 2, 3, 1, 7, 6};
    }

    std::string Create(const nlohmann::json& kind = png) {
        return ToText(GS::DynamicCast<DG::JSValue>(Call("Create2dPlan", ToScript(kind)))->GetString());
    }
    static Json Request(const std::string& fileName) {
        return {{"token", "t0ken"}, {"projectId", "p1"}, {"folderId", "f1"}, {"fileName", fileName}};
    }
    /// What the page is told in the end: "Complete", "Fail", or nothing; or what the call throws.
    std::string Export(const std::string& request) {
        const auto completed = CountScripts("CompleteExportPlan()");
        const auto failed = CountScripts("FailExportPlan()");
        try {
            EXPECT_TRUE(GS::DynamicCast<DG::JSValue>(Call("Export2dPlan", Text(request)))->GetBool());
        } catch (const GS::Exception& exception) {
            return exception.what();
        }
        EXPECT_TRUE(hostkit::ThreadRegister::Instance().WaitForAll(20s));
        return (CountScripts("CompleteExportPlan()") > completed ? "Complete" : std::string()) +
               (CountScripts("FailExportPlan()") > failed ? "Fail" : "");
    }
    std::string LastAlert() { return ToText(driver.Alerts().back().large); }
};

TEST_F(PlanDocumentsTest, EachKindIsAskedOfTheHost) {
    const std::string configuration = "file:///Configurations/Plan%20%C3%A4.xml";
    const struct {
        Kind kind;
        const char* extension;
        const char* saved;
    } cases[] = {{dwg, ".dwg", nullptr},
                 {png, ".png", "picture 22 depth 9 2D cropped"},
                 {jpeg, ".jpg", "picture 25 depth 8 2D cropped"},
                 {pdf, ".pdf", "PDF 12500 x 6000 margins 0"}};
    for (const auto& [kind, extension, saved] : cases) {
        const fs::path path = Create(kind);
        EXPECT_EQ(path.parent_path(), folder.Path());
        EXPECT_EQ(path.extension(), extension);
        EXPECT_TRUE(std::regex_match(path.stem().string(),
                                     std::regex(R"(\d{4}-\d\d-\d\dT\d\d_\d\d_\d\d([+-]\d\d_\d\d|Z))")));
        EXPECT_EQ(ReadFile(path), saved != nullptr ? saved : "drawing");
        if (kind == dwg) {
            EXPECT_THAT(host.commands,
                        ElementsAre("GDCO Mode=Default",
                                    "SAV2 FileName=file://" +
                                        std::regex_replace(path.string(), std::regex("\\+"), "%2B") +
                                        " ConfigFile=" + configuration));
        }
    }
    EXPECT_THAT(driver.Alerts(), IsEmpty());

    host.elements[1].bounds.reset();  // without a body
    Create(pdf);
    EXPECT_EQ(host.saved.back(), "PDF 10000 x 4000 margins 0");
    host.elements.clear();
    Create(pdf);
    EXPECT_EQ(host.saved.back(), "PDF 0 x 0 margins 0");
}

TEST_F(PlanDocumentsTest, OtherKindsAndOtherWindowsHaveNoPlan) {
    EXPECT_EQ(Export(Request("Nothing yet").dump()), "Fail");
    for (const auto& kind : {nlohmann::json(0), nlohmann::json(5), nlohmann::json(-1), nlohmann::json("1"),
                             nlohmann::json(1.0), nlohmann::json(true), nlohmann::json()}) {
        SCOPED_TRACE(kind.dump());
        ASSERT_NE(Create(), "");
        EXPECT_EQ(Create(kind), "");
        EXPECT_EQ(LastAlert(), "Can't create a 2D Plan.");
        EXPECT_EQ(ToText(driver.Alerts().back().buttons[0]), "OK");
        EXPECT_EQ(Export(Request("Forgotten").dump()), "Fail");
    }
    EXPECT_THROW(Create(nlohmann::json::array()), GS::ClassCastException);

    const PlainServer server(Manner::Answer);
    Create();
    host.front = APIWind_3DModelID;
    for (const auto& [language, alert] : {std::pair("GER", "Die aktuelle Ansicht ist keine 2D Ansicht."),
                                          std::pair("INT", "Current view isn't 2D view.")}) {
        host.language = language;
        EXPECT_EQ(Create(dwg), "");
        EXPECT_EQ(LastAlert(), alert);
    }
    EXPECT_THAT(host.commands, IsEmpty());
    EXPECT_EQ(Export(Request("Remembered").dump()), "Complete");
}

TEST_F(PlanDocumentsTest, EachFailingHostCallFailsThePlanOrIsMadeUpFor) {
    // Made up for: the question for the window in front, lists not taken back, and the model's extent.
    const struct {
        Kind kind;
        std::uint64_t calls;
        std::uint64_t madeUpFor;
    } cases[] = {{dwg, 11, 3}, {png, 3, 1}, {jpeg, 3, 1}, {pdf, 8, 6}};
    for (const auto& [kind, calls, madeUpFor] : cases) {
        const auto before = Faults().CallsMade();
        ASSERT_NE(Create(kind), "");
        ASSERT_EQ(Faults().CallsMade() - before, calls) << kind;
        std::uint64_t made = 0;
        for (std::uint64_t nth = 1; nth <= calls; ++nth) {
            Faults().FailCall(nth, APIERR_GENERAL);
            const auto alerts = driver.Alerts().size();
            const std::string path = Create(kind);
            made += path.empty() ? 0 : 1;
            EXPECT_EQ(driver.Alerts().size() - alerts, path.empty() ? 1U : 0U);
            EXPECT_EQ(hostkit::LiveHandles(), 0) << kind << " " << nth;
        }
        EXPECT_EQ(made, madeUpFor) << kind;
    }
}

TEST_F(PlanDocumentsTest, ConfigurationsAreCutOrRefused) {
    const std::string longName(200, 'c');
    host.dwgConfiguration = IO::Location(("/" + longName + "/" + longName + "/" + longName).c_str());
    Create(dwg);
    const std::string cut = ("ConfigFile=file:///" + longName + "/" + longName + "/" + longName)
                                .substr(0, std::string("ConfigFile=").size() + 512);
    EXPECT_THAT(host.commands.back(), testing::EndsWith(cut));
    for (const std::string& illegal : {std::string(), "/" + longName + longName}) {
        host.dwgConfiguration = IO::Location(illegal.c_str());
        const auto before = Faults().CallsMade();
        EXPECT_EQ(Create(dwg), "");
        EXPECT_EQ(host.commands.back(), "GDCO Mode=Default");
        EXPECT_EQ(Faults().CallsMade() - before, 8U) << "the second list is made and freed too";
    }
}

TEST_F(PlanDocumentsTest, UploadsEndAsTheServiceAnswers) {
    const struct {
        Manner manner;
        int status;
        const char* outcome;
    } cases[] = {{Manner::Answer, 200, "Complete"}, {Manner::Answer, 299, "Complete"},
                 {Manner::Answer, 300, "Fail"},     {Manner::Answer, 401, "Fail"},
                 {Manner::Answer, 500, "Fail"},     {Manner::CutUpload, 200, ""},
                 {Manner::CutAnswer, 200, ""},      {Manner::Answer, 201, "Complete"}};
    std::string kept;
    for (const auto& [manner, status, outcome] : cases) {
        SCOPED_TRACE(status);
        const std::string answer = "answer " + std::to_string(status);
        const PlainServer server(manner, status, answer);
        Create();
        EXPECT_EQ(Export(Request("Erdgeschoß").dump()), outcome);
        if (std::string(outcome) == "Complete") kept = answer;
        EXPECT_EQ(CallForText("GetPlanDocuments"), kept);
        EXPECT_TRUE(fs::is_empty(folder.Path())) << "the next version needs the name";
        if (manner != Manner::Answer) continue;

        const std::string sent = server.Requests().at(0);
        EXPECT_THAT(sent, testing::StartsWith("POST /api/document?folderId=f1 HTTP/1.1\r\n"));
        EXPECT_THAT(sent, HasSubstr("\r\nKestrane-Client-Id: Kestrane Plugin Archicad\r\n"
                                    "X-Project-Authorization: bearer t0ken\r\n"));
        EXPECT_THAT(sent, HasSubstr("name=\"file\"; filename=\"Erdgeschoß.png\"\r\n"));
        EXPECT_THAT(sent, HasSubstr("\r\n\r\npicture 22 depth 9 2D cropped\r\n--"));
    }
    PlainServer hanging(Manner::Hang);
    Create();
    Call("Export2dPlan", Text(Request("Stalled").dump()));
    EXPECT_THAT(hostkit::ThreadRegister::Instance().Running(), ElementsAre("exportPlan"));
    EndHost();  // what comes later finds nobody
}

TEST_F(PlanDocumentsTest, NamesArePutInPlaceOfTheTime) {
    const PlainServer server(Manner::Answer);
    std::ofstream(folder.Path() / "taken.png") << "another's";
    for (const std::string name : {"Grundriß 1:50", "v1.2", "..", "a\\b", "*?%20", "平面図", ""}) {
        Create();
        EXPECT_EQ(Export(Request(name).dump()), "Complete") << name;
        EXPECT_THAT(server.Requests().back(), HasSubstr("filename=\"" + name + ".png\"")) << name;
    }
    const std::string itself = fs::path(Create()).stem();
    EXPECT_EQ(Export(Request(itself).dump()), "Complete");

    const auto sent = server.Requests().size();
    for (const std::string& name : {std::string("taken"), std::string("a/b"), std::string("../up"),
                                    std::string("/"), std::string(300, 'n'), std::string("a\0b", 3)}) {
        const std::string path = Create();
        EXPECT_EQ(Export(Request(name).dump()), "Fail") << name;
        EXPECT_TRUE(fs::remove(path)) << name;
        EXPECT_EQ(Export(Request("Gone").dump()), "Fail");
    }
    EXPECT_EQ(server.Requests().size(), sent);
    EXPECT_EQ(ReadFile(folder.Path() / "taken.png"), "another's");
}

TEST_F(PlanDocumentsTest, BadRequestsSendNothing) {
    const std::string path = Create();
    for (const char* request : {"", "{", "{}"})
        EXPECT_EQ(Export(request), "Fail") << request;
    EXPECT_EQ(Export("[]"), "Bad cast.");
    for (const auto& [request, message] :
         SpoilEach(Request("Bad"), "", {"token", "projectId", "folderId", "fileName"}))
        EXPECT_EQ(Export(request), message.empty() ? "Fail" : message) << request;
    EXPECT_TRUE(fs::exists(path));
    Create(0);
    EXPECT_FALSE(fs::exists(path)) << "it was never sent";
}

}  // namespace
}  // namespace tests
