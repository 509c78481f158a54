#pragma once

#include "animatedimage/core/region.h"

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtGui/QPainterPath>

/// The outline of opaque rectangles at the size of an object, and of its handles. Pure functions.
namespace HitPath
{

/// Where the handles of an edited object are.
struct Handles {
    QRectF rect; ///< of the object, in item coordinates
    double size; ///< of a handle, in item units

    /// Exact, unlike the comparison of rectangles in Qt.
    bool operator==(const Handles &other) const;
};

/// The nearest number of single precision.
float nearestFloat(double value);

/// A path without rectangles, filled by winding as every hit path is.
QPainterPath empty();

/// @p rects, in order, stretched from the picture of @p measured pixels that they were found in to
/// an object of @p size item units. Both factors and all products are of single precision.
/// @p roomForHandles takes memory for handles as well, so that adding them moves nothing.
QPainterPath of(const OpaqueRegion::Rects &rects, const QSize &measured, const QSizeF &size,
                bool roomForHandles = false);

/// Adds the grab areas of the eight resize handles and of the rotation handle above the object.
void addHandles(QPainterPath &path, const Handles &handles);

} // namespace HitPath
