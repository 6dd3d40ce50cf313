#include <gtest/gtest.h>
#include <httplib.h>

#include <nlohmann/json.hpp>

#include "AddOn/AddOnTest.hpp"
#include "Service/Server.hpp"

namespace tests {

using Json = nlohmann::json;

/// The add-on with the sample open, and the real service with a person signed in.
class ServiceUploadTest : public AddOnTest {
  protected:
    void SetUp() override {
        server.Start();
        const auto session =
            page.Post("/api/session", R"({"user":"demo","password":"demo"})", "application/json");
        ASSERT_TRUE(session);
        token = Json::parse(session->body).at("token");
        const Json project = Get("/api/projects").at(0);
        request = {{"projectId", project.at("id")},
                   {"folderId",
                    Get("/api/projects/" + project.at("id").get<std::string>() + "/folders").at(0).at("id")}};
        StartWithPalette();
        OpenSample();
    }

    service::Options Options() {
        service::Options options;
        options.port = 8465;
        options.dataDir = folder.Path() / "service";
        options.webRoot = folder.Path();
        return options;
    }
    std::string Read(const std::string& path) {
        const auto answer = page.Get(path, httplib::Headers{{"X-Project-Authorization", "bearer " + token}});
        return answer ? answer->body : "no answer";
    }
    Json Get(const std::string& path) { return Json::parse(Read(path)); }
    std::string Stored(const Json& document) {
        return Read("/api/document/" + document.at("id").get<std::string>());
    }

    service::Server server{Options()};
    httplib::Client page{"127.0.0.1", 8465};
    std::string token;
    Json request;
};

// The whole way: a page's request, the export, the upload, and what the real service then has.
TEST_F(ServiceUploadTest, ModelsArriveWhole) {
    const auto upload = [&](const std::string& bearer) {
        request.update({{"token", bearer}, {"fileName", "Pavillon ß"}, {"onlyVisible", false}});
        Call("ExportIFCModel", Text(request.dump()));
        EXPECT_TRUE(WaitForScript("CompleteExportModel()"));
        return Json::parse(CallForText("GetIfcDocuments"));
    };
    EXPECT_TRUE(upload("expired").contains("error"));
    const Json document = upload(token).at(0);
    EXPECT_EQ(document.at("name"), "Pavillon ß.ifc");
    EXPECT_EQ(Stored(document), ReadFile(Sample()));
}

TEST_F(ServiceUploadTest, PlansArriveInEachFormatAndAsVersions) {
    const struct {
        Int32 kind;
        const char* name;
        const char* beginning;
    } cases[] = {{1, "Grundriß.dwg", "AC1015"},
                 {2, "Grundriß.png", "\x89PNG\r\n"},
                 {3, "Grundriß.jpg", "\xFF\xD8\xFF"},
                 {4, "Grundriß.pdf", "%PDF-"}};
    application->BringToFront({workbench::FrontWindow::Kind::plan, 0});
    const auto upload = [&](Int32 kind, const std::string& bearer) {
        const auto path = GS::DynamicCast<DG::JSValue>(Call("Create2dPlan", new DG::JSValue(kind)));
        const std::string made = ReadFile(ToText(path->GetString()));
        request.update({{"token", bearer}, {"fileName", "Grundriß"}});
        Call("Export2dPlan", Text(request.dump()));
        return made;
    };
    for (const auto& [kind, name, beginning] : cases) {
        for (const int version : {1, 2}) {
            const std::string made = upload(kind, token);
            ASSERT_TRUE(WaitForScript("CompleteExportPlan()")) << name;
            const Json document = Json::parse(CallForText("GetPlanDocuments")).at(0);
            EXPECT_EQ(document.at("name"), name);
            EXPECT_EQ(document.at("version"), version);
            EXPECT_EQ(Stored(document).rfind(beginning, 0), 0U) << name;
            EXPECT_EQ(Stored(document), made);
        }
    }
    upload(1, "expired");
    EXPECT_TRUE(WaitForScript("FailExportPlan()"));
    EXPECT_EQ(Get("/api/documents?folderId=" + request.at("folderId").get<std::string>()).size(), 4U);
}

}  // namespace tests
