#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "Location.hpp"
#include "UniString.hpp"

#include <optional>

// What the host says about itself and the open project. No value: the host did not answer.

struct ProjectNaming {
    bool untitled;  // never saved
    GS::UniString name;
};

/// The host's language as its three-letter code, such as "INT" or "GER".
std::optional<GS::UniString> GetHostLanguage();

std::optional<ProjectNaming> GetProjectNaming();

std::optional<IO::Location> GetSpecialFolder(API_SpecFolderID folder);
