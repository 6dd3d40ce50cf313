#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Workbench/step/Document.hpp"
#include "Workbench/step/Progress.hpp"
#include "Workbench/step/Writer.hpp"

namespace workbench {

/// As what a mapped property is written; the numbers are those of mapping files.
enum class PropertyKind : uint8_t { single = 0, list = 1, bounded = 2, enumerated = 3, table = 4 };

/// One property of the host and what it becomes. A property's group and name are the names of an element's
/// property set and of a property in it.
struct MappedProperty {
    std::string group, property;
    std::string name;  // in IFC
    PropertyKind kind = PropertyKind::single;
    std::string dataType;  // "IfcLabel", in any letter case; empty: that of the value
};

/// A property set that all elements of a class get.
struct MappedSet {
    std::string entityType;  // "IfcWall", in any letter case; meant are its subtypes too
    std::string name;
    std::vector<MappedProperty> properties;
};

/// How many property values a mapping wrote, and how many it could not write in the data type and kind asked
/// for.
struct MappingCounts {
    size_t written = 0;
    size_t leftOut = 0;
};

struct MappedChanges {
    step::Changes changes;
    MappingCounts counts;
};

/// What the property sets of the mapping change in a document: sets that an element has already gain the
/// properties (those of the same name are replaced), others are created. Elements without the host's property
/// get nothing, and neither do elements that only share a set with one that is meant. Nothing when the
/// progress function stopped it.
std::optional<MappedChanges> MapProperties(const step::Document& document, std::span<const MappedSet> mapping,
                                           const Progress& progress = {});

}  // namespace workbench
