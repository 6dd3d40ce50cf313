#pragma once

#include "Workbench/dwg/Drawing.hpp"
#include "Workbench/dwg/Entities.hpp"
#include "Workbench/dwg/Object.hpp"

namespace workbench::dwg {

/// The handles of model space's entities, which are consecutive.
struct EntityRange {
    std::uint32_t first = 0;
    std::uint32_t count = 0;
};

/// Everything but model space's entities: tables, dictionaries, spaces, layouts; then the drawing's layers,
/// from the handle `firstFree` on.
void AddTables(ObjectList& objects, const std::vector<Layer>& layers, const EntityRange& entities,
               const Extents& extents);

/// The settings of dimensions, which stand in the header, too.
void AppendDimensionSettings(BitStream& stream);

}  // namespace workbench::dwg
