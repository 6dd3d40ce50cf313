#pragma once

#include <httplib.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace service {

// How long a connection may rest between two requests.
constexpr std::chrono::seconds idleLimit{15};

// One client's connection as the HTTP library reads and writes it. It bounds what a client may make
// the service wait for and keep, and knows whether a request was read to its end.
class Connection : public httplib::Stream {
  public:
    explicit Connection(int socket);

    // Waits for the next request's first byte. False when there will be none.
    bool AwaitRequest();

    // Called between a request's head and its body. No length: it cannot be known beforehand.
    void BeginBody(std::optional<uint64_t> length);

    // Whether the next request can be told from the rest of this one.
    bool IsAtRequestEnd() const { return inBody && bodyLeft == 0; }

    // Takes and drops what the client still sends, for a bounded time: closing at once would discard
    // the answer that it has not read yet.
    void Drain();

    bool is_readable() const override { return true; }
    bool is_writable() const override { return true; }
    ssize_t read(char* to, size_t size) override;
    ssize_t write(const char* from, size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return descriptor; }

  private:
    bool Fill();

    int descriptor;
    std::array<char, 64 * 1024> buffer;
    size_t begin = 0;
    size_t end = 0;
    bool inBody = false;
    uint64_t bodyLeft = 0;
    size_t headSize = 0;
};

}  // namespace service
