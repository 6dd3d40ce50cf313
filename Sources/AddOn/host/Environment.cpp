#include "host/Environment.hpp"

std::optional<GS::UniString> GetHostLanguage() {
    API_ServerApplicationInfo application;
    if (ACAPI_Environment(APIEnv_ApplicationID, &application) != NoError) return std::nullopt;
    return application.language;
}

std::optional<ProjectNaming> GetProjectNaming() {
    API_ProjectInfo project = {};
    if (ACAPI_Environment(APIEnv_ProjectID, &project) != NoError) return std::nullopt;
    return ProjectNaming{project.untitled,
                         project.projectName != nullptr ? *project.projectName : GS::UniString()};
}

std::optional<IO::Location> GetSpecialFolder(API_SpecFolderID folder) {
    IO::Location location;
    if (ACAPI_Environment(APIEnv_GetSpecFolderID, &folder, &location) != NoError) return std::nullopt;
    return location;
}
