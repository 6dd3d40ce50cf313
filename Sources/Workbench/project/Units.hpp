#pragma once

#include <cstdint>

#include "Workbench/step/Document.hpp"

namespace workbench {

/// Metres in one length unit, according to the IfcUnitAssignment with that record id; 1 when it names none.
double LengthUnitOf(const step::Document& document, uint64_t assignment);

}  // namespace workbench
