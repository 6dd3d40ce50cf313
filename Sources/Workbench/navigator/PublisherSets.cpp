#include "Workbench/navigator/PublisherSets.hpp"

#include <functional>
#include <system_error>

#include "Workbench/navigator/PublisherFile.hpp"
#include "Workbench/step/Arguments.hpp"

namespace workbench {

namespace {

using Kind = PublisherItem::Kind;
using Items = std::vector<PublisherItem>;

std::string NameOf(const Project& project, std::uint64_t record) {
    const step::Record* found = project.Document().Find(record);
    if (found == nullptr) return {};
    return step::AsText(step::Argument(project.Document().Text(*found), 2)).value_or("");
}

// What `make` makes of each storey; in a folder for each building when there are several.
Items OfStoreys(const Project& project, const std::function<Items(const Storey&, std::size_t)>& make) {
    std::vector<std::uint64_t> buildings;
    Items folders;
    for (std::size_t place = 0; place < project.Storeys().size(); ++place) {
        const Storey& storey = project.Storeys()[place];
        const std::uint64_t building = project.Structure().WholeOf(storey.record).value_or(0);
        std::size_t folder = 0;
        while (folder < buildings.size() && buildings[folder] != building)
            ++folder;
        if (folder == buildings.size()) {
            buildings.push_back(building);
            folders.push_back({.name = NameOf(project, building)});
        }
        for (PublisherItem& item : make(storey, place))
            folders[folder].children.push_back(std::move(item));
    }
    return folders.size() == 1 ? std::move(folders.front().children) : folders;
}

std::vector<PublisherSet> DefaultSets(const Project& project, Say say) {
    if (project.IsUntitled()) return {};
    PublisherSet plans{.name = say("Floor Plans", "Grundrisse")};
    plans.items = OfStoreys(project, [](const Storey& storey, std::size_t place) -> Items {
        const PublisherItem plan{.kind = Kind::floorPlan, .name = storey.name, .storey = place};
        PublisherItem pdf = plan, dwg = plan;
        pdf.name += " (PDF)";
        dwg.name += " (DWG)";
        dwg.format = PublishFormat::dwg;
        return {pdf, dwg};
    });

    PublisherSet views{.name = say("3D Views", "3D-Ansichten")};
    views.items = OfStoreys(project, [](const Storey& storey, std::size_t place) -> Items {
        return {{.kind = Kind::view3D, .name = storey.name, .format = PublishFormat::png, .storey = place}};
    });
    views.items.insert(
        views.items.begin(),
        {.kind = Kind::view3D, .name = say("Whole Model", "Gesamtmodell"), .format = PublishFormat::png});

    PublisherSet model{.name = say("Model", "Modell")};
    model.items = {{.kind = Kind::model, .name = project.Name(), .format = PublishFormat::ifc}};

    std::vector<PublisherSet> sets;
    if (!plans.items.empty()) sets.push_back(std::move(plans));
    sets.push_back(std::move(views));
    sets.push_back(std::move(model));
    return sets;
}

// Keeps apart projects of one name, and stays with a copy of the file.
std::string SeedOf(const Project& project) {
    const auto contexts = project.Document().RecordsOf({"IFCPROJECT"});
    std::string globalId;
    if (!contexts.empty())
        globalId = step::AsText(step::Argument(project.Document().Text(*contexts.front()), 0)).value_or("");
    return project.Name() + "/" + (globalId.empty() ? project.Location().string() : globalId);
}

// Counts how often a name has come, so that what has the same name gets GUIDs of its own.
class GuidsBelow {
  public:
    explicit GuidsBelow(const API_Guid& parent) : parent(GlobalIdFromGuid(parent)) {}

    API_Guid Next(const std::string& name) {
        return GuidFromName(parent + "/" + std::to_string(++seen[name]) + "/" + name);
    }

  private:
    std::string parent;
    std::unordered_map<std::string, int> seen;
};

}  // namespace

PublisherSets::PublisherSets(const Project& project, Say say) {
    const std::filesystem::path file = PublisherFileOf(project);
    std::error_code ignored;
    const bool hasFile = !project.IsUntitled() && std::filesystem::exists(file, ignored);
    try {
        if (hasFile) written = ReadPublisherFile(file, say);
    } catch (const PublisherFileError& error) {
        fileProblem = file.filename().string() + ": " + error.what();
    }
    Follow(project, say);
}

void PublisherSets::Follow(const Project& edited, Say say) {
    sets = written ? *written : DefaultSets(edited, say);
    for (PublisherSet& set : sets)
        FindStoreys(set.items, edited, say);
    places.clear();
    Identify(edited);
}

void PublisherSets::Identify(const Project& project) {
    GuidsBelow guids(GuidFromName("publisher/" + SeedOf(project)));
    for (PublisherSet& set : sets) {
        set.guid = guids.Next(set.name);
        set.rootGuid = GuidsBelow(set.guid).Next("");
        places[set.rootGuid] = {&set, nullptr};
        Identify(set, set.items, set.rootGuid);
    }
}

void PublisherSets::Identify(const PublisherSet& set, std::vector<PublisherItem>& items,
                             const API_Guid& parent) {
    GuidsBelow guids(parent);
    for (PublisherItem& item : items) {
        item.guid = guids.Next(item.name);
        places[item.guid] = {&set, &item};
        Identify(set, item.children, item.guid);
    }
}

const PublisherSet* PublisherSets::FindSet(const API_Guid& guid) const {
    for (const PublisherSet& set : sets)
        if (set.guid == guid) return &set;
    return nullptr;
}

const PublisherItem* PublisherSets::FindItem(const PublisherSet& set, const API_Guid& guid) const {
    const auto found = places.find(guid);
    return found != places.end() && found->second.set == &set ? found->second.item : nullptr;
}

const std::vector<PublisherItem>* PublisherSets::ChildrenOf(const API_Guid& parent) const {
    const auto found = places.find(parent);
    if (found == places.end()) return nullptr;
    const auto& [set, item] = found->second;
    return item == nullptr ? &set->items : &item->children;
}

}  // namespace workbench
