#pragma once

#include <filesystem>
#include <stdexcept>
#include <vector>

#include "Workbench/navigator/PublisherSets.hpp"

namespace workbench {

/// Where a project's publisher sets may be written down: "House.publisher.json" beside "House.ifc".
///
///   {"sets": [{"name": "Ausführung", "items": [
///     {"name": "Haus A", "items": [...]},
///     {"name": "EG", "show": "plan", "storey": "Erdgeschoss", "format": "pdf", "scale": 50},
///     {"name": "Hof", "show": "3d", "format": "jpeg", "camera": [9, -4, 2], "target": [0, 0, 1]},
///     {"name": "Modell", "show": "model"}]}]}
///
/// "show" is "plan" (pdf, png, jpeg), "3d" (png, jpeg) or "model" (ifc); the first format is the one without
/// "format". "storey" is a name or a number, counted from 0 for the lowest; a plan needs it, a 3D view then
/// shows that storey alone. "scale" (50 for 1:50), "camera" and "target" (metres) and "viewCone" (degrees
/// across the picture) may be left out. What names a storey or a format that there is not stands in the set,
/// but cannot be published.
std::filesystem::path PublisherFileOf(const Project& project);

/// Worded for a person: what is wrong, and where.
class PublisherFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The sets in the file, without GUIDs; no storey is looked up yet. Throws PublisherFileError.
std::vector<PublisherSet> ReadPublisherFile(const std::filesystem::path& file, Say say);

/// Looks up the storeys that these items name. Those that the project does not have become their problem.
void FindStoreys(std::vector<PublisherItem>& items, const Project& project, Say say);

}  // namespace workbench
