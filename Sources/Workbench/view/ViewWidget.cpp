#include "Workbench/view/ViewWidget.hpp"

#include <QPainter>
#include <utility>

#include "Workbench/view/Motion.hpp"

namespace workbench {
namespace {

constexpr int restMilliseconds = 160;
constexpr double degreesPerPoint = 0.35;

}  // namespace

ViewWidget::ViewWidget(std::shared_ptr<View3D> view, QWidget* parent)
    : ModelPane(parent), view(std::move(view)) {
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

void ViewWidget::BeginDrag(QPointF position) {
    const auto under = view->PointAt(camera, PixelSize(), ToPixels(position));
    const Box3 bounds = view->Bounds();
    pivot = under ? *under : bounds.Empty() ? camera.target : bounds.Center();
}

// Panning, what was under the pointer when the button went down stays under it.
void ViewWidget::Drag(QPointF delta, Qt::MouseButtons buttons) {
    if (buttons.testFlag(Qt::LeftButton))
        Move(Turned(camera, pivot, delta * degreesPerPoint));
    else
        Move(Shifted(camera, PixelSize(), pivot, ToPixels(delta)));
}

std::uint64_t ViewWidget::RecordAt(QPointF position) const {
    return view->Pick(camera, PixelSize(), ToPixels(position)).value_or(0);
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
    PaintHint(painter);
}

void ViewWidget::resizeEvent(QResizeEvent*) {
    emit resized(PixelSize());
    Refresh();
}

void ViewWidget::showEvent(QShowEvent*) {
    view->Redraw(camera, PixelSize(), Quality::Moving);
    rest.start();
}

}  // namespace workbench
