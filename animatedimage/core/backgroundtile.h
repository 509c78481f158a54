#pragma once

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtGui/QImage>

class QPainter;

/// The tiled background of a page: which part of an object is seen, and the tile that it is cut
/// from. Pure functions.
namespace BackgroundTile
{

/// The part of an object at @p position (page coordinates) that is on @p page, in the object's
/// own coordinates: its offset is the distance that the object sticks out beyond x = 0 or y = 0.
/// An object completely off the page has a part of no size.
QRectF visiblePart(const QPointF &position, const QSizeF &size, const QRectF &page);

/// @p frame scaled to @p size (rounded to pixels) and laid out twice across and twice down, in
/// Format_ARGB32. A size of no pixels, one that is not finite, or one whose tile the memory of the
/// machine cannot hold gives a null image; a null frame gives a transparent one.
QImage tile(const QImage &frame, const QSizeF &size);

/// Paints @p tile into @p part, unscaled, beginning at @p offset in the tile. Both must be finite.
/// A tile that is too large for one painting call is painted in pieces, which may turn the
/// painter's antialiasing off.
void paint(QPainter &painter, const QRectF &part, const QImage &tile, const QPointF &offset);

/// @p offset brought into a pattern that repeats every @p length pixels: 0 or more, NaN for a
/// length of 0.
double wrappedOffset(double offset, int length);

} // namespace BackgroundTile
