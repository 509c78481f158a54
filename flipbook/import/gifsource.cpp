#include "flipbook/import/gifsource.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/import/sourcefile.h"

#include <QtGui/QImageReader>

#include <algorithm>

namespace
{

QString frameCountText(qint64 frames)
{
    return frames == 1 ? QStringLiteral("1 frame") : QStringLiteral("%1 frames").arg(frames);
}

void refuseUnreadable(const QString &path, const GifDescriptors &gif)
{
    if (!gif.hasScreen)
        throw Failure{path, QStringLiteral("cut short within its first %1 bytes; nothing could "
                                           "be read")
                                .arg(gif.endOffset)};
    // Where the blocks stop making sense, a decoder may still find its way.
    if (gif.pixelsFound || gif.ending == GifEnding::UnknownBlock)
        return;
    if (!gif.damages.isEmpty())
        throw Failure{path, QStringLiteral("damaged; nothing could be read: in frame %1, %2")
                                .arg(gif.damages.first().frame)
                                .arg(gif.damages.first().what)};
    if (gif.ending == GifEnding::CutShort)
        throw Failure{
            path,
            QStringLiteral("cut short after %1 bytes, before any picture").arg(gif.endOffset)};
    throw Failure{path, QStringLiteral("a GIF without frames")};
}

void refuseTooLarge(const QString &path, const GifDescriptors &gif, qint64 maxMemory)
{
    // Decoders do not give up at the same places as we do: the larger count is the safer one.
    const qint64 frames = std::max<qint64>(gif.frames, QImageReader(path).imageCount());
    const qint64 needed = MemoryBudget::neededFor(gif, frames);
    if (needed <= maxMemory)
        return;
    throw Failure{path, QStringLiteral("%1 of %2 x %3 pixels would need %4 of memory, more than "
                                       "the %5 that --max-memory allows")
                            .arg(frameCountText(frames))
                            .arg(gif.screen.width())
                            .arg(gif.screen.height())
                            .arg(MemoryBudget::text(needed), MemoryBudget::text(maxMemory))};
}

QStringList warningsOf(const GifDescriptors &gif)
{
    QStringList warnings;
    if (gif.ending == GifEnding::CutShort)
        warnings << QStringLiteral("cut short: %1 of %2 could be read whole")
                        .arg(gif.wholeFrames)
                        .arg(frameCountText(gif.frames));
    if (gif.ending == GifEnding::UnknownBlock)
        warnings << QStringLiteral("damaged: byte %1 begins no block; %2 before it")
                        .arg(gif.endOffset)
                        .arg(frameCountText(gif.frames));
    for (const GifDamage &damage : gif.damages)
        warnings << QStringLiteral("frame %1 is damaged: %2").arg(damage.frame).arg(damage.what);
    const qint64 unnamed = gif.damagedFrames - gif.damages.size();
    if (unnamed > 0)
        warnings << QStringLiteral("%1 more damaged").arg(frameCountText(unnamed));
    return warnings;
}

} // namespace

bool isGifPath(const QString &path)
{
    return path.contains(QLatin1String(".gif"), Qt::CaseInsensitive);
}

GifSource examineGif(const QString &path, qint64 maxMemory)
{
    if (!isGifPath(path))
        throw Failure{path, QStringLiteral("a GIF whose name does not say so; rename it to end "
                                           "in .gif")};
    GifSource source;
    source.descriptors = readGifDescriptors(*openRegularFile(path));
    refuseUnreadable(path, source.descriptors);
    refuseTooLarge(path, source.descriptors, maxMemory);
    source.warnings = warningsOf(source.descriptors);
    return source;
}
