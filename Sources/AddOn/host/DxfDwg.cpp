#include "host/DxfDwg.hpp"

#include "host/CommandParameters.hpp"

namespace {

constexpr API_ModulID dxfDwg = {1198731108, 1322668197};
constexpr Int32 version = 1;

/// The number of a command that is named by four characters.
constexpr GSType Command(const char (&name)[5]) {
    GSType number = 0;
    for (int i = 0; i < 4; ++i)
        number = number << 8 | static_cast<unsigned char>(name[i]);
    return number;
}

GSErrCode Call(GSType command, const CommandParameterList& parameters, IO::Location* result) {
    return ACAPI_Command_Call(&dxfDwg, command, version, parameters.Get(), reinterpret_cast<GSPtr>(result),
                              true);
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
    if (error == NoError) error = Call(Command("GDCO"), parameters, configuration);
    return error;
}

GSErrCode SaveViewAsDwg(const IO::Location& location, const IO::Location& configuration) {
    CommandParameterList parameters;
    GSErrCode error = parameters.Create();
    if (error == NoError && !configuration.IsLegalInNativeFileSystem()) error = APIERR_BADPARS;
    if (error == NoError) error = parameters.AddText("FileName", ToUrl(location));
    if (error == NoError) error = parameters.AddText("ConfigFile", ToUrl(configuration));
    if (error == NoError) error = Call(Command("SAV2"), parameters, nullptr);
    return error;
}
