#pragma once

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtGui/QImage>

/// The tiled background of a page: which part of an object is seen, and the tile that it is cut
/// from. Pure functions.
namespace BackgroundTile
{

/// The part of an object at @p position (page coordinates) that lies on @p page, in the object's
/// own coordinates: its offset is the distance that the object sticks out beyond x = 0 or y = 0.
/// An object wholly off the page has a part of no size.
QRectF visiblePart(const QPointF &position, const QSizeF &size, const QRectF &page);

/// @p frame scaled to @p size (rounded to pixels) and laid out twice across and twice down, in
/// Format_ARGB32. A size of no pixels, one that is not finite, or one whose tile would take more
/// than a gigabyte gives a null image; a null frame a transparent one.
QImage tile(const QImage &frame, const QSizeF &size);

/// @p offset brought into a pattern that repeats every @p length pixels: 0 or more, NaN for a
/// length of 0.
double wrappedOffset(double offset, int length);

} // namespace BackgroundTile
