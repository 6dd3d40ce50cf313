#pragma once

#include <cstdint>
#include <optional>

#include "Workbench/step/Document.hpp"

namespace workbench {

/// Metres in the unit with that record id; nothing when it is no unit of length.
std::optional<double> MetresIn(const step::Document& document, uint64_t unit);
/// Metres in one length unit, according to the IfcUnitAssignment with that record id; 1 when it names none.
double LengthUnitOf(const step::Document& document, uint64_t assignment);

}  // namespace workbench
