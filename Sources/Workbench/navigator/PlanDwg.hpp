#pragma once

#include <string>

#include "Workbench/dwg/Drawing.hpp"
#include "Workbench/view/PlanDrawing.hpp"

namespace workbench {

/// The same plan for CAD programs: a layer for each IFC class, in which what is cut is filled and outlined,
/// and what lies below is drawn in thin lines. The storey's name stands below the drawing, on a layer of its
/// own.
dwg::Drawing DwgOf(const PlanDrawing& drawing, const std::string& storeyName);

}  // namespace workbench
