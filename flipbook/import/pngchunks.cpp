#include "flipbook/import/pngchunks.h"

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QtEndian>

#include <array>
#include <zlib.h>

namespace
{

constexpr qint64 SignatureLength = 8;
constexpr qint64 CheckSumLength = 4;
/// Names, lists and bookkeeping for one text.
constexpr qint64 BytesPerText = 1024;

/// Inflates bytes that arrive in pieces, and counts what comes out.
class InflatedLength
{
public:
    InflatedLength() { m_good = inflateInit(&m_stream) == Z_OK; }
    ~InflatedLength() { inflateEnd(&m_stream); }

    qint64 length() const { return m_length; }

    void feed(QByteArray piece, qint64 most)
    {
        m_stream.next_in = reinterpret_cast<Bytef *>(piece.data());
        m_stream.avail_in = uInt(piece.size());
        do {
            m_stream.next_out = m_out.data();
            m_stream.avail_out = uInt(m_out.size());
            m_good = m_good && inflate(&m_stream, Z_NO_FLUSH) == Z_OK;
            m_length += qint64(m_out.size()) - m_stream.avail_out;
        } while (m_good && m_length <= most && (m_stream.avail_in > 0 || m_stream.avail_out == 0));
    }

private:
    Q_DISABLE_COPY(InflatedLength)

    z_stream m_stream = {};
    bool m_good = false;
    qint64 m_length = 0;
    std::array<Bytef, 1 << 14> m_out = {};
};

class ChunkReader
{
public:
    ChunkReader(QIODevice &device, qint64 mostText)
        : m_device(device)
        , m_mostText(mostText)
    {
    }

    PngChunks read();

private:
    void readText(const QByteArray &type, qint64 length);
    qint64 bytesBeforeCompressed(const QByteArray &type, const QByteArray &start) const;

    QIODevice &m_device;
    const qint64 m_mostText;
    PngChunks m_chunks;
};

PngChunks ChunkReader::read()
{
    const qint64 size = m_device.size();
    qint64 at = SignatureLength;
    while (m_device.seek(at)) {
        const QByteArray head = m_device.read(8);
        if (head.size() < 8)
            return m_chunks;
        const qint64 length = qFromBigEndian<quint32>(head.constData());
        const QByteArray type = head.mid(4);
        at += 8 + length + CheckSumLength;
        if (at > size)
            return m_chunks;
        if (type == "IEND")
            break;
        if (type == "tEXt" || type == "zTXt" || type == "iTXt" || type == "iCCP" ||
            type == "eXIf" || type == "sPLT")
            readText(type, length);
        if (m_chunks.textBytes > m_mostText)
            break;
    }
    m_chunks.isComplete = true;
    return m_chunks;
}

/// The length of what precedes the compressed bytes in a chunk; -1 when none are.
qint64 ChunkReader::bytesBeforeCompressed(const QByteArray &type, const QByteArray &start) const
{
    const int nameEnd = start.indexOf('\0');
    if (nameEnd < 0)
        return -1;
    if (type == "zTXt" || type == "iCCP")
        return nameEnd + 2;
    if (type != "iTXt" || nameEnd + 1 >= start.size() || start.at(nameEnd + 1) == 0)
        return -1;
    const int languageEnd = start.indexOf('\0', nameEnd + 3);
    const int translationEnd = languageEnd < 0 ? -1 : start.indexOf('\0', languageEnd + 1);
    return translationEnd < 0 ? -1 : translationEnd + 1;
}

void ChunkReader::readText(const QByteArray &type, qint64 length)
{
    m_chunks.textBytes += BytesPerText + length;
    constexpr qint64 pieceLength = 1 << 16;
    QByteArray piece = m_device.read(qMin(length, pieceLength));
    qint64 left = length - piece.size();
    if (piece.startsWith(QByteArray("PixelFormat\0", 12)))
        m_chunks.namesDeepFormat |= type != "tEXt" || piece.contains("64");
    const qint64 skipped = bytesBeforeCompressed(type, piece);
    if (skipped < 0)
        return;
    InflatedLength inflated;
    piece.remove(0, int(skipped));
    while (!piece.isEmpty()) {
        inflated.feed(piece, m_mostText);
        if (inflated.length() > m_mostText)
            break;
        piece = m_device.read(qMin(left, pieceLength));
        left -= piece.size();
    }
    m_chunks.textBytes += inflated.length();
}

} // namespace

PngChunks PngChunks::read(QIODevice &device, qint64 mostText)
{
    return ChunkReader(device, mostText).read();
}
