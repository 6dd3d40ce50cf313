#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"
#include "Location.hpp"

// The host's own add-on for DXF and DWG files. It says nothing to the person.

/// The file with its default settings; returns the host's error.
GSErrCode GetDwgConfiguration(IO::Location* configuration);

/// Saves the current plan with the settings of the configuration file; returns the host's error.
GSErrCode SaveViewAsDwg(const IO::Location& location, const IO::Location& configuration);
