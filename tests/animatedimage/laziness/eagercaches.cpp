// Thumbnails and painting without caches. Compiled instead of the plug-in's own thumbnailcache.cpp
// and paintedcopy.cpp.

#include "animatedimage/core/paintedcopy.h"
#include "animatedimage/core/thumbnail.h"
#include "animatedimage/core/thumbnailcache.h"

void ThumbnailCache::writeList(QDataStream &stream, const QList<CAnimatedPortrait> &frames)
{
    QList<QPair<QString, QImage>> list;
    for (const CAnimatedPortrait &frame : frames)
        list.append({frame.name, thumbnail(frame.image)});
    stream << list;
}

void ThumbnailCache::write(QDataStream &stream, const QImage &picture)
{
    stream << thumbnail(picture);
}

QImage PaintedCopy::of(const QImage &picture, const QPainter &, const QRectF &)
{
    return picture;
}

void PaintedCopy::drop() {}
