#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "Workbench/project/Project.hpp"
#include "Workbench/step/Progress.hpp"

namespace workbench {

/// An element that is to be created like one of another project, or of the same one.
struct NewElement {
    std::shared_ptr<const Project> source;
    std::size_t copy = 0;  // an element that is created several times is each time part of another copy
    const Element* like = nullptr;          // of the source
    std::string globalId;                   // its own, which no other record of the project has
    std::optional<API_Guid> externalIfcId;  // when it is another than the GlobalId tells
};

/// Whether elements of one project can be created in another: both are of IFC2x, or both of IFC4.
bool CanMerge(const Project& into, const Project& from);

/// The project with these elements in it, each with its placement, shapes, styles, type, materials, property
/// sets, openings and place in the spatial structure. Records of the base stay as they are and keep their
/// ids; those of a copy of a source keep theirs as long as the copies before it are the same.
///
/// Sites and buildings become those of the base, storeys those with the same GlobalId, or name and elevation;
/// others are created. Lengths, angles and measures are converted to the base's units; where both models
/// carry a map conversion to the same coordinate system, elements come to lie where they are on the map,
/// otherwise where they are in their coordinate system. Null when the progress function stopped it.
std::shared_ptr<const Project> Merge(const Project& base, std::span<const NewElement> elements,
                                     const Progress& progress = {});

}  // namespace workbench
