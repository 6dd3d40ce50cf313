#include "Workbench/api/PlanPicture.hpp"

#include <algorithm>

#include "Workbench/view/PlanPainter.hpp"

namespace workbench {

namespace {

constexpr double filled = 0.88;  // of the picture's width or height

QTransform Fitted(const QRectF& area, QSize size) {
    const double scale = filled * std::min(size.width() / std::max(area.width(), 1.0),
                                           size.height() / std::max(area.height(), 1.0));
    return {scale,
            0,
            0,
            -scale,
            size.width() / 2.0 - scale * area.center().x(),
            size.height() / 2.0 + scale * area.center().y()};
}

}  // namespace

QImage PictureOf(const PlanDrawing& drawing, QSize size, const std::unordered_set<std::uint64_t>& selected) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    PaintPlan(painter, drawing, Fitted(drawing.bounds, size), selected);
    return picture;
}

}  // namespace workbench
