#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace workbench {

/// GlobalIds of the products that another reader of IFC finds a shape for: web-ifc, in a Node process.
std::set<std::string> MeshedByWebIfc(const std::filesystem::path& file);
/// The same of assimp, which is good for IFC2x3 only.
std::set<std::string> MeshedByAssimp(const std::filesystem::path& file);

/// "<element>|<property>|<class>|<values>" for each property of the sets of that name, sorted: by web-ifc.
std::vector<std::string> PropertiesByWebIfc(const std::filesystem::path& file, const std::string& set);

}  // namespace workbench
