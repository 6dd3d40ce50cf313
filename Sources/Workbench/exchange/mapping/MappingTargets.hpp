#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "Workbench/exchange/PropertyMapping.hpp"
#include "Workbench/exchange/mapping/PropertySets.hpp"
#include "Workbench/exchange/mapping/PropertyValue.hpp"

namespace workbench {

/// A property of a set and the one of the host that it gets its value from; names by number.
struct TargetProperty {
    uint32_t group = 0, property = 0, name = 0;
    std::string encodedName;
    PropertyForm form;
    bool isRepeated = false;  // others of the set have the same name: the first with a value counts
};

struct TargetSet {
    uint32_t name = 0;
    std::string encodedName;
    std::vector<TargetProperty> properties;
};

/// What the classes of a document get from a mapping.
class MappingTargets {
  public:
    MappingTargets(const step::Document& document, std::span<const MappedSet> mapping, Names& names);

    /// No two of them have the same name. The type is Record::type.
    std::span<const TargetSet> Of(uint32_t type) const { return byType[type]; }

  private:
    std::vector<std::vector<TargetSet>> byType;
};

}  // namespace workbench
