#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Service/store/Database.hpp"
#include "Service/store/Library.hpp"

namespace service {

// Documents of one name that are IFC models, by their extension in any case.
struct Model {
    std::string name;       // without the extension
    std::string extension;  // "ifc" or "ifczip"
    Named folder;
    std::vector<Document> versions;  // newest first
};

// The IFC models among a project's documents.
class Models {
  public:
    explicit Models(Database& database) : database(database) {}

    // Sorted by name; none when there is no such project.
    std::optional<std::vector<Model>> OfProject(const std::string& projectId);

    // The document name of a model's version, or none when the id is no model's.
    std::optional<std::string> VersionName(const std::string& id);

  private:
    Database& database;
};

}  // namespace service
