#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace workbench {

/// GlobalIds of the products that another reader of IFC finds a shape for: web-ifc, in a Node process.
std::set<std::string> MeshedByWebIfc(const std::filesystem::path& file);
/// The same of assimp, which is good for IFC2x3 only.
std::set<std::string> MeshedByAssimp(const std::filesystem::path& file);

}  // namespace workbench
