#pragma once

#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tests {

/// A server at the add-on's service address that notes each request as it came over the wire and answers, or
/// misbehaves, as told. It takes one connection after the other.
class PlainServer {
  public:
    enum class Manner {
        Answer,     // the status and body
        CutUpload,  // closes in the middle of the request
        CutAnswer,  // closes in the middle of the answer's body
        Hang,       // never answers
    };

    /// Listens at once. Throws std::runtime_error when the port is taken.
    explicit PlainServer(Manner manner, int status = 200, const std::string& body = "");
    ~PlainServer();
    PlainServer(const PlainServer&) = delete;
    PlainServer& operator=(const PlainServer&) = delete;

    /// Head and body of the requests received wholly, in order.
    std::vector<std::string> Requests() const;

    static constexpr int port = 8465;

  private:
    void Serve();
    void Handle(int client);

    Manner manner;
    std::string answer;
    int listener = -1;
    int wake[2] = {-1, -1};
    mutable std::mutex mutex;
    std::vector<std::string> requests;
    std::thread thread;
};

}  // namespace tests
