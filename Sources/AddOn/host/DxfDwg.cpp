#include "host/DxfDwg.hpp"

#include "host/CommandParameters.hpp"

namespace {

constexpr API_ModulID dxfDwg = {1198731108, 1322668197};
constexpr Int32 version = 1;

GSErrCode Call(const char (&command)[5], const CommandParameterList& parameters, IO::Location* result) {
    return ACAPI_Command_Call(&dxfDwg, CommandNumber(command), version, parameters.Get(),
                              reinterpret_cast<GSPtr>(result), true);
}

GS::UniString ToUrl(const IO::Location& location) {
    GS::UniString url;
    return location.ToURLString(&url) == NoError ? url : GS::UniString();
}

}  // namespace

GSErrCode GetDwgConfiguration(IO::Location* configuration) {
    CommandParameterList parameters;
    GSErrCode error = parameters.Create();
    if (error == NoError) error = parameters.AddText("Mode", "Default");
    if (error == NoError) error = Call("GDCO", parameters, configuration);
    return error;
}

GSErrCode SaveViewAsDwg(const IO::Location& location, const IO::Location& configuration) {
    CommandParameterList parameters;
    GSErrCode error = parameters.Create();
    if (error == NoError && !configuration.IsLegalInNativeFileSystem()) error = APIERR_BADPARS;
    if (error == NoError) error = parameters.AddText("FileName", ToUrl(location));
    if (error == NoError) error = parameters.AddText("ConfigFile", ToUrl(configuration));
    if (error == NoError) error = Call("SAV2", parameters, nullptr);
    return error;
}
