#pragma once

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QVector>
#include <QtGui/QImage>

/// The colours that frames of a GIF need, and the palettes that have them.
namespace GifColours
{

constexpr int MaxColours = 256;

/// The colours of the pixels in @p rect in which @p shown differs from @p canvas, in ascending
/// order; with @p withUnchanged those of all opaque pixels in it. When there are more than
/// MaxColours, only some of them, which are more than MaxColours too.
QVector<QRgb> needed(const QImage &canvas, const QImage &shown, const QRect &rect,
                     bool withUnchanged = false);

/// A palette for all frames, from the colours that each of them needs, in ascending order: the
/// colours of as many frames as it has room for, those first that most frames need. Frames that
/// need more than MaxColours are left out.
QVector<QRgb> common(const QVector<QVector<QRgb>> &frames);

/// The number of bits of an index into @p count colours, at least 1.
int bitsFor(int count);

/// The index of each colour of @p palette.
QHash<QRgb, int> indexOf(const QVector<QRgb> &palette);

} // namespace GifColours
