#pragma once

#include <QPointF>
#include <QRectF>
#include <QTransform>
#include <cstdint>
#include <unordered_set>

#include "Workbench/view/ModelPane.hpp"
#include "Workbench/view/PlanDrawing.hpp"

namespace workbench {

// The floor plan window's content. Middle or right drag pans.
class PlanWidget : public ModelPane {
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
    void Fit() override;
    // Shows this area (metres) with a small margin.
    void FitTo(const QRectF& area);
    // The area that is visible, metres.
    QRectF Shown() const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void Drag(QPointF delta, Qt::MouseButtons buttons) override;
    void ZoomAt(QPointF position, double factor) override;
    std::uint64_t RecordAt(QPointF position) const override;

  private:
    enum class Framing { Drawing, Area, Free };

    QTransform ToPicture() const;
    QPointF ToMetres(QPointF position) const;
    void Reframe();

    PlanDrawing drawing;
    std::unordered_set<std::uint64_t> selected;
    Framing framing = Framing::Drawing;
    QRectF framed;      // metres
    QPointF middle;     // of the picture, metres
    double scale = 50;  // pixels for a metre
};

}  // namespace workbench
