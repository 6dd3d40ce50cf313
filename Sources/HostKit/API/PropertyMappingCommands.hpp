#pragma once

#include "ACAPinc.h"
#include "FourCharacters.hpp"

// The host's add-on for IFC: export presets that carry a property mapping. The real host's ids are not
// published; these stand in for them. Presets belong to the session, by their names.
namespace hostkit::mapping {

inline constexpr API_ModulID addOn = {1198731108, 1};
inline constexpr Int32 version = 1;

// Makes an empty preset, in place of one of the same name. It applies to the next IFC file that the add-on
// saves, if it does so before the page's call is over. Texts: "presetType", which must be the one below, and
// "presetName".
inline constexpr auto createPreset = static_cast<GSType>(FourCharacters("CRPS"));
inline constexpr auto presetType = "PropertyMappingExportPreset";

// Adds to a preset. "presetName" is a text, and "newMappings" the address of a GS::UniString: the list's own
// texts are too short for it. That is a JSON array with an object for each property set of an entity type:
//   {"ifcEntityType": "IfcWall", "propertySetName": "Pset_WallCommon", "properties": [
//     {"groupName": "General", "propertyName": "Fire class",
//      "ifcPropertyName": "FireRating", "ifcPropertyKind": 0, "ifcDataType": "IfcLabel"}]}
// The kinds are 0 single, 1 list, 2 bounded, 3 enumerated and 4 table; an empty data type leaves it to the
// host. BADPARS for any other shape, BADNAME for a preset that there is not; then nothing is added.
inline constexpr auto addMappings = static_cast<GSType>(FourCharacters("ADPM"));

}  // namespace hostkit::mapping
