#include "Workbench/navigator/PlanPage.hpp"

#include <QFontMetricsF>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>
#include <cmath>

#include "Workbench/view/PlanPainter.hpp"

namespace workbench {

namespace {

// Millimetres.
constexpr double margin = 10;
constexpr double strip = 14;  // for the text below the drawing
constexpr double leastWidth = 150;
constexpr double hairline = 0.13;
constexpr double mostSide = 5000;  // what readers of PDF are sure to take
constexpr double pointsPerMillimetre = 72 / 25.4;

constexpr int pdfResolution = 1200;     // dots an inch
constexpr double finest = 300 / 25.4;   // dots a millimetre of a picture
constexpr double mostDots = 4096;       // along a picture's side
constexpr double textUnit = 25.4 / 96;  // what texts are laid out in

struct Sheet {
    double length, width;
};
constexpr Sheet a3{420, 297};
constexpr Sheet a0{1189, 841};

QSizeF SheetFor(const QSizeF& metres, double scale) {
    const double width = std::max(leastWidth, metres.width() * 1000 / scale + 2 * margin);
    const double height = metres.height() * 1000 / scale + 2 * margin + strip;
    // In whole points, as the page's size is written.
    const auto whole = [](double side) {
        return std::ceil(side * pointsPerMillimetre) / pointsPerMillimetre;
    };
    return {whole(width), whole(height)};
}

bool Fits(const QSizeF& size, const Sheet& sheet) {
    return std::max(size.width(), size.height()) <= sheet.length &&
           std::min(size.width(), size.height()) <= sheet.width;
}

double UsualScale(const QSizeF& metres) {
    for (const double scale : {20.0, 50.0})
        if (Fits(SheetFor(metres, scale), a3)) return scale;
    for (double power = 100;; power *= 10)
        for (const double digit : {1.0, 2.0, 5.0})
            if (Fits(SheetFor(metres, digit * power), a0)) return digit * power;
}

// Around the origin: readers of PDF count in single precision.
PlanDrawing Centred(PlanDrawing drawing, QPointF middle) {
    const QPointF shift = -middle;
    drawing.bounds.translate(shift);
    for (PlanElement& element : drawing.elements) {
        element.bounds.translate(shift);
        for (QLineF& edge : element.edges)
            edge.translate(shift);
        for (SectionPart& part : element.parts)
            for (QPolygonF& ring : part.rings)
                ring.translate(shift);
    }
    return drawing;
}

}  // namespace

std::optional<PlanPage> PlanPage::For(PlanDrawing drawing, std::optional<double> scale,
                                      std::optional<QRectF> area) {
    const QRectF shown = area.value_or(drawing.bounds);
    const QSizeF metres = shown.size();
    if (drawing.elements.empty() || !std::isfinite(metres.width()) || !std::isfinite(metres.height()))
        return std::nullopt;
    const double chosen = scale.value_or(UsualScale(metres));
    const QSizeF size = SheetFor(metres, chosen);
    if (std::max(size.width(), size.height()) > mostSide) return std::nullopt;
    return PlanPage(Centred(std::move(drawing), shown.center()), chosen, size);
}

PlanPage::PlanPage(PlanDrawing drawing, double scale, const QSizeF& sheet)
    : drawing(std::move(drawing)), scale(scale), sheet(sheet) {}

bool PlanPage::WritePdf(QIODevice& out, const std::string& title) const {
    QPdfWriter writer(&out);
    writer.setResolution(pdfResolution);
    writer.setCreator("Workbench");
    writer.setTitle(QString::fromStdString(title));
    writer.setPageSize(QPageSize(sheet * pointsPerMillimetre, QPageSize::Point, {}, QPageSize::ExactMatch));
    writer.setPageMargins({});
    QPainter painter;
    if (!painter.begin(&writer)) return false;
    Paint(painter, pdfResolution / 25.4, title);
    return painter.end();
}

QImage PlanPage::Picture(const std::string& title) const {
    const double dots = std::min(finest, mostDots / std::max(sheet.width(), sheet.height()));
    QImage picture((sheet * dots).toSize(), QImage::Format_RGB32);
    if (picture.isNull()) return picture;
    picture.setDotsPerMeterX(static_cast<int>(std::lround(dots * 1000)));
    picture.setDotsPerMeterY(picture.dotsPerMeterX());
    picture.fill(Qt::white);
    QPainter painter(&picture);
    Paint(painter, dots, title);
    return picture;
}

void PlanPage::Paint(QPainter& painter, double dotsPerMillimetre, const std::string& title) const {
    const double perMetre = 1000 / scale * dotsPerMillimetre;
    const QPointF middle(sheet.width() / 2, (sheet.height() - strip) / 2);
    const QPointF at = middle * dotsPerMillimetre;
    PaintPlan(painter, drawing, {perMetre, 0, 0, -perMetre, at.x(), at.y()}, {},
              hairline * dotsPerMillimetre);

    painter.save();
    const double unit = textUnit * dotsPerMillimetre;
    painter.scale(unit, unit);
    const double perUnit = 1 / textUnit;
    const QRectF area(margin * perUnit, (sheet.height() - margin - strip) * perUnit,
                      (sheet.width() - 2 * margin) * perUnit, (strip + margin / 2) * perUnit);
    QFont font = painter.font();
    font.setPixelSize(12);
    painter.setFont(font);
    PaintScaleBar(painter, area, 1000 / scale * perUnit);
    const QString scaleText = "  1:" + QString::number(scale, 'g', 10);
    const QFontMetricsF metrics(font);
    const double room = area.width() - 190 - metrics.horizontalAdvance(scaleText);
    const QString text = metrics.elidedText(QString::fromStdString(title), Qt::ElideRight, room) + scaleText;
    painter.drawText(area.adjusted(0, 0, 0, -margin), Qt::AlignLeft | Qt::AlignBottom, text);
    painter.restore();
}

}  // namespace workbench
