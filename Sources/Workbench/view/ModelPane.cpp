#include "Workbench/view/ModelPane.hpp"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>

namespace workbench {

namespace {

constexpr double zoomPerNotch = 0.85;

}  // namespace

ModelPane::ModelPane(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(160, 120);
}

void ModelPane::SetHint(const QString& text) {
    hint = text;
    update();
}

void ModelPane::PaintHint(QPainter& painter) const {
    if (hint.isEmpty()) return;
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

void ModelPane::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    if (dragging) return;
    pressed = last = event->position();
    BeginDrag(pressed);
}

void ModelPane::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() == Qt::NoButton) return;
    if (!dragging && (event->position() - pressed).manhattanLength() < QApplication::startDragDistance())
        return;
    dragging = true;
    const QPointF delta = event->position() - last;
    last = event->position();
    Drag(delta, event->buttons());
}

void ModelPane::mouseReleaseEvent(QMouseEvent* event) {
    const bool wasDragging = dragging;
    if (event->buttons() == Qt::NoButton) dragging = false;
    if (wasDragging || event->button() != Qt::LeftButton) return;
    emit elementClicked(RecordAt(event->position()), event->modifiers());
}

void ModelPane::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton)
        Fit();
    else
        mousePressEvent(event);
}

void ModelPane::wheelEvent(QWheelEvent* event) {
    const double notches = event->angleDelta().y() / 120.0;
    if (notches != 0) ZoomAt(event->position(), std::pow(zoomPerNotch, notches));
    event->accept();
}

void ModelPane::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F && event->modifiers() == Qt::NoModifier)
        Fit();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace workbench
