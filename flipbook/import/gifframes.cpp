#include "flipbook/import/gifframes.h"

#include <QtGui/QMovie>

#include <algorithm>

GifFrames readGifFrames(const QString &copy, const QString &stem,
                        const std::function<void(int)> &progress)
{
    GifFrames gif;
    QMovie movie(copy, "gif");
    const int count = movie.frameCount();
    for (int i = 0; i < count && movie.jumpToFrame(i); ++i) {
        gif.frames.append(
            {QStringLiteral("%1_%2").arg(stem, QString::number(i + 1)), movie.currentImage()});
        gif.delaysMs.append(movie.nextFrameDelay());
        progress(i + 1);
    }
    // The delay after a frame is known once that frame was read.
    gif.intervalMs = gif.delaysMs.value(0);
    gif.loopCount = std::max(0, movie.loopCount()) - 1;
    return gif;
}
