#include "Service/Fixture.hpp"

namespace service::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr auto page = "http://localhost:5173";
constexpr auto secondPage = "https://pages.example";
constexpr auto preflightMethods = "Access-Control-Allow-Methods";
constexpr auto preflightHeaders = "Access-Control-Allow-Headers";

class AllowedOriginTest : public ServiceTest {
  protected:
    AllowedOriginTest() {
        options.allowedOrigins = {page, secondPage};
        Restart();
    }

    httplib::Result Send(const char* method, const char* path, const std::string& origin,
                         httplib::Headers headers = {}) const {
        httplib::Client client("127.0.0.1", server->Port());
        httplib::Request request;
        request.method = method;
        request.path = path;
        request.headers = std::move(headers);
        if (!origin.empty()) request.set_header("Origin", origin);
        if (request.method == "POST") {
            request.body = R"({"name":"x"})";
            request.set_header("Content-Type", "application/json");
        }
        return client.send(request);
    }
};

TEST_F(AllowedOriginTest, LetsExactlyThatOriginIn) {
    const User user(server->Port());
    struct Case {
        const char *method, *path, *origin;
        bool signedIn;
        int status;
        bool readable;
    };
    const Case cases[] = {
        {"GET", "/api/projects", page, true, 200, true},
        {"GET", "/api/projects", secondPage, true, 200, true},
        {"GET", "/api/projects", page, false, 401, true},
        {"GET", "/api/nothing", page, true, 404, true},
        {"GET", "/none", page, false, 404, true},
        {"POST", "/api/projects", page, true, 201, true},
        {"POST", "/api/projects", secondPage, true, 201, true},
        {"POST", "/api/projects", page, false, 401, true},
        {"POST", "/api/session", page, false, 400, true},
        {"POST", "/api/projects", "", true, 201, false},
        {"GET", "/api/projects", "http://evil.example", true, 200, false},
        {"POST", "/api/projects", "http://evil.example", true, 403, false},
        {"POST", "/api/projects", "http://localhost:51730", true, 403, false},
        {"POST", "/api/projects", "http://localhost", true, 403, false},
        {"POST", "/api/projects", "https://localhost:5173", true, 403, false},
        {"POST", "/api/projects", "http://localhost:5173.evil.example", true, 403, false},
        {"POST", "/api/projects", "http://pages.example", true, 403, false},
        {"POST", "/api/projects", "null", true, 403, false},
        {"OPTIONS", "/api/projects", page, false, 204, true},
        {"OPTIONS", "/api/document?folderId=x", secondPage, false, 204, true},
        {"OPTIONS", "/index.html", page, false, 404, true},
        {"OPTIONS", "/api/projects", "http://evil.example", false, 403, false},
        {"OPTIONS", "/api/projects", "http://evil.example", true, 403, false},
        {"OPTIONS", "/api/projects", "", false, 401, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.method) + " " + c.path + " from " + c.origin);
        const auto answer = Send(c.method, c.path, c.origin, c.signedIn ? user.headers : httplib::Headers());
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, c.status) << answer->body;
        EXPECT_EQ(answer->get_header_value("Access-Control-Allow-Origin"), c.readable ? c.origin : "");
        EXPECT_EQ(answer->get_header_value("Vary"), "Origin");
        EXPECT_EQ(answer->get_header_value(preflightMethods),
                  c.status == 204 ? "GET, POST, PATCH, DELETE" : "");
        EXPECT_EQ(answer->get_header_value(preflightHeaders),
                  c.status == 204 ? "Content-Type, Kestrane-Client-Id, X-Project-Authorization" : "");
    }
}

TEST_F(AllowedOriginTest, RefusesForTheOldReasons) {
    const auto rebound = Send("OPTIONS", "/api/projects", page, {{"Host", "evil.example"}});
    EXPECT_EQ(rebound->status, 403);

    const RawClient early(server->Port());  // refused before its body
    early.Send(std::string("POST /api/resource HTTP/1.1\r\nHost: localhost\r\nOrigin: ") + page +
               "\r\nContent-Length: 1000000000\r\nExpect: 100-continue\r\n\r\n");
    const std::string refusal = early.ReadToEnd();
    EXPECT_THAT(refusal, StartsWith("HTTP/1.1 401"));
    EXPECT_THAT(refusal, HasSubstr(std::string("\r\nAccess-Control-Allow-Origin: ") + page + "\r\n"));
}

TEST_F(AllowedOriginTest, IsOffUnlessAskedFor) {
    options.allowedOrigins.clear();
    Restart();
    const User user(server->Port());
    for (const auto& [method, status] : {std::pair{"GET", 200}, {"POST", 403}, {"OPTIONS", 403}}) {
        const auto answer = Send(method, "/api/projects", page, user.headers);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, status) << method;
        for (const char* header : {"Access-Control-Allow-Origin", preflightMethods, "Vary"})
            EXPECT_FALSE(answer->has_header(header)) << method << " " << header;
    }
    EXPECT_EQ(Send("OPTIONS", "/api/projects", "", user.headers)->status, 404);
}

}  // namespace
}  // namespace service::test
