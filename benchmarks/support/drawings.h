#pragma once

#include <QtGui/QImage>

/// Pictures for the benchmarks, always the same ones, in Format_ARGB32.
namespace Drawings
{

QImage opaque(const QSize &size);
QImage empty(const QSize &size);
/// A disc with smooth edges.
QImage blob(const QSize &size);
/// Lines of letters.
QImage text(const QSize &size);
/// A grey ramp, dithered: few pixels are opaque at the left, most at the right.
QImage dither(const QSize &size, int phase = 0);
QImage checker(const QSize &size);
/// Each pixel by chance.
QImage noise(const QSize &size);
/// @p count separate rectangles: none joins the next.
QImage rectangles(const QSize &size, int count, int phase = 0);

/// A cartoon: flat colours, a figure that moves with @p phase, transparent around it.
QImage cartoon(const QSize &size, int phase);
/// Like a photograph: no two pixels alike, no alpha.
QImage photo(const QSize &size, int phase);

} // namespace Drawings
