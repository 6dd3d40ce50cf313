#include "Service/Fixture.hpp"

namespace service::test {
namespace {

class ModelsTest : public ServiceTest {
  protected:
    std::string NewId(const std::string& path, const std::string& name) {
        const Json made{{"name", name}};
        return Json::parse(user.client.Post(path, user.headers, made.dump(), "application/json")->body)["id"];
    }

    // The id of the document that the upload became.
    std::string Upload(const std::string& folder, const std::string& name, const std::string& content) {
        now += std::chrono::seconds(1);
        return Json::parse(user.Upload("/api/document?folderId=" + folder, name, content)->body)[0]["id"];
    }

    User user{server->Port()};
    const std::string project = user.DemoProject();
    const std::string folder = user.DemoFolder();
};

TEST_F(ModelsTest, AreTheIfcDocumentsOfAllFoldersWithAllTheirVersions) {
    const std::string trades = NewId("/api/projects/" + project + "/folders", "Trades");
    const std::string other = NewId("/api/projects", "Other");
    const std::string elsewhere = user.Get("/api/projects/" + other + "/folders")[0]["id"];
    const std::string older = Upload(folder, "Türme 2.ifc", "old");
    const std::string tower = Upload(trades, "Türme.ifc", "x");
    const std::string newer = Upload(folder, "Türme 2.ifc", "newer");
    Upload(trades, "Türme 2.ifc", "the other folder's");
    Upload(folder, "ceiling.IfcZip", "packed");
    for (const char* name : {"plan.pdf", "ifc", ".ifc", "a.ifc.bak", "aifc", "a.ifcx"})
        Upload(folder, name, "no model");
    Upload(elsewhere, "Elsewhere.ifc", "x");

    const Json models = user.Get("/api/models?projectId=" + project);
    ASSERT_EQ(models.size(), 4) << models;
    EXPECT_EQ(models[0]["name"], "ceiling");
    EXPECT_EQ(models[0]["extension"], "ifczip");
    EXPECT_EQ(models[1]["name"], "Türme");
    EXPECT_EQ(models[1]["versions"][0]["id"], tower);
    EXPECT_EQ(models[2]["folder"], (Json{{"id", folder}, {"name", "Models"}}));
    EXPECT_EQ(models[3]["folder"], (Json{{"id", trades}, {"name", "Trades"}}));
    EXPECT_EQ(models[3]["versions"].size(), 1);
    ASSERT_EQ(models[2]["versions"].size(), 2);
    Json version = user.Documents(folder)[7];
    EXPECT_EQ(version.erase("name") + version.erase("folderId"), 2);
    EXPECT_EQ(models[2]["versions"][0], version);
    EXPECT_EQ(version["id"], newer);
    EXPECT_EQ(models[2]["versions"][1]["id"], older);
    EXPECT_EQ(user.Get("/api/models?projectId=" + other)[0]["name"], "Elsewhere");
}

TEST_F(ModelsTest, VersionsAreResourcesOfAnySizeAndOtherDocumentsAreNone) {
    const std::string plan = Upload(folder, "plan.pdf", "no model");
    const std::string id = Upload(folder, "Tower.IFC", "ISO-10303-21;");
    const std::string resource = "/api/resource/";
    const auto stored = user.client.Get(resource + id, user.headers);
    EXPECT_EQ(stored->body, "ISO-10303-21;");
    EXPECT_EQ(stored->get_header_value("Content-Type"), "application/x-step");
    std::filesystem::resize_file(options.dataDir / "stored" / id, 5'000'000'001);  // sparse
    EXPECT_EQ(user.client.Head(resource + id, user.headers)->get_header_value("Content-Length"),
              "5000000001");
    const std::string list = "/api/models?projectId=";
    const std::pair<std::string, int> cases[] = {
        {resource + plan, 404}, {resource + "unknown", 404}, {"/api/models", 400}, {list + "unknown", 404}};
    for (const auto& [path, status] : cases) {
        EXPECT_EQ(user.client.Get(path, user.headers)->status, status) << path;
        EXPECT_EQ(user.client.Get(path)->status, 401) << path;
    }
}

}  // namespace
}  // namespace service::test
