#pragma once

#include <httplib.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "Service/http/Files.hpp"
#include "Service/http/HttpServer.hpp"
#include "Service/store/Accounts.hpp"
#include "Service/store/Library.hpp"
#include "Service/store/Models.hpp"
#include "Service/store/Topics.hpp"
#include "Service/store/Vault.hpp"

namespace service {

// What the service answers to each request.
class Api {
  public:
    struct Parts {
        Accounts& accounts;
        Library& library;
        Models& models;
        Topics& topics;
        const Vault& vault;
        const WebRoot& webRoot;
        bool loopbackOnly;
        std::vector<std::string> allowedOrigins;
        std::chrono::minutes sessionLifetime;
        std::function<std::chrono::system_clock::time_point()> now;
    };

    explicit Api(Parts parts) : parts(std::move(parts)) {}

    // Whether a request may go on: right host and origin, and a good token where one is needed.
    void Guard(const httplib::Request& request) const;

    void Register(HttpServer& server) const;

  private:
    using Request = httplib::Request;
    using Response = httplib::Response;
    using Body = httplib::ContentReader;

    bool IsFromAllowedOrigin(const Request& request) const;
    void ShareWithAllowedOrigins(HttpServer& server) const;
    Session RequireSession(const Request& request) const;
    Time Now() const;

    void SignIn(const Request& request, Response& response, const Body& body) const;
    void ShowSession(const Request& request, Response& response) const;
    void ListProjects(Response& response) const;
    void AddProject(const Request& request, Response& response, const Body& body) const;
    void ListFolders(const Request& request, Response& response) const;
    void AddFolder(const Request& request, Response& response, const Body& body) const;
    void ListDocuments(const Request& request, Response& response) const;
    void AddDocument(const Request& request, Response& response, const Body& body) const;
    void AddResource(const Request& request, Response& response, const Body& body) const;
    void SendStored(const std::string& id, const std::optional<std::string>& name, Response& response) const;
    std::string RequireFolder(const Request& request) const;
    template <typename Record>
    void Receive(const Request& request, const Body& body, const Record& record) const;

    void RegisterModels(HttpServer& server) const;
    void ListModels(const Request& request, Response& response) const;
    void SendResource(const Request& request, Response& response) const;

    void RegisterTopics(HttpServer& server) const;
    Topic RequireTopic(const Request& request) const;
    void ListTopics(const Request& request, Response& response) const;
    void AddTopic(const Request& request, Response& response, const Body& body) const;
    void ChangeTopic(const Request& request, Response& response, const Body& body) const;
    void AddViewpoint(const Request& request, Response& response, const Body& body) const;
    void SendViewpoint(const Request& request, Response& response) const;
    void RemoveViewpoint(const Request& request, Response& response) const;

    Parts parts;
};

}  // namespace service
