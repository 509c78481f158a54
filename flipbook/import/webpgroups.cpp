#include "flipbook/import/webpgroups.h"

#include <QtCore/QtEndian>

#include <algorithm>

namespace
{

constexpr int FileHeadLength = 12;
constexpr int ChunkHeadLength = 8;

quint32 number(const QByteArray &bytes, int offset)
{
    return qFromLittleEndian<quint32>(bytes.constData() + offset);
}

QByteArray fourBytes(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

} // namespace

WebpGroups::WebpGroups(const QByteArray &file, int framesOfAGroup)
    : m_file(file)
    , m_framesOfAGroup(framesOfAGroup)
{
    if (file.size() < FileHeadLength)
        return;
    const qint64 announced = qint64(number(file, 4)) + ChunkHeadLength;
    m_end = int(std::min<qint64>(file.size(), announced));
    m_missing = announced - m_end;
    qint64 at = FileHeadLength;
    while (at + ChunkHeadLength <= m_end) {
        const QByteArray type = file.mid(int(at), 4);
        const qint64 length = number(file, int(at) + 4);
        const qint64 next = at + ChunkHeadLength + length + length % 2;
        if (type == "ANMF")
            m_starts.append(int(at));
        else if (m_starts.isEmpty() && (type == "VP8X" || type == "ANIM"))
            m_header += file.mid(int(at), int(std::min<qint64>(next, m_end) - at));
        at = next;
    }
}

QByteArray WebpGroups::group(int index) const
{
    const int first = index * m_framesOfAGroup;
    const int next = first + m_framesOfAGroup;
    const bool isLast = next >= m_starts.size();
    const int start = m_starts.at(first);
    const int length = (isLast ? m_end : m_starts.at(next)) - start;
    const qint64 size = 4 + m_header.size() + length + (isLast ? m_missing : 0);
    return "RIFF" + fourBytes(quint32(size)) + "WEBP" + m_header + m_file.mid(start, length);
}
