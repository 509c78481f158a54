#include "animatedimage/core/hitpath.h"

namespace HitPath
{

namespace
{

bool isSame(double a, double b)
{
    return !(a < b) && !(b < a);
}

} // namespace

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

bool Handles::operator==(const Handles &other) const
{
    return isSame(rect.x(), other.rect.x()) && isSame(rect.y(), other.rect.y()) &&
           isSame(rect.width(), other.rect.width()) && isSame(rect.height(), other.rect.height()) &&
           isSame(size, other.size);
}

QPainterPath of(const OpaqueRegion::Rects &rects, const QSize &measured, const QSizeF &size,
                bool roomForHandles)
{
    QPainterPath path = empty();
    if (rects.empty())
        return path;
    const float sx = nearestFloat(size.width() / measured.width());
    const float sy = nearestFloat(size.height() / measured.height());
    constexpr int pointsOfHandles = 9 * 13; // each is four curves
    // The points of each rectangle are five.
    path.reserve(5 * int(rects.size()) + (roomForHandles ? pointsOfHandles : 0));
    for (const QRect &rect : rects) {
        path.addRect(double(float(rect.left()) * sx), double(float(rect.top()) * sy),
                     double(float(rect.width()) * sx), double(float(rect.height()) * sy));
    }
    return path;
}

void addHandles(QPainterPath &path, const Handles &handles)
{
    const double radius = 2.0 + handles.size;
    const auto addHandle = [&path, radius](double x, double y) {
        path.addEllipse(QRectF(x - radius, y - radius, 2.0 * radius, 2.0 * radius));
    };
    const QSizeF size = handles.rect.size();
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            if (row == 1 && column == 1)
                continue;
            addHandle(size.width() * column * 0.5, size.height() * row * 0.5);
        }
    }
    addHandle(double(nearestFloat(0.5 * size.width() + handles.rect.left())),
              double(nearestFloat(handles.rect.top() - 2.0 * handles.size)));
}

} // namespace HitPath
