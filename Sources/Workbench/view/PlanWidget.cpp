#include "Workbench/view/PlanWidget.hpp"

#include <QPainter>
#include <algorithm>
#include <utility>

#include "Workbench/view/PlanPainter.hpp"

namespace workbench {
namespace {

constexpr double leastScale = 1e-4;  // pixels for a metre
constexpr double mostScale = 1e5;
constexpr double margin = 0.06;    // of the picture, at each side of what is framed
constexpr double leastExtent = 1;  // metres, of what is framed
constexpr double reach = 4;        // pixels, from an outline to a click on it

}  // namespace

PlanWidget::PlanWidget(QWidget* parent) : ModelPane(parent) {}

QTransform PlanWidget::ToPicture() const {
    return QTransform(scale, 0, 0, -scale, width() / 2.0 - scale * middle.x(),
                      height() / 2.0 + scale * middle.y());
}

QPointF PlanWidget::ToMetres(QPointF position) const {
    return {middle.x() + (position.x() - width() / 2.0) / scale,
            middle.y() - (position.y() - height() / 2.0) / scale};
}

QRectF PlanWidget::Shown() const {
    const QSizeF extent = QSizeF(size()) / scale;
    return {middle - QPointF(extent.width(), extent.height()) / 2, extent};
}

void PlanWidget::SetDrawing(PlanDrawing newDrawing) {
    drawing = std::move(newDrawing);
    Reframe();
}

void PlanWidget::SetSelected(std::unordered_set<std::uint64_t> records) {
    selected = std::move(records);
    update();
}

void PlanWidget::Fit() {
    framing = Framing::Drawing;
    Reframe();
}

void PlanWidget::FitTo(const QRectF& area) {
    framing = Framing::Area;
    framed = area.normalized();
    Reframe();
}

void PlanWidget::Reframe() {
    update();
    if (framing == Framing::Free) return;
    if (framing == Framing::Drawing) framed = drawing.bounds;
    if (framing == Framing::Drawing && drawing.elements.empty()) return;
    middle = framed.center();
    scale = std::clamp((1 - 2 * margin) * std::min(width() / std::max(framed.width(), leastExtent),
                                                   height() / std::max(framed.height(), leastExtent)),
                       leastScale, mostScale);
}

void PlanWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    PaintPlan(painter, drawing, ToPicture(), selected);
    if (!drawing.elements.empty()) PaintScaleBar(painter, rect(), scale);
    PaintHint(painter);
}

void PlanWidget::resizeEvent(QResizeEvent*) {
    Reframe();
}

void PlanWidget::Drag(QPointF delta, Qt::MouseButtons buttons) {
    if (buttons == Qt::LeftButton) return;
    framing = Framing::Free;
    middle += QPointF(-delta.x(), delta.y()) / scale;
    update();
}

void PlanWidget::ZoomAt(QPointF position, double factor) {
    framing = Framing::Free;
    const QPointF fixed = ToMetres(position);
    scale = std::clamp(scale / factor, leastScale, mostScale);
    middle += fixed - ToMetres(position);
    update();
}

std::uint64_t PlanWidget::RecordAt(QPointF position) const {
    return ElementAt(drawing, ToMetres(position), reach / scale).value_or(0);
}

}  // namespace workbench
