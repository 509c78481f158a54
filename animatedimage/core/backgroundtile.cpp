#include "animatedimage/core/backgroundtile.h"

#include <QtCore/QtMath>
#include <QtGui/QPainter>

#include <cmath>

namespace BackgroundTile
{

namespace
{

bool canHold(double width, double height)
{
    // Beyond this Qt's own arithmetic on pictures, or the memory of the machine, gives out.
    constexpr double longestSide = 32767.0;
    constexpr double mostPixels = 1024.0 * 1024.0 * 1024.0 / 4.0;
    return width > 0.0 && height > 0.0 && width < longestSide / 2.0 && height < longestSide / 2.0 &&
           4.0 * width * height <= mostPixels;
}

} // namespace

QRectF visiblePart(const QPointF &position, const QSizeF &size, const QRectF &page)
{
    const QRectF object(position, size);
    return {QPointF(qMax(0.0, -position.x()), qMax(0.0, -position.y())),
            object.intersected(page).size()};
}

QImage tile(const QImage &frame, const QSizeF &size)
{
    if (!canHold(size.width(), size.height()))
        return {};
    const int width = qRound(size.width());
    const int height = qRound(size.height());
    QImage tiled(2 * width, 2 * height, QImage::Format_ARGB32);
    if (tiled.isNull())
        return {};
    tiled.fill(QColor(255, 255, 255, 0));
    if (frame.isNull())
        return tiled;

    const QImage scaled =
        frame.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&tiled);
    for (const int y : {0, height}) {
        for (const int x : {0, width})
            painter.drawImage(x, y, scaled);
    }
    return tiled;
}

double wrappedOffset(double offset, int length)
{
    double wrapped = std::fmod(offset, length);
    while (wrapped < 0.0)
        wrapped += length;
    return wrapped;
}

} // namespace BackgroundTile
