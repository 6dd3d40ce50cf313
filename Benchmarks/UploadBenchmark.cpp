// How long the add-on takes to upload a file, beside the curl program on the same service, and how much
// memory the service takes for it. Usage: UploadBenchmark [MiB, default 1024] [rounds, default 6]

#include <fcntl.h>
#include <httplib.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "transfer/BaseExport.hpp"

namespace fs = std::filesystem;

namespace {

class Upload : public BaseExport {
  public:
    Upload(const std::string& token, std::string url, std::string file)
        : BaseExport(GS::UniString(token.c_str()), GS::UniString()),
          url(std::move(url)),
          file(std::move(file)) {}

    void Run() override {
        const auto outcome = Post(GS::UniString(file.c_str()));
        done = outcome && outcome->transferred && outcome->body.ToCStr().Get()[0] == '[';
    }
    GS::UniString GetEndPoint() const override { return GS::UniString(url.c_str()); }

    bool done = false;

  private:
    std::string url;
    std::string file;
};

pid_t Spawn(const std::string& program, std::vector<std::string> arguments, int output) {
    std::vector<char*> values{const_cast<char*>(program.c_str())};
    for (std::string& argument : arguments)
        values.push_back(argument.data());
    values.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t pid = -1;
    const int error = posix_spawnp(&pid, program.c_str(), &actions, nullptr, values.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::runtime_error("cannot start " + program);
    return pid;
}

int Wait(pid_t pid) {
    int status = -1;
    waitpid(pid, &status, 0);
    return status;
}

// The service as a process of its own, so that its memory is nobody else's.
class ServiceProcess {
  public:
    explicit ServiceProcess(const fs::path& data) {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        const fs::path program = fs::read_symlink("/proc/self/exe").parent_path() / "kestrane-service";
        pid = Spawn(program, {"--port", "0", "--data", data}, ends[1]);
        close(ends[1]);
        std::string line;
        for (char character = 0; read(ends[0], &character, 1) == 1 && character != '\n';)
            line += character;
        close(ends[0]);
        const size_t colon = line.rfind(':');
        if (colon == std::string::npos) throw std::runtime_error("the service did not start");
        port = std::stoi(line.substr(colon + 1));
    }
    ~ServiceProcess() {
        kill(pid, SIGTERM);
        Wait(pid);
    }
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    int Port() const { return port; }

    void ForgetPeak() const { std::ofstream("/proc/" + std::to_string(pid) + "/clear_refs") << 5; }

    double PeakMiB() const {
        std::ifstream status("/proc/" + std::to_string(pid) + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
        }
        throw std::runtime_error("no memory figures");
    }

  private:
    pid_t pid = -1;
    int port = 0;
};

void WriteFile(const fs::path& file, size_t mebibytes) {
    std::vector<uint64_t> piece((1 << 20) / sizeof(uint64_t));
    uint64_t state = 88172645463325252U;
    std::ofstream out(file, std::ios::binary);
    for (size_t i = 0; i < mebibytes; ++i) {
        for (uint64_t& word : piece) {
            state ^= state << 13;
            state ^= state >> 7;
            state ^= state << 17;
            word = state;
        }
        out.write(reinterpret_cast<const char*>(piece.data()), 1 << 20);
    }
    if (!out.flush()) throw std::runtime_error("cannot write " + file.native());
}

template <typename Work>
double Seconds(const Work& work) {
    sync();  // no earlier run's writing is waited for in this one
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void Measure(const fs::path& dir, size_t mebibytes, int rounds) {
    const fs::path file = dir / "model.ifc";
    WriteFile(file, mebibytes);
    const ServiceProcess service(dir / "data");
    httplib::Client client("127.0.0.1", service.Port());
    const auto get = [&](const std::string& path, const httplib::Headers& headers) {
        return nlohmann::json::parse(client.Get(path, headers)->body).at(0).at("id").get<std::string>();
    };
    const auto session =
        client.Post("/api/session", R"({"user":"demo","password":"demo"})", "application/json");
    const std::string token = nlohmann::json::parse(session->body).at("token");
    const httplib::Headers headers{{"X-Project-Authorization", "bearer " + token}};
    const std::string folder = get("/api/projects/" + get("/api/projects", headers) + "/folders", headers);
    const std::string url =
        "http://127.0.0.1:" + std::to_string(service.Port()) + "/api/document?folderId=" + folder;

    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    const auto withCurl = [&] {
        const std::string header = "X-Project-Authorization: bearer " + token;
        const pid_t pid =
            Spawn("curl", {"-sS", "--fail", "-H", header, "-F", "file=@" + file.native(), url}, nowhere);
        if (Wait(pid) != 0) throw std::runtime_error("curl failed");
    };
    const auto withAddOn = [&] {
        Upload upload(token, url, file);
        upload.Run();
        if (!upload.done) throw std::runtime_error("the add-on's upload failed");
    };

    service.ForgetPeak();
    const double before = service.PeakMiB();
    const auto measured = [&](double& best, const auto& upload) {
        best = std::min(best, Seconds(upload));
        for (const auto& stored : fs::directory_iterator(dir / "data/stored"))
            fs::remove(stored);
    };
    double curl = std::numeric_limits<double>::max();
    double addOn = curl;
    for (int round = 0; round < rounds; ++round) {
        // Neither always comes right after the other.
        if (round % 2 == 0) measured(curl, withCurl);
        measured(addOn, withAddOn);
        if (round % 2 == 1) measured(curl, withCurl);
    }
    close(nowhere);
    const double size = static_cast<double>(mebibytes);
    std::printf("upload of %zu MiB, best of %d\n", mebibytes, rounds);
    std::printf("  curl -F          %7.2f s  %6.0f MiB/s\n", curl, size / curl);
    std::printf("  add-on           %7.2f s  %6.0f MiB/s  ratio %.3f\n", addOn, size / addOn, addOn / curl);
    std::printf("  service's memory %7.1f MiB, growth %.1f MiB\n", before, service.PeakMiB() - before);
}

}  // namespace

int main(int count, char** values) {
    std::string dir = fs::temp_directory_path() / "kestrane-upload-XXXXXX";
    if (mkdtemp(dir.data()) == nullptr) return 1;
    int status = 0;
    try {
        Measure(dir, count > 1 ? std::stoul(values[1]) : 1024, count > 2 ? std::stoi(values[2]) : 6);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "UploadBenchmark: %s\n", error.what());
        status = 1;
    }
    fs::remove_all(dir);
    return status;
}
