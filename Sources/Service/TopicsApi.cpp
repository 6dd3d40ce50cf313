#include "Service/Api.hpp"
#include "Service/Errors.hpp"
#include "Service/Json.hpp"
#include "Service/Names.hpp"
#include "Service/http/HttpServer.hpp"

// The part of the interface that deals with issues and their viewpoints.

namespace service {

namespace {

// Viewpoints of very large models have some tens of megabytes.
constexpr uint64_t maxViewpointSize = uint64_t{256} << 20;

// What the object says of a topic; the rest stays as it was.
TopicText Changed(TopicText text, const Json& object) {
    if (object.contains("title")) text.title = TextMember(object, "title");
    if (object.contains("description")) text.description = TextMember(object, "description");
    if (object.contains("status")) {
        const std::string status = TextMember(object, "status");
        if (status != "open" && status != "closed") {
            throw HttpError(400, "The status of an issue is \"open\" or \"closed\".");
        }
        text.closed = status == "closed";
    }
    CheckName(text.title);
    return text;
}

void RefuseSize(uint64_t size) {
    if (size <= maxViewpointSize) return;
    throw HttpError(413,
                    "The viewpoint is larger than 256 MiB. Select, show or hide fewer elements and take it "
                    "again.");
}

[[noreturn]] void ThrowNoViewpoint() {
    throw HttpError(404, "There is no such viewpoint. Load the issue's viewpoints again.");
}

}  // namespace

Topic Api::RequireTopic(const Request& request) const {
    if (auto topic = parts.topics.Find(request.matches[1])) return *topic;
    throw HttpError(404, "There is no such issue. Load the project's issues again.");
}

void Api::ListTopics(const Request& request, Response& response) const {
    const auto topics = parts.topics.OfProject(request.matches[1]);
    if (!topics) throw HttpError(404, "There is no such project.");
    Answer(response, 200, ToJson(*topics));
}

void Api::AddTopic(const Request& request, Response& response, const Body& body) const {
    const std::string author = RequireSession(request).user;
    const Json object = ReadObject(request, body);
    TextMember(object, "title");
    const auto topic = parts.topics.Add(request.matches[1], Changed({}, object), author, Now());
    if (!topic) throw HttpError(404, "There is no such project.");
    Answer(response, 201, ToJson(*topic));
}

void Api::ChangeTopic(const Request& request, Response& response, const Body& body) const {
    const Topic topic = RequireTopic(request);
    const Json object = ReadObject(request, body);
    if (!object.contains("title") && !object.contains("description") && !object.contains("status")) {
        throw HttpError(400,
                        "The request needs a JSON object with \"title\", \"description\" or \"status\".");
    }
    parts.topics.Change(topic.id, Changed(topic.text, object), Now());
    Answer(response, 200, ToJson(RequireTopic(request)));
}

void Api::AddViewpoint(const Request& request, Response& response, const Body& body) const {
    const std::string author = RequireSession(request).user;
    const Topic topic = RequireTopic(request);
    const std::string snapshot = request.get_param_value("snapshot");
    if (snapshot.empty()) throw HttpError(400, "The request needs \"snapshot\", the id of a resource.");
    if (!parts.library.ResourceName(snapshot)) {
        throw HttpError(404, "The snapshot is not on this service. Upload it first.");
    }
    RefuseSize(request.get_header_value<uint64_t>("Content-Length"));
    Incoming incoming = parts.vault.Receive();
    ReadBody(request, body, [&incoming](std::string_view piece) {
        RefuseSize(static_cast<uint64_t>(incoming.Size()) + piece.size());
        incoming.Write(piece);
    });
    if (incoming.Size() == 0) throw HttpError(400, "The viewpoint is empty. Send its text as the body.");
    incoming.Store();
    const Viewpoint viewpoint{incoming.Id(), topic.id, snapshot, incoming.Size(), Now(), author};
    parts.topics.AddViewpoint(viewpoint);
    incoming.Keep();
    Answer(response, 201, ToJson(viewpoint));
}

void Api::SendViewpoint(const Request& request, Response& response) const {
    const std::string id = request.matches[1];
    if (!parts.topics.HasViewpoint(id)) ThrowNoViewpoint();
    SendFile(response, parts.vault.PathOf(id), "application/json");
}

void Api::RemoveViewpoint(const Request& request, Response& response) const {
    const std::string id = request.matches[1];
    if (!parts.topics.RemoveViewpoint(id, Now())) ThrowNoViewpoint();
    parts.vault.Remove(id);
    response.status = 204;
}

void Api::RegisterTopics(HttpServer& server) const {
    server.Get("/api/projects/([^/]+)/topics",
               [this](const Request& request, Response& response) { ListTopics(request, response); });
    server.Post("/api/projects/([^/]+)/topics",
                [this](const Request& request, Response& response, const Body& body) {
                    AddTopic(request, response, body);
                });
    server.Get("/api/topics/([^/]+)", [this](const Request& request, Response& response) {
        Answer(response, 200, ToJson(RequireTopic(request)));
    });
    server.Patch("/api/topics/([^/]+)", [this](const Request& request, Response& response, const Body& body) {
        ChangeTopic(request, response, body);
    });
    server.Get("/api/topics/([^/]+)/viewpoints", [this](const Request& request, Response& response) {
        Answer(response, 200, ToJson(parts.topics.Viewpoints(RequireTopic(request).id)));
    });
    server.Post("/api/topics/([^/]+)/viewpoints",
                [this](const Request& request, Response& response, const Body& body) {
                    AddViewpoint(request, response, body);
                });
    server.Get("/api/viewpoints/([^/]+)",
               [this](const Request& request, Response& response) { SendViewpoint(request, response); });
    server.Delete("/api/viewpoints/([^/]+)", [this](const Request& request, Response& response, const Body&) {
        RemoveViewpoint(request, response);
    });
}

}  // namespace service
