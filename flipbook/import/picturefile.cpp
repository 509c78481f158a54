#include "flipbook/import/picturefile.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/import/gifdescriptors.h"
#include "flipbook/import/sourcefile.h"

#include <QtGui/QImageReader>

namespace
{

qint64 memoryFor(QIODevice &device)
{
    if (device.peek(3) == "GIF") {
        // The decoder's own answer for the size of a GIF does not hold for large screens.
        const GifDescriptors gif = readGifDescriptors(device);
        return MemoryBudget::neededFor(gif, 1);
    }
    QImageReader reader(&device);
    const QSize size = reader.size();
    return size.isValid() ? MemoryBudget::neededForPicture(size.width(), size.height()) : 0;
}

} // namespace

qint64 pictureMemory(const QString &path)
{
    return memoryFor(*openRegularFile(path));
}

QImage readPicture(const QString &path, qint64 maxMemory)
{
    const std::unique_ptr<QFile> file = openRegularFile(path);
    QImageReader reader(file.get());
    const bool isNamedGif = path.endsWith(QLatin1String(".gif"), Qt::CaseInsensitive);
    if (!reader.canRead()) {
        throw Failure{path, isNamedGif ? QStringLiteral("not a GIF")
                                       : QStringLiteral("not a picture that can be read")};
    }
    if (isNamedGif && reader.format() != "gif")
        throw Failure{path, QStringLiteral("not a GIF: it is a picture of the format %1; rename it")
                                .arg(QString::fromLatin1(reader.format()).toUpper())};
    const qint64 needed = pictureMemory(path);
    if (needed > maxMemory)
        throw Failure{path, QStringLiteral("the picture would need %1 of memory, more than the %2 "
                                           "that --max-memory allows")
                                .arg(MemoryBudget::text(needed), MemoryBudget::text(maxMemory))};
    const QImage picture = reader.read();
    if (picture.isNull())
        throw Failure{path, QStringLiteral("the picture cannot be read: ") + reader.errorString()};
    return picture;
}
