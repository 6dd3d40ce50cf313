#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Service/store/Accounts.hpp"
#include "Service/store/Database.hpp"

namespace service {

// A project or a folder.
struct Named {
    std::string id;
    std::string name;
};

struct Document {
    std::string id;
    std::string name;
    int64_t version = 1;
    int64_t size = 0;
    Time created;
    std::string author;
    std::string folderId;
};

// What is known of a file that has just been stored.
struct Upload {
    std::string id;
    std::string name;
    int64_t size = 0;
    Time created;
    std::string author;
};

// The records of projects, their folders, and what was uploaded.
class Library {
  public:
    explicit Library(Database& database) : database(database) {}

    std::vector<Named> Projects();
    Named AddProject(const std::string& name, const std::vector<std::string>& folders);

    // None when there is no such project.
    std::optional<std::vector<Named>> Folders(const std::string& projectId);
    std::optional<Named> AddFolder(const std::string& projectId, const std::string& name);
    bool HasFolder(const std::string& folderId);

    // The latest version under each name, newest first.
    std::vector<Document> Documents(const std::string& folderId);

    // The upload becomes the next version of its name in the folder.
    Document AddDocument(const Upload& upload, const std::string& folderId);
    void AddResource(const Upload& upload);

    // The name of what was uploaded, or none when the id is unknown.
    std::optional<std::string> DocumentName(const std::string& id);
    std::optional<std::string> ResourceName(const std::string& id);

    // Whether a document or a resource has this id.
    bool Knows(const std::string& id);

  private:
    Database& database;
};

}  // namespace service
