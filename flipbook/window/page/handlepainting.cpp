#include "flipbook/window/page/handlepainting.h"

#include <QtGui/QFontMetrics>
#include <QtGui/QPainter>

using ObjectHandles::Handle;

namespace
{

// Light with a dark line, so that they are seen on every colour.
const QColor Light(255, 255, 255);
const QColor Dark(40, 40, 40);

QPen cosmetic(const QColor &color, double width)
{
    QPen pen(color, width);
    pen.setCosmetic(true);
    return pen;
}

void paintStem(QPainter &painter, const ObjectGeometry &geometry, double size)
{
    const QLineF stem(ObjectHandles::place(geometry, Handle::Top, size),
                      ObjectHandles::place(geometry, Handle::Rotation, size));
    painter.setPen(cosmetic(Light, 3.0));
    painter.drawLine(stem);
    painter.setPen(cosmetic(Dark, 1.0));
    painter.drawLine(stem);
}

} // namespace

void HandlePainting::paintOutline(QPainter &painter, const ObjectGeometry &geometry)
{
    const QRectF rect(geometry.pos, geometry.size);
    QPolygonF outline;
    for (const QPointF &corner :
         {rect.topLeft(), rect.topRight(), rect.bottomRight(), rect.bottomLeft()})
        outline << geometry.toPage(corner);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(cosmetic(Light, 3.0));
    painter.drawPolygon(outline);
    painter.setPen(cosmetic(Dark, 1.0));
    painter.drawPolygon(outline);
}

void HandlePainting::paintHandles(QPainter &painter, const ObjectGeometry &geometry, double unit)
{
    const double size = HandleSize * unit;
    paintStem(painter, geometry, size);
    painter.setBrush(Light);
    painter.setPen(cosmetic(Dark, 1.0));
    for (const Handle handle : ObjectHandles::all()) {
        painter.save();
        painter.translate(ObjectHandles::place(geometry, handle, size));
        painter.rotate(geometry.angle);
        const QRectF square(-size / 2, -size / 2, size, size);
        if (handle == Handle::Rotation)
            painter.drawEllipse(square);
        else
            painter.drawRect(square);
        painter.restore();
    }
}

void HandlePainting::paintTip(QPainter &painter, const QPointF &place, const QString &text,
                              double unit)
{
    constexpr int away = 18;
    constexpr int padding = 5;
    painter.save();
    painter.translate(place);
    painter.scale(unit, unit);
    const QFontMetrics metrics(painter.font());
    const QRect box = metrics.boundingRect(text)
                          .adjusted(-padding, -padding, padding, padding)
                          .translated(away, away);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(30, 30, 30, 220));
    painter.drawRoundedRect(box, 3, 3);
    painter.setPen(Light);
    painter.drawText(box, Qt::AlignCenter, text);
    painter.restore();
}

Qt::CursorShape HandlePainting::cursorFor(Handle handle, double angle)
{
    if (handle == Handle::Rotation)
        return Qt::CrossCursor;
    // Eighths of a turn from the right, clockwise, and the same again on the other side.
    int eighth = 0;
    switch (handle) {
    case Handle::TopLeft:
    case Handle::BottomRight:
        eighth = 1;
        break;
    case Handle::Top:
    case Handle::Bottom:
        eighth = 2;
        break;
    case Handle::TopRight:
    case Handle::BottomLeft:
        eighth = 3;
        break;
    default:
        break;
    }
    constexpr Qt::CursorShape shapes[] = {Qt::SizeHorCursor, Qt::SizeFDiagCursor, Qt::SizeVerCursor,
                                          Qt::SizeBDiagCursor};
    const int turn = (eighth + qRound(angle / 45.0)) % 4;
    return shapes[turn < 0 ? turn + 4 : turn];
}
