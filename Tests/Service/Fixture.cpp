#include "Service/Fixture.hpp"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace service::test {

namespace fs = std::filesystem;

TempDir::TempDir() {
    std::string name = fs::temp_directory_path() / "kestrane-service-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("No temporary folder");
    path = name;
}

TempDir::~TempDir() {
    fs::remove_all(path);
}

User::User(int port, const std::string& password) : client("127.0.0.1", port) {
    client.set_read_timeout(60);
    const Json login = {{"user", "demo"}, {"password", password}};
    const auto answer = client.Post("/api/session", login.dump(), "application/json");
    if (!answer || answer->status != 200) throw std::runtime_error("Cannot sign in");
    headers.emplace("X-Project-Authorization",
                    "bearer " + Json::parse(answer->body).at("token").get<std::string>());
}

Json User::Get(const std::string& path) {
    const auto answer = client.Get(path, headers);
    if (!answer || answer->status != 200) throw std::runtime_error("GET " + path + " failed");
    return Json::parse(answer->body);
}

std::string User::DemoProject() {
    return Get("/api/projects").at(0).at("id");
}

std::string User::DemoFolder() {
    return Get("/api/projects/" + DemoProject() + "/folders").at(0).at("id");
}

Json User::Documents(const std::string& folderId) {
    return Get("/api/documents?folderId=" + folderId);
}

httplib::Result User::Upload(const std::string& path, const std::string& name, const std::string& content) {
    const std::string body = Form("form-data; name=\"file\"; filename=\"" + name + "\"", content);
    return client.Post(path, headers, body, formType);
}

httplib::Result User::UploadPattern(const std::string& path, const std::string& name, size_t size) {
    const std::string form = Form("form-data; name=\"file\"; filename=\"" + name + "\"", "");
    const size_t headSize = form.find("\r\n\r\n") + 4;
    const std::string piece = Pattern(1 << 20, 1);
    const auto provide = [&](size_t offset, size_t, httplib::DataSink& sink) {
        if (offset < headSize) return sink.write(form.data() + offset, headSize - offset);
        const size_t at = offset - headSize;
        if (at >= size) return sink.write(form.data() + offset - size, form.size() + size - offset);
        return sink.write(piece.data() + at % piece.size(),
                          std::min(size - at, piece.size() - at % piece.size()));
    };
    return client.Post(path, headers, form.size() + size, provide, formType);
}

std::string Pattern(size_t size, unsigned seed) {
    std::string content(size, '\0');
    unsigned state = seed * 2654435761U + 1;
    for (char& character : content) {
        state = state * 1664525U + 1013904223U;
        character = static_cast<char>(state >> 24);
    }
    return content;
}

std::string Form(const std::string& disposition, const std::string& content) {
    return "--b0undary\r\nContent-Disposition: " + disposition +
           "\r\nContent-Type: application/octet-stream\r\n\r\n" + content + "\r\n--b0undary--\r\n";
}

RawClient::RawClient(int port) : socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<uint16_t>(port));
    if (connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        throw std::runtime_error("Cannot connect");
    }
    const timeval limit{20, 0};
    setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

RawClient::~RawClient() {
    close(socket);
}

void RawClient::Send(const std::string& text) const {
    EXPECT_EQ(send(socket, text.data(), text.size(), MSG_NOSIGNAL), static_cast<ssize_t>(text.size()));
}

std::string RawClient::ReadToEnd() const {
    std::string text;
    std::array<char, 4096> piece;
    ssize_t count = 0;
    while ((count = recv(socket, piece.data(), piece.size(), 0)) > 0)
        text.append(piece.data(), count);
    return text;
}

void RawClient::Reset() {
    const linger abrupt{1, 0};
    setsockopt(socket, SOL_SOCKET, SO_LINGER, &abrupt, sizeof abrupt);
    close(std::exchange(socket, -1));
}

Child::Child(const std::vector<std::string>& arguments) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("No pipe");
    std::string program = fs::read_symlink("/proc/self/exe").parent_path() / "kestrane-service";
    std::vector<std::string> texts = arguments;
    std::vector<char*> values{program.data()};
    for (std::string& text : texts)
        values.push_back(text.data());
    values.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
    const int error = posix_spawn(&pid, program.c_str(), &actions, nullptr, values.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    output = ends[0];
    if (error != 0) throw std::runtime_error("Cannot start " + program);
}

Child::~Child() {
    if (pid > 0) {
        Signal(SIGKILL);
        Wait();
    }
    close(output);
}

int Child::PortFromOutput() const {
    std::string line;
    char character = 0;
    while (read(output, &character, 1) == 1) {
        line += character;
        if (line.ends_with("/\n") && line.find("http://") != std::string::npos) {
            return std::stoi(line.substr(line.rfind(':') + 1));
        }
    }
    throw std::runtime_error("The service did not start: " + line);
}

std::string Child::Output() const {
    std::string text;
    char character = 0;
    while (read(output, &character, 1) == 1)
        text += character;
    return text;
}

void Child::Signal(int number) const {
    kill(pid, number);
}

int Child::Wait() {
    int status = 0;
    waitpid(std::exchange(pid, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

size_t FileCount(const fs::path& folder) {
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

ServiceTest::ServiceTest() {
    options.dataDir = dir.path / "data";
    options.webRoot = dir.path / "web";
    options.now = [this] { return now; };
    fs::create_directories(options.webRoot);
    Restart();
}

void ServiceTest::Restart() {
    server.reset();
    server = std::make_unique<Server>(options);
    server->Start();
}

}  // namespace service::test
