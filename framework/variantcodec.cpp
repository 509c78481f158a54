#include "framework/variantcodec.h"

#include "framework/bytestream.h"

#include <QtCore/QDataStream>
#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtCore/QStringList>

namespace
{

/// Types by their number in the stream form.
enum class Tag : quint8 {
    None,
    Bool,
    Int,
    UInt,
    LongLong,
    Double,
    Text,
    TextList,
    Point,
    Size,
    Rect,
    Bytes,
};

Tag tagOf(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return Tag::Bool;
    case QMetaType::Int:
        return Tag::Int;
    case QMetaType::UInt:
        return Tag::UInt;
    case QMetaType::LongLong:
        return Tag::LongLong;
    case QMetaType::Double:
        return Tag::Double;
    case QMetaType::QString:
        return Tag::Text;
    case QMetaType::QStringList:
        return Tag::TextList;
    case QMetaType::QPointF:
        return Tag::Point;
    case QMetaType::QSizeF:
        return Tag::Size;
    case QMetaType::QRectF:
        return Tag::Rect;
    case QMetaType::QByteArray:
        return Tag::Bytes;
    default:
        return Tag::None;
    }
}

void writeDoubles(QDataStream &stream, std::initializer_list<double> values)
{
    for (double value : values)
        ByteStream::writeDouble(stream, value);
}

void writeTextList(QDataStream &stream, const QStringList &texts)
{
    stream << quint32(texts.size());
    for (const QString &text : texts)
        ByteStream::writeText(stream, text);
}

QStringList readTextList(QDataStream &stream)
{
    quint32 count = 0;
    stream >> count;
    QStringList texts;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i)
        texts.append(ByteStream::readText(stream));
    return texts;
}

template<typename Number>
QVariant readNumber(QDataStream &stream)
{
    Number number = 0;
    stream >> number;
    return QVariant::fromValue(number);
}

QRectF readRect(QDataStream &stream)
{
    const double x = ByteStream::readDouble(stream);
    const double y = ByteStream::readDouble(stream);
    const double width = ByteStream::readDouble(stream);
    return QRectF(x, y, width, ByteStream::readDouble(stream));
}

QVariant readContent(QDataStream &stream, Tag tag)
{
    switch (tag) {
    case Tag::None:
        return {};
    case Tag::Bool:
        return ByteStream::readFlag(stream);
    case Tag::Int:
        return readNumber<qint32>(stream);
    case Tag::UInt:
        return readNumber<quint32>(stream);
    case Tag::LongLong:
        return readNumber<qint64>(stream);
    case Tag::Double:
        return ByteStream::readDouble(stream);
    case Tag::Text:
        return ByteStream::readText(stream);
    case Tag::TextList:
        return readTextList(stream);
    case Tag::Point: {
        const double x = ByteStream::readDouble(stream);
        return QPointF(x, ByteStream::readDouble(stream));
    }
    case Tag::Size: {
        const double width = ByteStream::readDouble(stream);
        return QSizeF(width, ByteStream::readDouble(stream));
    }
    case Tag::Rect:
        return readRect(stream);
    case Tag::Bytes:
        return ByteStream::readBlock(stream);
    }
    return {};
}

} // namespace

namespace VariantCodec
{

bool canSave(const QVariant &value)
{
    return tagOf(value) != Tag::None;
}

void write(QDataStream &stream, const QVariant &value)
{
    const Tag tag = tagOf(value);
    stream << quint8(tag);
    switch (tag) {
    case Tag::None:
        break;
    case Tag::Bool:
        ByteStream::writeFlag(stream, value.toBool());
        break;
    case Tag::Int:
        stream << qint32(value.toInt());
        break;
    case Tag::UInt:
        stream << quint32(value.toUInt());
        break;
    case Tag::LongLong:
        stream << qint64(value.toLongLong());
        break;
    case Tag::Double:
        ByteStream::writeDouble(stream, value.toDouble());
        break;
    case Tag::Text:
        ByteStream::writeText(stream, value.toString());
        break;
    case Tag::TextList:
        writeTextList(stream, value.toStringList());
        break;
    case Tag::Point:
        writeDoubles(stream, {value.toPointF().x(), value.toPointF().y()});
        break;
    case Tag::Size:
        writeDoubles(stream, {value.toSizeF().width(), value.toSizeF().height()});
        break;
    case Tag::Rect: {
        const QRectF rect = value.toRectF();
        writeDoubles(stream, {rect.x(), rect.y(), rect.width(), rect.height()});
        break;
    }
    case Tag::Bytes:
        ByteStream::writeBlock(stream, value.toByteArray());
        break;
    }
}

QVariant read(QDataStream &stream)
{
    quint8 tag = 0;
    stream >> tag;
    const QVariant value = readContent(stream, Tag(tag));
    return stream.status() == QDataStream::Ok ? value : QVariant();
}

} // namespace VariantCodec
