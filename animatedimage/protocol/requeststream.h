#pragma once

#include "animatedimage/core/picturestream.h"

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>

/// Reading the input of a request that a host sends through a stream, and answering in the same
/// buffer. If a stream cannot provide or take what a request needs, these return false; the
/// request then changes nothing.
namespace RequestStream
{

/// Lets a request begin with a good status, and puts back a bad one that the stream came with: a
/// request counts by its own bytes.
class OwnStatus
{
public:
    explicit OwnStatus(QDataStream &stream)
        : m_stream(stream)
        , m_before(stream.status())
    {
        m_stream.resetStatus();
    }
    ~OwnStatus()
    {
        if (m_before == QDataStream::Ok)
            return;
        m_stream.resetStatus();
        m_stream.setStatus(m_before);
    }
    Q_DISABLE_COPY(OwnStatus)

private:
    QDataStream &m_stream;
    QDataStream::Status m_before;
};

/// Rewinds the device to its start; one without positions stays where it is. False without an open
/// device, or with one that cannot be rewound.
inline bool rewind(QDataStream &stream)
{
    QIODevice *device = stream.device();
    return device && device->isOpen() && (device->isSequential() || device->reset());
}

/// Whether an answer could be written. A request that changes something checks this first: a host
/// must not miss the answer to what was done.
inline bool canAnswer(const QDataStream &stream)
{
    const QIODevice *device = stream.device();
    return device && device->isWritable();
}

/// Writes @p value, unless the device has refused what comes before it.
template<typename Value>
void appendOne(QDataStream &stream, const Value &value)
{
    if (stream.status() == QDataStream::Ok)
        stream << value;
}

/// The same for a picture, without what was in memory after the end of its rows.
inline void appendOne(QDataStream &stream, const QImage &image)
{
    appendOne<QImage>(stream, PictureStream::withoutStrayBits(image));
}

/// Writes the values at the stream's position, up to the first that the device does not take.
template<typename... Values>
void append(QDataStream &stream, const Values &...values)
{
    if (!canAnswer(stream))
        return;
    const OwnStatus status(stream);
    (appendOne(stream, values), ...);
}

/// Writes the values over the start of the buffer; the bytes after them stay.
template<typename... Values>
void answer(QDataStream &stream, const Values &...values)
{
    if (canAnswer(stream) && rewind(stream))
        append(stream, values...);
}

inline void readField(QDataStream &stream, QImage &image)
{
    PictureStream::readWhole(stream, image);
}

template<typename Field>
void readField(QDataStream &stream, Field &field)
{
    stream >> field;
}

/// Reads the fields in order. False when one could not be read whole.
template<typename... Fields>
bool read(QDataStream &stream, Fields &...fields)
{
    const QIODevice *device = stream.device();
    if (!device || !device->isReadable())
        return false;
    const OwnStatus status(stream);
    (readField(stream, fields), ...);
    return stream.status() == QDataStream::Ok;
}

} // namespace RequestStream
