#include "flipbook/import/gifsource.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/import/decodedfilm.h"
#include "flipbook/import/privatecopy.h"
#include "flipbook/import/sourcefile.h"

#include <QtCore/QFile>
#include <QtGui/QImageReader>

#include <algorithm>

namespace
{

/// Only where a decoder would find nothing at all: it may find its way where the blocks stop making
/// sense, and shows what it can of damaged frames.
void refuseEmpty(const QString &path, const GifDescriptors &gif)
{
    const bool mayHoldPictures = gif.pixelsFound || gif.ending == GifEnding::UnknownBlock;
    if (!gif.hasScreen || !mayHoldPictures)
        throw Failure{path, reasonNothingIsRead(gif)};
}

void refuseUnnamed(const QString &path)
{
    // Standard input has no name, but its copy has one.
    if (!isGifPath(path) && !isStandardInput(path))
        throw Failure{path, QStringLiteral("a GIF without \".gif\" in its name; rename it")};
}

void count(const QString &copy, const QString &path, const GifDescriptors &gif,
           MemoryAccount &memory)
{
    // Decoders do not stop at the same places as this code: the larger count is the safer one.
    const qint64 frames = std::max<qint64>(gif.frames, QImageReader(copy, "gif").imageCount());
    memory.require(MemoryBudget::neededForFilm(gif.screen, frames, gif.workingPictures()), path,
                   QStringLiteral("%1 of %2 x %3 pixels")
                       .arg(frameCountText(frames))
                       .arg(gif.screen.width())
                       .arg(gif.screen.height()));
    memory.take(MemoryBudget::keptForFilm(gif.screen, frames));
}

QString cutShortText(const GifDescriptors &gif)
{
    const QString count = frameCountText(gif.frames);
    if (gif.wholeFrames == gif.frames)
        return QStringLiteral("truncated: its end is missing; its %1 %2 complete")
            .arg(count, gif.frames == 1 ? QStringLiteral("is") : QStringLiteral("are"));
    if (gif.frames == 1)
        return QStringLiteral("truncated: its only frame could not be read completely");
    const QString whole =
        gif.wholeFrames == 0 ? QStringLiteral("none") : QString::number(gif.wholeFrames);
    return QStringLiteral("truncated: %1 of %2 could be read completely").arg(whole, count);
}

QStringList warningsOf(const GifDescriptors &gif)
{
    QStringList warnings;
    if (gif.ending == GifEnding::CutShort)
        warnings << cutShortText(gif);
    if (gif.ending == GifEnding::UnknownBlock)
        warnings << QStringLiteral("damaged: no block starts at byte %1; %2 before it")
                        .arg(gif.endOffset)
                        .arg(frameCountText(gif.frames));
    for (const GifDamage &damage : gif.damages)
        warnings << QStringLiteral("frame %1 is damaged: %2").arg(damage.frame).arg(damage.what);
    const qint64 unnamed = gif.damagedFrames - gif.damages.size();
    if (unnamed > 0)
        warnings << QStringLiteral("%1 more damaged").arg(frameCountText(unnamed));
    if (gif.leavesScreenUnset && !warnings.isEmpty())
        warnings << QStringLiteral("pixels that no frame covers are transparent");
    if (gif.unusual)
        warnings << QStringLiteral("frame %1 is unusual: %2, and other programs may not read it")
                        .arg(gif.unusual->frame)
                        .arg(gif.unusual->what);
    return warnings;
}

} // namespace

QString reasonNothingIsRead(const GifDescriptors &gif)
{
    if (!gif.hasScreen)
        return QStringLiteral("truncated within its first %1 bytes; nothing could be read")
            .arg(gif.endOffset);
    if (!gif.damages.isEmpty())
        return QStringLiteral("damaged; nothing could be read: in frame %1, %2")
            .arg(gif.damages.first().frame)
            .arg(gif.damages.first().what);
    if (gif.ending == GifEnding::UnknownBlock)
        return QStringLiteral("damaged: no block starts at byte %1; nothing could be read")
            .arg(gif.endOffset);
    if (gif.ending == GifEnding::CutShort)
        return QStringLiteral("truncated after %1 bytes%2")
            .arg(QString::number(gif.endOffset), gif.pixelsFound
                                                     ? QStringLiteral("; no picture could be read")
                                                     : QStringLiteral(", before any picture"));
    return gif.frames == 0 ? QStringLiteral("a GIF without frames")
                           : QStringLiteral("a GIF of which no frame could be read");
}

bool isGifPath(const QString &path)
{
    return path.contains(QLatin1String(".gif"), Qt::CaseInsensitive);
}

GifSource copyGif(QFile &file, const QString &path, MemoryAccount &memory, PrivateFolder &folder)
{
    refuseUnnamed(path);
    // Frames take more memory than their bytes in the file.
    memory.require(file.size(), path, QStringLiteral("the bytes of the file alone"));
    return examineGif(privateCopy(file, path, QStringLiteral(".gif"), folder), path, memory);
}

GifSource examineGif(const QString &copy, const QString &path, MemoryAccount &memory)
{
    refuseUnnamed(path);
    QFile file(copy);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure{copy, file.errorString()};
    GifSource source;
    source.copy = copy;
    source.descriptors = readGifDescriptors(file);
    refuseEmpty(path, source.descriptors);
    count(copy, path, source.descriptors, memory);
    source.warnings = warningsOf(source.descriptors);
    return source;
}
