#include "animatedimage/core/pngfile.h"

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QtEndian>

#include <array>

namespace PngFile
{

namespace
{

constexpr int LengthAndType = 8;
constexpr int HeaderLength = 26; ///< up to the kind of pixels

quint32 number(const QByteArray &bytes, int at)
{
    return qFromBigEndian<quint32>(bytes.constData() + at);
}

/// How many bits the pixels take before they are compressed, without what each row begins with.
/// Zero for a kind that PNG files do not have.
double pixelBits(const QByteArray &header)
{
    constexpr int widthAt = 16;
    constexpr int heightAt = 20;
    constexpr int depthAt = 24;
    constexpr int kindAt = 25;
    constexpr std::array<int, 7> channelsOfKind = {1, 0, 3, 1, 2, 0, 4};
    const auto kind = std::size_t(uchar(header.at(kindAt)));
    const int channels = kind < channelsOfKind.size() ? channelsOfKind.at(kind) : 0;
    return double(number(header, widthAt)) * number(header, heightAt) * channels *
           uchar(header.at(depthAt));
}

bool hasHeader(const QByteArray &start)
{
    static const QByteArray signature =
        QByteArray::fromHex("89504e470d0a1a0a0000000d") + QByteArrayLiteral("IHDR");
    return start.size() == HeaderLength && start.startsWith(signature);
}

/// How much the chunks of compressed pixels hold. Afterwards the position is after the beginning of
/// the chunk that follows them. -1, with the position at the end, where the file is cut.
qint64 compressedPixels(QIODevice &device)
{
    constexpr int signatureLength = 8;
    constexpr int checkSumLength = 4;
    qint64 total = 0;
    qint64 afterPixels = 0;
    QByteArray type;
    // Never to a place after the end: a buffer would grow.
    for (qint64 at = device.pos() + signatureLength; type != "IEND";) {
        if (at + LengthAndType > device.size() || !device.seek(at)) {
            device.seek(device.size());
            return -1;
        }
        const QByteArray lengthAndType = device.read(LengthAndType);
        if (lengthAndType.size() < LengthAndType)
            return -1;
        const qint64 length = number(lengthAndType, 0);
        type = lengthAndType.mid(4);
        if (type == "IDAT")
            total += length;
        else if (afterPixels == 0 && (total > 0 || type == "IEND"))
            afterPixels = at + LengthAndType;
        at += LengthAndType + length + checkSumLength;
    }
    return device.seek(afterPixels) ? total : -1;
}

} // namespace

bool isComplete(QIODevice &device)
{
    // Two bits are enough for 258 bytes.
    constexpr double bestCompression = 1032;
    constexpr int bitsPerByte = 8;
    if (device.isSequential())
        return true;
    const QByteArray start = device.peek(HeaderLength);
    if (!hasHeader(start))
        return true;
    const qint64 begin = device.pos();
    const double pixels = double(compressedPixels(device)) * bestCompression * bitsPerByte;
    return pixels >= pixelBits(start) && device.seek(begin);
}

} // namespace PngFile
