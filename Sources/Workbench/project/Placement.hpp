#pragma once

#include <cstdint>
#include <optional>

#include "Workbench/step/Document.hpp"

namespace workbench {

/// How high the origin of an IfcLocalPlacement lies in the model's space, in the file's unit of length.
/// Nothing when there is no such placement, or it hangs on one of another kind or on itself.
std::optional<double> HeightOf(const step::Document& document, uint64_t placement);

}  // namespace workbench
