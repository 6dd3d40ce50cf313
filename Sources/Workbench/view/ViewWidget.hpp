#pragma once

#include <QImage>
#include <QPointF>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <cstdint>
#include <memory>

#include "Workbench/view/View3D.hpp"

namespace workbench {

// The 3D window's content. Left click selects, left drag turns, middle or right drag pans, the wheel zooms
// to the pointer, F or a double click with the middle button fits.
class ViewWidget : public QWidget {
    Q_OBJECT

  public:
    // The view may be shown elsewhere too (snapshots); its frames go to this widget.
    explicit ViewWidget(std::shared_ptr<View3D> view, QWidget* parent = nullptr);
    ~ViewWidget() override;

    const Camera& CurrentCamera() const { return camera; }
    void SetCamera(const Camera& newCamera);
    // Keeps the direction and frames what is visible.
    void Fit();
    // The starting view of a model, fitted.
    void ResetCamera();

    // A short text at the picture's lower edge, for instance while shapes still load. Empty: none.
    void SetHint(const QString& text);

    // To be called after the view's content has changed.
    void Refresh();
    // Waits for the picture that a person would see at rest.
    void Settle();

    QSize sizeHint() const override { return {960, 640}; }

  signals:
    // A click on an element, or on nothing (record 0).
    void elementClicked(quint64 record, Qt::KeyboardModifiers modifiers);
    // The person has moved the camera.
    void cameraMoved();
    // The widget has another size, in pixels of the screen.
    void resized(QSize pixels);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QSize PixelSize() const;
    QPointF ToPixels(QPointF position) const;
    Vec3 PointUnder(QPointF position) const;
    void Orbit(QPointF delta);
    void Pan(QPointF delta);
    void ZoomAt(QPointF position, double factor);
    void Move(const Camera& newCamera);

    std::shared_ptr<View3D> view;
    Camera camera;
    QImage frame;
    QString hint;
    QTimer rest;  // until the picture is drawn in still quality
    QPointF pressed;
    QPointF last;
    Vec3 pivot;  // of the drag under way
    bool dragging = false;
};

}  // namespace workbench
