#include "framework/basestate.h"
#include "framework/bytestream.h"
#include "framework/geometrycheck.h"
#include "framework/variantcodec.h"

#include <QtCore/QDataStream>

namespace
{

/// The number of this form: the first byte of the block.
constexpr quint8 FormVersion = 1;

void writePair(QDataStream &stream, double first, double second)
{
    ByteStream::writeDouble(stream, first);
    ByteStream::writeDouble(stream, second);
}

QPointF readPair(QDataStream &stream)
{
    const double first = ByteStream::readDouble(stream);
    return {first, ByteStream::readDouble(stream)};
}

/// Takes @p read over into @p value when the stream had it and it is possible.
template<typename Value>
bool take(const QDataStream &stream, bool possible, const Value &read, Value &value)
{
    const bool taken = possible && stream.status() == QDataStream::Ok;
    if (taken)
        value = read;
    return taken;
}

void writeParams(QDataStream &stream, const QMap<QString, QVariant> &params)
{
    quint32 count = 0;
    for (const QVariant &value : params)
        count += VariantCodec::canSave(value) ? 1 : 0;
    stream << count;
    for (auto param = params.begin(); param != params.end(); ++param) {
        if (!VariantCodec::canSave(param.value()))
            continue;
        ByteStream::writeText(stream, param.key());
        VariantCodec::write(stream, param.value());
    }
}

bool readParams(QDataStream &stream, QMap<QString, QVariant> &params)
{
    quint32 count = 0;
    stream >> count;
    if (stream.status() != QDataStream::Ok)
        return false;
    params.clear();
    for (quint32 i = 0; i < count; ++i) {
        const QString key = ByteStream::readText(stream);
        const QVariant value = VariantCodec::read(stream);
        // Behind a value of unknown type nothing can be found any more.
        if (!value.isValid())
            return false;
        params.insert(key, value);
    }
    return stream.status() == QDataStream::Ok;
}

bool readGeometry(QDataStream &stream, BaseState &state)
{
    const QPointF pos = readPair(stream);
    bool whole = take(stream, isPlace(pos), pos, state.pos);
    const QPointF extent = readPair(stream);
    const QSizeF size(extent.x(), extent.y());
    whole = take(stream, isExtent(size), size, state.size) && whole;
    qint32 rotateType = 0;
    stream >> rotateType;
    whole = take(stream, rotateType >= 0 && rotateType <= 2, rotateType, state.rotateType) && whole;
    const double degree = ByteStream::readDouble(stream);
    whole = take(stream, std::isfinite(degree), degree, state.rotateDegree) && whole;
    const bool mirrored = ByteStream::readFlag(stream);
    whole = take(stream, true, mirrored, state.mirrored) && whole;
    const bool flipped = ByteStream::readFlag(stream);
    return take(stream, true, flipped, state.flipped) && whole;
}

bool readShadow(QDataStream &stream, BaseState &state)
{
    const bool hasShadow = ByteStream::readFlag(stream);
    quint32 rgba = 0;
    stream >> rgba;
    const QPointF offset = readPair(stream);
    const QColor color = hasShadow ? QColor::fromRgba(rgba) : QColor();
    return take(stream, isPlace(offset), color, state.shadowColor) &&
           take(stream, isPlace(offset), offset, state.shadowOffset);
}

bool readFields(QDataStream &stream, BaseState &state)
{
    quint8 version = 0;
    stream >> version;
    if (version != FormVersion)
        return false;
    qint32 objectId = 0;
    stream >> objectId;
    bool whole = take(stream, true, objectId, state.objectId);
    const bool editable = ByteStream::readFlag(stream);
    whole = take(stream, true, editable, state.editable) && whole;
    whole = readGeometry(stream, state) && whole;
    whole = readShadow(stream, state) && whole;
    return readParams(stream, state.otherParams) && whole;
}

} // namespace

void writeBaseState(QDataStream &stream, const BaseState &state)
{
    QByteArray block;
    QDataStream fields(&block, QIODevice::WriteOnly);
    fields << FormVersion << qint32(state.objectId);
    ByteStream::writeFlag(fields, state.editable);
    writePair(fields, state.pos.x(), state.pos.y());
    writePair(fields, state.size.width(), state.size.height());
    fields << qint32(state.rotateType);
    ByteStream::writeDouble(fields, state.rotateDegree);
    ByteStream::writeFlag(fields, state.mirrored);
    ByteStream::writeFlag(fields, state.flipped);
    ByteStream::writeFlag(fields, state.shadowColor.isValid());
    fields << quint32(state.shadowColor.isValid() ? state.shadowColor.rgba() : 0);
    writePair(fields, state.shadowOffset.x(), state.shadowOffset.y());
    writeParams(fields, state.otherParams);
    ByteStream::writeBlock(stream, block);
}

bool readBaseState(QDataStream &stream, BaseState &state)
{
    const QByteArray block = ByteStream::readBlock(stream);
    if (stream.status() != QDataStream::Ok)
        return false;
    QDataStream fields(block);
    return readFields(fields, state);
}
