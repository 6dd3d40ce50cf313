#include "Workbench/exchange/Merge.hpp"

#include <algorithm>
#include <map>

#include "Workbench/exchange/merge/Import.hpp"

namespace workbench {
namespace {

/// Writing the records takes this part of the whole, reading them goes on to the other, making a project of
/// them is the rest.
constexpr double writeShare = 0.6, readEnd = 0.8;

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

/// What records may stand in one file; empty for schemas that are only read.
std::string_view FamilyOf(const std::string& schema) {
    if (schema.starts_with("IFC2X")) return "IFC2X";
    return schema == "IFC4" || schema.starts_with("IFC4_") ? "IFC4" : "";
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

bool CanMerge(const Project& into, const Project& from) {
    const std::string_view family = FamilyOf(into.Schema());
    return !family.empty() && family == FamilyOf(from.Schema());
}

std::shared_ptr<const Project> Merge(const Project& base, std::span<const NewElement> elements,
                                     const Progress& progress) {
    Project::ExternalIds externalIds = base.ForeignIds();
    const auto document = MergedDocument(base, elements, externalIds, progress);
    if (!document) return nullptr;
    return std::make_shared<const Project>(document, base.Location(), std::move(externalIds));
}

}  // namespace workbench
