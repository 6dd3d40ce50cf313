#include "AddOn/PlainServer.hpp"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace tests {

namespace {

std::size_t ContentLength(std::string_view head) {
    const std::string_view name = "Content-Length: ";
    const std::size_t at = head.find(name);
    return at == std::string_view::npos ? 0 : std::stoul(std::string(head.substr(at + name.size(), 20)));
}

}  // namespace

PlainServer::PlainServer(Manner manner, int status, const std::string& body)
    : manner(manner),
      answer("HTTP/1.1 " + std::to_string(status) + " Status\r\nContent-Length: " +
             std::to_string(body.size() + (manner == Manner::CutAnswer ? 1000 : 0)) +
             "\r\nConnection: close\r\n\r\n" + body) {
    listener = socket(AF_INET, SOCK_STREAM, 0);
    const int yes = 1;
    setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener, 16) != 0 || pipe(wake) != 0) {
        throw std::runtime_error("port " + std::to_string(port) +
                                 " is taken: end the service that runs on it");
    }
    thread = std::thread([this] { Serve(); });
}

PlainServer::~PlainServer() {
    close(wake[1]);
    thread.join();
    close(wake[0]);
    close(listener);
}

std::vector<std::string> PlainServer::Requests() const {
    const std::lock_guard lock(mutex);
    return requests;
}

void PlainServer::Serve() {
    while (true) {
        std::array<pollfd, 2> wait{{{listener, POLLIN, 0}, {wake[0], POLLIN, 0}}};
        poll(wait.data(), wait.size(), -1);
        if (wait[1].revents != 0) return;
        const int client = accept(listener, nullptr, nullptr);
        if (client < 0) continue;
        Handle(client);
        close(client);
    }
}

void PlainServer::Handle(int client) {
    std::string request;
    std::array<char, 65536> chunk;
    std::size_t whole = std::string::npos;
    while (request.size() < whole) {
        std::array<pollfd, 2> wait{{{client, POLLIN, 0}, {wake[0], POLLIN, 0}}};
        poll(wait.data(), wait.size(), -1);
        if (wait[1].revents != 0) return;
        const ssize_t count = recv(client, chunk.data(), chunk.size(), 0);
        if (count <= 0) return;
        request.append(chunk.data(), static_cast<std::size_t>(count));

        const std::size_t headEnd = request.find("\r\n\r\n");
        if (headEnd == std::string::npos) continue;
        if (manner == Manner::CutUpload) return;
        whole = headEnd + 4 + ContentLength(std::string_view(request).substr(0, headEnd));
        if (request.find("Expect: 100-continue") < headEnd && request.size() < whole) {
            const std::string_view goOn = "HTTP/1.1 100 Continue\r\n\r\n";
            send(client, goOn.data(), goOn.size(), MSG_NOSIGNAL);
        }
    }
    {
        const std::lock_guard lock(mutex);
        requests.push_back(request);
    }
    if (manner == Manner::Hang) {
        pollfd wait{wake[0], POLLIN, 0};
        poll(&wait, 1, -1);
        return;
    }
    send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
}

}  // namespace tests
