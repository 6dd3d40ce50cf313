#include <atomic>
#include <fstream>
#include <set>
#include <thread>

#include "Service/Fixture.hpp"

namespace service::test {
namespace {

class UploadTest : public ServiceTest {
  protected:
    std::string Head(size_t length, const std::string& connection = "keep-alive") {
        return "POST " + path + " HTTP/1.1\r\nHost: localhost\r\nContent-Type: " + formType +
               "\r\nX-Project-Authorization: " + user.headers.begin()->second +
               "\r\nConnection: " + connection + "\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n";
    }

    size_t Arriving() const { return FileCount(options.dataDir / "arriving"); }

    void AwaitArriving(size_t count) const {
        for (int i = 0; i < 2000 && Arriving() != count; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        EXPECT_EQ(Arriving(), count);
    }

    User user{server->Port()};
    const std::string folder = user.DemoFolder();
    const std::string path = "/api/document?folderId=" + folder;
    const std::string form = Form("form-data; name=\"file\"; filename=\"a\"", Pattern(500'000, 3));
};

TEST_F(UploadTest, ACutConnectionLeavesNothing) {
    for (const size_t sent : {size_t{0}, size_t{60}, size_t{400'000}, form.size() - 1}) {
        SCOPED_TRACE(sent);
        RawClient raw(server->Port());
        raw.Send(Head(form.size()) + form.substr(0, sent));
        AwaitArriving(1);
        raw.Reset();
        AwaitArriving(0);
    }
    EXPECT_EQ(user.Documents(folder), Json::array());
    EXPECT_EQ(FileCount(options.dataDir / "stored"), 0);
}

TEST_F(UploadTest, ChunkedBodiesAreReadToo) {
    const auto provide = [this](size_t offset, httplib::DataSink& sink) {
        const size_t size = std::min<size_t>(form.size() - offset, 77'777);
        sink.write(form.data() + offset, size);
        if (offset + size == form.size()) sink.done();
        return true;
    };
    const auto answer = user.client.Post(path, user.headers, provide, formType);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200) << answer->body;
    EXPECT_EQ(user.Documents(folder)[0]["size"], 500'000);
}

TEST_F(UploadTest, StalledClientsHoldUpNobodyNorTheEnd) {
    std::vector<std::unique_ptr<RawClient>> stalled;
    for (int i = 0; i < 60; ++i) {
        stalled.push_back(std::make_unique<RawClient>(server->Port()));
        stalled.back()->Send(i % 3 == 0   ? ""
                             : i % 3 == 1 ? "POST /api"
                                          : Head(form.size()) + form.substr(0, 1000));
    }
    AwaitArriving(20);
    EXPECT_EQ(user.Upload(path, "a.ifc", "content")->status, 200);
    server->Stop();  // would outlast the test's time limit if it waited for them
    EXPECT_EQ(Arriving(), 0);
    EXPECT_EQ(FileCount(options.dataDir / "stored"), 1);
}

TEST_F(UploadTest, ConcurrentUploadsKeepTheirBytesAndGetOneVersionEach) {
    constexpr unsigned threadCount = 6;
    constexpr unsigned uploadsEach = 4;
    std::atomic<unsigned> good = 0;
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&, thread] {
            User another(server->Port());
            for (unsigned i = 0; i < uploadsEach; ++i) {
                const std::string content = Pattern(100'000 + 1000 * thread + i, thread * 100 + i);
                const auto answer = another.Upload(path, "same name", content);
                if (!answer || answer->status != 200) continue;
                const std::string id = Json::parse(answer->body)[0]["id"];
                if (another.client.Get("/api/document/" + id, another.headers)->body == content) ++good;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, threadCount * uploadsEach);
    EXPECT_EQ(user.Documents(folder)[0]["version"], threadCount * uploadsEach);
}

TEST_F(UploadTest, TwoHundredAtOnceAllGetADocument) {
    constexpr size_t count = 200;
    const std::string small = Form("form-data; name=\"file\"; filename=\"a\"", Pattern(5'000, 3));
    std::vector<std::unique_ptr<RawClient>> clients;
    for (size_t i = 0; i < count; ++i) {
        clients.push_back(std::make_unique<RawClient>(server->Port()));
        clients.back()->Send(Head(small.size(), "close") + small.substr(0, 1000 + i));
    }
    AwaitArriving(count);
    std::set<std::string> ids;
    for (size_t i = 0; i < count; ++i) {
        clients[i]->Send(small.substr(1000 + i));
        const std::string answer = clients[i]->ReadToEnd();
        ASSERT_THAT(answer, testing::StartsWith("HTTP/1.1 200"));
        ids.insert(Json::parse(answer.substr(answer.find("\r\n\r\n")))[0]["id"].get<std::string>());
    }
    EXPECT_EQ(ids.size(), count);
    EXPECT_EQ(user.Documents(folder)[0]["version"], count);
}

size_t ResidentKiB(pid_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) return std::stoul(line.substr(6));
    }
    return 0;
}

TEST(UploadMemoryTest, DoesNotGrowWithTheFile) {
    constexpr size_t size = 300 << 20;
    const TempDir dir;
    const Child child({"--port", "0", "--data", dir.path / "data"});
    User user(child.PortFromOutput());
    const std::string folder = user.DemoFolder();
    const std::string path = "/api/document?folderId=" + folder;
    ASSERT_EQ(user.UploadPattern(path, "warm up", 1 << 20)->status, 200);
    std::ofstream("/proc/" + std::to_string(child.Pid()) + "/clear_refs") << 5;  // forget the peak so far
    const size_t before = ResidentKiB(child.Pid());
    const auto answer = user.UploadPattern(path, "large", size);
    ASSERT_TRUE(answer);
    ASSERT_EQ(answer->status, 200);
    EXPECT_EQ(user.Documents(folder)[0]["size"], size);
    size_t received = 0;
    const std::string id = Json::parse(answer->body)[0]["id"];
    const auto count = [&received](const char*, size_t length) {
        received += length;
        return true;
    };
    user.client.Get("/api/document/" + id, user.headers, count);
    EXPECT_EQ(received, size);
    EXPECT_LT(ResidentKiB(child.Pid()), before + 16 * 1024);
}

}  // namespace
}  // namespace service::test
