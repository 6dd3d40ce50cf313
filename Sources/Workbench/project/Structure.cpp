#include "Workbench/project/Structure.hpp"

#include "Workbench/project/Classes.hpp"
#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

/// More levels than any building has: a model whose parts contain each other in a ring ends the climb too.
constexpr int mostLevels = 64;

std::optional<uint64_t> Look(const std::unordered_map<uint64_t, uint64_t>& map, uint64_t key) {
    const auto found = map.find(key);
    if (found == map.end()) return std::nullopt;
    return found->second;
}

}  // namespace

ProductStructure::ProductStructure(const step::Document& document) : document(&document) {
    const auto forEach = [&](std::initializer_list<std::string_view> types, size_t one, size_t many,
                             Map& map) {
        for (const step::Record* record : document.RecordsOf(types)) {
            const std::vector<std::string_view> arguments = step::Arguments(document.Text(*record));
            const auto upper = one < arguments.size() ? step::AsReference(arguments[one]) : std::nullopt;
            if (!upper || many >= arguments.size()) continue;
            for (const uint64_t lower : step::References(arguments[many]))
                map.emplace(lower, *upper);
        }
    };
    forEach({"IFCRELCONTAINEDINSPATIALSTRUCTURE"}, 5, 4, containers);
    forEach({"IFCRELAGGREGATES", "IFCRELNESTS"}, 4, 5, wholes);
    Map openingHosts, fillings;
    forEach({"IFCRELVOIDSELEMENT"}, 4, 5, openingHosts);
    forEach({"IFCRELFILLSELEMENT"}, 4, 5, fillings);
    for (const auto& [filling, opening] : fillings) {
        if (const auto host = Look(openingHosts, opening)) hosts.emplace(filling, *host);
    }
}

std::optional<uint64_t> ProductStructure::ContainerOf(uint64_t product) const {
    return Look(containers, product);
}
std::optional<uint64_t> ProductStructure::WholeOf(uint64_t product) const {
    return Look(wholes, product);
}
std::optional<uint64_t> ProductStructure::HostOf(uint64_t product) const {
    return Look(hosts, product);
}

std::optional<uint64_t> ProductStructure::EffectiveContainerOf(uint64_t product) const {
    for (int level = 0; level < mostLevels; ++level) {
        if (const auto container = ContainerOf(product)) return container;
        const auto above = WholeOf(product) ? WholeOf(product) : HostOf(product);
        const step::Record* record = above ? document->Find(*above) : nullptr;
        if (!record) return std::nullopt;
        if (IsSpatialClass(document->TypeName(*record))) return above;
        product = *above;
    }
    return std::nullopt;
}

std::optional<uint64_t> ProductStructure::StoreyOf(uint64_t product) const {
    auto place = EffectiveContainerOf(product);
    for (int level = 0; place && level < mostLevels; ++level) {
        const step::Record* record = document->Find(*place);
        if (record && document->TypeName(*record) == "IFCBUILDINGSTOREY") return place;
        const auto whole = WholeOf(*place);
        place = whole ? whole : ContainerOf(*place);
    }
    return std::nullopt;
}

}  // namespace workbench
