#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QTransform>
#include <array>
#include <cstdint>
#include <unordered_set>

#include "Workbench/view/PlanDrawing.hpp"

namespace workbench {

// On paper, of what is cut of a material with that colour (red, green, blue, alpha: 0 to 1).
QColor PlanFill(const std::array<float, 4>& colour);

// Draws a plan through `toPicture`, which leads from its metres to the painter's coordinates, with Y turned
// round. Selected records get the colour that they have in the 3D picture. Lines keep their width at any
// scale, the finest that of `hairline`, in the painter's units; what lies outside the painter's window is
// skipped.
void PaintPlan(QPainter& painter, const PlanDrawing& drawing, const QTransform& toPicture,
               const std::unordered_set<std::uint64_t>& selected = {}, double hairline = 0.6);

// Draws a bar of a round length into the lower right corner of `area`; nothing when `perMetre`, the
// painter's units for a metre, is not positive.
void PaintScaleBar(QPainter& painter, const QRectF& area, double perMetre);

}  // namespace workbench
