#pragma once

#include <QImage>
#include <QSizeF>
#include <optional>
#include <string>

#include "Workbench/view/PlanDrawing.hpp"

class QIODevice;

namespace workbench {

/// A floor plan on a sheet of its own size: the drawing at a true scale in a margin, below it a line of text
/// and a scale bar.
class PlanPage {
  public:
    /// The usual scale that the drawing fits at: 1:20 or 1:50 on A3, else 1:100, 1:200, 1:500... on A0; or
    /// the scale that is asked for (100 for 1:100). `area`: of the model, what it holds if not the drawing's
    /// bounds: drawings on pages of one area lie on each other. Nothing for an empty drawing, and when the
    /// sheet would become larger than five metres.
    static std::optional<PlanPage> For(PlanDrawing drawing, std::optional<double> scale = {},
                                       std::optional<QRectF> area = {});

    double Scale() const { return scale; }
    QSizeF Millimetres() const { return sheet; }

    /// Lines and text. False when it could not be painted; a device that fails to write says so itself.
    bool WritePdf(QIODevice& out, const std::string& title) const;
    /// The sheet as a picture that knows its resolution. Null when there is no memory for it.
    QImage Picture(const std::string& title) const;

  private:
    PlanPage(PlanDrawing drawing, double scale, const QSizeF& sheet);
    void Paint(QPainter& painter, double dotsPerMillimetre, const std::string& title) const;

    PlanDrawing drawing;
    double scale = 100;
    QSizeF sheet;
};

}  // namespace workbench
