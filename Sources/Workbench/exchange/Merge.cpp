#include "Workbench/exchange/Merge.hpp"

#include <algorithm>
#include <map>

#include "Workbench/exchange/merge/Import.hpp"
#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

/// Writing the records takes this part of the whole, reading them goes on to the other, making a project of
/// them is the rest.
constexpr double writeShare = 0.6, readEnd = 0.8;

/// The same GUID for the same text, whether it is a GlobalId or not.
API_Guid KeyOf(const std::string& globalId) {
    return GuidFromGlobalId(globalId).value_or(GuidFromName(globalId));
}

/// What is imported together: the elements of one copy of one source.
struct Group {
    std::vector<const NewElement*> elements;
    uint64_t firstId = 0;
};

std::vector<Group> GroupsOf(std::span<const NewElement> elements, uint64_t& nextId) {
    std::vector<Group> groups;
    std::map<std::pair<const Project*, std::size_t>, std::size_t> places;
    for (const NewElement& element : elements) {
        const auto [place, isNew] = places.try_emplace({element.source.get(), element.copy}, groups.size());
        if (isNew) {
            groups.push_back({.elements = {}, .firstId = nextId});
            nextId += element.source->Document().Records().size();
        }
        groups[place->second].elements.push_back(&element);
    }
    return groups;
}

bool CanBeEdited(const std::string& schema) {
    return schema.starts_with("IFC2X") || schema == "IFC4" || schema.starts_with("IFC4_");
}

/// The base's records as they are, and behind them those that come; also tells which elements had other
/// GlobalIds where they come from.
std::shared_ptr<const step::Document> MergedDocument(const Project& base,
                                                     std::span<const NewElement> elements,
                                                     Project::ExternalIds& externalIds,
                                                     const Progress& progress) {
    MergeTarget target(base);
    for (const NewElement& element : elements)
        target.globalIds.Take(element.globalId);
    const std::vector<Group> groups = GroupsOf(elements, target.nextId);

    std::string added;
    size_t expected = 0;
    for (const Group& group : groups)
        expected += group.elements.front()->source->Document().Bytes().size();
    added.reserve(expected + expected / 8);
    double done = 0;
    for (const Group& group : groups) {
        Import import(target, *group.elements.front()->source, group.elements, group.firstId);
        import.Write(added);
        for (const NewElement* element : group.elements) {
            if (element->externalIfcId)
                externalIds.emplace(import.IdOf(element->like->record), *element->externalIfcId);
        }
        done += static_cast<double>(group.elements.size());
        if (progress && !progress(writeShare * done / static_cast<double>(elements.size()))) return nullptr;
    }

    const std::string_view bytes = base.Document().Bytes();
    const std::string_view pieces[] = {bytes.substr(0, base.Document().DataEnd()), added,
                                       bytes.substr(base.Document().DataEnd())};
    Progress reading;
    if (progress) {
        reading = [&](double fraction) { return progress(writeShare + (readEnd - writeShare) * fraction); };
    }
    return step::Document::FromPieces(pieces, reading);
}

}  // namespace

UsedGlobalIds::UsedGlobalIds(const step::Document& document) {
    for (const step::Record& record : document.Records()) {
        const std::string_view first = step::Argument(document.Text(record), 0);
        if (first.size() > 2 && first.front() == '\'')
            used.insert(KeyOf(std::string(first.substr(1, first.size() - 2))));
    }
}

std::string UsedGlobalIds::Take(const std::string& globalId) {
    if (GuidFromGlobalId(globalId) && used.insert(KeyOf(globalId)).second) return globalId;
    for (int attempt = 1;; ++attempt) {
        const API_Guid guid = GuidFromName(globalId + "/copy/" + std::to_string(attempt));
        if (used.insert(guid).second) return GlobalIdFromGuid(guid);
    }
}

void UsedGlobalIds::Release(const std::string& globalId) {
    used.erase(KeyOf(globalId));
}

bool CanMerge(const Project& into, const Project& from) {
    return into.Schema() == from.Schema() && CanBeEdited(into.Schema());
}

std::shared_ptr<const Project> Merge(const Project& base, std::span<const NewElement> elements,
                                     const Progress& progress) {
    Project::ExternalIds externalIds = base.ForeignIds();
    const auto document = MergedDocument(base, elements, externalIds, progress);
    if (!document) return nullptr;
    return std::make_shared<const Project>(document, base.Location(), std::move(externalIds));
}

}  // namespace workbench
