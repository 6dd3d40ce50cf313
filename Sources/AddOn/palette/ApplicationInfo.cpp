#include "Config.hpp"
#include "host/Environment.hpp"
#include "palette/KestranePalette.hpp"

bool KestranePalette::IsGerman() {
    const std::optional<GS::UniString> language = GetHostLanguage();
    return language && language->IsEqual("GER");
}

GS::UniString KestranePalette::GetApplicationInfo() {
    // The page splits at the commas: no field is quoted.
    return GS::UniString(IsGerman() ? "de" : "en") + "," + apiBaseUrl + "/" + "," + addOnVersion + "," +
           hostVersion;
}

GS::UniString KestranePalette::GetProjectName() {
    const std::optional<ProjectNaming> project = GetProjectNaming();
    if (!project) return GS::UniString();
    if (project->untitled) return "Untitled";
    return project->name;
}
