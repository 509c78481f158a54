#include "animatedimage/core/picturestream.h"

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QtEndian>
#include <QtGui/QImageReader>

namespace PictureStream
{

namespace
{

/// Before this version of the stream format a picture had no marker for being null.
constexpr int versionWithNullMarker = QDataStream::Qt_3_1;

/// Memory that a picture may take however few its bytes are.
constexpr qint64 alwaysGranted = qint64{64} * 1024 * 1024;

/// Whether a picture of @p size may come from the bytes that @p device still has. Deflate reaches
/// 1032 to 1, and one bit may become a pixel of four bytes at the most.
bool isJustified(const QSize &size, const QIODevice &device)
{
    if (device.isSequential())
        return true;
    constexpr qint64 bestRatio = qint64{1032} * 32;
    const qint64 bytes = qint64(size.width()) * size.height() * 4;
    return bytes <= alwaysGranted || bytes / bestRatio <= device.bytesAvailable();
}

/// Whether each chunk of the PNG file at the position of @p device may be as long as it says: the
/// PNG library takes memory for a whole chunk before it reads it.
bool hasJustifiedChunks(QIODevice &device)
{
    if (device.isSequential())
        return true;
    constexpr int signatureLength = 8;
    constexpr int frameLength = 12; // length, type and check sum
    const qint64 start = device.pos();
    bool isJustified = true;
    QByteArray type;
    qint64 at = start + signatureLength;
    // Never to a place behind the end: a buffer would grow.
    while (isJustified && type != "IEND" && at + frameLength <= device.size()) {
        const QByteArray lengthAndType = device.seek(at) ? device.read(8) : QByteArray();
        if (lengthAndType.size() < 8)
            break;
        const qint64 length = qFromBigEndian<quint32>(lengthAndType.constData());
        type = lengthAndType.mid(4);
        isJustified = length <= alwaysGranted || length <= device.bytesAvailable();
        at += frameLength + length;
    }
    return device.seek(start) && isJustified;
}

bool fail(QDataStream &stream)
{
    stream.setStatus(QDataStream::ReadPastEnd);
    return false;
}

} // namespace

bool read(QDataStream &stream, QImage &image)
{
    image = QImage();
    QIODevice *device = stream.device();
    if (!device)
        return fail(stream);
    if (stream.version() >= versionWithNullMarker) {
        qint32 isPresent = 0;
        stream >> isPresent;
        if (stream.status() != QDataStream::Ok)
            return false;
        if (!isPresent)
            return true;
    }
    const bool isPng = stream.version() != 1;
    if (isPng && !hasJustifiedChunks(*device))
        return fail(stream);
    QImageReader reader(device, isPng ? "png" : "bmp");
    const QSize size = reader.size();
    if (!size.isValid() || !isJustified(size, *device))
        return fail(stream);
    image = reader.read();
    return image.isNull() ? fail(stream) : true;
}

bool readWhole(QDataStream &stream, QImage &image)
{
    if (!read(stream, image))
        return false;
    if (image.isNull() || stream.version() == 1)
        return true;
    const QByteArray closing = QByteArray::fromHex("49454e44ae426082");
    QIODevice *device = stream.device();
    const bool isWhole =
        device->seek(device->pos() - closing.size()) && device->read(closing.size()) == closing;
    return isWhole || fail(stream);
}

QList<QImage> readList(QDataStream &stream)
{
    const QDataStream::Status statusBefore = stream.status();
    stream.resetStatus();
    QList<QImage> images;
    quint32 count = 0;
    stream >> count;
    for (quint32 i = 0; i < count; ++i) {
        QImage image;
        if (!read(stream, image)) {
            images.clear();
            break;
        }
        images.append(image);
    }
    if (statusBefore != QDataStream::Ok) {
        stream.resetStatus();
        stream.setStatus(statusBefore);
    }
    return images;
}

QImage withoutStrayBits(const QImage &image)
{
    const int used = image.width() % 8;
    if (image.depth() != 1 || used == 0)
        return image;
    const bool firstPixelIsHighest = image.format() == QImage::Format_Mono;
    const int mask = firstPixelIsHighest ? 0xff << (8 - used) : 0xff >> (8 - used);
    QImage clean = image;
    for (int y = 0; y < clean.height(); ++y) {
        uchar &last = clean.scanLine(y)[clean.width() / 8];
        last = static_cast<uchar>(last & mask);
    }
    return clean;
}

} // namespace PictureStream
