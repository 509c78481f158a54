#pragma once

#include "animatedimage/core/region.h"

#include <QtCore/QSizeF>
#include <QtGui/QPainterPath>

/// The outline of opaque rectangles at the size of an object. Pure functions.
namespace HitPath
{

/// The nearest number of single precision.
float nearestFloat(double value);

/// A path without rectangles, filled by winding as every hit path is.
QPainterPath empty();

/// @p rects, in order, stretched from the picture of @p measured pixels that they were found in to
/// an object of @p size item units. Both factors and all products are of single precision.
QPainterPath of(const OpaqueRegion::Rects &rects, const QSize &measured, const QSizeF &size);

} // namespace HitPath
