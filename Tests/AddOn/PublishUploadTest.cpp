#include <gmock/gmock.h>
#include <httplib.h>

#include <fstream>
#include <future>
#include <random>

#include "AddOn/PlainServer.hpp"
#include "AddOn/PlayedHost.hpp"
#include "Service/Server.hpp"
#include "ThreadRegister.hpp"
#include "palette/KestranePalette.hpp"
#include "transfer/ExportPublishSet.hpp"

namespace tests {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Json = nlohmann::ordered_json;
using testing::ElementsAre;

bool Becomes(const std::function<bool()>& done) {
    for (int tries = 0; tries < 20000 && !done(); ++tries)
        std::this_thread::sleep_for(1ms);
    return done();
}

// A server at the add-on's service address; the test decides about each upload by its folder's id.
class UploadServer {
  public:
    using Answer = std::function<void(const std::string& folderId, const httplib::Request& request,
                                      httplib::Response& response)>;

    explicit UploadServer(Answer answer) {
        server.Post("/api/document", [answer](const httplib::Request& request, httplib::Response& response) {
            answer(request.get_param_value("folderId"), request, response);
        });
        server.set_keep_alive_max_count(1);
        server.set_socket_options([](int socket) {  // also right after another server
            const int yes = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        });
        if (!server.bind_to_port("127.0.0.1", PlainServer::port)) throw std::runtime_error("port is taken");
        thread = std::thread([this] { server.listen_after_bind(); });
        EXPECT_TRUE(Becomes([this] { return server.is_running(); }));
    }
    ~UploadServer() {
        server.stop();
        thread.join();
    }

    static void Cut(httplib::Response& response) {
        response.set_content_provider(1000, "application/json",
                                      [](std::size_t, std::size_t, httplib::DataSink&) { return false; });
    }

  private:
    httplib::Server server;
    std::thread thread;
};

class PublishUploadTest : public PlayedHostTest {
  protected:
    PublishUploadTest() { std::ofstream(folder.Path() / "prepared.pdf") << "a plan"; }
    ~PublishUploadTest() override { EXPECT_TRUE(WaitForJobs()) << "an upload does not end"; }

    Json Item(const std::string& key, const std::string& folderId) const {
        return {{"key", key},
                {"docName", "Plan " + key},
                {"ext", "pdf"},
                {"filePath", (folder.Path() / "prepared.pdf").string()},
                {"folder", folderId}};
    }
    static Json Order(const std::vector<Json>& items, const std::string& token = "t0ken") {
        return {{"projectId", "p1"}, {"token", token}, {"publishItems", items}};
    }
    std::string Upload(const Json& order) { return CallForText("HandlePublishSets", order.dump()); }
    std::string Documents() { return CallForText("CompleteExportPublish"); }
    bool IsTold() { return driver.WaitForScript("CompleteExportPublish()", 20s); }
    std::ptrdiff_t Count(const std::string& script) const {
        const auto scripts = driver.Scripts();
        return std::count_if(scripts.begin(), scripts.end(), [&](const auto& s) { return s.text == script; });
    }
    static bool WaitForJobs() { return hostkit::ThreadRegister::Instance().WaitForAll(20s); }
};

TEST_F(PublishUploadTest, ARoundWithTheServiceTellsWhichItemsBecameDocuments) {
    service::Options options;
    options.dataDir = folder.Path() / "service";
    options.webRoot = folder.Path();
    service::Server service(options);
    service.Start();
    httplib::Client page("127.0.0.1", service.Port());
    const auto signIn = page.Post("/api/session", R"({"user":"demo","password":"demo"})", "application/json");
    const std::string token = Json::parse(signIn->body).at("token");
    const httplib::Headers signedIn{{"X-Project-Authorization", "bearer " + token}};
    const std::string project = Json::parse(page.Get("/api/projects", signedIn)->body)[0].at("id");
    const std::string target =
        Json::parse(page.Get("/api/projects/" + project + "/folders", signedIn)->body)[0].at("id");

    const int port = service.Port();
    const UploadServer front([&](const std::string& id, const httplib::Request& request, auto& response) {
        EXPECT_EQ(request.get_header_value("Kestrane-Client-Id"), "Kestrane Plugin Archicad");
        EXPECT_EQ(request.get_header_value("X-Project-Authorization"), "bearer " + token);
        if (id == "cut") return UploadServer::Cut(response);
        if (id == "500") {
            response.status = 500;
            response.set_content(R"([{"id":"no document"}])", "application/json");
            return;
        }
        const auto file = request.get_file_value("file");
        const auto answer =
            httplib::Client("127.0.0.1", port)
                .Post("/api/document?folderId=" + target, id == "401" ? httplib::Headers() : signedIn,
                      {{"file", file.content, file.filename, file.content_type}});
        response.status = answer->status;
        response.set_content(answer->body, "application/json");
    });
    Json vanished = Item("gone", target);
    vanished["filePath"] = (folder.Path() / "vanished.pdf").string();
    Json sameName = Item("same", target);
    sameName["docName"] = "Plan Süd";
    EXPECT_EQ(Documents(), "{}");
    Upload(Order({Item("Süd", target), Item("a", "401"), Item("b", "500"), vanished, Item("c", "cut"),
                  sameName, Item("last", target)},
                 token));
    ASSERT_TRUE(IsTold());
    const Json documents = Json::parse(Documents());
    ASSERT_EQ(documents.size(), 2U) << documents;
    EXPECT_EQ(documents.begin().key(), "Süd") << "in the order of the items";
    for (const auto& [key, id] : documents.items()) {
        const auto stored = page.Get("/api/document/" + id.get<std::string>(), signedIn);
        EXPECT_EQ(stored->body, "a plan");
        EXPECT_THAT(stored->get_header_value("Content-Disposition"),
                    testing::HasSubstr(key == "last" ? "Plan last.pdf" : "Plan "));
    }
}

TEST_F(PublishUploadTest, EveryRunIsToldOnceInWhateverOrderItsUploadsEnd) {
    std::atomic<unsigned> uploads = 0;
    const UploadServer server([&](const std::string& id, const httplib::Request&, auto& response) {
        std::this_thread::sleep_for(std::chrono::microseconds(uploads++ * 7919 % 600));
        if (id == "cut") return UploadServer::Cut(response);
        response.status = id == "500" ? 500 : 200;
        response.set_content(id == "none" ? "[]" : R"([{"id":")" + id + R"("}])", "application/json");
    });
    std::mt19937 random(4711);
    const char* const failures[] = {"500", "cut", "none"};
    constexpr int runs = 1000;
    for (int run = 0; run < runs; ++run) {
        std::vector<Json> items;
        Json expected = Json::object();
        for (auto left = 1 + random() % 4; left > 0; --left) {
            const std::string key = "K" + std::to_string(items.size());
            const auto kind = random() % 6;
            const std::string id = kind < 3 ? failures[kind] : "d" + std::to_string(run) + key;
            items.push_back(Item(key, id));
            if (kind >= 3) expected[key] = id;
        }
        Upload(Order(items));
        ASSERT_TRUE(IsTold()) << run;
        ASSERT_EQ(Documents(), expected.dump()) << run;
    }
    EXPECT_TRUE(WaitForJobs());
    EXPECT_EQ(Count("CompleteExportPublish()"), runs);
    EXPECT_EQ(Count("FailedExportPublish()"), 0);
}

TEST_F(PublishUploadTest, AnEarlierRunThatEndsLateIsNotTakenForTheNext) {
    std::promise<void> gate;
    std::shared_future<void> opened = gate.get_future().share();
    std::atomic<int> waiting = 0;
    const UploadServer server([&](const std::string& id, const httplib::Request&, auto& response) {
        if (id == "slow") {
            ++waiting;
            opened.wait();
        }
        response.set_content(R"([{"id":")" + id + R"("}])", "application/json");
    });
    const auto startSlowRun = [&](int slow) {
        Upload(Order({Item("A", "slow"), Item("B", "slow")}));
        ASSERT_TRUE(Becomes([&] { return waiting == slow; }));
    };
    Upload(Order({Item("first", "fast")}));  // what the server's library makes once, one thread makes
    ASSERT_TRUE(IsTold());
    startSlowRun(2);
    EXPECT_THAT(hostkit::ThreadRegister::Instance().Running(),
                ElementsAre("exportPublishSet0", "exportPublishSet1"));
    Upload(Order({Item("C", "fast")}));
    ASSERT_TRUE(IsTold());
    EXPECT_EQ(Documents(), R"({"C":"fast"})");
    startSlowRun(4);
    CallForText("HandlePublishSets", "no order");
    startSlowRun(6);
    KestranePalette::CreateInstance();
    gate.set_value();
    EXPECT_TRUE(WaitForJobs());
    EXPECT_EQ(Count("CompleteExportPublish()"), 2);
    EXPECT_EQ(Documents(), "{}");
}

TEST_F(PublishUploadTest, AThreadThatCannotBeStartedIsAFailedUpload) {
    const PlainServer server(PlainServer::Manner::Answer, 200, R"([{"id":"d1"}])");
    pthread_attr_t usual, huge;
    pthread_getattr_default_np(&usual);
    pthread_getattr_default_np(&huge);
    pthread_attr_setstacksize(&huge, std::size_t{1} << 50);  // more than there are addresses
    pthread_setattr_default_np(&huge);
    EXPECT_EQ(Upload(Order({Item("A", "f"), Item("B", "f")})), "");
    pthread_setattr_default_np(&usual);
    EXPECT_EQ(Count("CompleteExportPublish()"), 1);
    EXPECT_EQ(Documents(), "{}");
}

TEST_F(PublishUploadTest, BadOrdersStartNothing) {
    {
        const PlainServer server(PlainServer::Manner::Answer, 200, R"([{"id":"d1"}])");
        Upload(Order({Item("kept", "f")}));
        ASSERT_TRUE(IsTold());
    }
    Faults().FailCall("APIEnv_GetSpecFolderID", 1, APIERR_GENERAL);
    Upload(Order({Item("kept", "f")}));
    EXPECT_EQ(Count("FailedExportPublish()"), 1);
    EXPECT_EQ(Documents(), R"({"kept":"d1"})") << "without a folder the last run stays";

    const Json good = Order({Item("k", "f")});
    Json vanished = good;
    vanished["publishItems"][0]["filePath"] = (folder.Path() / "vanished.pdf").string();
    Json nested = good;
    nested["publishItems"][0]["docName"] = "../up";
    auto cases = SpoilEach(good, "", {"publishItems"});
    for (const auto& ofItem : SpoilEach(good, "/publishItems/0"))
        cases.push_back(ofItem);
    cases.insert(cases.end(), {{"", ""},
                               {"{", ""},
                               {Order({}).dump(), ""},
                               {vanished.dump(), ""},
                               {nested.dump(), ""},
                               {"[]", "Bad cast."},
                               {Order({"text"}).dump(), "Bad cast."}});
    int failures = 1;
    for (const auto& [order, answer] : cases) {
        EXPECT_EQ(CallForText("HandlePublishSets", order), answer) << order;
        EXPECT_EQ(Documents(), "{}") << order;
        failures += answer.empty() ? 1 : 0;
        EXPECT_EQ(Count("FailedExportPublish()"), failures) << order;
    }
    EXPECT_THAT(hostkit::ThreadRegister::Instance().Running(), testing::IsEmpty());
    EXPECT_EQ(Count("CompleteExportPublish()"), 1);
    EXPECT_FALSE(fs::exists(folder.Path() / "up.pdf"));
}

TEST(ExportPublishSet, TheFirstDocumentsIdCounts) {
    const std::pair<const char*, const char*> cases[] = {{R"([{"id":"abc"},{"id":"def"}])", "abc"},
                                                         {R"([{"id":""}])", ""},
                                                         {"", ""},
                                                         {"[]", ""},
                                                         {R"({"id":"abc"})", ""},
                                                         {R"([{"id":5}])", ""},
                                                         {R"([{"name":"abc"}])", ""},
                                                         {R"(["abc"])", ""},
                                                         {R"([{"id":null}])", ""},
                                                         {R"([{"id":"abc"}], )", ""}};
    for (const auto& [body, id] : cases)
        EXPECT_EQ(ToText(ExportPublishSet::GetDocumentId(body)), id) << body;
}

}  // namespace
}  // namespace tests
