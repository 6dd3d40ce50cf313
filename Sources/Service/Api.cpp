#include "Service/Api.hpp"

#include <strings.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "Service/Errors.hpp"
#include "Service/Json.hpp"
#include "Service/Names.hpp"
#include "Service/http/Form.hpp"
#include "Service/http/Origin.hpp"

namespace service {

namespace {

constexpr auto tokenHeader = "X-Project-Authorization";
constexpr std::string_view tokenPrefix = "bearer ";
constexpr auto defaultFolder = "Models";

std::string ReadName(const httplib::Request& request, const httplib::ContentReader& body) {
    std::string name = TextMember(ReadObject(request, body), "name");
    CheckName(name);
    return name;
}

// The request's token, or an empty text.
std::string TokenOf(const httplib::Request& request) {
    const std::string value = request.get_header_value(tokenHeader);
    return value.starts_with(tokenPrefix) ? value.substr(tokenPrefix.size()) : "";
}

bool NeedsToken(const httplib::Request& request) {
    const bool signsIn = request.method == "POST" && request.path == "/api/session";
    return request.path.starts_with("/api/") && !signsIn;
}

bool ChangesNothing(const httplib::Request& request) {
    return request.method == "GET" || request.method == "HEAD";
}

std::string TypeOf(const std::string& name) {
    const char* ending = name.c_str() + std::min(name.size(), name.rfind('.'));
    if (strcasecmp(ending, ".png") == 0) return "image/png";
    return strcasecmp(ending, ".ifc") == 0 ? "application/x-step" : "application/octet-stream";
}

// Writes the form's one file into `incoming` and returns its name.
std::string ReceiveFile(const httplib::Request& request, const httplib::ContentReader& body,
                        Incoming& incoming) {
    const auto boundary = FormBoundary(BodyType(request));
    if (!boundary) throw HttpError(400, "Send the file as multipart/form-data, in a part named \"file\".");
    std::optional<std::string> name;
    bool inFile = false;
    FormReader form(
        *boundary,
        [&](const FormPart& part) {
            inFile = part.name == "file";
            if (!inFile) return;
            if (name) throw HttpError(400, "Send one file at a time.");
            name = part.fileName.value_or("");
            CheckName(*name);
        },
        [&](std::string_view content) {
            if (inFile) incoming.Write(content);
        });
    ReadBody(request, body, [&form](std::string_view piece) { form.Feed(piece); });
    if (!form.IsComplete()) throw HttpError(400, "The form is cut off.");
    if (!name) throw HttpError(400, "The form has no part named \"file\".");
    return *name;
}

}  // namespace

Time Api::Now() const {
    return std::chrono::floor<std::chrono::seconds>(parts.now());
}

void Api::Guard(const Request& request) const {
    const std::string host = request.get_header_value("Host");
    if (parts.loopbackOnly && request.has_header("Host") && !IsLoopbackHost(host)) {
        throw HttpError(403, "This service is for its own machine; call it as 127.0.0.1 or localhost.");
    }
    const bool allowed = IsFromAllowedOrigin(request);
    const bool foreign =
        request.has_header("Origin") && !allowed && !IsOwnOrigin(request.get_header_value("Origin"), host);
    if (foreign && !ChangesNothing(request))
        throw HttpError(403, "Other sites' pages may not call this service.");
    const bool preflight = allowed && request.method == "OPTIONS";  // browsers send these without a token
    if (NeedsToken(request) && !preflight) RequireSession(request);
}

bool Api::IsFromAllowedOrigin(const Request& request) const {
    const std::string origin = request.get_header_value("Origin");
    return std::count(parts.allowedOrigins.begin(), parts.allowedOrigins.end(), origin) > 0;
}

void Api::ShareWithAllowedOrigins(HttpServer& server) const {
    if (parts.allowedOrigins.empty()) return;
    // On errors, too: a page cannot read an answer without it.
    server.set_post_routing_handler([this](const Request& request, Response& response) {
        response.set_header("Vary", "Origin");
        if (IsFromAllowedOrigin(request)) {
            response.set_header("Access-Control-Allow-Origin", request.get_header_value("Origin"));
        }
    });
    server.Options("/api/.*", [](const Request&, Response& response) {
        response.status = 204;
        response.set_header("Access-Control-Allow-Methods", "GET, POST, PATCH, DELETE");
        response.set_header("Access-Control-Allow-Headers",
                            std::string("Content-Type, Kestrane-Client-Id, ") + tokenHeader);
    });
}

Session Api::RequireSession(const Request& request) const {
    if (auto session = parts.accounts.Find(TokenOf(request), Now())) return *session;
    throw HttpError(401, "You are not signed in, or no longer. Sign in again.");
}

void Api::SignIn(const Request& request, Response& response, const Body& body) const {
    const Json object = ReadObject(request, body);
    const std::string user = TextMember(object, "user");
    const std::string password = TextMember(object, "password");
    const Time now = Now();
    const Time expires = now + parts.sessionLifetime;
    const auto token = parts.accounts.SignIn(user, password, now, expires);
    if (!token) throw HttpError(401, "The user name or the password is wrong.");
    Answer(response, 200, {{"token", *token}, {"user", user}, {"expires", TimeText(expires)}});
}

void Api::ShowSession(const Request& request, Response& response) const {
    const Session session = RequireSession(request);
    Answer(response, 200, {{"user", session.user}, {"expires", TimeText(session.expires)}});
}

void Api::ListProjects(Response& response) const {
    Answer(response, 200, ToJson(parts.library.Projects()));
}

void Api::AddProject(const Request& request, Response& response, const Body& body) const {
    Answer(response, 201, ToJson(parts.library.AddProject(ReadName(request, body), {defaultFolder})));
}

void Api::ListFolders(const Request& request, Response& response) const {
    const auto folders = parts.library.Folders(request.matches[1]);
    if (!folders) throw HttpError(404, "There is no such project.");
    Answer(response, 200, ToJson(*folders));
}

void Api::AddFolder(const Request& request, Response& response, const Body& body) const {
    const auto folder = parts.library.AddFolder(request.matches[1], ReadName(request, body));
    if (!folder) throw HttpError(404, "There is no such project.");
    Answer(response, 201, ToJson(*folder));
}

std::string Api::RequireFolder(const Request& request) const {
    if (!request.has_param("folderId")) throw HttpError(400, "The request needs \"folderId\".");
    std::string folderId = request.get_param_value("folderId");
    if (!parts.library.HasFolder(folderId)) throw HttpError(404, "There is no such folder.");
    return folderId;
}

void Api::ListDocuments(const Request& request, Response& response) const {
    Answer(response, 200, ToJson(parts.library.Documents(RequireFolder(request))));
}

template <typename Record>
void Api::Receive(const Request& request, const Body& body, const Record& record) const {
    const std::string author = RequireSession(request).user;
    Incoming incoming = parts.vault.Receive();
    const std::string name = ReceiveFile(request, body, incoming);
    incoming.Store();
    record(Upload{incoming.Id(), name, incoming.Size(), Now(), author});
    incoming.Keep();
}

void Api::AddDocument(const Request& request, Response& response, const Body& body) const {
    const std::string folderId = RequireFolder(request);
    Receive(request, body, [&](const Upload& upload) {
        const Document document = parts.library.AddDocument(upload, folderId);
        Answer(response, 200, Json::array({ToJson(document)}));
    });
}

void Api::AddResource(const Request& request, Response& response, const Body& body) const {
    Receive(request, body, [&](const Upload& upload) {
        parts.library.AddResource(upload);
        response.set_content(upload.id, "text/plain");
    });
}

void Api::SendStored(const std::string& id, const std::optional<std::string>& name,
                     Response& response) const {
    if (!name) throw HttpError(404, "There is nothing with this id.");
    SendFile(response, parts.vault.PathOf(id), TypeOf(*name));
    response.set_header("Content-Disposition", AttachmentHeader(*name));
}

void Api::Register(HttpServer& server) const {
    ShareWithAllowedOrigins(server);
    server.Post("/api/session", [this](const Request& request, Response& response, const Body& body) {
        SignIn(request, response, body);
    });
    server.Get("/api/session",
               [this](const Request& request, Response& response) { ShowSession(request, response); });
    server.Delete("/api/session", [this](const Request& request, Response& response, const Body&) {
        parts.accounts.SignOut(TokenOf(request));
        response.status = 204;
    });
    server.Get("/api/projects", [this](const Request&, Response& response) { ListProjects(response); });
    server.Post("/api/projects", [this](const Request& request, Response& response, const Body& body) {
        AddProject(request, response, body);
    });
    server.Get("/api/projects/([^/]+)/folders",
               [this](const Request& request, Response& response) { ListFolders(request, response); });
    server.Post("/api/projects/([^/]+)/folders",
                [this](const Request& request, Response& response, const Body& body) {
                    AddFolder(request, response, body);
                });
    server.Get("/api/documents",
               [this](const Request& request, Response& response) { ListDocuments(request, response); });
    server.Post("/api/document", [this](const Request& request, Response& response, const Body& body) {
        AddDocument(request, response, body);
    });
    server.Post("/api/resource", [this](const Request& request, Response& response, const Body& body) {
        AddResource(request, response, body);
    });
    server.Get("/api/document/([^/]+)", [this](const Request& request, Response& response) {
        SendStored(request.matches[1], parts.library.DocumentName(request.matches[1]), response);
    });
    RegisterModels(server);
    RegisterTopics(server);
    server.Get("/(?!api/).*", [this](const Request& request, Response& response) {
        parts.webRoot.Send(request.path, response);
    });
    // The library would read the bodies of requests that nothing handles, whatever their size.
    const auto nowhere = [](const Request&, Response& response, const Body&) { response.status = 404; };
    server.Post("/.*", nowhere);
    server.Put("/.*", nowhere);
    server.Patch("/.*", nowhere);
    server.Delete("/.*", nowhere);
}

}  // namespace service
