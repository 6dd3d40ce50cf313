#include <gmock/gmock.h>
#include <httplib.h>

#include <fstream>

#include "AddOn/PlainServer.hpp"
#include "AddOn/PlayedHost.hpp"
#include "ThreadRegister.hpp"
#include "palette/KestranePalette.hpp"

namespace tests {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Json = nlohmann::json;
using Manner = PlainServer::Manner;
using Numbers = std::vector<UInt32>;
using Paths = std::vector<fs::path>;

/// A model of the service below.
std::string Body(const std::string& id) {
    return id + std::string(std::hash<std::string>{}(id) % 2000, id.back());
}

/// The service with every model there may be. It sends them in small pieces of many sizes, as many at once as
/// are asked for.
struct ModelServer : httplib::Server {
    ModelServer() {
        set_socket_options([](auto socket) {
            const int yes = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        });
        set_tcp_nodelay(true);
        Get("/api/resource/(.+)", [](const httplib::Request& request, httplib::Response& response) {
            const std::string body = Body(request.matches[1]);
            response.set_content_provider(body.size(), "text/plain", [body](auto at, auto left, auto& sink) {
                return sink.write(body.data() + at, std::min(left, 1 + (at * 7919 + body.size()) % 200));
            });
        });
        if (!bind_to_port("127.0.0.1", PlainServer::port)) throw std::runtime_error("no port");
        thread = std::jthread([this] { listen_after_bind(); });
    }
    ~ModelServer() override { stop(); }
    std::jthread thread;
};

Json Info(const std::string& id) {
    return {{"id", id}, {"name", id}, {"version", 3}, {"extension", "ifc"}};
}

std::string Request(const std::vector<Json>& modelInfos) {
    return Json{{"token", "t0ken"}, {"modelInfos", modelInfos}}.dump();
}

/// A host that can open three models, of elements 1 and 2, 3, and 4.
class IfcImportTest : public PlayedHostTest {
  protected:
    IfcImportTest() {
        host.models = {{"a.ifc", {{Guid(1)}, {Guid(2)}}}, {"b.ifc", {{Guid(3)}}}, {"c.ifc", {{Guid(4)}}}};
    }
    ~IfcImportTest() override { WaitForThreads(); }

    static void WaitForThreads() { EXPECT_TRUE(hostkit::ThreadRegister::Instance().WaitForAll(20s)); }
    bool IsTold(std::chrono::milliseconds timeout = 20s) {
        return driver.WaitForScript("CompleteImportModels()", timeout);
    }
    void Start(const std::string& request) { EXPECT_TRUE(CallForBool("ImportIfcFiles", request)); }
    void Download(const std::vector<Json>& modelInfos) {
        Start(Request(modelInfos));
        EXPECT_TRUE(IsTold());
        WaitForThreads();
        EXPECT_FALSE(IsTold(0ms)) << "once for each request";
    }
    void HaveDownloaded(const GS::Array<GS::UniString>& paths) {
        KestranePalette::GetInstance().CompleteImportModels(paths);
        EXPECT_TRUE(IsTold(0ms));
    }
    Paths Open(const std::string& function = "OpenIfcModels", const Json& content = nullptr) {
        host.opened.clear();
        host.created.clear();
        EXPECT_TRUE(CallForBool(function, content));
        return host.opened;
    }
    fs::path Resource(const std::string& name) const {
        return folder.Path() / "Kestrane" / "ArchiCAD" / "resources" / name;
    }
    fs::path File(const std::string& name) const { return Resource(name + "-V3.ifc"); }
    const fs::path temporaryFile = Resource("TempIfcFile.ifc");
};

TEST_F(IfcImportTest, RequestAsTheServiceReceivesIt) {
    const PlainServer server(Manner::Answer, 200, "the model");
    Download({{{"id", "m1"}, {"name", "Bürö"}, {"version", -2}, {"extension", "zip"}, {"more", 1}}});
    EXPECT_EQ(
        server.Requests(),
        std::vector<std::string>{"GET /api/resource/m1 HTTP/1.1\r\nHost: 127.0.0.1:8465\r\nAccept: */*\r\n"
                                 "Kestrane-Client-Id: Kestrane Plugin Archicad\r\n"
                                 "X-Project-Authorization: bearer t0ken\r\n\r\n"});
    EXPECT_EQ(Open(), Paths{Resource("Bürö-V-2.zip")});
    EXPECT_EQ(ReadFile(Resource("Bürö-V-2.zip")), "the model");
}

TEST_F(IfcImportTest, EachFileHoldsItsOwnModel) {
    const ModelServer server;
    for (int round = 0; round < 100; ++round) {
        std::vector<Json> infos;
        Paths files;
        for (int model = 0; model < 5; ++model) {
            infos.push_back(Info("r" + std::to_string(round) + "m" + std::to_string(model)));
            files.push_back(File(infos.back()["id"]));
        }
        Download(infos);
        ASSERT_EQ(Open(), files);
        for (const Json& info : infos)
            ASSERT_EQ(ReadFile(File(info["id"])), Body(info["id"]));
        ASSERT_FALSE(fs::exists(temporaryFile));
    }
}

TEST_F(IfcImportTest, RequestsAtOnceAndModelsOfOneName) {
    std::vector<std::string> started;
    hostkit::ThreadRegister::Instance().SetObserver([&](const std::string& name, auto event) {
        if (event == hostkit::ThreadRegister::Event::started) started.push_back(name);
    });
    const ModelServer server;
    Json other = Info("a");
    other["id"] = "b";
    Start(Request({Info("a"), other}));
    Start(Request({Info("c")}));
    EXPECT_EQ(started, (std::vector<std::string>{"a", "b", "watchThread", "c", "watchThread"}));
    EXPECT_TRUE(IsTold() && IsTold());
    WaitForThreads();
    hostkit::ThreadRegister::Instance().SetObserver({});
    EXPECT_FALSE(IsTold(0ms));
    EXPECT_THAT(ReadFile(File("a")), testing::AnyOf(Body("a"), Body("b")));
    EXPECT_EQ(ReadFile(File("c")), Body("c"));
    EXPECT_THAT(Open(), testing::AnyOf(Paths{File("a"), File("a")}, Paths{File("c")}));
}

// Its path is reported all the same. An answer's status does not matter.
TEST_F(IfcImportTest, WhatDoesNotArriveLeavesNoFile) {
    for (const auto& [manner, arrives] : {std::pair(std::optional(Manner::CutAnswer), false),
                                          {Manner::CutUpload, false},
                                          {std::nullopt, false},
                                          {Manner::Answer, true}}) {
        std::optional<PlainServer> server;
        if (manner) server.emplace(*manner, 401, "Sign in again.");
        Download({Info("m")});
        EXPECT_EQ(Open(), Paths{File("m")});
        EXPECT_EQ(fs::exists(File("m")), arrives);
        EXPECT_EQ(ReadFile(File("m")), arrives ? "Sign in again." : "");
    }
}

TEST_F(IfcImportTest, FilesThatAreThereAndPlacesThatAreNot) {
    const PlainServer server(Manner::Answer, 200, "model");
    fs::create_directories(Resource(""));
    std::ofstream(File("old")) << "earlier";
    Faults().FailCall("APIEnv_GetSpecFolderID", 2, APIERR_GENERAL);
    Download({Info("old"), Info("no folder just now"), Info("no/folder")});
    EXPECT_EQ(Open(), (Paths{File("old"), File("no/folder")}));
    EXPECT_EQ(ReadFile(File("old")), "earlier");
    fs::create_directory(temporaryFile);
    Download({Info("blocked")});
    EXPECT_TRUE(server.Requests().empty());

    fs::remove(temporaryFile);
    fs::create_symlink("/dev/full", temporaryFile);
    Download({Info("full")});
    EXPECT_FALSE(fs::exists(fs::symlink_status(File("full"))));
    Download({Info("../up")});
    EXPECT_EQ(ReadFile(Resource("../up-V3.ifc")), "model");
}

TEST_F(IfcImportTest, WithoutDownloadsThePageIsToldAtOnce) {
    const std::string withoutFolder = Request({Info("m"), Info("n")});
    for (const std::string& request :
         {std::string(), std::string("["), std::string("[]"), std::string(R"({"token":"t"})"),
          std::string(R"({"modelInfos":[5]})"), std::string(R"({"token":5,"modelInfos":[5]})"),
          std::string(R"({"token":"t","modelInfos":{}})"), Request({}), withoutFolder}) {
        if (request == withoutFolder) std::ofstream(folder.Path() / "Kestrane") << "in the way";
        HaveDownloaded({"/a.ifc"});
        Start(request);
        EXPECT_TRUE(IsTold(0ms)) << request;
        EXPECT_EQ(Open(), Paths{}) << request;
    }
}

TEST_F(IfcImportTest, AModelThatCannotBeReadLeavesNothingStarted) {
    HaveDownloaded({"/a.ifc"});
    for (const char* member : {"id", "name", "version", "extension"}) {
        Json info = Info("n");
        info.erase(member);
        EXPECT_THROW(Start(Request({Info("m"), info})), GS::NullReferenceException) << member;
        for (const Json& value : {Json(nullptr), Json(true), Json(1.5), Json(3000000000)}) {
            info[member] = value;
            EXPECT_THROW(Start(Request({Info("m"), info})), GS::ClassCastException) << info;
        }
    }
    EXPECT_THROW(Start(Request({Info("m"), "n"})), GS::ClassCastException);
    EXPECT_TRUE(hostkit::ThreadRegister::Instance().Running().empty());
    EXPECT_FALSE(IsTold(0ms));
    EXPECT_EQ(Open(), Paths{"/a.ifc"});
}

TEST_F(IfcImportTest, HostThatEndsWhileDownloadsRun) {
    {
        const PlainServer server(Manner::Hang);
        Start(Request({Info("a"), Info("b")}));
        EXPECT_EQ(hostkit::ThreadRegister::Instance().Running().size(), 3U);
        EndHost();
    }
    WaitForThreads();
    EXPECT_FALSE(IsTold(0ms));
}

TEST_F(IfcImportTest, ElementsOfAllModelsComeIntoTheLastButForWhatTheHostRefuses) {
    // Language; of a: open, list, elements; of b: open, list, element; of c: open; of each: command,
    // creation.
    const Numbers created[] = {{1, 2, 3}, {3},    {3},    {2, 3}, {1, 3}, {1, 2}, {1, 2}, {1, 2},
                               {},        {2, 3}, {2, 3}, {1, 3}, {1, 3}, {1, 2}, {1, 2}, {1, 2, 3}};
    for (std::size_t nth = 1; nth <= std::size(created); ++nth) {
        HaveDownloaded({"/a.ifc", "/b.ifc", "/c.ifc"});
        Faults().FailCall(nth, APIERR_GENERAL);
        host.calls.clear();
        Open();
        EXPECT_EQ(host.created, created[nth - 1]) << nth;
        EXPECT_EQ(hostkit::LiveHandles(), 0);
        Faults().Clear();
        EXPECT_EQ(Open(), Paths{});
        EXPECT_EQ(driver.Alerts().size(), nth) << "nothing to open, nothing to tell";
    }
    EXPECT_THAT(host.calls, testing::ElementsAre("Open", "ElementList", "Open", "ElementList", "Open",
                                                 "Begin Create Element", "End", "Begin Create Element", "End",
                                                 "Begin Create Element", "End"));
}

TEST_F(IfcImportTest, AlertInThePersonsLanguageBeforeTheFirstModel) {
    const std::string english =
        "Model is downloaded. Now Archicad is going to load the model. It will take several minutes.";
    const std::string german =
        "Modell wird heruntergeladen. Jetzt lädt Archicad das Modell. Es dauert einige Minuten.";
    for (const auto& [language, text] : {std::pair("GER", german), {"AUT", english}, {"", english}}) {
        host.language = language;
        if (host.language.empty()) Faults().FailCall("APIEnv_ApplicationID", 1, APIERR_GENERAL);
        host.whileOpening = [this, text = text] {
            EXPECT_EQ(ToText(driver.Alerts().back().large), text);
            HaveDownloaded({"/b.ifc"});
        };
        HaveDownloaded({"/a.ifc"});
        EXPECT_EQ(Open(), Paths{"/a.ifc"});
        EXPECT_TRUE(host.created.empty());
    }
    host.whileOpening = [] {};
    EXPECT_EQ(Open(), Paths{"/b.ifc"}) << "models that arrived meanwhile are kept for the next time";
    EXPECT_TRUE(driver.Alerts().back().small.IsEmpty());
    EXPECT_EQ(driver.Alerts().back().buttons, (std::array<GS::UniString, 3>{"OK", "", ""}));
}

TEST_F(IfcImportTest, TextOfOneModelIsWrittenAndOpened) {
    EXPECT_EQ(Open("ImportIfcModel", "nobody named it"), Paths{});
    for (const char* content : {"a long text of a model: Übergröße", "kürzer"}) {
        Call("RegisterIfcFileName", Text("Häuser.v2"));
        EXPECT_EQ(Open("ImportIfcModel", content), Paths{Resource("Häuser.v2")});
        EXPECT_EQ(ReadFile(Resource("Häuser.v2")), content);
    }
    Faults().FailCall("APIEnv_GetSpecFolderID", 1, APIERR_GENERAL);
    EXPECT_EQ(Open("ImportIfcModel", "no folder"), Paths{});
    fs::create_directory(Resource("taken"));
    fs::create_symlink("/dev/full", Resource("full"));
    for (const char* name : {"no/such folder", "taken", "full"}) {
        Call("RegisterIfcFileName", Text(name));
        EXPECT_EQ(Open("ImportIfcModel", "nowhere"), Paths{}) << name;
    }
    EXPECT_TRUE(driver.Alerts().empty());
}

}  // namespace
}  // namespace tests
