#include "ServiceProcess.hpp"

#include <fcntl.h>
#include <httplib.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace benchmarks {

namespace fs = std::filesystem;

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

ServiceProcess::ServiceProcess(const fs::path& data, int wantedPort) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    const fs::path program = fs::read_symlink("/proc/self/exe").parent_path() / "kestrane-service";
    pid = Spawn(program, {"--port", std::to_string(wantedPort), "--data", data}, ends[1]);
    close(ends[1]);
    std::string line;
    for (char character = 0; read(ends[0], &character, 1) == 1 && character != '\n';)
        line += character;
    close(ends[0]);
    const size_t colon = line.rfind(':');
    if (colon == std::string::npos) throw std::runtime_error("the service did not start");
    port = std::stoi(line.substr(colon + 1));
}

ServiceProcess::~ServiceProcess() {
    kill(pid, SIGTERM);
    Wait(pid);
}

void ServiceProcess::ForgetPeak() const {
    std::ofstream("/proc/" + std::to_string(pid) + "/clear_refs") << 5;
}

double ServiceProcess::PeakMiB() const {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
    }
    throw std::runtime_error("no memory figures");
}

SignedIn::SignedIn(const ServiceProcess& service) {
    httplib::Client client("127.0.0.1", service.Port());
    const auto session =
        client.Post("/api/session", R"({"user":"demo","password":"demo"})", "application/json");
    token = nlohmann::json::parse(session->body).at("token");
    const auto first = [&](const std::string& path) {
        const httplib::Headers headers{{"X-Project-Authorization", "bearer " + token}};
        return nlohmann::json::parse(client.Get(path, headers)->body).at(0).at("id").get<std::string>();
    };
    project = first("/api/projects");
    folder = first("/api/projects/" + project + "/folders");
}

void WriteFile(const fs::path& file, size_t mebibytes, size_t seed) {
    std::vector<uint64_t> piece((1 << 20) / sizeof(uint64_t));
    uint64_t state = 88172645463325252U + seed;
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

}  // namespace benchmarks
