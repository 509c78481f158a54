#include "tests/animatedimage/hostilecalls/pngbuilder.h"

#include <QtCore/QtEndian>

namespace
{

quint32 checkSum(const QByteArray &bytes)
{
    quint32 sum = 0xffffffffU;
    for (const char byte : bytes) {
        sum ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xedb88320U : 0U);
    }
    return ~sum;
}

QByteArray number(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

} // namespace

QByteArray PngBuilder::signature()
{
    return QByteArray::fromHex("89504e470d0a1a0a");
}

QByteArray PngBuilder::chunk(const char *type, const QByteArray &content, qint64 length)
{
    const QByteArray summed = QByteArray(type) + content;
    return number(quint32(length < 0 ? content.size() : length)) + summed +
           number(checkSum(summed));
}

QByteArray PngBuilder::header(quint32 width, quint32 height, int depth, int colorType,
                              bool interlaced)
{
    const char rest[] = {char(depth), char(colorType), '\0', '\0', char(interlaced)};
    return chunk("IHDR", number(width) + number(height) + QByteArray(rest, sizeof rest));
}

QByteArray PngBuilder::compressedText(int size)
{
    const QByteArray keyword("Comment\0\0", 9);
    return chunk("zTXt", keyword + deflated(QByteArray(size, 'x')));
}

QByteArray PngBuilder::deflated(const QByteArray &bytes)
{
    // Before it Qt puts the length.
    return qCompress(bytes, 9).mid(4);
}
