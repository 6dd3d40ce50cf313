#include "Service/http/Connection.hpp"

#include <netdb.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

namespace service {

namespace {

using namespace std::chrono_literals;

constexpr size_t maxHeadSize = 64 * 1024;
constexpr auto silenceLimit = 60s;  // within a request or an answer
constexpr auto drainLimit = 10s;

void SetTimeout(int descriptor, int option, std::chrono::seconds limit) {
    const timeval value{limit.count(), 0};
    setsockopt(descriptor, SOL_SOCKET, option, &value, sizeof value);
}

using NameFunction = int (*)(int, sockaddr*, socklen_t*);

void IpAndPort(NameFunction name, int descriptor, std::string& ip, int& port) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    std::array<char, NI_MAXHOST> host{};
    std::array<char, NI_MAXSERV> number{};
    if (name(descriptor, generic, &size) != 0) return;
    if (getnameinfo(generic, size, host.data(), host.size(), number.data(), number.size(),
                    NI_NUMERICHOST | NI_NUMERICSERV) != 0) {
        return;
    }
    ip = host.data();
    port = static_cast<int>(std::strtol(number.data(), nullptr, 10));
}

}  // namespace

Connection::Connection(int socket) : descriptor(socket) {
    SetTimeout(descriptor, SO_SNDTIMEO, silenceLimit);
}

bool Connection::AwaitRequest() {
    inBody = false;
    headSize = 0;
    if (begin == end) {
        SetTimeout(descriptor, SO_RCVTIMEO, idleLimit);
        if (!Fill()) return false;
    }
    SetTimeout(descriptor, SO_RCVTIMEO, silenceLimit);
    return true;
}

void Connection::BeginBody(std::optional<uint64_t> length) {
    inBody = true;
    bodyLeft = length.value_or(std::numeric_limits<uint64_t>::max());
}

void Connection::Drain() {
    shutdown(descriptor, SHUT_WR);
    SetTimeout(descriptor, SO_RCVTIMEO, 2s);
    const auto until = std::chrono::steady_clock::now() + drainLimit;
    while (Fill() && std::chrono::steady_clock::now() < until) {
    }
}

bool Connection::Fill() {
    ssize_t count = 0;
    do {
        count = recv(descriptor, buffer.data(), buffer.size(), 0);
    } while (count < 0 && errno == EINTR);
    begin = 0;
    end = count > 0 ? static_cast<size_t>(count) : 0;
    return count > 0;
}

ssize_t Connection::read(char* to, size_t size) {
    if (!inBody && headSize >= maxHeadSize) return -1;
    if (begin == end && !Fill()) return 0;
    const size_t count = std::min(size, end - begin);
    std::memcpy(to, buffer.data() + begin, count);
    begin += count;
    if (inBody) {
        bodyLeft -= std::min<uint64_t>(count, bodyLeft);
    } else {
        headSize += count;
    }
    return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char* from, size_t size) {
    for (size_t sent = 0; sent < size;) {
        const ssize_t count = send(descriptor, from + sent, size - sent, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return -1;
        sent += static_cast<size_t>(count);
    }
    return static_cast<ssize_t>(size);
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
    IpAndPort(getpeername, descriptor, ip, port);
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const {
    IpAndPort(getsockname, descriptor, ip, port);
}

}  // namespace service
