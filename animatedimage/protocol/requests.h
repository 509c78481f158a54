#pragma once

#include "animatedimage/core/picturestream.h"

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>

/// Reading the input of a request that a host sends through a stream, and answering in the same
/// buffer. A stream that cannot give or take what a request needs makes these answer false; the
/// request then changes nothing.
namespace Requests
{

/// The device behind the stream, or null when there is none, or one without positions: what a pipe
/// or a socket has not delivered yet is not the end of a request.
inline QIODevice *seekableDevice(const QDataStream &stream)
{
    QIODevice *device = stream.device();
    return device && !device->isSequential() ? device : nullptr;
}

/// Rewinds the device to its start. False without a device, or with one that has no position.
inline bool rewind(QDataStream &stream)
{
    QIODevice *device = seekableDevice(stream);
    return device && device->isOpen() && device->reset();
}

/// Whether an answer could be given from the start of the buffer. A request that changes something
/// asks before it does: a host must not miss the answer to what was done.
inline bool canAnswer(const QDataStream &stream)
{
    const QIODevice *device = seekableDevice(stream);
    return device && device->isWritable() && stream.status() == QDataStream::Ok;
}

/// Writes the values where the stream stands.
template<typename... Values>
void append(QDataStream &stream, const Values &...values)
{
    const QIODevice *device = seekableDevice(stream);
    if (device && device->isWritable())
        (void)(stream << ... << values);
}

/// Writes the values over the start of the buffer; what stood behind them stays.
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
    const QIODevice *device = seekableDevice(stream);
    if (!device || !device->isReadable())
        return false;
    (readField(stream, fields), ...);
    return stream.status() == QDataStream::Ok;
}

} // namespace Requests
