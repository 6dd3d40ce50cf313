#include <gtest/gtest.h>
#include <httplib.h>

#include <nlohmann/json.hpp>

#include "AddOn/AddOnTest.hpp"
#include "Service/Server.hpp"

namespace tests {

using Json = nlohmann::json;

// The whole way: a page's request, the export, the upload, and what the real service then has.
TEST_F(AddOnTest, UploadsArriveAtTheServiceWhole) {
    service::Options options;
    options.port = 8465;
    options.dataDir = folder.Path() / "service";
    options.webRoot = folder.Path();
    service::Server server(options);
    server.Start();

    httplib::Client page("127.0.0.1", options.port);
    const auto session =
        page.Post("/api/session", R"({"user":"demo","password":"demo"})", "application/json");
    ASSERT_TRUE(session);
    const std::string token = Json::parse(session->body).at("token");
    const httplib::Headers signedIn{{"X-Project-Authorization", "bearer " + token}};
    const Json project = Json::parse(page.Get("/api/projects", signedIn)->body).at(0);
    const std::string projectId = project.at("id");
    const Json folderOf =
        Json::parse(page.Get("/api/projects/" + projectId + "/folders", signedIn)->body).at(0);

    StartWithPalette();
    OpenSample();
    const auto upload = [&](const std::string& bearer) {
        const Json request{{"token", bearer},
                           {"projectId", projectId},
                           {"folderId", folderOf.at("id")},
                           {"fileName", "Pavillon ß"},
                           {"onlyVisible", false}};
        Call("ExportIFCModel", Text(request.dump()));
        EXPECT_TRUE(WaitForScript("CompleteExportModel()"));
        return Json::parse(CallForText("GetIfcDocuments"));
    };
    EXPECT_TRUE(upload("expired").contains("error"));
    const Json document = upload(token).at(0);
    EXPECT_EQ(document.at("name"), "Pavillon ß.ifc");

    const auto stored = page.Get("/api/document/" + document.at("id").get<std::string>(), signedIn);
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->body, ReadFile(Sample()));

    // A drawing of the plan, twice.
    application->BringToFront({workbench::FrontWindow::Kind::plan, 0});
    const Json request{{"token", token},
                       {"projectId", projectId},
                       {"folderId", folderOf.at("id")},
                       {"fileName", "Grundriß"}};
    for (const int version : {1, 2}) {
        const auto path = GS::DynamicCast<DG::JSValue>(Call("Create2dPlan", new DG::JSValue(Int32{1})));
        const std::string made = ReadFile(ToText(path->GetString()));
        Call("Export2dPlan", Text(request.dump()));
        ASSERT_TRUE(WaitForScript("CompleteExportPlan()"));
        const Json plan = Json::parse(CallForText("GetPlanDocuments")).at(0);
        EXPECT_EQ(plan.at("version"), version);
        EXPECT_EQ(page.Get("/api/document/" + plan.at("id").get<std::string>(), signedIn)->body, made);
    }
}

}  // namespace tests
