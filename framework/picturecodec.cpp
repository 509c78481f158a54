#include "framework/picturecodec.h"

#include "framework/pictureformat.h"

#include <QtCore/QBuffer>
#include <QtCore/QtEndian>
#include <QtGui/QImageReader>
#include <QtGui/QImageWriter>

#include <cstring>
#include <utility>

namespace
{

constexpr char PngFormat[] = "png";
/// 96 dots per inch. QImage would otherwise ask the screen, and the bytes depend on the machine.
constexpr int DotsPerMeter = 3780;
/// How much memory a picture may take even if it has few bytes, and how much each byte can become:
/// deflate reaches 1032 to 1, and 2 bits of a file may become 8 of a picture.
constexpr qint64 SmallPicture = qint64(8) << 20;
constexpr qint64 MaxBytesPerByte = qint64(1032) * 4;

const QLatin1String FormatKey("PixelFormat");

/// Whether the picture that @p reader has begun to read may come out of so many bytes.
bool isPlausible(const QImageReader &reader, qint64 byteCount)
{
    constexpr int usualBits = 32;
    const QSize size = reader.size();
    const QImage::Format format = reader.imageFormat();
    const int bits =
        format == QImage::Format_Invalid ? usualBits : QImage::toPixelFormat(format).bitsPerPixel();
    return size.isValid() && qint64(size.width()) * size.height() <=
                                 (SmallPicture + byteCount * MaxBytesPerByte) * 8 / bits;
}

/// Whether each chunk of @p png may be as long as it claims: the PNG library takes memory for a
/// whole chunk before it reads it.
bool hasPlausibleChunks(const QByteArray &png)
{
    constexpr int signatureLength = 8;
    constexpr int frameLength = 12; // length, type and check sum
    constexpr int lengthSize = 4;
    qint64 at = signatureLength;
    while (at + frameLength <= png.size()) {
        const qint64 length = qFromBigEndian<quint32>(png.constData() + at);
        if (length > SmallPicture && length > png.size() - at - frameLength)
            return false;
        // Bytes after the end are never read.
        if (std::memcmp(png.constData() + at + lengthSize, "IEND", lengthSize) == 0)
            return true;
        at += frameLength + length;
    }
    return true;
}

} // namespace

namespace PictureCodec
{

QImage carrier(const QImage &image)
{
    if (image.isNull())
        return {};
    QString format;
    QImage carrier = PictureFormat::carried(image, format);
    carrier.setDotsPerMeterX(DotsPerMeter);
    carrier.setDotsPerMeterY(DotsPerMeter);
    carrier.setText(FormatKey, format);
    return carrier;
}

QByteArray encode(const QImage &image)
{
    if (image.isNull())
        return {};
    QByteArray png;
    QBuffer buffer(&png);
    QImageWriter writer(&buffer, PngFormat);
    return writer.write(carrier(image)) ? png : QByteArray();
}

Decoded decode(const QByteArray &png)
{
    // The PNG library would complain about the lack of bytes on standard error.
    if (png.isEmpty() || !hasPlausibleChunks(png))
        return {};
    QByteArray bytes = png;
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, PngFormat);
    reader.setDecideFormatFromContent(false);
    reader.setAutoTransform(false);
    if (!isPlausible(reader, bytes.size()))
        return {};
    QImage carrier = reader.read();
    if (carrier.isNull())
        return {};
    const QString format = carrier.text(FormatKey);
    const QImage image = PictureFormat::restored(std::move(carrier), format);
    return {image, !format.isEmpty() && format == PictureFormat::name(image)};
}

} // namespace PictureCodec
