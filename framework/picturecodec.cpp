#include "framework/picturecodec.h"

#include "framework/pictureformat.h"

#include <QtCore/QBuffer>
#include <QtCore/QtEndian>
#include <QtGui/QImageReader>
#include <QtGui/QImageWriter>

#include <array>
#include <utility>

namespace
{

constexpr char PngFormat[] = "png";
/// 96 dots per inch. QImage would otherwise ask the screen, and the bytes depend on the machine.
constexpr int DotsPerMeter = 3780;
/// How much memory a picture may take even if it has few bytes, and how much each byte can become:
/// 2 bits of a file may become 8 of a picture.
constexpr int BestCompression = 1032; ///< of deflate: two bits are enough for 258 bytes
constexpr qint64 SmallPicture = qint64(8) << 20;
constexpr qint64 MaxBytesPerByte = qint64(BestCompression) * 4;

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

/// How many bits the pixels of a PNG file take before they are compressed, at least. Zero for a
/// kind that PNG files do not have.
double pixelBits(const QByteArray &png)
{
    constexpr int widthAt = 16;
    constexpr int heightAt = 20;
    constexpr int depthAt = 24;
    constexpr int kindAt = 25;
    constexpr std::array<int, 7> channelsOfKind = {1, 0, 3, 1, 2, 0, 4};
    const auto kind = std::size_t(uchar(png.at(kindAt)));
    const int channels = kind < channelsOfKind.size() ? channelsOfKind.at(kind) : 0;
    return double(qFromBigEndian<quint32>(png.constData() + widthAt)) *
           qFromBigEndian<quint32>(png.constData() + heightAt) * channels * uchar(png.at(depthAt));
}

/// Whether each chunk of @p png is present, and the compressed pixels are as long as deflate needs
/// for as many as the header claims. The PNG library takes memory for a whole chunk before it reads
/// it, and expands the texts before it comes to the pixels.
bool isComplete(const QByteArray &png)
{
    constexpr int signatureLength = 8;
    constexpr int lengthAndType = 8;
    constexpr int headerEnd = 33;
    constexpr int checkSumLength = 4;
    constexpr double bitsPerByte = 8;
    if (png.size() < headerEnd)
        return false;
    qint64 compressed = 0;
    QByteArray type;
    for (qint64 at = signatureLength; type != "IEND";) {
        if (at + lengthAndType > png.size())
            return false;
        const qint64 length = qFromBigEndian<quint32>(png.constData() + at);
        type = png.mid(int(at) + 4, 4);
        if (type == "IDAT")
            compressed += length;
        at += lengthAndType + length + checkSumLength;
    }
    return double(compressed) * BestCompression * bitsPerByte >= pixelBits(png);
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
    if (!isComplete(png))
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
