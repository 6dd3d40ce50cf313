#include "Service/http/HttpServer.hpp"

#include <charconv>
#include <cstdint>
#include <iostream>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <utility>

#include "Service/Errors.hpp"
#include "Service/http/Connection.hpp"

namespace service {

namespace {

constexpr size_t maxTextSize = 64 * 1024;
constexpr auto bodyTypeHeader = "X-Body-Type";

bool IsChunked(const httplib::Request& request) {
    return request.has_header("Transfer-Encoding");
}

// No value: there is one that is not a length.
std::optional<uint64_t> ContentLength(const httplib::Request& request) {
    if (!request.has_header("Content-Length")) return 0;
    const std::string text = request.get_header_value("Content-Length");
    uint64_t length = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    const bool whole = error == std::errc{} && rest == text.data() + text.size();
    if (!whole || request.get_header_value_count("Content-Length") != 1) return std::nullopt;
    return length;
}

void PrepareRequest(httplib::Request& request, Connection& connection) {
    // The library would read a form by itself, refusing part headers and file names that it does not
    // know, and inflate packed bodies without a bound. Under another name it leaves the body as it is.
    auto type = request.headers.extract("Content-Type");
    request.headers.erase(bodyTypeHeader);
    if (!type.empty()) {
        type.key() = bodyTypeHeader;
        request.headers.insert(std::move(type));
    }
    request.headers.erase("Content-Encoding");
    // Whole contents are served only; a server may ignore ranges.
    request.ranges.clear();
    if (IsChunked(request)) {
        // Where a chunked body ended is known to the library only.
        request.headers.erase("Connection");
        request.set_header("Connection", "close");
        connection.BeginBody(std::nullopt);
    } else {
        connection.BeginBody(ContentLength(request));
    }
}

void CheckFraming(const httplib::Request& request) {
    if (!ContentLength(request)) throw HttpError(400, "The request's Content-Length is not a length.");
    if (!IsChunked(request)) return;
    if (request.has_header("Content-Length") || request.get_header_value("Transfer-Encoding") != "chunked") {
        throw HttpError(400, "The request's Transfer-Encoding is not supported.");
    }
}

void AnswerException(httplib::Response& response, const std::exception_ptr& thrown) {
    try {
        std::rethrow_exception(thrown);
    } catch (const HttpError& error) {
        AnswerError(response, error.status, error.what());
    } catch (const StorageFull& error) {
        std::cerr << "kestrane-service: " << error.what() << std::endl;
        AnswerError(response, 507, error.what());
    } catch (const std::exception& error) {
        std::cerr << "kestrane-service: " << error.what() << std::endl;
        AnswerError(response, 500, "The service failed; its own output says why.");
    }
}

}  // namespace

HttpServer::HttpServer(int listeningSocket, Guard guard) : guard(std::move(guard)) {
    svr_sock_ = listeningSocket;  // the library stops sending contents when it has none
    set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
        return Refuse(request, response) ? HandlerResponse::Handled : HandlerResponse::Unhandled;
    });
    set_expect_100_continue_handler([this](const httplib::Request& request, httplib::Response& response) {
        return Refuse(request, response) ? response.status : 100;
    });
    set_exception_handler([](const httplib::Request&, httplib::Response& response,
                             const std::exception_ptr& thrown) { AnswerException(response, thrown); });
    set_error_handler(HandlerWithResponse([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty()) {
            AnswerError(response, response.status,
                        response.status == 404 ? "There is nothing at this address."
                                               : "The request cannot be understood.");
        }
        return HandlerResponse::Handled;
    }));
    set_keep_alive_max_count(std::numeric_limits<int>::max());
    set_keep_alive_timeout(idleLimit.count());
    set_default_headers({{"X-Content-Type-Options", "nosniff"}});
}

bool HttpServer::Refuse(const httplib::Request& request, httplib::Response& response) const {
    try {
        CheckFraming(request);
        guard(request);
        return false;
    } catch (...) {
        AnswerException(response, std::current_exception());
        return true;
    }
}

void HttpServer::Serve(int socket) {
    Connection connection(socket);
    while (connection.AwaitRequest()) {
        bool closing = false;
        const bool answered = process_request(
            connection, false, closing,
            [&connection](httplib::Request& request) { PrepareRequest(request, connection); });
        if (!connection.IsAtRequestEnd()) return connection.Drain();
        if (!answered || closing) return;
    }
}

std::string BodyType(const httplib::Request& request) {
    return request.get_header_value(bodyTypeHeader);
}

std::string ReadText(const httplib::Request& request, const httplib::ContentReader& body) {
    std::string text;
    ReadBody(request, body, [&text](std::string_view piece) {
        if (text.size() + piece.size() > maxTextSize) throw HttpError(413, "The request is too large.");
        text += piece;
    });
    return text;
}

void ReadBody(const httplib::Request& request, const httplib::ContentReader& body,
              const std::function<void(std::string_view)>& take) {
    if (!IsChunked(request) && !request.has_header("Content-Length")) {
        throw HttpError(411, "The request needs a Content-Length.");
    }
    const bool whole = body([&take](const char* data, size_t size) {
        take({data, size});
        return true;
    });
    if (!whole) throw HttpError(400, "The connection ended before the request did.");
}

void AnswerError(httplib::Response& response, int status, const std::string& text) {
    response.status = status;
    response.set_content(nlohmann::json{{"error", text}}.dump(), "application/json");
}

}  // namespace service
