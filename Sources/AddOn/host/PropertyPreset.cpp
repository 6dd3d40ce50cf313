#include "host/PropertyPreset.hpp"

#include "host/CommandParameters.hpp"

namespace {

// The maker publishes no ids for these commands: replace them by those of the host that is built for.
constexpr API_ModulID ifcAddOn = {1198731108, 1};
constexpr Int32 version = 1;

GSErrCode Call(const char (&command)[5], const CommandParameterList& parameters) {
    return ACAPI_Command_Call(&ifcAddOn, CommandNumber(command), version, parameters.Get(), nullptr, true);
}

}  // namespace

GSErrCode CreateExportPreset(const GS::UniString& type, const GS::UniString& name) {
    CommandParameterList parameters;
    GSErrCode error = parameters.Create();
    if (error == NoError) error = parameters.AddText("presetType", type);
    if (error == NoError) error = parameters.AddText("presetName", name);
    return error == NoError ? Call("CRPS", parameters) : error;
}

GSErrCode AddMappingsToPreset(const GS::UniString& name, const GS::UniString& mappings) {
    CommandParameterList parameters;
    GSErrCode error = parameters.Create();
    if (error == NoError) error = parameters.AddText("presetName", name);
    // Texts of the list are short; this one may have many megabytes.
    if (error == NoError) error = parameters.AddReference("newMappings", &mappings);
    return error == NoError ? Call("ADPM", parameters) : error;
}
