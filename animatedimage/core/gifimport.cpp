#include "animatedimage/core/gifimport.h"

#include "animatedimage/core/framenames.h"

#include <QtCore/QFileInfo>
#include <QtGui/QImageReader>
#include <QtGui/QMovie>

#include <optional>

namespace
{

std::optional<int> firstDelay(QImageReader &probe)
{
    if (!probe.canRead())
        return std::nullopt;
    // The reader knows the delay after a frame only once it has read that frame.
    probe.read();
    return probe.nextImageDelay();
}

} // namespace

GifFile readGifFile(const QString &path, QImageReader &probe)
{
    const std::optional<int> delay = firstDelay(probe);
    QMovie movie;
    movie.setFileName(path);
    movie.setCacheMode(QMovie::CacheAll);
    const QString stem = QFileInfo(path).baseName();
    QList<CAnimatedPortrait> frames;
    for (int i = 0; i < movie.frameCount(); ++i) {
        movie.jumpToFrame(i);
        frames.append({FrameNames::numbered(stem, i + 1), movie.currentImage()});
    }
    // Qt reports 0 for a GIF that never ends, and -1 for one without a loop count.
    return {frames, delay.value_or(movie.nextFrameDelay()), qMax(0, movie.loopCount()) - 1};
}
