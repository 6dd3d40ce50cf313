#include <fstream>

#include "Service/Fixture.hpp"

namespace service::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr auto json = "application/json";

class ContractTest : public ServiceTest {
  protected:
    httplib::Headers With(httplib::Headers extra) const {
        extra.insert(user.headers.begin(), user.headers.end());
        return extra;
    }

    User user{server->Port()};
    const std::string folder = user.DemoFolder();
    const std::string upload = "/api/document?folderId=" + folder;
};

TEST_F(ContractTest, AnUploadBecomesTheNextVersionOfItsName) {
    for (const char* content : {"first", "second, longer"})
        ASSERT_EQ(user.Upload(upload, "a.ifc", content)->status, 200);
    now += std::chrono::seconds(5);
    const auto answer = user.Upload(upload, "b.ifc", "");
    ASSERT_EQ(answer->status, 200);
    EXPECT_EQ(answer->get_header_value("Content-Type"), json);
    EXPECT_THAT(answer->body, StartsWith("[{\"id\":\""));

    const Json documents = user.Documents(folder);
    ASSERT_EQ(documents.size(), 2);
    EXPECT_EQ(documents[0], Json::parse(answer->body)[0]);
    EXPECT_EQ(documents[0]["size"], 0);
    Json newest = documents[1];
    const auto stored = user.client.Get("/api/document/" + newest["id"].get<std::string>(), user.headers);
    EXPECT_EQ(stored->body, "second, longer");
    EXPECT_EQ(newest["version"], 2);
    EXPECT_EQ(newest["author"], "demo");
    EXPECT_EQ(newest["folderId"], folder);
    EXPECT_THAT(newest["created"].get<std::string>(), testing::MatchesRegex("....-..-..T..:..:..Z"));

    Restart();
    EXPECT_EQ(User(server->Port()).Documents(folder), documents);
}

TEST_F(ContractTest, AResourceIsAnsweredWithItsBareId) {
    const std::string content = Pattern(300'000, 7);
    const auto answer = user.Upload("/api/resource", "snapshot.png", content);
    ASSERT_EQ(answer->status, 200);
    EXPECT_THAT(answer->body, testing::MatchesRegex("[0-9a-f]+"));
    EXPECT_EQ(answer->get_header_value("Content-Type"), "text/plain");
    EXPECT_EQ(user.client.Get("/api/resource/" + answer->body, user.headers)->body, content);
    EXPECT_EQ(user.client.Get("/api/document/" + answer->body, user.headers)->status, 404);
}

TEST_F(ContractTest, ProjectsAndFoldersAreMadeAndListed) {
    const auto made = user.client.Post("/api/projects", user.headers, R"({"name":"Schloß \"Süd\""})", json);
    ASSERT_EQ(made->status, 201);
    const Json project = Json::parse(made->body);
    EXPECT_EQ(project["name"], "Schloß \"Süd\"");
    EXPECT_EQ(user.Get("/api/projects")[1], project);
    const std::string folders = "/api/projects/" + project["id"].get<std::string>() + "/folders";
    const auto plans = user.client.Post(folders, user.headers, R"({"name":"Plans"})", json);
    ASSERT_EQ(plans->status, 201);
    const Json listed = user.Get(folders);
    EXPECT_EQ(listed[0]["name"], "Models");
    EXPECT_EQ(listed[1], Json::parse(plans->body));
}

TEST_F(ContractTest, RefusesBadRequests) {
    const std::string file = Form("form-data; name=\"file\"; filename=\"a\"", "x");
    const std::string named = R"({"name":"x"})";
    const std::string tooLong = Json{{"name", std::string(256, 'x')}}.dump();
    struct Case {
        const char* method;
        std::string path, body, type;
        int status;
    };
    const Case cases[] = {
        {"POST", "/api/session", R"({"user":"demo","password":"wrong"})", json, 401},
        {"POST", "/api/session", R"({"user":"nobody","password":"demo"})", json, 401},
        {"POST", "/api/session", R"({"user":"demo"})", json, 400},
        {"POST", "/api/session", R"({"user":"demo","password":1})", json, 400},
        {"POST", "/api/session", R"(["user"])", json, 400},
        {"POST", "/api/session", "{", json, 400},
        {"POST", "/api/session", std::string(70'000, ' '), json, 413},
        {"POST", "/api/projects", R"({"name":"  "})", json, 400},
        {"POST", "/api/projects", R"({"name":"a\u0007"})", json, 400},
        {"POST", "/api/projects", tooLong, json, 400},
        {"POST", "/api/projects", "{\"name\":\"\xff\"}", json, 400},
        {"POST", "/api/projects/unknown/folders", named, json, 404},
        {"GET", "/api/projects/unknown/folders", "", "", 404},
        {"GET", "/api/documents", "", "", 400},
        {"GET", "/api/documents?folderId=unknown", "", "", 404},
        {"GET", "/api/document/unknown", "", "", 404},
        {"GET", "/api/document/..%2F..%2Frecords.sqlite", "", "", 404},
        {"GET", "/api/resource/unknown", "", "", 404},
        {"GET", "/api/nothing", "", "", 404},
        {"POST", "/api/nothing", named, json, 404},
        {"PUT", "/api/projects", named, json, 404},
        {"POST", "/api/document", file, formType, 400},
        {"POST", "/api/document?folderId=unknown", file, formType, 404},
        {"POST", "/api/document?folderId=..", file, formType, 404},
        {"POST", upload, file, "multipart/form-data", 400},
        {"POST", upload, file, "application/octet-stream", 400},
        {"POST", upload, file.substr(0, file.size() - 6), formType, 400},
        {"POST", upload, "", formType, 400},
        {"POST", upload, Form("form-data; name=\"other\"; filename=\"a\"", "x"), formType, 400},
        {"POST", upload, Form("form-data; name=\"file\"", "x"), formType, 400},
        {"POST", upload, Form("form-data; name=\"file\"; filename=\"\"", "x"), formType, 400},
        {"POST", upload, Form("form-data; name=\"file\"; filename=\"a%0D%0A\"", "x"), formType, 400},
        {"POST", upload, Form("form-data; name=\"file\"; filename=\"\xC3\"", "x"), formType, 400},
        {"POST", upload,
         Form("form-data; name=\"file\"; filename=\"a\"", "x\r\n" + file.substr(0, file.size() - 16)),
         formType, 400},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.method + (" " + c.path) + " " + c.body.substr(0, 200));
        httplib::Request request;
        request.method = c.method;
        request.path = c.path;
        request.body = c.body;
        request.headers = user.headers;
        if (!c.type.empty()) request.set_header("Content-Type", c.type);
        const auto answer = user.client.send(request);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, c.status) << answer->body;
        EXPECT_TRUE(Json::parse(answer->body).at("error").is_string());
    }
    EXPECT_EQ(user.Documents(folder), Json::array());
    EXPECT_EQ(user.Get("/api/projects").size(), 1);
    EXPECT_EQ(FileCount(options.dataDir / "arriving") + FileCount(options.dataDir / "stored"), 0);
}

TEST_F(ContractTest, EveryCallButSigningInNeedsALivingToken) {
    const auto status = [&](const httplib::Headers& headers) {
        const auto answer = user.client.Get("/api/projects", headers);
        EXPECT_EQ(user.client.Post("/api/nothing", headers, "", json)->status,
                  answer->status == 401 ? 401 : 404);
        return answer->status;
    };
    const std::string good = user.headers.begin()->second;
    EXPECT_EQ(status({}), 401);
    EXPECT_EQ(status({{"Authorization", good}}), 401);
    EXPECT_EQ(status({{"X-Project-Authorization", "bearer "}}), 401);
    EXPECT_EQ(status({{"X-Project-Authorization", good + "0"}}), 401);
    EXPECT_EQ(status(user.headers), 200);
    EXPECT_EQ(user.Get("/api/session")["user"], "demo");

    now += options.sessionLifetime - std::chrono::seconds(2);
    EXPECT_EQ(status(user.headers), 200);
    User second(server->Port());
    now += std::chrono::seconds(3);
    EXPECT_EQ(status(user.headers), 401);
    EXPECT_EQ(status(second.headers), 200);
    EXPECT_EQ(user.client.Delete("/api/session", second.headers)->status, 204);
    EXPECT_EQ(status(second.headers), 401);
}

TEST_F(ContractTest, ANewPasswordEndsSessions) {
    SetPassword(options.dataDir, "demo", "better");
    EXPECT_EQ(user.client.Get("/api/projects", user.headers)->status, 401);
    EXPECT_THROW(User(server->Port(), "demo"), std::runtime_error);
    EXPECT_EQ(User(server->Port(), "better").Get("/api/session")["user"], "demo");
    EXPECT_THROW(SetPassword(options.dataDir, "a\nb", "x"), StartError);
}

TEST_F(ContractTest, NamesAreShownAsSentAndNeverPaths) {
    const std::string longest = [] {
        std::string name;
        for (int i = 0; i < 255; ++i)
            name += "ü";
        return name;
    }();
    for (const std::string& name : {std::string("Größe 日本 €.ifc"), std::string("../../etc/passwd"),
                                    std::string(".."), std::string("a/b\\c:'*?.ifc"), std::string("<b>&amp;"),
                                    std::string("%2e%2e%2f"), std::string("; filename=x"), longest}) {
        SCOPED_TRACE(name);
        const auto answer = user.Upload(upload, name, name);
        ASSERT_EQ(answer->status, 200) << answer->body;
        const Json document = user.Documents(folder)[0];
        EXPECT_EQ(document["name"], name);
        const auto stored =
            user.client.Get("/api/document/" + document["id"].get<std::string>(), user.headers);
        EXPECT_EQ(stored->body, name);
    }
    const auto quoted = user.Upload("/api/resource", "a%22b ü.png", "x");
    const RawClient raw(server->Port());  // the client class would decode the header
    raw.Send("GET /api/resource/" + quoted->body + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n" +
             "X-Project-Authorization: " + user.headers.begin()->second + "\r\n\r\n");
    EXPECT_THAT(raw.ReadToEnd(),
                HasSubstr("attachment; filename=\"a_b __.png\"; filename*=UTF-8''a%22b%20%C3%BC.png\r\n"));
    EXPECT_EQ(FileCount(dir.path), 2);  // data and web
}

TEST_F(ContractTest, AnswersOnlyItsOwnMachineAndPages) {
    const std::string own = "127.0.0.1:" + std::to_string(server->Port());
    struct Case {
        std::string host, origin;
        int get, post;
    };
    const Case cases[] = {
        {own, "", 200, 201},
        {"localhost", "", 200, 201},
        {"[::1]:80", "", 200, 201},
        {own, "http://" + own, 200, 201},
        {own, "http://evil.example", 200, 403},
        {own, "http://127.0.0.1:1", 200, 403},
        {own, "null", 200, 403},
        {"evil.example", "", 403, 403},
        {"evil.example:" + std::to_string(server->Port()), "http://evil.example", 403, 403},
        {"127.0.0.1.evil.example", "", 403, 403},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.host + " " + c.origin);
        httplib::Headers headers = With({{"Host", c.host}});
        if (!c.origin.empty()) headers.emplace("Origin", c.origin);
        EXPECT_EQ(user.client.Get("/api/projects", headers)->status, c.get);
        EXPECT_EQ(user.client.Post("/api/projects", headers, R"({"name":"x"})", json)->status, c.post);
    }
}

TEST_F(ContractTest, ServesThePageAndNothingBeside) {
    const auto write = [&](const std::string& name) {
        std::ofstream(dir.path / name) << "content of " << name;
    };
    std::filesystem::create_directories(options.webRoot / "sub");
    for (const char* name : {"web/index.html", "web/a.mjs", "web/sub/a.css", "web/i.svg", "secret"})
        write(name);
    std::filesystem::create_symlink(dir.path / "secret", options.webRoot / "link");
    struct Case {
        std::string path;
        int status;
        const char* type;
    };
    const Case cases[] = {
        {"/", 200, "text/html; charset=utf-8"},
        {"/index.html?x=1", 200, "text/html; charset=utf-8"},
        {"/a.mjs", 200, "text/javascript; charset=utf-8"},
        {"/sub/a.css", 200, "text/css; charset=utf-8"},
        {"/i.svg", 200, "image/svg+xml"},
        {"/sub", 404, json},
        {"/none", 404, json},
        {"/link", 404, json},
        {"/../secret", 404, json},
        {"/%2e%2e/secret", 404, json},
        {"/..%2fsecret", 404, json},
        {"//" + (dir.path / "secret").native(), 404, json},
        {"/index.html%00.css", 404, json},
        {"/" + std::string(7000, 'x'), 404, json},
    };
    for (const Case& c : cases) {
        const auto answer = user.client.Get(c.path);
        ASSERT_TRUE(answer) << c.path;
        EXPECT_EQ(answer->status, c.status) << c.path;
        EXPECT_EQ(answer->get_header_value("Content-Type"), c.type) << c.path;
        EXPECT_EQ(answer->get_header_value("Cache-Control"), c.status == 200 ? "no-cache" : "") << c.path;
    }
    EXPECT_EQ(user.client.Get("/")->body, "content of web/index.html");
}

TEST_F(ContractTest, AnswersMalformedRequestsAndGoesOn) {
    const std::string head = "POST /api/session HTTP/1.1\r\nHost: localhost\r\n";
    const std::pair<std::string, const char*> cases[] = {
        {"nonsense\r\n\r\n", "400"},
        {"GET /" + std::string(9000, 'x') + " HTTP/1.1\r\n\r\n", "414"},
        {head + "Connection: close\r\n\r\n", "411"},
        {head + "Content-Length: -1\r\n\r\n", "400"},
        {head + "Content-Length: 2\r\nContent-Length: 3\r\n\r\n{}", "400"},
        {head + "Content-Length: 2\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n", "400"},
        {head + "Transfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n", "400"},
        {"GET / HTTP/1.1\r\nHost: localhost\r\nRange: bytes=x\r\nContent-Length: 1\r\n\r\n", "416"},
    };
    for (const auto& [request, status] : cases) {
        SCOPED_TRACE(request.substr(0, 200));
        const RawClient raw(server->Port());
        raw.Send(request);
        const std::string answer = raw.ReadToEnd();
        EXPECT_THAT(answer, StartsWith(std::string("HTTP/1.1 ") + status));
        EXPECT_THAT(answer, HasSubstr("\r\n\r\n{\"error\":"));
    }
    const RawClient endless(server->Port());
    endless.Send("GET / HTTP/1.1\r\n" + std::string(80'000, 'x'));
    endless.ReadToEnd();
    EXPECT_EQ(user.Get("/api/projects").size(), 1);
}

TEST_F(ContractTest, RefusesBeforeTheBodyWhenAskedTo) {
    const RawClient raw(server->Port());
    raw.Send("POST " + upload + " HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1000000000\r\n" +
             "Expect: 100-continue\r\n\r\n");
    EXPECT_THAT(raw.ReadToEnd(), StartsWith("HTTP/1.1 401"));
}

}  // namespace
}  // namespace service::test
