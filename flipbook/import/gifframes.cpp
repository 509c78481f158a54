#include "flipbook/import/gifframes.h"

#include <QtGui/QImageReader>
#include <QtGui/QMovie>

#include <algorithm>

namespace
{

/// QMovie would subtract the time that it took to read the frame.
int firstDelay(const QString &path)
{
    QImageReader reader(path, "gif");
    // The delay after a frame is known once that frame was read.
    reader.read();
    return reader.nextImageDelay();
}

} // namespace

GifFrames readGifFrames(const QString &copy, const QString &stem,
                        const std::function<void(int)> &progress)
{
    GifFrames gif;
    QMovie movie(copy, "gif");
    const int count = movie.frameCount();
    for (int i = 0; i < count && movie.jumpToFrame(i); ++i) {
        gif.frames.append(
            {QStringLiteral("%1_%2").arg(stem, QString::number(i + 1)), movie.currentImage()});
        progress(i + 1);
    }
    gif.intervalMs = firstDelay(copy);
    gif.loopCount = std::max(0, movie.loopCount()) - 1;
    return gif;
}
