#include "flipbook/window/page/paperpainting.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

void paintPaper(QPainter &painter, const QRectF &rect, double zoom)
{
    constexpr int edge = 5;
    constexpr int shade = 14;
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, shade));
    for (int i = edge; i > 0; --i) {
        const double width = i / zoom;
        // The light comes from above. What the paper covers is left out, but for a pixel.
        QPainterPath ring;
        ring.addRoundedRect(rect.adjusted(-width, -width / 2, width, width * 1.5), width, width);
        ring.addRect(rect.adjusted(1 / zoom, 1 / zoom, -1 / zoom, -1 / zoom));
        painter.drawPath(ring);
    }
    painter.setBrush(Qt::white);
    painter.drawRect(rect);
    painter.restore();
}
