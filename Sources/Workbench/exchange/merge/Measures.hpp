#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "Workbench/exchange/merge/ModelUnits.hpp"

namespace workbench {

/// Attributes, from `first` to `last`, that hold numbers in the model's unit of that kind. Of IFC2x3 and
/// IFC4; where one has fewer attributes, the others are missing.
struct PlainNumbers {
    std::string_view type;
    ModelUnits::Kind kind;
    size_t first, last;
};
std::span<const PlainNumbers> PlainNumbersTable();

/// A value that may name its unit: where it stands, and where the unit.
struct NamedValue {
    std::string_view type;
    std::optional<ModelUnits::Kind> kind;  // none: the value tells, "IFCLENGTHMEASURE(1.5)"
    size_t value, unit;
};
std::span<const NamedValue> NamedValueTable();

}  // namespace workbench
