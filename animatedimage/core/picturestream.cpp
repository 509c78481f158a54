#include "animatedimage/core/picturestream.h"

#include "animatedimage/core/pngfile.h"

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtGui/QImageReader>

#include <algorithm>
#include <iterator>

namespace PictureStream
{

namespace
{

/// Before this version of the stream format a picture had no marker for being null.
constexpr int VersionWithNullMarker = QDataStream::Qt_3_1;

/// Null pictures of older versions have no bytes that could justify their number. A list of more
/// is damaged.
constexpr quint32 MaxPicturesWithoutBytes = 1 << 16;

/// Memory that a picture may take even if it has few bytes.
constexpr qint64 AlwaysGranted = qint64{8} * 1024 * 1024;

/// Reads on from another device, sequential like it, and keeps the last bytes that were read.
class Tail : public QIODevice
{
public:
    explicit Tail(QIODevice &source)
        : m_source(source)
    {
        open(ReadOnly | Unbuffered);
    }

    bool isSequential() const override { return true; }
    const QByteArray &last() const { return m_last; }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        const qint64 count = m_source.read(data, most);
        if (count > 0)
            m_last = (m_last + QByteArray(data, int(count))).right(8);
        return count;
    }
    qint64 writeData(const char * /*data*/, qint64 /*count*/) override { return -1; }

private:
    QIODevice &m_source;
    QByteArray m_last;
};

bool fail(QDataStream &stream)
{
    stream.setStatus(QDataStream::ReadPastEnd);
    return false;
}

bool hasNullMarker(const QDataStream &stream)
{
    return stream.version() >= VersionWithNullMarker;
}

bool isPng(const QDataStream &stream)
{
    return stream.version() != 1;
}

/// Whether a picture without a marker is null: it has no bytes, so others follow, or none.
bool isWithoutBytes(const QDataStream &stream, QIODevice &device)
{
    const QByteArray signature =
        isPng(stream) ? QByteArray::fromHex("89504e470d0a1a0a") : QByteArrayLiteral("BM");
    const QByteArray next = device.peek(signature.size());
    return next.isEmpty() || !signature.startsWith(next);
}

/// What a pixel takes in memory, as far as the beginning of the file tells.
int bitsPerPixel(const QImageReader &reader)
{
    constexpr int usual = 32;
    const QImage::Format format = reader.imageFormat();
    return format == QImage::Format_Invalid ? usual : QImage::toPixelFormat(format).bitsPerPixel();
}

bool readFrom(QIODevice &device, QDataStream &stream, QImage &image)
{
    if (isPng(stream) && !PngFile::isComplete(device))
        return fail(stream);
    QImageReader reader(&device, isPng(stream) ? "png" : "bmp");
    const QSize size = reader.size();
    const bool endIsKnown = !device.isSequential();
    if (!size.isValid() ||
        (endIsKnown && !isJustified(size, bitsPerPixel(reader), device.bytesAvailable())))
        return fail(stream);
    image = reader.read();
    return image.isNull() ? fail(stream) : true;
}

/// Whether a picture follows, and not a null one. Gives the stream a bad status where it ends.
bool isPresent(QDataStream &stream, QIODevice &device)
{
    if (!hasNullMarker(stream))
        return !isWithoutBytes(stream, device);
    qint32 marker = 0;
    stream >> marker;
    return marker != 0;
}

bool readPictures(QDataStream &stream, quint32 count, QList<QImage> &images)
{
    for (quint32 i = 0; i < count; ++i) {
        QImage image;
        if (!PictureStream::read(stream, image))
            return false;
        images.append(image);
        if (!image.isNull() || hasNullMarker(stream))
            continue;
        // It had no bytes, so all that follow it find the same.
        const quint32 left = count - i - 1;
        if (left >= MaxPicturesWithoutBytes)
            return fail(stream);
        std::fill_n(std::back_inserter(images), left, QImage());
        break;
    }
    return true;
}

} // namespace

bool isJustified(const QSize &size, int bitsPerPixel, qint64 availableBytes)
{
    // Deflate reaches 1032 to 1, and 2 bits of a file may become 8 of a picture. Counted in
    // pixels, since the bytes of the largest size would overflow.
    constexpr qint64 bytesPerByte = qint64{1032} * 4;
    constexpr int bitsPerByte = 8;
    const qint64 granted = AlwaysGranted + availableBytes * bytesPerByte;
    return qint64(size.width()) * size.height() <= granted * bitsPerByte / bitsPerPixel;
}

bool read(QDataStream &stream, QImage &image)
{
    image = QImage();
    QIODevice *device = stream.device();
    if (!device)
        return fail(stream);
    if (!isPresent(stream, *device))
        return stream.status() == QDataStream::Ok;
    return readFrom(*device, stream, image);
}

bool readWhole(QDataStream &stream, QImage &image)
{
    image = QImage();
    QIODevice *device = stream.device();
    if (!device)
        return fail(stream);
    if (!isPresent(stream, *device))
        return stream.status() == QDataStream::Ok;

    const QByteArray closing = QByteArray::fromHex("49454e44ae426082");
    QByteArray last;
    if (device->isSequential()) {
        Tail tail(*device);
        if (!readFrom(tail, stream, image))
            return false;
        last = tail.last();
    } else {
        if (!readFrom(*device, stream, image))
            return false;
        device->seek(device->pos() - closing.size());
        last = device->read(closing.size());
    }
    return !isPng(stream) || last == closing || fail(stream);
}

QList<QImage> readList(QDataStream &stream)
{
    const QDataStream::Status statusBefore = stream.status();
    stream.resetStatus();
    QList<QImage> images;
    quint32 count = 0;
    stream >> count;
    if (!readPictures(stream, count, images))
        images.clear();
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
        last = uchar(last & mask);
    }
    return clean;
}

} // namespace PictureStream
