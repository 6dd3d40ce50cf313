#pragma once

#include <httplib.h>

#include <functional>
#include <string>
#include <string_view>

namespace service {

class Connection;

// The HTTP library's server, on connections that Listener accepts. The library parses heads, routes
// and writes answers; how long a client may stall, and how bodies are read, is decided here.
class HttpServer : public httplib::Server {
  public:
    // Decides before routing whether a request may go on; throws HttpError when not.
    using Guard = std::function<void(const httplib::Request&)>;

    HttpServer(int listeningSocket, Guard guard);

    // Serves the requests of one connection until it ends.
    void Serve(int socket);

  private:
    bool Refuse(const httplib::Request& request, httplib::Response& response) const;

    Guard guard;
};

// The type of the request's body as the client gave it. (The library sees another: see HttpServer.cpp.)
std::string BodyType(const httplib::Request& request);

// Text of a small body; 413 beyond 64 KiB.
std::string ReadText(const httplib::Request& request, const httplib::ContentReader& body);

// Hands the body to `take` piece by piece. 411 without a length, 400 when the connection ends early.
void ReadBody(const httplib::Request& request, const httplib::ContentReader& body,
              const std::function<void(std::string_view)>& take);

// Answers {"error": text}.
void AnswerError(httplib::Response& response, int status, const std::string& text);

}  // namespace service
