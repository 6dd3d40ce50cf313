#include "Workbench/view/PlanWidget.hpp"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Workbench/view/PlanPainter.hpp"

namespace workbench {
namespace {

constexpr double zoomPerNotch = 0.85;
constexpr double leastScale = 1e-4;  // pixels for a metre
constexpr double mostScale = 1e5;
constexpr double margin = 0.06;    // of the picture, at each side of what is framed
constexpr double leastExtent = 1;  // metres, of what is framed
constexpr double reach = 4;        // pixels, from an outline to a click on it

}  // namespace

PlanWidget::PlanWidget(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(160, 120);
}

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

void PlanWidget::SetHint(const QString& text) {
    hint = text;
    update();
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
    if (!hint.isEmpty()) PaintHint(painter);
}

void PlanWidget::PaintHint(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    const QString text = fontMetrics().elidedText(hint, Qt::ElideRight, width() - 56);
    QRect box = fontMetrics().boundingRect(text).adjusted(-14, -7, 14, 7);
    box.moveTopLeft({14, height() - 14 - box.height()});
    painter.setPen(QPen(QColor(0, 0, 0, 28)));
    painter.setBrush(QColor(255, 255, 255, 225));
    painter.drawRoundedRect(QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5), box.height() / 2.0,
                            box.height() / 2.0);
    painter.setPen(QColor(52, 60, 70));
    painter.drawText(box, Qt::AlignCenter, text);
}

void PlanWidget::resizeEvent(QResizeEvent*) {
    Reframe();
}

void PlanWidget::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    if (!dragging) pressed = last = event->position();
}

void PlanWidget::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() == Qt::NoButton) return;
    if (!dragging && (event->position() - pressed).manhattanLength() < QApplication::startDragDistance())
        return;
    dragging = true;
    const QPointF delta = event->position() - last;
    last = event->position();
    if (event->buttons() == Qt::LeftButton) return;
    framing = Framing::Free;
    middle += QPointF(-delta.x(), delta.y()) / scale;
    update();
}

void PlanWidget::mouseReleaseEvent(QMouseEvent* event) {
    const bool wasDragging = dragging;
    if (event->buttons() == Qt::NoButton) dragging = false;
    if (wasDragging || event->button() != Qt::LeftButton) return;
    const auto record = ElementAt(drawing, ToMetres(event->position()), reach / scale);
    emit elementClicked(record.value_or(0), event->modifiers());
}

void PlanWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton)
        Fit();
    else
        mousePressEvent(event);
}

void PlanWidget::wheelEvent(QWheelEvent* event) {
    event->accept();
    const double notches = event->angleDelta().y() / 120.0;
    if (notches == 0) return;
    framing = Framing::Free;
    const QPointF fixed = ToMetres(event->position());
    scale = std::clamp(scale / std::pow(zoomPerNotch, notches), leastScale, mostScale);
    middle += fixed - ToMetres(event->position());
    update();
}

void PlanWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F && event->modifiers() == Qt::NoModifier)
        Fit();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace workbench
