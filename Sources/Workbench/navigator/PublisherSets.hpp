#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Workbench/api/Say.hpp"
#include "Workbench/project/Project.hpp"
#include "Workbench/view/Camera.hpp"

namespace workbench {

enum class PublishFormat { pdf, dwg, png, jpeg, ifc };

/// What can be published, or a folder of such items.
struct PublisherItem {
    enum class Kind { folder, floorPlan, view3D, model };

    Kind kind = Kind::folder;
    std::string name = {};        // may repeat, and hold any characters
    API_Guid guid = APINULLGuid;  // the same each time the project is opened
    PublishFormat format = PublishFormat::pdf;
    std::optional<size_t> storey = {};  // a plan's, or the only one that a 3D view shows: place in Storeys()
    std::optional<std::string> storeyName = {};  // by which a file asks for it
    std::optional<double> scale = {};            // of a plan: 100 for 1:100; nothing: a usual one that fits
    std::optional<Camera> camera = {};  // of a 3D view; nothing: all that it shows, from the south-west
    std::string problem = {};           // why it cannot be published, for a person; empty: it can
    std::vector<PublisherItem> children = {};
};

struct PublisherSet {
    std::string name = {};
    API_Guid guid = APINULLGuid;
    API_Guid rootGuid = APINULLGuid;  // the parent of its items
    std::vector<PublisherItem> items = {};
};

/// What a project offers for publishing. See PublisherFile.hpp for the file that may say so; without one it
/// is made of the project's storeys.
class PublisherSets {
  public:
    PublisherSets() = default;
    PublisherSets(const Project& project, Say say);
    /// Makes them those of the project after an edit. Its file counts as it was when the project was opened.
    void Follow(const Project& edited, Say say);
    PublisherSets(PublisherSets&&) = default;
    PublisherSets& operator=(PublisherSets&&) = default;

    const std::vector<PublisherSet>& All() const { return sets; }
    /// Why the project's own file was not used, for a person; empty when it was, or when there is none.
    const std::string& FileProblem() const { return fileProblem; }

    /// Null when there is none.
    const PublisherSet* FindSet(const API_Guid& guid) const;
    const PublisherItem* FindItem(const PublisherSet& set, const API_Guid& guid) const;
    /// The children of a set's root or of an item; null when there is neither.
    const std::vector<PublisherItem>* ChildrenOf(const API_Guid& parent) const;

  private:
    struct Place {
        const PublisherSet* set = nullptr;
        const PublisherItem* item = nullptr;  // null for the set's root
    };
    void Identify(const Project& project);
    void Identify(const PublisherSet& set, std::vector<PublisherItem>& items, const API_Guid& parent);

    std::optional<std::vector<PublisherSet>> written;  // what the file says
    std::vector<PublisherSet> sets;
    std::string fileProblem;
    std::unordered_map<API_Guid, Place, GuidHash> places;
};

}  // namespace workbench
