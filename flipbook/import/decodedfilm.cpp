#include "flipbook/import/decodedfilm.h"

#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/saturating.h"

int shownMs(int ms)
{
    constexpr int longestIgnored = 10;
    constexpr int instead = 100;
    return ms <= longestIgnored ? instead : ms;
}

QString frameCountText(qint64 frames)
{
    return frames == 1 ? QStringLiteral("1 frame") : QStringLiteral("%1 frames").arg(frames);
}

void requireFilm(const MemoryAccount &memory, const QString &path, const QSize &size, qint64 frames,
                 int workingPictures, qint64 otherBytes)
{
    const qint64 pictures = MemoryBudget::neededForFilm(size, frames, workingPictures);
    memory.require(Saturating::sum(pictures, otherBytes), path,
                   QStringLiteral("%1 of %2 x %3 pixels")
                       .arg(frameCountText(frames))
                       .arg(size.width())
                       .arg(size.height()));
}
