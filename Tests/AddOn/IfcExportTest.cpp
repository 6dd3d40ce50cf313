#include <gmock/gmock.h>

#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>

#include "ACAPinc.h"
#include "AddOn/AddOnTest.hpp"
#include "AddOn/PlainServer.hpp"
#include "ThreadRegister.hpp"
#include "Workbench/exchange/Exchange.hpp"
#include "palette/KestranePalette.hpp"

namespace tests {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using Json = nlohmann::ordered_json;

namespace {

Json Request(const std::string& fileName, bool onlyVisible = false) {
    return {{"token", "t0ken"},     {"projectId", "p1"},          {"folderId", "f1"},
            {"fileName", fileName}, {"onlyVisible", onlyVisible}, {"useMapFile", false}};
}

std::vector<std::string> GlobalIds(const fs::path& file) {
    const auto opened = workbench::OpenIfc(file);
    std::vector<std::string> ids;
    for (const auto& element : opened.project->Elements())
        ids.push_back(opened.project->GlobalIdOf(element));
    return ids;
}

}  // namespace

class IfcExportTest : public AddOnTest {
  protected:
    void SetUp() override {
        StartWithPalette();
        OpenSample();
    }

    void Export(const Json& request) { Call("ExportIFCModel", Text(request.dump())); }

    // Nothing may come after the one failure call: no thread was started.
    void ExpectFailureAtOnce() {
        EXPECT_EQ(CountScripts("FailExportModel()"), 1U);
        EXPECT_EQ(CountScripts("CompleteExportModel()"), 0U);
        EXPECT_THAT(hostkit::ThreadRegister::Instance().Running(), ElementsAre());
    }
};

TEST_F(IfcExportTest, RequestAsTheServiceReceivesIt) {
    const PlainServer server(PlainServer::Manner::Answer, 200, R"([{"id":"d1"}])");
    EXPECT_EQ(CallForText("GetIfcDocuments"), "");
    Export(Request("Haus Süd"));
    ASSERT_TRUE(WaitForScript("CompleteExportModel()"));
    EXPECT_EQ(CallForText("GetIfcDocuments"), R"([{"id":"d1"}])");
    EXPECT_EQ(CallForText("GetIfcDocuments"), R"([{"id":"d1"}])");

    const auto requests = server.Requests();
    ASSERT_EQ(requests.size(), 1U);
    const std::string& request = requests[0];
    const std::string head = request.substr(0, request.find("\r\n\r\n") + 2);
    EXPECT_THAT(head, testing::StartsWith("POST /api/document?folderId=f1 HTTP/1.1\r\n"));
    EXPECT_THAT(head, HasSubstr("\r\nKestrane-Client-Id: Kestrane Plugin Archicad\r\n"
                                "X-Project-Authorization: bearer t0ken\r\n"));
    EXPECT_THAT(head, HasSubstr("\r\nContent-Type: multipart/form-data; boundary="));
    EXPECT_THAT(head, testing::Not(HasSubstr("User-Agent")));
    EXPECT_THAT(head, testing::Not(HasSubstr("p1"))) << "the project is not part of the request";

    const std::string body = request.substr(head.size() + 2);
    const std::string exported = ReadFile(ExportFolder() / "Haus Süd.ifc");
    EXPECT_THAT(body,
                HasSubstr("Content-Disposition: form-data; name=\"file\"; filename=\"Haus Süd.ifc\"\r\n"));
    EXPECT_THAT(body, HasSubstr("\r\n\r\n" + exported + "\r\n--"));
    std::size_t parts = 0;
    for (std::size_t at = body.find("Content-Disposition"); at != std::string::npos;
         at = body.find("Content-Disposition", at + 1)) {
        ++parts;
    }
    EXPECT_EQ(parts, 1U);
    EXPECT_EQ(exported, ReadFile(Sample())) << "the whole project, as it was read";
}

// Only a failed transfer is a failure; what an answer means is the page's to judge.
TEST_F(IfcExportTest, AnswersOfEveryStatusReachThePage) {
    struct Case {
        int status;
        std::string body;
    };
    const Case cases[] = {
        {200, ""}, {401, R"({"error":"Sign in again."})"}, {500, "<h1>Oops</h1>"}, {507, "full"}};
    for (const Case& c : cases) {
        const PlainServer server(PlainServer::Manner::Answer, c.status, c.body);
        Export(Request("Answered"));
        ASSERT_TRUE(WaitForScript("CompleteExportModel()")) << c.status;
        EXPECT_EQ(CallForText("GetIfcDocuments"), c.body);
    }
    EXPECT_EQ(CountScripts("FailExportModel()"), 0U);
}

TEST_F(IfcExportTest, FailedTransfersAreTold) {
    Export(Request("Nobody listens"));
    EXPECT_TRUE(WaitForScript("FailExportModel()"));
    for (const auto manner : {PlainServer::Manner::CutUpload, PlainServer::Manner::CutAnswer}) {
        const PlainServer server(manner, 200, "[]");
        Export(Request("Cut"));
        EXPECT_TRUE(WaitForScript("FailExportModel()"));
    }
    EXPECT_EQ(CountScripts("CompleteExportModel()"), 0U);
    EXPECT_EQ(CallForText("GetIfcDocuments"), "");
}

TEST_F(IfcExportTest, BadRequestsFailAtOnce) {
    std::vector<std::string> requests{"", "{", "[]", "5", "null"};
    for (const char* const member : {"token", "projectId", "folderId", "fileName", "onlyVisible"}) {
        for (const Json& value : {Json(nullptr), Json(5), Json::object(),
                                  Json(member == std::string("onlyVisible") ? Json("true") : Json(true))}) {
            Json request = Request("Bad");
            request[member] = value;
            requests.push_back(request.dump());
        }
        Json request = Request("Bad");
        request.erase(member);
        requests.push_back(request.dump());
    }
    for (const char* const name : {"../up", "a/b", "/root"})
        requests.push_back(Request(name).dump());
    std::size_t failures = 0;
    for (const std::string& request : requests) {
        Call("ExportIFCModel", Text(request));
        EXPECT_EQ(CountScripts("FailExportModel()"), ++failures) << request;
    }
    EXPECT_THAT(hostkit::ThreadRegister::Instance().Running(), ElementsAre());
    EXPECT_TRUE(fs::is_empty(ExportFolder()));
    EXPECT_FALSE(fs::exists(DataFolder() / "up.ifc"));
}

TEST_F(IfcExportTest, AnUnwritableFolderFailsAtOnce) {
    fs::remove_all(ExportFolder());
    std::ofstream(ExportFolder()) << "a file in the way";
    Export(Request("Nowhere"));
    ExpectFailureAtOnce();
}

TEST_F(IfcExportTest, EachFailingHostCallFailsTheExportOrIsMadeUpFor) {
    const PlainServer server(PlainServer::Manner::Answer, 200, "[]");
    const auto before = Faults().CallsMade();
    Export(Request("Sweep", true));
    ASSERT_TRUE(WaitForScript("CompleteExportModel()"));
    const auto calls = Faults().CallsMade() - before;
    ASSERT_GE(calls, 4U);  // folder, element list, translators, save

    std::size_t failed = 0;
    for (std::uint64_t nth = 1; nth <= calls; ++nth) {
        Faults().FailCall(nth, APIERR_GENERAL);
        Export(Request("Sweep", true));
        ASSERT_TRUE(queue.RunUntil(
            [&] {
                return CountScripts("FailExportModel()") + CountScripts("CompleteExportModel()") == nth + 1;
            },
            20s));
        failed = CountScripts("FailExportModel()");
        EXPECT_EQ(hostkit::LiveHandles(), 0);
        Faults().Clear();
    }
    EXPECT_EQ(failed, calls - 1) << "only the element list can do without: the whole project is sent then";
}

TEST_F(IfcExportTest, OnlyVisibleElements) {
    const PlainServer server(PlainServer::Manner::Answer, 200, "[]");
    const auto& project = application->OpenProject();
    std::vector<API_Guid> shown;
    std::vector<std::string> ids;
    for (const auto& element : project.Elements()) {
        if (!application->IsShown(element) || ids.size() == 3) continue;
        shown.push_back(element.guid);
        ids.push_back(project.GlobalIdOf(element));
    }
    application->ShowOnly(shown);
    Export(Request("Visible", true));
    ASSERT_TRUE(WaitForScript("CompleteExportModel()"));
    EXPECT_THAT(GlobalIds(ExportFolder() / "Visible.ifc"), testing::UnorderedElementsAreArray(ids));

    Export(Request("Visible", false));
    ASSERT_TRUE(WaitForScript("CompleteExportModel()"));
    EXPECT_EQ(GlobalIds(ExportFolder() / "Visible.ifc").size(), project.Elements().size());

    Faults().FailCall("ACAPI_Element_GetElemList", 1, APIERR_GENERAL);
    Export(Request("Visible", true));
    ASSERT_TRUE(WaitForScript("CompleteExportModel()"));
    EXPECT_EQ(GlobalIds(ExportFolder() / "Visible.ifc").size(), project.Elements().size());
}

TEST_F(IfcExportTest, ModelAsText) {
    Call("RegisterIfcFileName", Text("Registered"));
    EXPECT_EQ(CallForText("GetIfcFile", "Text"), ReadFile(Sample()));
    EXPECT_EQ(CallForText("GetIfcFile", ""), "");
    EXPECT_EQ(CallForText("GetIfcFile", "no/where"), "");
    EXPECT_FALSE(fs::exists(ExportFolder() / ".ifc"));
    Faults().FailCall("APIDo_SaveID", 1, APIERR_GENERAL);
    EXPECT_EQ(CallForText("GetIfcFile", "Other"), "");
}

TEST_F(IfcExportTest, UploadRunsOnItsNamedThreadAndBlocksNothing) {
    auto server = std::make_unique<PlainServer>(PlainServer::Manner::Hang);
    Export(Request("Stalled"));
    ASSERT_TRUE(queue.RunUntil([&] { return !server->Requests().empty(); }, 20s));
    EXPECT_THAT(hostkit::ThreadRegister::Instance().Running(), ElementsAre("exportModel"));
    EXPECT_EQ(CallForText("RequestFileName"), Sample().stem().string());
    EXPECT_EQ(CountScripts("CompleteExportModel()") + CountScripts("FailExportModel()"), 0U);

    // The host leaves while the upload waits; what comes later finds nobody and harms nobody.
    Stop();
    server.reset();
    EXPECT_TRUE(hostkit::ThreadRegister::Instance().WaitForAll(20s));
    EXPECT_EQ(CountScripts("FailExportModel()"), 0U);
}

}  // namespace tests
