#include "benchmarks/support/gifwriter.h"

#include <QtCore/QFile>

#include <vector>

namespace
{

constexpr int transparentIndex = 216;
constexpr int codeLength = 8; ///< bits of a pixel
constexpr int mostCodes = 4096;

QByteArray word(int value)
{
    const char bytes[] = {char(value & 0xff), char(value >> 8 & 0xff)};
    return {bytes, 2};
}

/// Codes of growing length, least significant bit first.
class CodeWriter
{
public:
    void put(int code, int length)
    {
        m_bits |= quint32(code) << m_count;
        for (m_count += length; m_count >= 8; m_count -= 8, m_bits >>= 8)
            m_bytes.append(char(m_bits & 0xff));
    }

    QByteArray finished()
    {
        if (m_count > 0)
            m_bytes.append(char(m_bits & 0xff));
        return m_bytes;
    }

private:
    quint32 m_bits = 0;
    int m_count = 0;
    QByteArray m_bytes;
};

QByteArray compressed(const QByteArray &pixels)
{
    constexpr int clear = 1 << codeLength;
    constexpr int end = clear + 1;
    // next[code * 256 + pixel] is the code of that string with that pixel after it, or 0.
    std::vector<quint16> next(size_t(mostCodes) * 256, 0);
    CodeWriter writer;
    int length = codeLength + 1;
    int free = end + 1;
    int code = -1;
    writer.put(clear, length);
    for (const char byte : pixels) {
        const int pixel = uchar(byte);
        if (code < 0) {
            code = pixel;
            continue;
        }
        quint16 &longer = next[size_t(code) * 256 + size_t(pixel)];
        if (longer != 0) {
            code = longer;
            continue;
        }
        writer.put(code, length);
        code = pixel;
        if (free < mostCodes) {
            longer = quint16(free);
            if (free == 1 << length)
                ++length;
            ++free;
        } else {
            writer.put(clear, length);
            std::fill(next.begin(), next.end(), quint16(0));
            length = codeLength + 1;
            free = end + 1;
        }
    }
    writer.put(code, length);
    writer.put(end, length);
    return writer.finished();
}

QByteArray palette()
{
    QByteArray bytes;
    for (int index = 0; index < 256; ++index) {
        for (const int place : {36, 6, 1})
            bytes.append(char(index < transparentIndex ? index / place % 6 * 51 : 0));
    }
    return bytes;
}

QByteArray indexesOf(const QImage &frame)
{
    const QImage image = frame.convertToFormat(QImage::Format_ARGB32);
    QByteArray indexes;
    indexes.reserve(image.width() * image.height());
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = line[x];
            const int index = (qRed(pixel) + 25) / 51 * 36 + (qGreen(pixel) + 25) / 51 * 6 +
                              (qBlue(pixel) + 25) / 51;
            indexes.append(char(qAlpha(pixel) < 128 ? transparentIndex : index));
        }
    }
    return indexes;
}

} // namespace

GifWriter::GifWriter(const QString &path, const QSize &size)
    : m_path(path)
{
    m_bytes = "GIF89a" + word(size.width()) + word(size.height());
    m_bytes.append("\xf7\0\0", 3);
    m_bytes += palette();
    m_bytes.append("\x21\xff\x0bNETSCAPE2.0\x03\x01\0\0\0", 19);
}

GifWriter::~GifWriter()
{
    m_bytes.append(';');
    QFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(m_bytes) != m_bytes.size())
        qFatal("%s cannot be written", qPrintable(m_path));
}

void GifWriter::add(const QImage &frame, int delayCs)
{
    // The place is cleared after each frame, so that every frame is shown alone.
    const bool hasAlpha = frame.hasAlphaChannel();
    m_bytes.append("\x21\xf9\x04", 3);
    m_bytes.append(char(hasAlpha ? 2 << 2 | 1 : 1 << 2));
    m_bytes += word(delayCs);
    m_bytes.append(char(transparentIndex));
    m_bytes.append('\0');
    m_bytes.append(',');
    m_bytes += word(0) + word(0) + word(frame.width()) + word(frame.height());
    m_bytes.append('\0');
    m_bytes.append(char(codeLength));
    const QByteArray codes = compressed(indexesOf(frame));
    for (int at = 0; at < codes.size(); at += 255) {
        const QByteArray block = codes.mid(at, 255);
        m_bytes.append(char(uchar(block.size())));
        m_bytes += block;
    }
    m_bytes.append('\0');
}
