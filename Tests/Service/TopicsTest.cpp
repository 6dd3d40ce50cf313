#include <sqlite3.h>

#include <fstream>

#include "Service/Fixture.hpp"

namespace service::test {
namespace {

using testing::HasSubstr;

constexpr auto json = "application/json";

class TopicsTest : public ServiceTest {
  protected:
    httplib::Result Send(const char* method, const std::string& path, const std::string& body) {
        httplib::Request request;
        request.method = method;
        request.path = path;
        request.body = body;
        request.headers = user->headers;
        if (!body.empty()) request.set_header("Content-Type", json);
        return user->client.send(request);
    }

    Json NewTopic(const std::string& title) {
        const auto made = Send("POST", topics, Json{{"title", title}, {"description", "a\nb"}}.dump());
        EXPECT_EQ(made->status, 201) << made->body;
        return Json::parse(made->body);
    }

    std::string ViewpointsOf(const Json& topic) const {
        return "/api/topics/" + topic["id"].get<std::string>() + "/viewpoints";
    }

    std::string NewSnapshot() { return user->Upload("/api/resource", "view.png", "picture")->body; }

    Json NewViewpoint(const Json& topic, const std::string& snapshot, const std::string& text) {
        const auto made = Send("POST", ViewpointsOf(topic) + "?snapshot=" + snapshot, text);
        EXPECT_EQ(made->status, 201) << made->body;
        return Json::parse(made->body);
    }

    std::string TextOf(const Json& viewpoint) {
        return user->client.Get("/api/viewpoints/" + viewpoint["id"].get<std::string>(), user->headers)->body;
    }

    httplib::Headers nobody;

    size_t Stored() const { return FileCount(options.dataDir / "stored"); }

    std::optional<User> user{std::in_place, server->Port()};
    const std::string topics = "/api/projects/" + user->DemoProject() + "/topics";
};

TEST_F(TopicsTest, AreListedNewestFirstWithTheirLatestSnapshot) {
    const Json first = NewTopic("Träger \"A\"");
    now += std::chrono::seconds(5);
    const Json second = NewTopic("Second");
    EXPECT_EQ(user->Get(topics), Json::array({second, first}));
    EXPECT_EQ(first["title"], "Träger \"A\"");
    EXPECT_EQ(first["description"], "a\nb");
    EXPECT_EQ(first["status"], "open");
    EXPECT_EQ(first["author"], "demo");
    EXPECT_EQ(first["viewpoints"], 0);
    EXPECT_TRUE(first["snapshot"].is_null());

    const Json made = NewViewpoint(first, NewSnapshot(), "{}");
    now += std::chrono::seconds(5);
    const Json latest = NewViewpoint(first, NewSnapshot(), "{\"cameraType\":1}");
    EXPECT_EQ(user->Get(ViewpointsOf(first)), Json::array({made, latest}));
    EXPECT_EQ(latest["topicId"], first["id"]);
    EXPECT_EQ(latest["size"], 16);
    const Json listed = user->Get(topics)[1];
    EXPECT_EQ(listed["viewpoints"], 2);
    EXPECT_EQ(listed["snapshot"], latest["snapshot"]);
    EXPECT_EQ(listed["modified"], latest["created"]);
    EXPECT_NE(listed["modified"], listed["created"]);

    const auto other = Send("POST", "/api/projects", R"({"name":"Other"})");
    const std::string otherId = Json::parse(other->body)["id"];
    EXPECT_EQ(user->Get("/api/projects/" + otherId + "/topics"), Json::array());
}

TEST_F(TopicsTest, ChangeWhatIsSentOnly) {
    const Json topic = NewTopic("Title");
    const std::string path = "/api/topics/" + topic["id"].get<std::string>();
    now += std::chrono::seconds(1);
    const auto closed = Send("PATCH", path, R"({"status":"closed"})");
    ASSERT_EQ(closed->status, 200) << closed->body;
    Json expected = topic;
    expected["status"] = "closed";
    expected["modified"] = Json::parse(closed->body)["modified"];
    EXPECT_EQ(Json::parse(closed->body), expected);
    EXPECT_NE(expected["modified"], topic["modified"]);
    EXPECT_EQ(Send("PATCH", path, R"({"title":"New","description":""})")->status, 200);
    expected["title"] = "New";
    expected["description"] = "";
    EXPECT_EQ(user->Get(path), expected);
}

TEST_F(TopicsTest, ViewpointTextsComeBackByteForByteAndOnlySingly) {
    const Json topic = NewTopic("Topic");
    const std::string snapshot = NewSnapshot();
    const std::string texts[] = {R"({ "b":1e-7,"a":"ü" ,"visbilityExceptionGlobalIds":[]})",
                                 std::string("\xff\0\r\n[", 5), Pattern(20 << 20, 5)};
    std::vector<Json> viewpoints;
    for (const std::string& text : texts)
        viewpoints.push_back(NewViewpoint(topic, snapshot, text));
    const auto stored =
        user->client.Get("/api/viewpoints/" + viewpoints[0]["id"].get<std::string>(), user->headers);
    EXPECT_EQ(stored->get_header_value("Content-Type"), json);

    Restart();  // and its sweep
    user.emplace(server->Port());
    for (size_t i = 0; i < viewpoints.size(); ++i)
        EXPECT_TRUE(TextOf(viewpoints[i]) == texts[i]) << i;
    const auto list = user->client.Get(ViewpointsOf(topic), user->headers);
    EXPECT_LT(list->body.size(), 1000);
    EXPECT_EQ(Json::parse(list->body).size(), 3);
}

TEST_F(TopicsTest, ARemovedViewpointLeavesItsTopicAndSnapshot) {
    const Json topic = NewTopic("Topic");
    const std::string snapshot = NewSnapshot();
    const Json kept = NewViewpoint(topic, snapshot, "kept");
    const Json removed = NewViewpoint(topic, snapshot, "removed");
    const std::string path = "/api/viewpoints/" + removed["id"].get<std::string>();
    EXPECT_EQ(Stored(), 3);
    EXPECT_EQ(Send("DELETE", path, "")->status, 204);
    EXPECT_EQ(Send("DELETE", path, "")->status, 404);
    EXPECT_EQ(user->client.Get(path, user->headers)->status, 404);
    EXPECT_EQ(Stored(), 2);
    EXPECT_EQ(user->Get(ViewpointsOf(topic)), Json::array({kept}));
    EXPECT_EQ(TextOf(kept), "kept");
}

TEST_F(TopicsTest, RefusesWhatIsTooLargeBeforeAndWhileItComes) {
    const Json topic = NewTopic("Topic");
    const std::string path = ViewpointsOf(topic) + "?snapshot=" + NewSnapshot();
    constexpr size_t limit = size_t{256} << 20;
    const RawClient raw(server->Port());
    raw.Send("POST " + path + " HTTP/1.1\r\nHost: localhost\r\nX-Project-Authorization: " +
             user->headers.begin()->second + "\r\nContent-Length: " + std::to_string(limit + 1) + "\r\n\r\n");
    const std::string answer = raw.ReadToEnd();
    EXPECT_THAT(answer, testing::StartsWith("HTTP/1.1 413"));
    EXPECT_THAT(answer, HasSubstr("fewer elements"));

    const std::string piece(4 << 20, ' ');
    const auto send = [&](size_t size) {
        const auto provide = [&](size_t offset, httplib::DataSink& sink) {
            if (offset == size) return sink.done(), true;
            return sink.write(piece.data(), std::min(piece.size(), size - offset));
        };
        const auto said = user->client.Post(path, user->headers, provide, json);
        return said ? said->status : 0;
    };
    EXPECT_EQ(send(limit), 201);
    EXPECT_NE(send(limit + 1), 201);  // the answer may be lost with the connection
    EXPECT_EQ(user->Get(ViewpointsOf(topic)).size(), 1);
    EXPECT_EQ(FileCount(options.dataDir / "arriving"), 0);
}

TEST_F(TopicsTest, RefusesBadRequests) {
    const Json topic = NewTopic("Topic");
    const std::string path = "/api/topics/" + topic["id"].get<std::string>();
    const std::string viewpoints = path + "/viewpoints";
    const std::string snapshot = NewSnapshot();
    const auto document = user->Upload("/api/document?folderId=" + user->DemoFolder(), "a.png", "x");
    const std::string documentId = Json::parse(document->body)[0]["id"];
    struct Case {
        const char* method;
        std::string path, body;
        int status;
        const char* says;
    };
    const Case cases[] = {
        {"GET", "/api/projects/unknown/topics", "", 404, "no such project"},
        {"POST", "/api/projects/unknown/topics", R"({"title":"x"})", 404, "no such project"},
        {"POST", topics, "", 400, "\"title\""},
        {"POST", topics, R"({"description":"x"})", 400, "\"title\""},
        {"POST", topics, R"({"title":1})", 400, "\"title\""},
        {"POST", topics, R"({"title":"  "})", 400, "name"},
        {"POST", topics, R"({"title":"x","description":1})", 400, "\"description\""},
        {"POST", topics, R"({"title":"x","status":"done"})", 400, "\"closed\""},
        {"POST", topics, Json{{"title", "x"}, {"description", std::string(70'000, 'x')}}.dump(), 413,
         "large"},
        {"GET", "/api/topics/unknown", "", 404, "issues again"},
        {"PATCH", "/api/topics/unknown", R"({"status":"open"})", 404, "issues again"},
        {"PATCH", path, R"({"state":"open"})", 400, "\"status\""},
        {"PATCH", path, R"({"status":"OPEN"})", 400, "\"closed\""},
        {"PATCH", path, R"({"title":""})", 400, "name"},
        {"GET", "/api/topics/unknown/viewpoints", "", 404, "issues again"},
        {"POST", "/api/topics/unknown/viewpoints?snapshot=" + snapshot, "{}", 404, "issues again"},
        {"POST", viewpoints, "{}", 400, "\"snapshot\""},
        {"POST", viewpoints + "?snapshot=unknown", "{}", 404, "Upload it first"},
        {"POST", viewpoints + "?snapshot=" + documentId, "{}", 404, "Upload it first"},
        {"POST", viewpoints + "?snapshot=" + snapshot, "", 400, "empty"},
        {"GET", "/api/viewpoints/unknown", "", 404, "viewpoints again"},
        {"GET", "/api/viewpoints/" + snapshot, "", 404, "viewpoints again"},
        {"GET", "/api/viewpoints/..%2F..%2Frecords.sqlite", "", 404, "nothing at this address"},
        {"DELETE", "/api/viewpoints/" + documentId, "", 404, "viewpoints again"},
    };
    const Json before = user->Get(topics);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.method + (" " + c.path) + " " + c.body.substr(0, 200));
        const auto answer = Send(c.method, c.path, c.body);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, c.status) << answer->body;
        EXPECT_THAT(Json::parse(answer->body).at("error").get<std::string>(), HasSubstr(c.says));
        user->headers.swap(nobody);
        EXPECT_EQ(Send(c.method, c.path, c.body)->status, 401);
        user->headers.swap(nobody);
    }
    EXPECT_EQ(user->Get(topics), before);
    EXPECT_EQ(Stored(), 2);
}

TEST_F(TopicsTest, PicturesAreServedAsSuchAndNothingElseIs) {
    const std::pair<const char*, const char*> cases[] = {{"a b.png", "image/png"},
                                                         {"page.html", "application/octet-stream"},
                                                         {"png", "application/octet-stream"}};
    for (const auto& [name, type] : cases) {
        const std::string id = user->Upload("/api/resource", name, "x")->body;
        const auto stored = user->client.Get("/api/resource/" + id, user->headers);
        EXPECT_EQ(stored->get_header_value("Content-Type"), type) << name;
    }
}

// What the first version of the program wrote.
constexpr auto firstVersion = R"(
    CREATE TABLE account (name TEXT PRIMARY KEY, password TEXT NOT NULL);
    CREATE TABLE session (
        token TEXT PRIMARY KEY, account TEXT NOT NULL REFERENCES account, expires INTEGER NOT NULL);
    CREATE TABLE project (number INTEGER PRIMARY KEY, id TEXT NOT NULL UNIQUE, name TEXT NOT NULL);
    CREATE TABLE folder (
        number INTEGER PRIMARY KEY, id TEXT NOT NULL UNIQUE, project TEXT NOT NULL REFERENCES project (id),
        name TEXT NOT NULL);
    CREATE INDEX folder_project ON folder (project);
    CREATE TABLE document (
        number INTEGER PRIMARY KEY, id TEXT NOT NULL UNIQUE, folder TEXT NOT NULL REFERENCES folder (id),
        name TEXT NOT NULL, version INTEGER NOT NULL, size INTEGER NOT NULL, created INTEGER NOT NULL,
        author TEXT NOT NULL, UNIQUE (folder, name, version));
    CREATE TABLE resource (
        number INTEGER PRIMARY KEY, id TEXT NOT NULL UNIQUE, name TEXT NOT NULL, size INTEGER NOT NULL,
        created INTEGER NOT NULL, author TEXT NOT NULL);
    INSERT INTO project (id, name) VALUES ('p', 'Old project');
    INSERT INTO folder (id, project, name) VALUES ('f', 'p', 'Old folder');
    INSERT INTO resource (id, name, size, created, author)
        VALUES ('0123456789abcdef0123456789abcdef', 'old.png', 3, 1700000000, 'demo');
    PRAGMA user_version = 1;
)";

void Execute(const std::filesystem::path& records, const char* sql) {
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open(records.c_str(), &handle), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(handle, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(handle);
    sqlite3_close(handle);
}

TEST_F(TopicsTest, ADataFolderOfTheFirstVersionOpens) {
    const std::string snapshot = "0123456789abcdef0123456789abcdef";
    server.reset();
    options.dataDir = dir.path / "old";
    std::filesystem::create_directories(options.dataDir / "stored");
    std::ofstream(options.dataDir / "stored" / snapshot) << "old";
    Execute(options.dataDir / "records.sqlite", firstVersion);
    for (const char* title : {"first start", "second start"}) {
        Restart();
        user.emplace(server->Port());
        EXPECT_EQ(user->Get("/api/projects"), Json::parse(R"([{"id":"p","name":"Old project"}])"));
        EXPECT_EQ(user->Get("/api/projects/p/folders")[0]["name"], "Old folder");
        const auto made = Send("POST", "/api/projects/p/topics", Json{{"title", title}}.dump());
        ASSERT_EQ(made->status, 201) << made->body;
        NewViewpoint(Json::parse(made->body), snapshot, "{}");
        EXPECT_EQ(user->client.Get("/api/resource/" + snapshot, user->headers)->body, "old");
    }
    EXPECT_EQ(user->Get("/api/projects/p/topics").size(), 2);
}

TEST_F(TopicsTest, ADataFolderOfALaterVersionIsRefused) {
    server.reset();
    Execute(options.dataDir / "records.sqlite", "PRAGMA user_version = 99");
    server = std::make_unique<Server>(options);
    try {
        server->Start();
        FAIL() << "it started";
    } catch (const StartError& error) {
        EXPECT_THAT(error.what(), HasSubstr("newer version"));
    }
}

}  // namespace
}  // namespace service::test
