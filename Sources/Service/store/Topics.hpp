#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Service/store/Accounts.hpp"
#include "Service/store/Database.hpp"

namespace service {

// What a person says of an issue.
struct TopicText {
    std::string title;
    std::string description;
    bool closed = false;
};

// An issue of a project.
struct Topic {
    std::string id;
    TopicText text;
    Time created;
    Time modified;  // also by a viewpoint that came or went
    std::string author;
    int64_t viewpointCount = 0;
    std::string snapshot;  // of the latest viewpoint; empty without one
};

// A viewpoint's record; its text is in the vault under its id.
struct Viewpoint {
    std::string id;
    std::string topicId;
    std::string snapshot;  // id of a resource
    int64_t size = 0;      // of the text, in bytes
    Time created;
    std::string author;
};

// The records of the projects' issues and their viewpoints.
class Topics {
  public:
    explicit Topics(Database& database) : database(database) {}

    // Newest first; none when there is no such project.
    std::optional<std::vector<Topic>> OfProject(const std::string& projectId);

    // None when there is no such project.
    std::optional<Topic> Add(const std::string& projectId, const TopicText& text, const std::string& author,
                             Time now);

    std::optional<Topic> Find(const std::string& topicId);
    void Change(const std::string& topicId, const TopicText& text, Time now);

    // Oldest first.
    std::vector<Viewpoint> Viewpoints(const std::string& topicId);

    // Its topic and its snapshot must exist.
    void AddViewpoint(const Viewpoint& viewpoint);
    bool HasViewpoint(const std::string& viewpointId);

    // Whether there was one.
    bool RemoveViewpoint(const std::string& viewpointId, Time now);

  private:
    Database& database;
};

}  // namespace service
