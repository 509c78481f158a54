#include "flipbook/editing/filmmemory.h"

#include "flipbook/base/saturating.h"

#include <algorithm>

FilmMemory FilmMemory::of(const Plugin &plugin, CBaseObject &object)
{
    FilmMemory memory;
    const Plugin::Frames frames = plugin.frames(object);
    for (const auto &frame : frames) {
        const qint64 bytes = frame.second.sizeInBytes();
        memory.pixels = Saturating::sum(memory.pixels, bytes);
        memory.largest = std::max(memory.largest, bytes);
    }
    return memory;
}

qint64 FilmMemory::ofPaintedCopies(const Plugin &plugin, const QList<CBaseObject *> &objects)
{
    constexpr qint64 mostOfAllCaches = qint64(64) << 20;
    qint64 bytes = 0;
    for (CBaseObject *object : objects) {
        // Pictures without alpha are painted as they are.
        qint64 largest = 0;
        const Plugin::Frames frames = plugin.frames(*object);
        for (const auto &frame : frames) {
            if (frame.second.hasAlphaChannel())
                largest = std::max(largest, qint64(frame.second.sizeInBytes()));
        }
        bytes = Saturating::sum(bytes, largest);
    }
    return std::min(bytes, mostOfAllCaches);
}
