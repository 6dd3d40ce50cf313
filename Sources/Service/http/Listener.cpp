#include "Service/http/Listener.hpp"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "Service/Server.hpp"

namespace service {

namespace {

constexpr size_t maxConnections = 256;
constexpr std::string_view tooBusy =
    "HTTP/1.1 503 Service Unavailable\r\nConnection: close\r\nContent-Type: application/json\r\n"
    "Content-Length: 56\r\n\r\n{\"error\":\"Too many connections. Try again in a moment.\"}";

using AddressList = std::unique_ptr<addrinfo, decltype(&freeaddrinfo)>;

AddressList Resolve(const std::string& address, int port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    const int error = getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (error != 0) {
        throw StartError("The address \"" + address + "\" cannot be used: " + gai_strerror(error) +
                         ". Give one of this machine's own addresses with --bind.");
    }
    return {found, freeaddrinfo};
}

[[noreturn]] void RefuseBind(const std::string& address, int port, int error) {
    const std::string place = "Port " + std::to_string(port);
    if (error == EADDRINUSE) {
        throw StartError(place + " on " + address +
                         " is already in use, perhaps by a Kestrane service that is already running. "
                         "Stop that program, or choose another port with --port.");
    }
    if (error == EACCES) {
        throw StartError(place + " is reserved for the system. Choose one above 1023 with --port.");
    }
    throw StartError(place + " on " + address + " cannot be opened: " + std::strerror(error) + ".");
}

bool IsLoopbackAddress(const sockaddr_storage& address) {
    if (address.ss_family == AF_INET) {
        const auto& ip4 = reinterpret_cast<const sockaddr_in&>(address);
        return (ntohl(ip4.sin_addr.s_addr) >> 24) == 127;
    }
    const auto& ip6 = reinterpret_cast<const sockaddr_in6&>(address);
    return IN6_IS_ADDR_LOOPBACK(&ip6.sin6_addr);
}

int PortOf(const sockaddr_storage& address) {
    return ntohs(address.ss_family == AF_INET ? reinterpret_cast<const sockaddr_in&>(address).sin_port
                                              : reinterpret_cast<const sockaddr_in6&>(address).sin6_port);
}

}  // namespace

Listener::Listener(const std::string& address, int wantedPort) {
    const AddressList found = Resolve(address, wantedPort);
    socket = ::socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0) RefuseBind(address, wantedPort, errno);
    const int on = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (bind(socket, found->ai_addr, found->ai_addrlen) != 0 || listen(socket, SOMAXCONN) != 0) {
        const int error = errno;
        close(socket);
        RefuseBind(address, wantedPort, error);
    }
    sockaddr_storage bound{};
    socklen_t size = sizeof bound;
    getsockname(socket, reinterpret_cast<sockaddr*>(&bound), &size);
    port = PortOf(bound);
    loopback = IsLoopbackAddress(bound);
}

Listener::~Listener() {
    Stop();
    close(socket);
}

void Listener::Run(Serve serve) {
    acceptor = std::thread([this, serve = std::move(serve)] { Accept(serve); });
}

void Listener::Accept(const Serve& serve) {
    while (true) {
        const int client = accept4(socket, nullptr, nullptr, SOCK_CLOEXEC);
        const int error = errno;
        {
            const std::lock_guard lock(mutex);
            if (stopping) {
                if (client >= 0) close(client);
                return;
            }
        }
        Reap();
        if (client >= 0) {
            Start(client, serve);
        } else if (error != EINTR && error != ECONNABORTED) {
            // Out of descriptors or memory: connections that end will make room.
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
}

void Listener::Start(int client, const Serve& serve) {
    const int on = 1;
    setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    const std::lock_guard lock(mutex);
    if (stopping || workers.size() >= maxConnections) {
        send(client, tooBusy.data(), tooBusy.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        close(client);
        return;
    }
    Worker& worker = workers.emplace_back(Worker{client, false, {}});
    worker.thread = std::thread([this, &worker, serve] {
        serve(worker.socket);
        // Closed under the lock, or Stop() could cut a stranger that got the same number.
        const std::lock_guard closing(mutex);
        close(worker.socket);
        worker.done = true;
    });
}

void Listener::Reap() {
    std::list<Worker> ended;
    {
        const std::lock_guard lock(mutex);
        for (auto worker = workers.begin(); worker != workers.end();) {
            const auto next = std::next(worker);
            if (worker->done) ended.splice(ended.end(), workers, worker);
            worker = next;
        }
    }
    for (Worker& worker : ended)
        worker.thread.join();
}

void Listener::Stop() {
    {
        const std::lock_guard lock(mutex);
        stopping = true;
        shutdown(socket, SHUT_RDWR);
        for (const Worker& worker : workers) {
            if (!worker.done) shutdown(worker.socket, SHUT_RDWR);
        }
    }
    if (acceptor.joinable()) acceptor.join();
    for (Worker& worker : workers)
        worker.thread.join();
    workers.clear();
}

}  // namespace service
