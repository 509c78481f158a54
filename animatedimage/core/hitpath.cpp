#include "animatedimage/core/hitpath.h"

namespace HitPath
{

// It is a separate call because GCC 12 drops the rounding where it works on the two coordinates
// of a point at once.
[[gnu::noinline]] float nearestFloat(double value)
{
    return float(value);
}

QPainterPath empty()
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    return path;
}

QPainterPath of(const OpaqueRegion::Rects &rects, const QSize &measured, const QSizeF &size)
{
    QPainterPath path = empty();
    if (rects.empty())
        return path;
    const float sx = nearestFloat(size.width() / measured.width());
    const float sy = nearestFloat(size.height() / measured.height());
    path.reserve(5 * int(rects.size())); // the points of each rectangle
    for (const QRect &rect : rects) {
        path.addRect(double(float(rect.left()) * sx), double(float(rect.top()) * sy),
                     double(float(rect.width()) * sx), double(float(rect.height()) * sy));
    }
    return path;
}

} // namespace HitPath
