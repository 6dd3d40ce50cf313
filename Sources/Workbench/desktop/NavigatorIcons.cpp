#include "Workbench/desktop/NavigatorIcons.hpp"

#include <QPainter>
#include <QPainterPath>
#include <functional>

namespace workbench {

namespace {

using Kind = PublisherItem::Kind;

const QColor ink(0x1d, 0x55, 0x67);
const QColor fill(0xd6, 0xe8, 0xef);

// On a field of 16 by 16.
QIcon Drawn(const std::function<void(QPainter&)>& draw) {
    QIcon icon;
    for (const int factor : {1, 2}) {
        QPixmap picture(16 * factor, 16 * factor);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(factor, factor);
        painter.setPen(QPen(ink, 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(fill);
        draw(painter);
        painter.end();
        picture.setDevicePixelRatio(factor);
        icon.addPixmap(picture);
    }
    return icon;
}

void DrawFolder(QPainter& painter) {
    painter.drawPolygon(QPolygonF{{1.5, 4}, {6, 4}, {7.5, 5.5}, {14.5, 5.5}, {14.5, 13}, {1.5, 13}});
}

void DrawRooms(QPainter& painter) {
    painter.drawRect(QRectF(2, 2, 12, 12));
    painter.drawPolyline(QPolygonF{{2, 8.5}, {6, 8.5}});
    painter.drawPolyline(QPolygonF{{9, 8.5}, {14, 8.5}});
    painter.drawPolyline(QPolygonF{{9, 2}, {9, 5.5}});
}

void DrawView(QPainter& painter) {
    painter.drawPolygon(QPolygonF{{8, 1.5}, {14, 4.5}, {14, 11.5}, {8, 14.5}, {2, 11.5}, {2, 4.5}});
    painter.drawPolyline(QPolygonF{{2, 4.5}, {8, 7.5}, {14, 4.5}});
    painter.drawPolyline(QPolygonF{{8, 7.5}, {8, 14.5}});
}

void DrawModel(QPainter& painter) {
    painter.drawPolygon(
        QPolygonF{{8, 1.5}, {14.5, 7.5}, {12.5, 7.5}, {12.5, 14}, {3.5, 14}, {3.5, 7.5}, {1.5, 7.5}});
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(6.5, 9.5, 3, 4.5));
}

void DrawSet(QPainter& painter) {
    painter.drawRect(QRectF(2, 2, 9, 11));
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(5, 4, 9, 10.5));
    painter.drawLine(QPointF(7, 7.5), QPointF(12, 7.5));
    painter.drawLine(QPointF(7, 10.5), QPointF(12, 10.5));
}

}  // namespace

QIcon IconOf(Kind kind) {
    switch (kind) {
        case Kind::folder:
            return Drawn(DrawFolder);
        case Kind::floorPlan:
            return Drawn(DrawRooms);
        case Kind::view3D:
            return Drawn(DrawView);
        case Kind::model:
            break;
    }
    return Drawn(DrawModel);
}

QIcon SetIcon() {
    return Drawn(DrawSet);
}

}  // namespace workbench
