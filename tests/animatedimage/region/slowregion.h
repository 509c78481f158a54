#pragma once

#include <QtCore/QList>
#include <QtCore/QRect>
#include <QtGui/QImage>

/// The opaque rectangles of a picture once more, as slow and as plain as can be: a yardstick for
/// the plug-in's own function, which shares no line with it.
namespace SlowRegion
{

QList<QRect> rectsFromImage(const QImage &image, int threshold);

} // namespace SlowRegion
