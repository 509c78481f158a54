#include "framework/bytestream.h"

#include <QtCore/QDataStream>

#include <algorithm>
#include <cstring>

namespace
{

/// A block's length is believed in pieces of this size, each read before the next is reserved.
constexpr quint32 PieceSize = 1 << 16;

} // namespace

namespace ByteStream
{

void writeBlock(QDataStream &stream, const QByteArray &block)
{
    stream << quint32(block.size());
    stream.writeRawData(block.constData(), block.size());
}

QByteArray readBlock(QDataStream &stream)
{
    quint32 left = 0;
    stream >> left;
    if (stream.status() != QDataStream::Ok)
        return {};
    QByteArray block;
    char piece[PieceSize];
    while (left > 0) {
        const int wanted = int(std::min(left, PieceSize));
        const int got = stream.readRawData(piece, wanted);
        // No byte array is longer than an int can say.
        if (got != wanted || block.size() > std::numeric_limits<int>::max() / 2) {
            stream.setStatus(QDataStream::ReadPastEnd);
            return {};
        }
        block.append(piece, got);
        left -= quint32(got);
    }
    return block;
}

void writeText(QDataStream &stream, const QString &text)
{
    writeBlock(stream, text.toUtf8());
}

QString readText(QDataStream &stream)
{
    // With its length: otherwise a zero would end the text.
    const QByteArray text = readBlock(stream);
    return QString::fromUtf8(text.constData(), text.size());
}

void writeDouble(QDataStream &stream, double value)
{
    quint64 bits = 0;
    static_assert(sizeof bits == sizeof value);
    std::memcpy(&bits, &value, sizeof bits);
    stream << bits;
}

double readDouble(QDataStream &stream)
{
    quint64 bits = 0;
    stream >> bits;
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

void writeFlag(QDataStream &stream, bool flag)
{
    stream << quint8(flag ? 1 : 0);
}

bool readFlag(QDataStream &stream)
{
    quint8 flag = 0;
    stream >> flag;
    return flag != 0;
}

} // namespace ByteStream
