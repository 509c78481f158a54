#include "tests/animatedimage/hostilecalls/hostiledevice.h"

HostileDevice::HostileDevice(Kind kind, const QByteArray &bytes, qint64 whole)
    : m_kind(kind)
    , m_left(kind == FailsReading ? whole : bytes.size())
{
    setData(bytes);
    if (kind == Closed)
        return;
    OpenMode mode = ReadWrite;
    if (kind == ReadOnly)
        mode = QIODevice::ReadOnly;
    if (kind == WriteOnly)
        mode = QIODevice::WriteOnly | QIODevice::Append;
    open(mode | Unbuffered);
}

bool HostileDevice::seek(qint64 position)
{
    return m_kind != Unseekable && QBuffer::seek(position);
}

qint64 HostileDevice::bytesAvailable() const
{
    return m_kind == Sequential ? m_left : QBuffer::bytesAvailable();
}

qint64 HostileDevice::readData(char *data, qint64 most)
{
    if (m_kind == Sequential) {
        const qint64 start = buffer().size() - m_left;
        const qint64 count = qMin(most, m_left);
        std::copy_n(buffer().constData() + start, count, data);
        m_left -= count;
        return count;
    }
    if (m_kind != FailsReading)
        return QBuffer::readData(data, most);
    const qint64 there = m_left - pos();
    return there <= 0 ? -1 : QBuffer::readData(data, qMin(most, there));
}

qint64 HostileDevice::writeData(const char *data, qint64 count)
{
    if (m_kind == FailsWriting)
        return -1;
    // What is written to a pipe goes elsewhere.
    return m_kind == Sequential ? count : QBuffer::writeData(data, count);
}
