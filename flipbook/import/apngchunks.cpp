#include "flipbook/import/apngchunks.h"

#include "flipbook/import/pngheader.h"

#include <QtCore/QIODevice>
#include <QtCore/QtEndian>

#include <zlib.h>

namespace
{

constexpr int SignatureLength = 8;
constexpr int HeadLength = 8; ///< of a chunk: its length and its type
constexpr int CheckSumLength = 4;
constexpr int AnimationLength = 8;
constexpr int ControlLength = 26;
constexpr int SequenceLength = 4;

quint32 number(const QByteArray &bytes, int offset)
{
    return qFromBigEndian<quint32>(bytes.constData() + offset);
}

int shortNumber(const QByteArray &bytes, int offset)
{
    return qFromBigEndian<quint16>(bytes.constData() + offset);
}

quint32 checkSum(const char *bytes, int length)
{
    return quint32(crc32(0, reinterpret_cast<const Bytef *>(bytes), uInt(length)));
}

/// The delay in the control chunk at @p offset, a fraction of a second.
int delayMs(const QByteArray &bytes, int offset)
{
    const int numerator = shortNumber(bytes, offset);
    const int written = shortNumber(bytes, offset + 2);
    const int denominator = written == 0 ? 100 : written;
    return (numerator * 1000 + denominator / 2) / denominator;
}

/// Thrown when what follows makes no sense.
struct Damage {
    QString what;
};

class ChunkReader
{
public:
    explicit ChunkReader(const QByteArray &file)
        : m_file(file)
    {
    }

    ApngChunks read();

private:
    bool readChunk();
    void readAnimation();
    void readControl();
    void readPicture();
    void readMore();
    void takeColours();
    void endFrame();
    void checkSequence();

    const QByteArray &m_file;
    ApngChunks m_chunks;
    // The chunk that is read.
    int m_at = SignatureLength;
    int m_content = 0; ///< where it is in the file
    int m_length = 0;
    // What was read.
    ApngFrame m_frame;
    bool m_hasFrame = false;
    bool m_hasPicture = false;
    bool m_isDefault = false; ///< the frame is the picture that other programs show
    quint32 m_sequence = 0;
};

ApngChunks ChunkReader::read()
{
    const auto header = PngHeader::read(m_file.left(PngHeader::Length));
    if (!header)
        return m_chunks;
    m_chunks.canvas = header->size;
    m_chunks.isDeep = header->bytesPerPixel > 4;
    m_chunks.header = m_file.mid(SignatureLength + HeadLength, 13);
    try {
        while (readChunk()) {
        }
    } catch (const Damage &damage) {
        m_chunks.damage = damage.what;
    }
    return m_chunks;
}

/// False after the last one.
bool ChunkReader::readChunk()
{
    const int left = m_file.size() - m_at;
    if (left < HeadLength + CheckSumLength ||
        number(m_file, m_at) > quint32(left - HeadLength - CheckSumLength))
        throw Damage{QStringLiteral("truncated")};
    m_length = int(number(m_file, m_at));
    m_content = m_at + HeadLength;
    const QByteArray type = m_file.mid(m_at + 4, 4);
    if (checkSum(m_file.constData() + m_at + 4, 4 + m_length) !=
        number(m_file, m_content + m_length))
        throw Damage{QStringLiteral("damaged at byte %1").arg(m_at)};
    if (type == "acTL")
        readAnimation();
    else if (type == "fcTL")
        readControl();
    else if (type == "IDAT")
        readPicture();
    else if (type == "fdAT")
        readMore();
    else if (type == "PLTE" || type == "tRNS")
        takeColours();
    else if (type == "IEND")
        endFrame();
    m_at = m_content + m_length + CheckSumLength;
    return type != "IEND";
}

void ChunkReader::readAnimation()
{
    if (m_length != AnimationLength || m_hasPicture || m_chunks.announced > 0)
        throw Damage{QStringLiteral("damaged at byte %1").arg(m_at)};
    m_chunks.announced = number(m_file, m_content);
    m_chunks.plays = number(m_file, m_content + 4);
}

void ChunkReader::checkSequence()
{
    if (number(m_file, m_content) != m_sequence++)
        throw Damage{QStringLiteral("its chunks are out of order at byte %1").arg(m_at)};
}

void ChunkReader::readControl()
{
    endFrame();
    if (m_length != ControlLength)
        throw Damage{QStringLiteral("damaged at byte %1").arg(m_at)};
    checkSequence();
    const quint32 width = number(m_file, m_content + 4);
    const quint32 height = number(m_file, m_content + 8);
    const quint32 x = number(m_file, m_content + 12);
    const quint32 y = number(m_file, m_content + 16);
    const auto canvasWidth = quint32(m_chunks.canvas.width());
    const auto canvasHeight = quint32(m_chunks.canvas.height());
    const uchar disposal = uchar(m_file.at(m_content + 24));
    const uchar blend = uchar(m_file.at(m_content + 25));
    if (width == 0 || height == 0 || width > canvasWidth || height > canvasHeight ||
        x > canvasWidth - width || y > canvasHeight - height)
        throw Damage{
            QStringLiteral("frame %1 is outside of the picture").arg(m_chunks.frames.size() + 1)};
    if (disposal > 2 || blend > 1)
        throw Damage{QStringLiteral("damaged at byte %1").arg(m_at)};
    m_frame = ApngFrame();
    m_frame.place = QRect(int(x), int(y), int(width), int(height));
    m_frame.delayMs = delayMs(m_file, m_content + 20);
    m_frame.blend = blend == 0 ? FilmCanvas::Blend::Source : FilmCanvas::Blend::Over;
    m_frame.disposal = disposal == 0   ? FilmCanvas::Disposal::Keep
                       : disposal == 1 ? FilmCanvas::Disposal::Clear
                                       : FilmCanvas::Disposal::Restore;
    m_hasFrame = true;
    m_isDefault = !m_hasPicture;
}

/// Pictures before which no frame is described are for programs that know no animations.
void ChunkReader::readPicture()
{
    m_hasPicture = true;
    if (m_hasFrame && m_isDefault)
        m_frame.pieces.append({m_content, m_length});
}

void ChunkReader::readMore()
{
    if (m_length < SequenceLength || !m_hasFrame || m_isDefault)
        throw Damage{QStringLiteral("damaged at byte %1").arg(m_at)};
    checkSequence();
    m_frame.pieces.append({m_content + SequenceLength, m_length - SequenceLength});
}

void ChunkReader::takeColours()
{
    if (!m_hasPicture)
        m_chunks.colours += m_file.mid(m_at, HeadLength + m_length + CheckSumLength);
}

void ChunkReader::endFrame()
{
    if (!m_hasFrame)
        return;
    m_hasFrame = false;
    if (m_frame.pieces.isEmpty())
        throw Damage{QStringLiteral("frame %1 has no picture").arg(m_chunks.frames.size() + 1)};
    m_chunks.frames.append(m_frame);
}

} // namespace

bool ApngChunks::announces(QIODevice &device)
{
    const qint64 start = device.pos();
    qint64 at = SignatureLength;
    bool isAnimated = false;
    while (device.seek(at)) {
        const QByteArray head = device.read(HeadLength + AnimationLength);
        const QByteArray type = head.mid(4, 4);
        if (type.size() < 4 || type == "IDAT" || type == "IEND")
            break;
        const quint32 length = number(head, 0);
        if (type == "acTL" && length == AnimationLength && head.size() == 16) {
            isAnimated = number(head, HeadLength) > 0;
            break;
        }
        at += HeadLength + qint64(length) + CheckSumLength;
    }
    device.seek(start);
    return isAnimated;
}

ApngChunks ApngChunks::read(const QByteArray &file)
{
    return ChunkReader(file).read();
}

QByteArray pngChunk(const char *type, const QByteArray &content)
{
    QByteArray chunk(HeadLength, '\0');
    qToBigEndian(quint32(content.size()), chunk.data());
    chunk.replace(4, 4, type);
    chunk += content;
    QByteArray sum(CheckSumLength, '\0');
    qToBigEndian(checkSum(chunk.constData() + 4, chunk.size() - 4), sum.data());
    return chunk + sum;
}
