#pragma once

#include "APIEnvir.h"

#include "ACAPinc.h"

// Export presets of the host's add-on for IFC. It says nothing to the person.

/// Makes an empty preset of this name, in place of an earlier one; returns the host's error.
GSErrCode CreateExportPreset(const GS::UniString& type, const GS::UniString& name);

/// Adds to the preset what the text describes: a JSON array of objects, one for each property set of an
/// entity type. Returns the host's error.
GSErrCode AddMappingsToPreset(const GS::UniString& name, const GS::UniString& mappings);
