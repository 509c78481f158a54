#pragma once

#include "framework/frameworkglobal.h"

#include <QtCore/QPointF>
#include <QtCore/QSizeF>
#include <QtCore/QVector>

class CBaseObject;

/// The geometry of an object on its page, which its handles change.
struct FRAMEWORK_API ObjectGeometry {
    QPointF pos;        ///< the unrotated top left corner, in page coordinates
    QSizeF size;        ///< in units of the page
    double angle = 0.0; ///< clockwise around the centre, in degrees

    QPointF center() const { return pos + QPointF(size.width() / 2, size.height() / 2); }
    /// Maps a point of the unrotated object, in page coordinates, to its place on the page.
    QPointF toPage(const QPointF &point) const;
    QPointF fromPage(const QPointF &point) const;

    bool operator==(const ObjectGeometry &other) const;
    bool operator!=(const ObjectGeometry &other) const { return !(*this == other); }
};

/// The handles around an edited object and the arithmetic of dragging them. Knows no view: points
/// are in page coordinates.
namespace ObjectHandles
{

/// In rows from the top left, as the hit shapes of objects list them; rotation last.
enum class Handle {
    TopLeft,
    Top,
    TopRight,
    Left,
    Right,
    BottomLeft,
    Bottom,
    BottomRight,
    Rotation
};

FRAMEWORK_API const QVector<Handle> &all();

/// The smallest side that resizing leaves.
constexpr double MinSide = 1.0;
/// Rotation snaps to this step, in degrees, where the user wants it to.
constexpr double SnapDegrees = 15.0;

FRAMEWORK_API ObjectGeometry geometryOf(const CBaseObject &object);
/// Gives @p object exactly this geometry, and notifies the host.
FRAMEWORK_API void setGeometry(CBaseObject &object, const ObjectGeometry &geometry);

/// The position of @p handle of an object with this geometry, with handles of @p handleSize units:
/// the rotation handle is two of them above the top edge.
FRAMEWORK_API QPointF place(const ObjectGeometry &geometry, Handle handle, double handleSize);

struct Resizing {
    bool keepsRatio = false;
    bool aboutCenter = false; ///< the centre stays, otherwise the opposite corner or edge
};

/// The geometry after @p handle was dragged by @p way from where it was at @p start. A side becomes
/// no shorter than MinSide. Not for the rotation handle.
FRAMEWORK_API ObjectGeometry resized(const ObjectGeometry &start, Handle handle, const QPointF &way,
                                     Resizing resizing);

/// The geometry after the rotation handle was dragged from @p from to @p to.
FRAMEWORK_API ObjectGeometry turned(const ObjectGeometry &start, const QPointF &from,
                                    const QPointF &to, bool snaps);

} // namespace ObjectHandles
