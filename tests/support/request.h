#pragma once

#include "animatedimage/object/animatedimage.h"

#include <QtCore/QBuffer>
#include <QtCore/QDataStream>

/// A special property as a host uses it: request and answer share one buffer.
class Request
{
public:
    /// A buffer that can be read and written, holding @p input, with the stream at its start.
    explicit Request(const QByteArray &input = {})
        : m_device(&m_bytes)
        , m_stream(&m_device)
    {
        m_bytes = input;
        m_device.open(QIODevice::ReadWrite);
    }

    /// The bytes of @p values as a stream writes them.
    template<typename... Values>
    static QByteArray packed(const Values &...values)
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        (void)(stream << ... << values);
        return bytes;
    }

    Request &from(qint64 position)
    {
        m_device.seek(position);
        return *this;
    }

    bool get(CAnimatedImage *image, int id) { return image->GetSpecialProperty(id, m_stream); }
    bool set(CAnimatedImage *image, int id, bool flag = false)
    {
        return image->SetSpecialProperty(id, m_stream, flag);
    }

    const QByteArray &bytes() const { return m_bytes; }
    qint64 position() const { return m_device.pos(); }
    QDataStream &stream() { return m_stream; }

private:
    QByteArray m_bytes;
    QBuffer m_device;
    QDataStream m_stream;
};
