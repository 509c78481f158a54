#include "flipbook/import/picturefile.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/base/privatefolder.h"
#include "flipbook/base/reading.h"
#include "flipbook/base/saturating.h"
#include "flipbook/import/gifdescriptors.h"
#include "flipbook/import/gifscreen.h"
#include "flipbook/import/picturefacts.h"
#include "flipbook/import/privatecopy.h"
#include "flipbook/import/sourcefile.h"
#include "flipbook/import/webpfile.h"

#include <QtCore/QBuffer>
#include <QtGui/QImageReader>

namespace
{

/// The first frame of the GIF on @p buffer, whose screen the decoder would leave unset.
QImage gifOver(QBuffer &buffer)
{
    const GifDescriptors gif = readGifDescriptors(buffer);
    return GifScreen::firstFrame(buffer.data(), gif);
}

/// A decoder that is handed a picture of the right size and format draws into that.
QImage overZeros(QImageReader &reader)
{
    QImage picture(reader.size(), reader.imageFormat());
    picture.fill(0);
    return reader.read(&picture) ? picture : QImage();
}

void refuseForeign(const QString &path, PictureFormat format)
{
    const bool isNamedGif = path.endsWith(QLatin1String(".gif"), Qt::CaseInsensitive);
    if (!format.isKnown())
        throw Failure{path, isNamedGif ? QStringLiteral("not a GIF")
                                       : QStringLiteral("not a picture that can be read; those "
                                                        "are %1")
                                             .arg(PictureFormat::list())};
    if (isNamedGif && format.kind() != PictureFormat::Gif)
        throw Failure{path, QStringLiteral("not a GIF: it is a picture of the format %1; rename it")
                                .arg(format.title())};
}

std::unique_ptr<QFile> opened(const QString &copy)
{
    auto file = std::make_unique<QFile>(copy);
    if (!file->open(QIODevice::ReadOnly))
        throw Failure{copy, file->errorString()};
    return file;
}

QImage decoded(QFile &file, const QString &path, const MemoryAccount &memory)
{
    QByteArray bytes = contentOf(file, path, memory);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const PictureFacts facts = PictureFacts::read(buffer, memory.limit());
    // The object will keep a copy of its own.
    const qint64 needed = Saturating::sum(facts.neededBytes(), facts.pixelBytes);
    memory.require(Saturating::sum(needed, bytes.size()), path, QStringLiteral("the picture"));
    if (!facts.isReadable())
        throw Failure{path, QStringLiteral("the picture cannot be read: it is cut short or "
                                           "damaged")};
    buffer.seek(0);
    QImageReader reader(&buffer);
    reader.setAutoDetectImageFormat(false);
    reader.setFormat(facts.format.readerName());
    QImage picture;
    if (facts.format.kind() == PictureFormat::Webp)
        picture = WebpFile::readStill(bytes);
    else if (!facts.leavesPixelsUnset)
        picture = reader.read();
    else
        picture = facts.format.kind() == PictureFormat::Gif ? gifOver(buffer) : overZeros(reader);
    if (picture.isNull() && facts.format.kind() == PictureFormat::Webp)
        throw Failure{path, QStringLiteral("the picture cannot be read: it is cut short or "
                                           "damaged")};
    if (picture.isNull())
        throw Failure{path, QStringLiteral("the picture cannot be read: ") + reader.errorString()};
    return picture;
}

} // namespace

QImage readPicture(QFile &file, const QString &path, const MemoryAccount &memory)
{
    refuseForeign(path, PictureFormat::of(file.peek(PictureFormat::StartLength)));
    return decoded(file, path, memory);
}

QImage readPicture(const QString &path, Reading &reading)
{
    return readPicture(*reading.openFile(path), path, reading.memory());
}

void settleCopy(const QString &copy, const QString &path, const MemoryAccount &memory)
{
    if (PictureFacts::read(*opened(copy), memory.limit()).needsOwnDecoder())
        writePng(copy, readCopy(copy, path, memory));
}

QImage readCopy(const QString &copy, const QString &path, const MemoryAccount &memory)
{
    return decoded(*opened(copy), path, memory);
}

QString copyPicture(const QString &path, Reading &reading, PrivateFolder &folder)
{
    const std::unique_ptr<QFile> file = reading.openFile(path);
    const PictureFormat format = PictureFormat::of(file->peek(PictureFormat::StartLength));
    refuseForeign(path, format);
    const QString copy = privateCopy(*file, path, format.suffix(), folder);
    const PictureFacts facts = PictureFacts::read(*opened(copy), reading.memory().limit());
    reading.memory().require(facts.neededBytes(), path, QStringLiteral("the picture"));
    settleCopy(copy, path, reading.memory());
    return copy;
}
