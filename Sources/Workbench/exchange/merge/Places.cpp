#include "Workbench/exchange/merge/Places.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <optional>
#include <unordered_set>

#include "Workbench/project/Classes.hpp"
#include "Workbench/step/Arguments.hpp"

namespace workbench {
namespace {

constexpr double sameElevation = 0.001;  // metres
constexpr int mostLevels = 64;

std::string Upper(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::toupper(c); });
    return text;
}

template <class Things, class Fits>
uint64_t FirstOf(const Things& things, const Fits& fits) {
    const auto found = std::ranges::find_if(things, fits);
    return found == things.end() ? 0 : found->record;
}

/// The target's context that serves as this one: of the same kind and purpose if there is one.
uint64_t ContextFor(const Context& wanted, const Places& target) {
    const auto isMain = [&](const Context& context) { return context.parent == 0; };
    const auto isAlike = [&](const Context& context) {
        return (context.parent == 0) == (wanted.parent == 0) && context.type == wanted.type &&
               context.identifier == wanted.identifier;
    };
    uint64_t found = FirstOf(target.contexts, [&](const Context& context) {
        return isAlike(context) && context.view == wanted.view;
    });
    if (found == 0) found = FirstOf(target.contexts, isAlike);
    if (found != 0 || wanted.parent != 0) return found;  // a subcontext that is missing comes along
    if (found == 0) {
        found = FirstOf(target.contexts, [&](const Context& context) {
            return isMain(context) && context.dimension == wanted.dimension;
        });
    }
    return found != 0 ? found : FirstOf(target.contexts, isMain);
}

/// The target's place that this one is; 0 when it has none.
uint64_t PlaceFor(const SpatialPlace& wanted, const Places& target, double elevation) {
    const auto isAlike = [&](const SpatialPlace& place) { return place.type == wanted.type; };
    uint64_t found = FirstOf(target.spatial, [&](const SpatialPlace& place) {
        return isAlike(place) && !wanted.globalId.empty() && place.globalId == wanted.globalId;
    });
    if (found != 0) return found;
    if (wanted.type == "IFCBUILDINGSTOREY") {
        return FirstOf(target.spatial, [&](const SpatialPlace& place) {
            return isAlike(place) && place.name == wanted.name &&
                   std::abs(place.elevation - elevation) <= sameElevation;
        });
    }
    if (wanted.type != "IFCSITE" && wanted.type != "IFCBUILDING") return 0;
    found = FirstOf(target.spatial,
                    [&](const SpatialPlace& place) { return isAlike(place) && place.name == wanted.name; });
    return found != 0 ? found : FirstOf(target.spatial, isAlike);
}

bool IsCreatedWhenMissing(const std::string& type) {
    return type == "IFCSITE" || type == "IFCBUILDING" || type == "IFCBUILDINGSTOREY";
}

}  // namespace

Places PlacesOf(const Project& project) {
    const step::Document& document = project.Document();
    Places places;
    std::vector<bool> isSpatial;
    for (const std::string& type : document.TypeNames())
        isSpatial.push_back(IsSpatialClass(type));
    for (const step::Record& record : document.Records()) {
        const std::string_view type = document.TypeName(record);
        const std::string_view text = document.Text(record);
        const auto words = [&](size_t n) { return step::AsText(step::Argument(text, n)).value_or(""); };
        if (type == "IFCPROJECT" && places.project == 0) places.project = record.id;
        if (isSpatial[record.type]) {
            double elevation = 0;
            if (type == "IFCBUILDINGSTOREY") {
                elevation = step::AsReal(step::Argument(text, 9)).value_or(0) * project.LengthUnit();
            }
            places.spatial.push_back({record.id, std::string(type), words(0), words(2), elevation});
        } else if (type == "IFCGEOMETRICREPRESENTATIONCONTEXT") {
            places.contexts.push_back(
                {.record = record.id,
                 .identifier = Upper(words(0)),
                 .type = Upper(words(1)),
                 .view = {},
                 .dimension = static_cast<int>(step::AsReal(step::Argument(text, 2)).value_or(3))});
        } else if (type == "IFCGEOMETRICREPRESENTATIONSUBCONTEXT") {
            places.contexts.push_back({.record = record.id,
                                       .parent = step::AsReference(step::Argument(text, 6)).value_or(0),
                                       .identifier = Upper(words(0)),
                                       .type = Upper(words(1)),
                                       .view = std::string(step::AsEnum(step::Argument(text, 8)))});
        }
    }
    return places;
}

PlaceMap MapPlaces(const Places& target, const Project& source, const Places& offered, double lift) {
    PlaceMap map;
    if (target.project != 0 && offered.project != 0) map.inTarget.emplace(offered.project, target.project);
    if (!target.contexts.empty()) {
        for (const Context& context : offered.contexts)
            if (const uint64_t found = ContextFor(context, target); found != 0)
                map.inTarget.emplace(context.record, found);
    }
    std::unordered_set<uint64_t> created;
    for (const SpatialPlace& place : offered.spatial) {
        if (const uint64_t found = PlaceFor(place, target, place.elevation + lift); found != 0) {
            map.inTarget.emplace(place.record, found);
        } else if (IsCreatedWhenMissing(place.type)) {
            created.insert(place.record);
        }
    }
    // A space or zone that the target does not have is replaced by what it is a part of.
    for (const SpatialPlace& place : offered.spatial) {
        if (map.inTarget.contains(place.record) || created.contains(place.record)) continue;
        std::optional<uint64_t> at = place.record;
        for (int level = 0; level < mostLevels && at; ++level) {
            at = source.Structure().WholeOf(*at);
            if (at && (created.contains(*at) || map.inTarget.contains(*at))) break;
        }
        if (!at || *at == offered.project) continue;
        const auto found = map.inTarget.find(*at);
        if (found != map.inTarget.end()) map.inTarget.emplace(place.record, found->second);
        if (created.contains(*at)) map.inSource.emplace(place.record, *at);
    }
    return map;
}

}  // namespace workbench
