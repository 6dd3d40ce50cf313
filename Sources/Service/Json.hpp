#pragma once

#include <httplib.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Service/store/Accounts.hpp"
#include "Service/store/Library.hpp"
#include "Service/store/Models.hpp"
#include "Service/store/Topics.hpp"

namespace service {

using Json = nlohmann::ordered_json;

// ISO 8601, UTC.
std::string TimeText(Time time);

// The records as clients see them.
Json ToJson(const Named& named);
Json ToJson(const Document& document);
Json ToJson(const Model& model);
Json ToJson(const Topic& topic);
Json ToJson(const Viewpoint& viewpoint);

template <typename Item>
Json ToJson(const std::vector<Item>& items) {
    Json list = Json::array();
    for (const Item& item : items)
        list.push_back(ToJson(item));
    return list;
}

void Answer(httplib::Response& response, int status, const Json& content);

// The JSON object in the body; an empty one when the body is something else.
Json ReadObject(const httplib::Request& request, const httplib::ContentReader& body);

// The object's text of this name; HttpError 400 when it has none.
std::string TextMember(const Json& object, const char* name);

}  // namespace service
