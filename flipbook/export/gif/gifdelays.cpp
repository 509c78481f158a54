#include "flipbook/export/gif/gifdelays.h"

#include <algorithm>

GifDelays gifDelays(const QVector<int> &delaysMs)
{
    constexpr qint64 msPerUnit = 10;
    constexpr qint64 least = MinGifDelayMs / msPerUnit;
    constexpr qint64 most = 65535;
    GifDelays delays;
    qint64 wantedMs = 0;
    qint64 written = 0;
    for (const int delay : delaysMs) {
        wantedMs += delay;
        const qint64 end = (wantedMs + msPerUnit / 2) / msPerUnit;
        const qint64 time = std::clamp(end - written, least, most);
        delays.centiseconds.append(int(time));
        written += time;
    }
    delays.lengthMs = written * msPerUnit;
    return delays;
}
