#pragma once

#include <string_view>

namespace workbench {

/// "IfcWall" for "IFCWALL": the building element's class as the schemas spell it, from IFC2x to IFC4.3; empty
/// for classes that are no building elements (spaces, openings, ports, grids, annotations, virtual
/// elements...).
std::string_view ElementClass(std::string_view type);
/// Project-wide structure: site, building, storey, space and their like; they carry elements.
bool IsSpatialClass(std::string_view type);
/// Everything with a place of its own: elements, spatial structure, openings, ports, annotations, grids...
bool IsProductClass(std::string_view type);

/// Everything with a GlobalId: products, types, relations, property sets, groups, processes...
bool IsRootedClass(std::string_view type);

}  // namespace workbench
