#pragma once

#include <QImage>
#include <QPointF>
#include <QTimer>
#include <cstdint>
#include <memory>

#include "Workbench/view/ModelPane.hpp"
#include "Workbench/view/View3D.hpp"

namespace workbench {

// The 3D window's content. Left drag turns, middle or right drag pans.
class ViewWidget : public ModelPane {
    Q_OBJECT

  public:
    // The view may be shown elsewhere too (snapshots); its frames go to this widget.
    explicit ViewWidget(std::shared_ptr<View3D> view, QWidget* parent = nullptr);
    ~ViewWidget() override;

    const Camera& CurrentCamera() const { return camera; }
    void SetCamera(const Camera& newCamera);
    // Keeps the direction and frames what is visible.
    void Fit() override;
    // The starting view of a model, fitted.
    void ResetCamera();

    // To be called after the view's content has changed.
    void Refresh();
    // Waits for the picture that a person would see at rest.
    void Settle();

  signals:
    // The person has moved the camera.
    void cameraMoved();
    // The widget has another size, in pixels of the screen.
    void resized(QSize pixels);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void BeginDrag(QPointF position) override;
    void Drag(QPointF delta, Qt::MouseButtons buttons) override;
    void ZoomAt(QPointF position, double factor) override;
    std::uint64_t RecordAt(QPointF position) const override;

  private:
    QSize PixelSize() const;
    QPointF ToPixels(QPointF position) const;
    Vec3 PointUnder(QPointF position) const;
    void Move(const Camera& newCamera);

    std::shared_ptr<View3D> view;
    Camera camera;
    QImage frame;
    QTimer rest;  // until the picture is drawn in still quality
    Vec3 pivot;   // of the drag under way
};

}  // namespace workbench
