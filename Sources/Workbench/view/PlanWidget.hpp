#pragma once

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QTransform>
#include <QWidget>
#include <cstdint>
#include <unordered_set>

#include "Workbench/view/PlanDrawing.hpp"

namespace workbench {

// The floor plan window's content. Left click selects, middle or right drag pans, the wheel zooms to the
// pointer, F or a double click with the middle button fits.
class PlanWidget : public QWidget {
    Q_OBJECT

  public:
    explicit PlanWidget(QWidget* parent = nullptr);

    // The picture stays where it is, unless it was fitted: then the new drawing is fitted, too.
    void SetDrawing(PlanDrawing newDrawing);
    const PlanDrawing& Drawing() const { return drawing; }
    // Draws these records in the selection colour.
    void SetSelected(std::unordered_set<std::uint64_t> records);

    // Shows the whole drawing, also after the drawing or the widget's size have changed, until the person
    // moves the picture.
    void Fit();
    // Shows this area (metres) with a small margin.
    void FitTo(const QRectF& area);
    // The area that is visible, metres.
    QRectF Shown() const;

    // A short text at the picture's lower edge, for instance while shapes still load. Empty: none.
    void SetHint(const QString& text);

    QSize sizeHint() const override { return {960, 640}; }

  signals:
    // A click on an element, or on nothing (record 0).
    void elementClicked(quint64 record, Qt::KeyboardModifiers modifiers);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    enum class Framing { Drawing, Area, Free };

    QTransform ToPicture() const;
    QPointF ToMetres(QPointF position) const;
    void Reframe();
    void PaintHint(QPainter& painter) const;

    PlanDrawing drawing;
    std::unordered_set<std::uint64_t> selected;
    QString hint;
    Framing framing = Framing::Drawing;
    QRectF framed;      // metres
    QPointF middle;     // of the picture, metres
    double scale = 50;  // pixels for a metre
    QPointF pressed;
    QPointF last;
    bool dragging = false;
};

}  // namespace workbench
