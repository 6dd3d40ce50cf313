#include "Workbench/view/PlanPainter.hpp"

#include <QFontMetricsF>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace workbench {
namespace {

constexpr double lightened = 0.4;   // share of white in a fill
constexpr double shaded = 0.89;     // of a fill, so that what is white stands out from the paper
constexpr double lineShare = 0.15;  // of an element's thickness: the width of its lines
constexpr double thickest = 2.7;    // hairlines
constexpr double longestBar = 140;

const QColor ink(40, 46, 54);
const QColor edgeInk(112, 120, 130);
const QColor selectedInk(5, 92, 41);

double Brightness(const std::array<float, 4>& colour) {
    return 0.30 * colour[0] + 0.59 * colour[1] + 0.11 * colour[2];
}

QColor SelectedFillOf(const std::array<float, 4>& colour) {
    const double light = 0.78 + 0.32 * std::clamp(Brightness(colour), 0.0, 1.0);
    const auto lit = [&](double value) { return static_cast<float>(value * light); };
    return QColor::fromRgbF(lit(0.17), lit(0.72), lit(0.38));
}

QPainterPath PathOf(const SectionPart& part) {
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    for (const QPolygonF& ring : part.rings) {
        path.addPolygon(ring);
        path.closeSubpath();
    }
    return path;
}

// In metres.
QPen PenFor(const PlanElement& element, const QColor& colour, double hairline) {
    QPen pen(colour, std::clamp(lineShare * element.thickness, hairline, thickest * hairline));
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    return pen;
}

void DrawEdges(QPainter& painter, const PlanElement& element) {
    painter.drawLines(element.edges.data(), static_cast<int>(element.edges.size()));
}

// The largest of 1, 2 and 5 times a power of ten that is not above `most`.
double RoundLength(double most) {
    const double power = std::pow(10, std::floor(std::log10(most)));
    for (const double digit : {5.0, 2.0})
        if (digit * power <= most) return digit * power;
    return power;
}

QString LengthText(double metres) {
    if (metres >= 999) return QString::number(metres / 1000) + QStringLiteral(" km");
    if (metres >= 0.999) return QString::number(metres) + QStringLiteral(" m");
    if (metres >= 0.00999) return QString::number(metres * 100) + QStringLiteral(" cm");
    return QString::number(metres * 1000) + QStringLiteral(" mm");
}

}  // namespace

QColor PlanFill(const std::array<float, 4>& colour) {
    const double share = (1 - lightened) * std::clamp<double>(colour[3], 0, 1);
    const auto onPaper = [&](float value) {
        return static_cast<float>(shaded * (1 + (std::clamp<double>(value, 0, 1) - 1) * share));
    };
    return QColor::fromRgbF(onPaper(colour[0]), onPaper(colour[1]), onPaper(colour[2]));
}

void PaintPlan(QPainter& painter, const PlanDrawing& drawing, const QTransform& toPicture,
               const std::unordered_set<std::uint64_t>& selected, double hairline) {
    const double inMetres = hairline / std::hypot(toPicture.m11(), toPicture.m12());
    const double reach = thickest * hairline;
    const QRectF window(painter.window());
    const auto isOutside = [&](const PlanElement& element) {
        return !toPicture.mapRect(element.bounds).adjusted(-reach, -reach, reach, reach).intersects(window);
    };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setTransform(toPicture, true);
    for (const PlanElement& element : drawing.elements) {
        if (element.edges.empty() || isOutside(element)) continue;
        painter.setPen(QPen(edgeInk, inMetres, Qt::SolidLine, Qt::FlatCap));
        DrawEdges(painter, element);
    }
    for (const PlanElement& element : drawing.elements) {
        if (element.parts.empty() || isOutside(element)) continue;
        const bool isSelected = selected.contains(element.record);
        painter.setPen(PenFor(element, ink, inMetres));
        for (const SectionPart& part : element.parts) {
            painter.setBrush(isSelected ? SelectedFillOf(part.colour) : PlanFill(part.colour));
            painter.drawPath(PathOf(part));
        }
    }
    // Once more on top, since neighbours share lines.
    painter.setBrush(Qt::NoBrush);
    for (const PlanElement& element : drawing.elements) {
        if (!selected.contains(element.record) || isOutside(element)) continue;
        painter.setPen(PenFor(element, selectedInk, inMetres));
        for (const SectionPart& part : element.parts)
            painter.drawPath(PathOf(part));
        DrawEdges(painter, element);
    }
    painter.restore();
}

void PaintScaleBar(QPainter& painter, const QRectF& area, double perMetre) {
    if (!(perMetre > 0) || !std::isfinite(perMetre)) return;
    constexpr int fields = 4;
    constexpr double height = 5;
    const double metres = RoundLength(longestBar / perMetre);
    const double length = metres * perMetre;
    const QString text = LengthText(metres);
    const QFontMetricsF metrics(painter.font());
    const double plateWidth = std::max(length, metrics.horizontalAdvance(text)) + 24;
    const double plateHeight = metrics.height() + height + 16;
    const QRectF plate(area.right() - 14 - plateWidth, area.bottom() - 14 - plateHeight, plateWidth,
                       plateHeight);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 225));
    painter.drawRoundedRect(plate, 6, 6);
    painter.setPen(ink);
    painter.drawText(plate.adjusted(0, 4, 0, 0), Qt::AlignHCenter | Qt::AlignTop, text);
    const QPointF start(plate.center().x() - length / 2, plate.bottom() - 8 - height);
    for (int field = 0; field < fields; ++field) {
        painter.setPen(QPen(ink, 1));
        painter.setBrush(field % 2 == 0 ? ink : QColor(Qt::white));
        painter.drawRect(QRectF(start.x() + field * length / fields, start.y(), length / fields, height));
    }
    painter.restore();
}

}  // namespace workbench
