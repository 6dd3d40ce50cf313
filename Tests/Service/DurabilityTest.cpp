#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <map>
#include <mutex>
#include <random>
#include <thread>

#include "Service/Fixture.hpp"

namespace service::test {
namespace {

using testing::HasSubstr;

class DurabilityTest : public testing::Test {
  protected:
    std::unique_ptr<Child> Start() const {
        return std::make_unique<Child>(
            std::vector<std::string>{"--port", "0", "--data", data, "--web", dir.path});
    }
    size_t Files(const char* folder) const { return FileCount(data / folder); }

    const TempDir dir;
    const std::filesystem::path data = dir.path / "data";
};

template <typename Work>
auto WithLock(std::mutex& mutex, const Work& work) {
    const std::lock_guard lock(mutex);
    return work();
}

// Uploads one file after the other until the service is gone; which were confirmed is noted in `confirmed`.
void UploadUntilCut(int port, const std::string& path, unsigned firstSeed, std::mutex& mutex,
                    std::map<std::string, unsigned>& sent, std::map<std::string, unsigned>& confirmed) {
    User user(port);
    for (unsigned seed = firstSeed; seed < firstSeed + 1000; ++seed) {
        const std::string name = "file " + std::to_string(seed);
        WithLock(mutex, [&] { sent[name] = seed; });
        const auto answer = user.Upload(path, name, Pattern(1000 + seed % 7 * 50'000, seed));
        if (!answer) return;
        EXPECT_EQ(answer->status, 200);
        WithLock(mutex, [&] { confirmed[name] = seed; });
    }
}

TEST_F(DurabilityTest, WhatIsListedIsWholeAfterKills) {
    constexpr unsigned rounds = 6;
    std::mt19937 random(20261121);
    std::map<std::string, unsigned> sent;
    std::map<std::string, unsigned> confirmed;
    std::mutex mutex;
    std::string folder;
    for (unsigned round = 0; round < rounds; ++round) {
        const auto child = Start();
        const int port = child->PortFromOutput();
        folder = User(port).DemoFolder();
        std::vector<std::thread> clients;
        for (unsigned client = 0; client < 3; ++client) {
            clients.emplace_back([&, first = (round * 3 + client) * 1000] {
                try {
                    UploadUntilCut(port, "/api/document?folderId=" + folder, first, mutex, sent, confirmed);
                } catch (const std::runtime_error&) {
                    // Killed before the client had signed in.
                }
            });
        }
        // After a few confirmations, somewhere in the next uploads' ways to the disk.
        const size_t enough = WithLock(mutex, [&] { return confirmed.size(); }) + 3;
        for (int i = 0; i < 2000 && WithLock(mutex, [&] { return confirmed.size(); }) < enough; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 40'000));
        child->Signal(SIGKILL);
        for (std::thread& client : clients)
            client.join();
    }

    const auto child = Start();
    User user(child->PortFromOutput());
    const Json documents = user.Documents(folder);
    EXPECT_GE(confirmed.size(), rounds);
    EXPECT_GE(documents.size(), confirmed.size());
    for (const Json& document : documents) {
        const std::string name = document["name"];
        ASSERT_TRUE(sent.contains(name));
        confirmed.erase(name);
        const unsigned seed = sent[name];
        const auto stored =
            user.client.Get("/api/document/" + document["id"].get<std::string>(), user.headers);
        ASSERT_EQ(stored->status, 200);
        EXPECT_TRUE(stored->body == Pattern(1000 + seed % 7 * 50'000, seed)) << name;
    }
    EXPECT_TRUE(confirmed.empty()) << "confirmed but lost: " << confirmed.begin()->first;
    EXPECT_EQ(Files("stored"), documents.size());
    EXPECT_EQ(Files("arriving"), 0);
}

TEST_F(DurabilityTest, AFullDiskIsA507AndLeavesNothing) {
    const auto child = Start();
    User user(child->PortFromOutput());
    const std::string folder = user.DemoFolder();
    const std::string path = "/api/document?folderId=" + folder;
    const auto limit = [&child](rlim_t size) {
        const rlimit files{size, RLIM_INFINITY};
        ASSERT_EQ(prlimit(child->Pid(), RLIMIT_FSIZE, &files, nullptr), 0);
    };
    const auto expectFull = [&](size_t size) {
        const auto answer = user.UploadPattern(path, "large", size);
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->status, 507);
        EXPECT_THAT(answer->body, HasSubstr("disk is full"));
        EXPECT_EQ(Files("stored") + Files("arriving"), 0);
        EXPECT_EQ(user.Documents(folder), Json::array());
    };
    limit(1 << 20);
    expectFull((1 << 20) + 1);  // found out by the last write only
    expectFull(8 << 20);
    limit(16 << 10);  // room for the file, not for its record
    expectFull(1000);
    limit(RLIM_INFINITY);
    EXPECT_EQ(user.UploadPattern(path, "large", 8 << 20)->status, 200);
}

TEST_F(DurabilityTest, SweepsItsLeftoversButNoOtherFiles) {
    std::filesystem::create_directories(data / "arriving");
    std::filesystem::create_directories(data / "stored");
    const std::string id(32, 'a');
    for (const char* folder : {"arriving", "stored"}) {
        std::ofstream(data / folder / id) << "half";
        std::ofstream(data / folder / "thesis.txt") << "somebody's";
    }
    Start()->PortFromOutput();
    for (const char* folder : {"arriving", "stored"}) {
        EXPECT_FALSE(exists(data / folder / id));
        EXPECT_TRUE(exists(data / folder / "thesis.txt"));
    }
}

TEST_F(DurabilityTest, TakenPortsAndFoldersAreSaidClearly) {
    const auto first = Start();
    const std::string port = std::to_string(first->PortFromOutput());
    Child samePort({"--port", port, "--data", dir.path / "other"});
    EXPECT_THAT(samePort.Output(), HasSubstr("Port " + port + " on 127.0.0.1 is already in use"));
    EXPECT_EQ(samePort.Wait(), 1);
    Child sameFolder({"--port", "0", "--data", data});
    EXPECT_THAT(sameFolder.Output(), HasSubstr("is in use by another Kestrane service"));
    EXPECT_EQ(sameFolder.Wait(), 1);
    first->Signal(SIGTERM);
    EXPECT_EQ(first->Wait(), 0);
}

TEST_F(DurabilityTest, CommandLine) {
    std::ofstream(dir.path / "file") << "not a folder";
    const struct {
        std::vector<std::string> arguments;
        int status;
        const char* says;
    } cases[] = {
        {{"--help"}, 0, "Usage: kestrane-service"},
        {{"--port", "70000"}, 2, "--port takes a number"},
        {{"--port", "1x"}, 2, "--port takes a number"},
        {{"--what"}, 2, "--help"},
        {{"--port"}, 2, "--help"},
        {{"--allow-origin", ""}, 2, "--allow-origin takes an origin"},
        {{"--allow-origin", "*"}, 2, "--allow-origin takes an origin"},
        {{"--allow-origin", "null"}, 2, "--allow-origin takes an origin"},
        {{"--allow-origin", "http://localhost:5173/"}, 2, "--allow-origin takes an origin"},
        {{"--allow-origin", "http://localhost:5173", "--help"}, 0, "--allow-origin ORIGIN"},
        {{"word"}, 2, "Unexpected: word"},
        {{"--port", "0", "--data", dir.path / "file"}, 1, "cannot be used"},
        {{"--port", "0", "--data", data, "--bind", "192.0.2.1"}, 1, "cannot be opened"},
    };
    for (const auto& c : cases) {
        Child child(c.arguments);
        EXPECT_THAT(child.Output(), HasSubstr(c.says));
        EXPECT_EQ(child.Wait(), c.status) << c.says;
    }
}

}  // namespace
}  // namespace service::test
