#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "Service/Server.hpp"

namespace service::test {

using Json = nlohmann::json;

class TempDir {
  public:
    TempDir();
    ~TempDir();
    std::filesystem::path path;
};

// A signed-in user of the service.
class User {
  public:
    explicit User(int port, const std::string& password = "demo");

    httplib::Headers headers;
    httplib::Client client;

    Json Get(const std::string& path);
    std::string DemoProject();
    std::string DemoFolder();
    Json Documents(const std::string& folderId);
    httplib::Result Upload(const std::string& path, const std::string& name, const std::string& content);
    // Sends a form whose content has `size` bytes of `Pattern` without holding them all.
    httplib::Result UploadPattern(const std::string& path, const std::string& name, size_t size);
};

// Reproducible content; different for different seeds.
std::string Pattern(size_t size, unsigned seed);

// A form with one part of this disposition.
std::string Form(const std::string& disposition, const std::string& content);
constexpr auto formType = "multipart/form-data; boundary=b0undary";

// A TCP connection that sends exactly what it is told.
class RawClient {
  public:
    explicit RawClient(int port);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    void Send(const std::string& text) const;
    std::string ReadToEnd() const;  // until the service closes
    void Reset();                   // cuts it without a farewell

  private:
    int socket;
};

// The real program as a child.
class Child {
  public:
    explicit Child(const std::vector<std::string>& arguments);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    const pid_t& Pid() const { return pid; }
    int PortFromOutput() const;  // reads the line that tells the address
    std::string Output() const;  // standard output and error, to their end
    void Signal(int number) const;
    int Wait();  // exit status, or 128 + signal

  private:
    pid_t pid = -1;
    int output = -1;
};

size_t FileCount(const std::filesystem::path& folder);

// A service in this process on a free port.
class ServiceTest : public ::testing::Test {
  protected:
    ServiceTest();
    void Restart();

    TempDir dir;
    std::chrono::system_clock::time_point now = std::chrono::system_clock::now();
    Options options;
    std::unique_ptr<Server> server;
};

}  // namespace service::test
