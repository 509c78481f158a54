#include "framework/objecthandles.h"

#include "host/baseobject.h"

#include <QtCore/QLineF>
#include <QtGui/QTransform>

#include <algorithm>
#include <cmath>

namespace
{

using ObjectHandles::Handle;

/// Which edges a handle moves: -1 left or top, 1 right or bottom, 0 neither.
struct Direction {
    int x = 0;
    int y = 0;
};

Direction directionOf(Handle handle)
{
    switch (handle) {
    case Handle::TopLeft:
        return {-1, -1};
    case Handle::Top:
    case Handle::Rotation:
        return {0, -1};
    case Handle::TopRight:
        return {1, -1};
    case Handle::Left:
        return {-1, 0};
    case Handle::Right:
        return {1, 0};
    case Handle::BottomLeft:
        return {-1, 1};
    case Handle::Bottom:
        return {0, 1};
    case Handle::BottomRight:
        return {1, 1};
    }
    return {};
}

QTransform rotation(const ObjectGeometry &geometry)
{
    const QPointF center = geometry.center();
    return QTransform()
        .translate(center.x(), center.y())
        .rotate(geometry.angle)
        .translate(-center.x(), -center.y());
}

/// One factor for both sides: that of the side that was changed more.
double commonFactor(const QSizeF &before, const QSizeF &after, Direction direction)
{
    const double across = after.width() / before.width();
    const double down = after.height() / before.height();
    if (direction.x == 0)
        return down;
    if (direction.y == 0)
        return across;
    return std::abs(across - 1.0) > std::abs(down - 1.0) ? across : down;
}

} // namespace

QPointF ObjectGeometry::toPage(const QPointF &point) const
{
    return rotation(*this).map(point);
}

QPointF ObjectGeometry::fromPage(const QPointF &point) const
{
    return rotation(*this).inverted().map(point);
}

bool ObjectGeometry::operator==(const ObjectGeometry &other) const
{
    return pos == other.pos && size == other.size && qFuzzyCompare(angle + 1.0, other.angle + 1.0);
}

namespace ObjectHandles
{

const QVector<Handle> &all()
{
    static const QVector<Handle> handles = {
        Handle::TopLeft,    Handle::Top,    Handle::TopRight,    Handle::Left,    Handle::Right,
        Handle::BottomLeft, Handle::Bottom, Handle::BottomRight, Handle::Rotation};
    return handles;
}

ObjectGeometry geometryOf(const CBaseObject &object)
{
    // getPos() is virtual: while presenting, it may return another position.
    return {const_cast<CBaseObject &>(object).getPos(), object.getSize(), object.getRotate()};
}

void setGeometry(CBaseObject &object, const ObjectGeometry &geometry)
{
    object.setCenterPos(geometry.center(), geometry.size, geometry.angle, true);
    // Half of a size, taken and given back, may be off by the last bit.
    if (object.getSize() != geometry.size)
        object.setSize(geometry.size, false, false);
    object.setPos(geometry.pos, true);
}

QPointF place(const ObjectGeometry &geometry, Handle handle, double handleSize)
{
    const Direction direction = directionOf(handle);
    QPointF point = geometry.center() + QPointF(direction.x * geometry.size.width() / 2,
                                                direction.y * geometry.size.height() / 2);
    if (handle == Handle::Rotation)
        point.ry() -= 2.0 * handleSize;
    return geometry.toPage(point);
}

ObjectGeometry resized(const ObjectGeometry &start, Handle handle, const QPointF &way,
                       Resizing resizing)
{
    const Direction direction = directionOf(handle);
    // The way in the object's own directions.
    const QPointF own = QTransform().rotate(-start.angle).map(way);
    const double share = resizing.aboutCenter ? 2.0 : 1.0;
    QSizeF size(start.size.width() + direction.x * own.x() * share,
                start.size.height() + direction.y * own.y() * share);
    if (resizing.keepsRatio && !start.size.isEmpty()) {
        const double shortest = std::min(start.size.width(), start.size.height());
        const double factor =
            std::max(commonFactor(start.size, size, direction), MinSide / shortest);
        size = start.size * factor;
    }
    size = size.expandedTo(QSizeF(MinSide, MinSide));

    QPointF center = start.center();
    if (!resizing.aboutCenter) {
        const QPointF shift(direction.x * (size.width() - start.size.width()) / 2,
                            direction.y * (size.height() - start.size.height()) / 2);
        center += QTransform().rotate(start.angle).map(shift);
    }
    return {center - QPointF(size.width() / 2, size.height() / 2), size, start.angle};
}

ObjectGeometry turned(const ObjectGeometry &start, const QPointF &from, const QPointF &to,
                      bool snaps)
{
    const QPointF center = start.center();
    if (from == center || to == center)
        return start;
    // Lines measure their angles the other way round.
    double angle = start.angle + QLineF(center, from).angle() - QLineF(center, to).angle();
    if (snaps)
        angle = std::round(angle / SnapDegrees) * SnapDegrees;
    angle = std::fmod(angle, 360.0);
    ObjectGeometry turned = start;
    turned.angle = angle < 0.0 ? angle + 360.0 : angle;
    return turned;
}

} // namespace ObjectHandles
