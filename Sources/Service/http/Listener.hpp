#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <thread>

namespace service {

// Accepts connections and serves each on a thread of its own, so that a stalled one holds up nobody.
class Listener {
  public:
    // Serves one connection until it ends; the socket is closed afterwards.
    using Serve = std::function<void(int socket)>;

    // Binds and listens; clients wait until Run(). Throws StartError.
    Listener(const std::string& address, int port);
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    int Port() const { return port; }
    int Socket() const { return socket; }
    bool IsLoopback() const { return loopback; }

    void Run(Serve serve);

    // Cuts all connections and waits for their threads.
    void Stop();

  private:
    struct Worker {
        int socket;
        bool done = false;
        std::thread thread;
    };

    void Accept(const Serve& serve);
    void Start(int client, const Serve& serve);
    void Reap();

    int socket = -1;
    int port = 0;
    bool loopback = false;
    std::mutex mutex;
    bool stopping = false;
    std::list<Worker> workers;
    std::thread acceptor;
};

}  // namespace service
