#pragma once

#include "host/gdrootobject.h"

#include <QtCore/QBuffer>
#include <QtCore/QDataStream>

/// The identifier protocols of a canvas object, with one buffer for request and answer.
namespace ObjectProtocol
{

/// A request that holds @p input, at the position where an object begins to read.
template<typename... Input>
QByteArray request(const Input &...input)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    // Each for itself: without any input a single fold would be an empty statement.
    (static_cast<void>(stream << input), ...);
    return bytes;
}

/// A device that holds a request and takes no answer, so that an object need not make one.
class UnansweredRequest : public QBuffer
{
public:
    explicit UnansweredRequest(const QByteArray &request)
    {
        setData(request);
        open(QIODevice::ReadWrite);
    }

protected:
    qint64 writeData(const char *, qint64) override { return -1; }
};

/// Requests the special property @p id and returns the answer; a default value if the object
/// does not know the property, or if its answer cannot be read.
template<typename Answer, typename... Input>
Answer ask(CGDRootObject &object, int id, const Input &...input)
{
    QBuffer buffer;
    buffer.setData(request(input...));
    buffer.open(QIODevice::ReadWrite);
    QDataStream stream(&buffer);
    Answer answer{};
    if (!object.GetSpecialProperty(id, stream))
        return answer;
    buffer.seek(0);
    QDataStream reader(&buffer);
    reader >> answer;
    return reader.status() == QDataStream::Ok ? answer : Answer{};
}

/// Requests the special property @p id for what the object does then, and takes no answer.
template<typename... Input>
void perform(CGDRootObject &object, int id, const Input &...input)
{
    UnansweredRequest device(request(input...));
    QDataStream stream(&device);
    object.GetSpecialProperty(id, stream);
}

/// Sets the special property @p id, and takes no answer; true when the object handled it.
template<typename... Input>
bool tell(CGDRootObject &object, int id, const Input &...input)
{
    UnansweredRequest device(request(input...));
    QDataStream stream(&device);
    return object.SetSpecialProperty(id, stream, true);
}

/// Sends the attribute @p id; true when the object handled it.
template<typename... Input>
bool send(CGDRootObject &object, int id, const Input &...input)
{
    QByteArray bytes = request(input...);
    QDataStream stream(&bytes, QIODevice::ReadOnly);
    return object.SetAttribute(id, stream, true);
}

} // namespace ObjectProtocol
