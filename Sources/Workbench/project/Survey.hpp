#pragma once

#include <optional>
#include <string>

#include "APIdefs_Base.h"
#include "Workbench/project/Project.hpp"

namespace workbench {

/// Leads from the space of the shapes to the coordinates of the survey, both in metres: a turn about Z and a
/// shift, according to the model's IfcMapConversion or, where the schema has none (IFC2x3), its property set
/// "ePSet_MapConversion". The identity when the model has neither.
///
/// The shapes lie in the model's world already, the site's placement included; so a model whose site was
/// placed at survey coordinates needs no conversion, and the placement must not count again. True north is
/// only a note for readers. The conversion's Scale leads from the project's unit to the map's: between metres
/// and metres nothing is left of it, except a map projection's distortion, which a turn and a shift can't
/// express. Without a map unit, eastings and northings are in the project's unit, or in metres when the scale
/// tells that both units differ. A missing or unreadable number counts as 0, a direction of no length as no
/// turn.
API_Tranmat SurveyTransformation(const Project& project);

/// Where a model says it lies on the map.
struct MapPlace {
    API_Tranmat toMap;   // as SurveyTransformation
    double scale = 1;    // of the projection: map metres in a metre of the model
    std::string system;  // name of the coordinate system, such as "EPSG:25832"; may be empty
};

/// Nothing when the model has neither.
std::optional<MapPlace> MapPlaceOf(const Project& project);

}  // namespace workbench
