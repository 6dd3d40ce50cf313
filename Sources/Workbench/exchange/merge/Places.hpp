#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "Workbench/exchange/merge/Draft.hpp"
#include "Workbench/project/Project.hpp"

namespace workbench {

/// A record of the spatial structure.
struct SpatialPlace {
    uint64_t record = 0;
    std::string type;  // in upper case
    std::string globalId, name;
    double elevation = 0;  // of a storey, metres
};

/// A geometric representation context.
struct Context {
    uint64_t record = 0;
    uint64_t parent = 0;           // of a subcontext
    std::string identifier, type;  // in upper case
    std::string view;              // a subcontext's target view
    int dimension = 3;
};

/// What a project offers those that come: its spatial structure and its contexts.
struct Places {
    uint64_t project = 0;
    std::vector<SpatialPlace> spatial;
    std::vector<Context> contexts;
};
Places PlacesOf(const Project& project);

/// What takes the place of records of the source, by their ids.
struct PlaceMap {
    std::unordered_map<uint64_t, uint64_t> inTarget;  // records of the target
    std::unordered_map<uint64_t, uint64_t> inSource;  // others of the source, which are not replaced
};

/// What replaces the source's project, spatial structure and contexts; missing sites, buildings and storeys
/// are created. `lift` is added to the source's elevations, metres.
PlaceMap MapPlaces(const Places& target, const Project& source, const Places& offered, double lift);

}  // namespace workbench
