#pragma once

#include <QtCore/QList>
#include <QtCore/QRect>
#include <QtGui/QImage>

#include <vector>

/// The rectangles that cover the opaque pixels of a picture. Pure functions on pictures.
namespace OpaqueRegion
{

/// Pictures of more pixels than the square of this are reduced to fit it before measuring.
constexpr int MeasuredSide = 256;
/// The least alpha (or, with one byte a pixel, the least value) that counts as opaque.
constexpr int OpaqueThreshold = 1;

/// Rectangles side by side in memory: a dithered picture has tens of thousands.
using Rects = std::vector<QRect>;

/// What was measured of a picture.
struct Measured {
    Rects rects;
    QSize size; ///< of the picture that the rectangles were found in
};

/// The opaque rectangles of measuredImage(@p image), as rectsFromImage() finds them. A picture
/// without alpha that would be reduced is not even read.
Measured measured(const QImage &image, int maxSide);

/// The picture to measure in place of @p source: itself when it has at most maxSide² pixels (a
/// 32-bit signed product), otherwise a smooth reduction that fits maxSide x maxSide.
QImage measuredImage(const QImage &source, int maxSide);

/// The opaque rectangles of @p image, in its pixels, from top to bottom. Judges the value of one
/// byte a pixel, or the fourth byte of four; any other depth gives no rectangles. The last column
/// never belongs to a rectangle: a run that reaches it ends one pixel before, and a run of the
/// last pixel alone is a rectangle of width 0.
Rects opaqueRects(const QImage &image, int threshold);
/// The same as a list.
QList<QRect> rectsFromImage(const QImage &image, int threshold);
QList<QRect> toList(const Rects &rects);

/// Folds the runs of one row into the rectangles that still grow downward: all of @p open grow
/// by @p row when every run lies exactly below its partner, otherwise they move to @p done and
/// the row takes their place.
void mergeRects(QList<QRect> &done, QList<QRect> &open, const QList<QRect> &row);

/// @p rect as it lies after mirroring a picture of @p width pixels left to right.
QRect mirrored(const QRect &rect, int width);
/// @p rect as it lies after flipping a picture of @p height pixels top to bottom.
QRect flipped(const QRect &rect, int height);

} // namespace OpaqueRegion
