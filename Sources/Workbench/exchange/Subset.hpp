#pragma once

#include <span>
#include <vector>

#include "API_Guid.hpp"
#include "Workbench/project/Project.hpp"
#include "Workbench/step/Writer.hpp"

namespace workbench {

/// Some elements with everything that they need, and nothing that is left dangling.
struct Subset {
    std::vector<const step::Record*> records;  // in file order
    step::Changes changes;  // relations cut to the members that are in, parents without shape
};

Subset SubsetOf(const Project& project, std::span<const API_Guid> elements);

}  // namespace workbench
