#pragma once

#include <QImage>
#include <cstdint>
#include <unordered_set>

#include "Workbench/view/PlanDrawing.hpp"

namespace workbench {

/// The whole plan with a small margin, on white. `size` is in pixels.
QImage PictureOf(const PlanDrawing& drawing, QSize size, const std::unordered_set<std::uint64_t>& selected);

}  // namespace workbench
