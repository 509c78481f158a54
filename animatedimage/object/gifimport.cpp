#include "animatedimage/core/framenames.h"
#include "animatedimage/object/animatedimage.h"

#include <QtCore/QFileInfo>
#include <QtCore/QTimer>
#include <QtGui/QImageReader>
#include <QtGui/QMovie>

void CAnimatedImage::loadFromGifFile(const QString &fileName)
{
    QImageReader probe;
    probe.setFileName(fileName);
    importGif(fileName, probe);
}

void CAnimatedImage::loadFromGifFile(const QString &fileName, QIODevice *device)
{
    if (fileName.isEmpty() || !device)
        return;
    QImageReader probe(device, QByteArray());
    importGif(fileName, probe);
}

/// Takes the frames from the file and, where it can, the interval from @p probe.
void CAnimatedImage::importGif(const QString &fileName, QImageReader &probe)
{
    const bool isProbeReadable = probe.canRead();
    if (isProbeReadable) {
        // The reader knows the delay after a frame only once it has read that frame.
        probe.read();
        m_shiftInterval = probe.nextImageDelay();
    }

    QMovie movie;
    movie.setFileName(fileName);
    movie.setCacheMode(QMovie::CacheAll);
    const QString stem = QFileInfo(fileName).baseName();
    for (int i = 0; i < movie.frameCount(); ++i) {
        movie.jumpToFrame(i);
        m_portraits.append({FrameNames::numbered(stem, i + 1), movie.currentImage()});
    }
    m_regions.noteNewFrames();

    if (!isProbeReadable)
        m_shiftInterval = movie.nextFrameDelay();
    // A timer that ticks with an interval of 0 would keep the event loop busy for ever.
    if (m_shiftInterval <= 0)
        m_shiftTimer->stop();
    m_shiftTimer->setInterval(m_shiftInterval);
    m_loopCount = qMax(0, movie.loopCount()) - 1;
}
