#include "Service/Json.hpp"

#include <ctime>

#include "Service/Errors.hpp"
#include "Service/http/HttpServer.hpp"

namespace service {

std::string TimeText(Time time) {
    const std::time_t seconds = time.time_since_epoch().count();
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::string text(32, '\0');
    text.resize(std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts));
    return text;
}

Json ToJson(const Named& named) {
    return {{"id", named.id}, {"name", named.name}};
}

Json ToJson(const Document& document) {
    return {{"id", document.id},
            {"name", document.name},
            {"version", document.version},
            {"size", document.size},
            {"created", TimeText(document.created)},
            {"author", document.author},
            {"folderId", document.folderId}};
}

Json ToJson(const Model& model) {
    Json versions = Json::array();
    for (const Document& version : model.versions) {
        versions.push_back({{"id", version.id},
                            {"version", version.version},
                            {"size", version.size},
                            {"created", TimeText(version.created)},
                            {"author", version.author}});
    }
    return {{"name", model.name},
            {"extension", model.extension},
            {"folder", ToJson(model.folder)},
            {"versions", std::move(versions)}};
}

Json ToJson(const Topic& topic) {
    return {{"id", topic.id},
            {"title", topic.text.title},
            {"description", topic.text.description},
            {"status", topic.text.closed ? "closed" : "open"},
            {"author", topic.author},
            {"created", TimeText(topic.created)},
            {"modified", TimeText(topic.modified)},
            {"viewpoints", topic.viewpointCount},
            {"snapshot", topic.snapshot.empty() ? Json() : Json(topic.snapshot)}};
}

Json ToJson(const Viewpoint& viewpoint) {
    return {
        {"id", viewpoint.id},     {"topicId", viewpoint.topicId},           {"snapshot", viewpoint.snapshot},
        {"size", viewpoint.size}, {"created", TimeText(viewpoint.created)}, {"author", viewpoint.author}};
}

void Answer(httplib::Response& response, int status, const Json& content) {
    response.status = status;
    response.set_content(content.dump(), "application/json");
}

Json ReadObject(const httplib::Request& request, const httplib::ContentReader& body) {
    Json object = Json::parse(ReadText(request, body), nullptr, false);
    return object.is_object() ? object : Json::object();
}

std::string TextMember(const Json& object, const char* name) {
    const auto member = object.find(name);
    if (member == object.end() || !member->is_string()) {
        throw HttpError(400, std::string("The request needs a JSON object with the text \"") + name + "\".");
    }
    return member->get<std::string>();
}

}  // namespace service
