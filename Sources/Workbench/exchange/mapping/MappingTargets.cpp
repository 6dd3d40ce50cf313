#include "Workbench/exchange/mapping/MappingTargets.hpp"

#include <algorithm>
#include <unordered_map>

#include "Workbench/exchange/mapping/Words.hpp"
#include "Workbench/project/ClassTree.hpp"
#include "Workbench/step/Text.hpp"

namespace workbench {
namespace {

bool IsNamed(const MappedProperty& property) {
    return !property.group.empty() && !property.property.empty() && !property.name.empty();
}

/// Entries that name the same set, made one.
class TargetSets {
  public:
    TargetSets(std::string_view schema, Names& names) : schema(schema), names(names) {}

    void Add(const MappedSet& set) {
        const uint32_t name = names.Of(set.name);
        const auto [place, isNew] = places.try_emplace(name, targets.size());
        if (isNew)
            targets.push_back({.name = name, .encodedName = step::EncodeText(set.name), .properties = {}});
        for (const MappedProperty& property : set.properties) {
            if (!IsNamed(property)) continue;
            targets[place->second].properties.push_back({.group = names.Of(property.group),
                                                         .property = names.Of(property.property),
                                                         .name = names.Of(property.name),
                                                         .encodedName = step::EncodeText(property.name),
                                                         .form = {.kind = property.kind,
                                                                  .type = DataType(property.dataType, schema),
                                                                  .isOld = schema.starts_with("IFC2")}});
        }
    }

    std::vector<TargetSet> Take() {
        for (TargetSet& target : targets) {
            std::unordered_map<uint32_t, int> counts;
            for (const TargetProperty& property : target.properties)
                ++counts[property.name];
            for (TargetProperty& property : target.properties)
                property.isRepeated = counts[property.name] > 1;
        }
        return std::move(targets);
    }

  private:
    std::string_view schema;
    Names& names;
    std::vector<TargetSet> targets;
    std::unordered_map<uint32_t, size_t> places;
};

}  // namespace

MappingTargets::MappingTargets(const step::Document& document, std::span<const MappedSet> mapping,
                               Names& names) {
    std::unordered_map<std::string, std::vector<size_t>> entries;
    for (size_t at = 0; at < mapping.size(); ++at) {
        if (!mapping[at].name.empty()) entries[WordOf(mapping[at].entityType)].push_back(at);
    }
    const std::vector<std::string>& schemas = document.FileHeader().schemas;
    const std::string schema = schemas.empty() ? std::string() : schemas.front();

    for (const std::string& type : document.TypeNames()) {
        std::vector<size_t> meant;
        for (const std::string_view kind : KindsOf(type, schema)) {
            const auto found = entries.find(std::string(kind));
            if (found != entries.end()) meant.insert(meant.end(), found->second.begin(), found->second.end());
        }
        std::ranges::sort(meant);
        TargetSets targets(schema, names);
        for (const size_t at : meant)
            targets.Add(mapping[at]);
        byType.push_back(targets.Take());
    }
}

}  // namespace workbench
