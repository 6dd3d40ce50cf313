#include "Service/Api.hpp"
#include "Service/Errors.hpp"
#include "Service/Json.hpp"
#include "Service/http/HttpServer.hpp"

// The part of the interface that deals with the IFC models among the documents.

namespace service {

void Api::ListModels(const Request& request, Response& response) const {
    if (!request.has_param("projectId")) throw HttpError(400, "The request needs \"projectId\".");
    const auto models = parts.models.OfProject(request.get_param_value("projectId"));
    if (!models) throw HttpError(404, "There is no such project.");
    Answer(response, 200, ToJson(*models));
}

void Api::SendResource(const Request& request, Response& response) const {
    const std::string id = request.matches[1];
    const auto resource = parts.library.ResourceName(id);
    SendStored(id, resource ? resource : parts.models.VersionName(id), response);
}

void Api::RegisterModels(HttpServer& server) const {
    server.Get("/api/models",
               [this](const Request& request, Response& response) { ListModels(request, response); });
    server.Get("/api/resource/([^/]+)",
               [this](const Request& request, Response& response) { SendResource(request, response); });
}

}  // namespace service
