#include "animatedimage/object/import.h"

#include "animatedimage/core/framelist.h"

#include <QtCore/QTimer>
#include <QtGui/QImageReader>

#include <new>

namespace
{

bool isGifPath(const QString &path)
{
    return path.contains(QLatin1String(".gif"), Qt::CaseInsensitive);
}

} // namespace

bool CAnimatedImage::loadFromFile(const QString &path)
try {
    const Import import{*this};
    import.begin();
    const bool isGif = isGifPath(path);
    if (isGif)
        loadFromGifFile(path);
    else
        import.takeFolder(readFrameFolder(path));
    if (import.sizeToFirstFrame(isGif))
        updateRegion(true);
    return true;
} catch (const std::bad_alloc &) {
    return true;
}

bool CAnimatedImage::loadFromFile(const QString &path, QIODevice *device)
try {
    const Import import{*this};
    import.begin();
    if (!isGifPath(path))
        return false;
    loadFromGifFile(path, device);
    if (import.sizeToFirstFrame(true))
        updateRegion(true);
    return true;
} catch (const std::bad_alloc &) {
    return true;
}

bool CAnimatedImage::loadFromImage(const QImage *image)
try {
    if (!image)
        return true;
    const QImage copy = image->copy();
    const Import import{*this};
    import.begin();
    addFrames({CAnimatedPortrait(FrameList::freeName(m_portraits, nameOnPage(), true), copy)});
    if (import.sizeToFirstFrame(true))
        updateRegion(0, true);
    return true;
} catch (const std::bad_alloc &) {
    return true;
}

void CAnimatedImage::loadFromGifFile(const QString &fileName)
try {
    QImageReader probe;
    probe.setFileName(fileName);
    Import{*this}.takeGif(readGifFile(fileName, probe));
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::loadFromGifFile(const QString &fileName, QIODevice *device)
try {
    if (fileName.isEmpty() || !device)
        return;
    QImageReader probe(device, QByteArray());
    Import{*this}.takeGif(readGifFile(fileName, probe));
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::Import::begin() const
{
    object.m_portraits.clear();
    object.m_runningIndex = 0;
}

void CAnimatedImage::Import::takeGif(const GifFile &gif) const
{
    object.addFrames(gif.frames);
    object.m_shiftInterval = gif.intervalMs;
    object.m_loopCount = gif.loopCount;
    // A timer that ticks with an interval of 0 would keep the event loop busy forever.
    if (gif.intervalMs <= 0)
        object.m_shiftTimer->stop();
    object.m_shiftTimer->setInterval(gif.intervalMs);
}

void CAnimatedImage::Import::takeFolder(const FrameFolder &folder) const
{
    object.addFrames(folder.frames);
    object.m_shiftInterval = folder.intervalMs.value_or(object.m_shiftInterval);
    object.m_keepRatio = folder.keepsRatio.value_or(object.m_keepRatio);
    object.m_mirrored = folder.isMirrored.value_or(object.m_mirrored);
    object.m_flipped = folder.isFlipped.value_or(object.m_flipped);
    object.m_loopCount = folder.loopCount.value_or(object.m_loopCount);
}

bool CAnimatedImage::Import::sizeToFirstFrame(bool notify) const
{
    if (object.m_portraits.isEmpty())
        return true;
    const QSizeF size = object.m_portraits.constFirst().image.size();
    return object.outlives([&] { object.setSize(size, false, notify); });
}
