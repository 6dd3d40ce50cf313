#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "HostKit/API/CommandParameters.hpp"
#include "HostKit/API/Host.hpp"
#include "Workbench/exchange/PropertyMapping.hpp"

namespace workbench {

/// The presets of the host's add-on for IFC, by their names, as HostKit/API/PropertyMappingCommands.hpp
/// describes them. The one made last applies until a file is saved with it, or the page's call is over.
class ExportPresets {
  public:
    GSErrCode Call(const hostkit::CommandCall& call, const hostkit::CommandParameters& parameters);

    /// What applies now; empty for nothing.
    std::span<const MappedSet> Applying() const;
    void Unapply() { applying.clear(); }

  private:
    GSErrCode Create(const hostkit::CommandParameters& parameters);
    GSErrCode Add(const hostkit::CommandParameters& parameters);

    std::map<std::string, std::vector<MappedSet>> presets;
    std::string applying;  // a preset's name, or empty
};

}  // namespace workbench
