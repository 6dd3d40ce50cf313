#include "Workbench/view/ViewWidget.hpp"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Workbench/view/Motion.hpp"

namespace workbench {
namespace {

constexpr int restMilliseconds = 160;
constexpr double degreesPerPoint = 0.35;
constexpr double zoomPerNotch = 0.85;

}  // namespace

ViewWidget::ViewWidget(std::shared_ptr<View3D> view, QWidget* parent)
    : QWidget(parent), view(std::move(view)) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(160, 120);
    rest.setSingleShot(true);
    rest.setInterval(restMilliseconds);
    connect(&rest, &QTimer::timeout, this,
            [this] { this->view->Redraw(camera, PixelSize(), Quality::Still); });
    this->view->SetOnFrame([this](QImage image) {
        QMetaObject::invokeMethod(
            this,
            [this, image = std::move(image)] {
                frame = image;
                update();
            },
            Qt::QueuedConnection);
    });
}

ViewWidget::~ViewWidget() {
    view->SetOnFrame({});
}

QSize ViewWidget::PixelSize() const {
    return (QSizeF(size()) * devicePixelRatioF()).toSize();
}

QPointF ViewWidget::ToPixels(QPointF position) const {
    return position * devicePixelRatioF();
}

void ViewWidget::SetCamera(const Camera& newCamera) {
    camera = newCamera;
    Refresh();
}

void ViewWidget::Fit() {
    if (!IsUsable(camera)) return ResetCamera();
    Move(FitCamera(camera, view->Bounds(), PixelSize()));
}

void ViewWidget::ResetCamera() {
    const Box3 bounds = view->Bounds();
    if (!bounds.Empty()) Move(DefaultCamera(bounds, PixelSize()));
}

void ViewWidget::SetHint(const QString& text) {
    hint = text;
    update();
}

// Feature edges and anti-aliasing follow as soon as nothing changes any more.
void ViewWidget::Refresh() {
    if (!isVisible()) return;
    view->Redraw(camera, PixelSize(), Quality::Moving);
    rest.start();
}

void ViewWidget::Settle() {
    frame = view->Render(camera, PixelSize());
    update();
}

void ViewWidget::Move(const Camera& newCamera) {
    SetCamera(newCamera);
    emit cameraMoved();
}

void ViewWidget::Orbit(QPointF delta) {
    Move(Turned(camera, pivot, delta * degreesPerPoint));
}

// What was under the pointer when the button went down stays under it.
void ViewWidget::Pan(QPointF delta) {
    Move(Shifted(camera, PixelSize(), pivot, ToPixels(delta)));
}

void ViewWidget::ZoomAt(QPointF position, double factor) {
    Move(Zoomed(camera, PixelSize(), PointUnder(position), ToPixels(position), factor));
}

Vec3 ViewWidget::PointUnder(QPointF position) const {
    const QPointF pixel = ToPixels(position);
    if (const auto point = view->PointAt(camera, PixelSize(), pixel)) return *point;
    if (!camera.perspective) return {};  // it does not matter for a parallel camera
    const Ray ray = RayThrough(camera, PixelSize(), pixel);
    return ray.start + ray.direction * Length(camera.target - camera.position);
}

void ViewWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (frame.isNull())
        painter.fillRect(rect(), QColor(236, 240, 244));
    else
        painter.drawImage(rect(), frame);
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

void ViewWidget::resizeEvent(QResizeEvent*) {
    emit resized(PixelSize());
    Refresh();
}

void ViewWidget::showEvent(QShowEvent*) {
    view->Redraw(camera, PixelSize(), Quality::Moving);
    rest.start();
}

void ViewWidget::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    if (dragging) return;
    pressed = last = event->position();
    const auto under = view->PointAt(camera, PixelSize(), ToPixels(pressed));
    const Box3 bounds = view->Bounds();
    pivot = under ? *under : bounds.Empty() ? camera.target : bounds.Center();
}

void ViewWidget::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() == Qt::NoButton) return;
    if (!dragging && (event->position() - pressed).manhattanLength() < QApplication::startDragDistance())
        return;
    dragging = true;
    const QPointF delta = event->position() - last;
    last = event->position();
    if (event->buttons().testFlag(Qt::LeftButton))
        Orbit(delta);
    else
        Pan(delta);
}

void ViewWidget::mouseReleaseEvent(QMouseEvent* event) {
    const bool wasDragging = dragging;
    if (event->buttons() == Qt::NoButton) dragging = false;
    if (wasDragging || event->button() != Qt::LeftButton) return;
    const auto record = view->Pick(camera, PixelSize(), ToPixels(event->position()));
    emit elementClicked(record.value_or(0), event->modifiers());
}

void ViewWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton)
        Fit();
    else
        mousePressEvent(event);
}

void ViewWidget::wheelEvent(QWheelEvent* event) {
    const double notches = event->angleDelta().y() / 120.0;
    if (notches != 0) ZoomAt(event->position(), std::pow(zoomPerNotch, notches));
    event->accept();
}

void ViewWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F && event->modifiers() == Qt::NoModifier)
        Fit();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace workbench
