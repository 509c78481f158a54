#include "flipbook/editing/filmmemory.h"

#include <algorithm>

namespace
{

/// The bytes of the thumbnail of a picture: the pixels, and as much again twice over while it
/// is written into an answer that grows.
qint64 thumbnailBytes(const QSize &size)
{
    constexpr int side = 150;
    constexpr qint64 bytesPerPixel = 4;
    constexpr qint64 copies = 3;
    const QSize thumbnail = size.scaled(side, side, Qt::KeepAspectRatio);
    return qint64(thumbnail.width()) * thumbnail.height() * bytesPerPixel * copies;
}

} // namespace

FilmMemory FilmMemory::of(const Plugin &plugin, CBaseObject &object)
{
    FilmMemory memory;
    const Plugin::Frames frames = plugin.frames(object);
    for (const auto &frame : frames) {
        memory.pixels += frame.second.sizeInBytes();
        memory.largest = std::max(memory.largest, qint64(frame.second.sizeInBytes()));
        if (!frame.second.isNull())
            memory.thumbnails += thumbnailBytes(frame.second.size());
    }
    return memory;
}
