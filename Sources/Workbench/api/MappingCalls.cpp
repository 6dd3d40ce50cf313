// The commands of the host's add-on for property mappings.

#include "Workbench/api/Application.hpp"
#include "Workbench/api/WorkbenchHost.hpp"

namespace workbench {

// The project is settled here already: a progress window would let the call's end come before the save.
GSErrCode WorkbenchHost::CallMapping(const hostkit::CommandCall& call,
                                     const hostkit::CommandParameters& parameters) {
    Settled().AtEndOfCall([this] { presets.EndCall(); });
    return presets.Call(call, parameters);
}

SaveResult WorkbenchHost::WriteMapped(const std::filesystem::path& file,
                                      const GS::Array<API_Guid>* elements) {
    SaveResult result = application.Write(file, elements, presets.Applying());
    presets.EndCall();
    return result;
}

}  // namespace workbench
