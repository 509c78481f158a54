#include "animatedimage/core/costumecanvas.h"

#include <QtGui/QPainter>

#include <cmath>
#include <limits>

namespace CostumeCanvas
{

namespace
{

/// @p value toward zero; what is not a number, or beyond what an int holds, has no pixels.
int truncated(double value)
{
    constexpr double limit = std::numeric_limits<int>::max();
    return std::abs(value) < limit ? int(value) : 0;
}

QSize truncated(const QSizeF &size)
{
    return {truncated(size.width()), truncated(size.height())};
}

} // namespace

QSizeF largestSize(const QList<CAnimatedPortrait> &frames)
{
    QSizeF largest(-1.0, -1.0);
    for (const CAnimatedPortrait &frame : frames) {
        if (frame.size.width() > largest.width())
            largest.setWidth(frame.size.width());
        if (frame.size.height() > largest.height())
            largest.setHeight(frame.size.height());
    }
    return largest;
}

QImage drawn(const CAnimatedPortrait &frame, const QSizeF &largest)
{
    const QSizeF canvasSize = largest * Resolution;
    const QSizeF frameSize = frame.size * Resolution;
    QImage canvas(truncated(canvasSize), QImage::Format_ARGB32);
    if (canvas.isNull())
        return canvas;
    canvas.fill(Qt::transparent);

    const QSize scaledSize = truncated(frameSize);
    if (frame.image.isNull() || scaledSize.isEmpty())
        return canvas;
    const QImage scaled =
        frame.image.scaled(scaledSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&canvas);
    painter.drawImage(truncated((canvasSize.width() - frameSize.width()) * 0.5),
                      truncated((canvasSize.height() - frameSize.height()) * 0.5), scaled);
    return canvas;
}

} // namespace CostumeCanvas
