#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace service {

struct Options {
    std::string bindAddress = "127.0.0.1";    // a numeric address or a host name
    int port = 0;                             // 0: the system picks a free one
    std::filesystem::path dataDir;            // made when missing
    std::filesystem::path webRoot;            // the page's files, served at "/"
    std::vector<std::string> allowedOrigins;  // of pages elsewhere that may call, "http://localhost:5173"
    std::chrono::minutes sessionLifetime{12 * 60};
    std::function<std::chrono::system_clock::time_point()> now = std::chrono::system_clock::now;
};

// Why the service cannot start, worded for the person who started it.
class StartError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The service: sessions, projects, folders, documents and resources over HTTP, and the page's files.
// A fresh data folder gets the account "demo" (password "demo") and a project to try things in.
class Server {
  public:
    explicit Server(Options options);
    ~Server();  // stops

    // Takes the port and the data folder and answers from then on, on threads of its own.
    // Throws StartError when the port or the folder is in use or cannot be had.
    void Start();

    // The port in use; 0 before Start().
    int Port() const;

    // Cuts what is under way and returns when every thread has ended. Nothing half done stays behind.
    void Stop();

  private:
    struct Running;

    Options options;
    std::unique_ptr<Running> running;
};

// Adds an account, or gives an existing one a new password and ends its sessions.
// Works while a service uses the folder. Throws StartError when the name or the folder cannot be used.
void SetPassword(const std::filesystem::path& dataDir, const std::string& account,
                 const std::string& password);

}  // namespace service
