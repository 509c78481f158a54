#include "tests/support/gifbuilder.h"

#include <QtCore/QFile>
#include <QtTest/QTest>

namespace
{

void appendWord(QByteArray &out, int value)
{
    out.append(char(value & 0xff));
    out.append(char((value >> 8) & 0xff));
}

/// Collects codes of 3 bits, least significant bit first.
class CodeWriter
{
public:
    void put(int code)
    {
        m_bits |= unsigned(code) << m_count;
        m_count += 3;
        while (m_count >= 8)
            flushByte();
    }

    QByteArray finished()
    {
        while (m_count > 0)
            flushByte();
        return m_bytes;
    }

private:
    void flushByte()
    {
        m_bytes.append(char(m_bits & 0xff));
        m_bits >>= 8;
        m_count -= 8;
    }

    unsigned m_bits = 0;
    int m_count = 0;
    QByteArray m_bytes;
};

/// The pixels of a frame, uncompressed: a clear code often enough that the code size never grows
/// beyond 3 bits.
QByteArray pixelCodes(const GifBuilder::Frame &frame)
{
    const int count = frame.rect.width() * frame.rect.height();
    constexpr int clearCode = 4;
    constexpr int endCode = 5;
    CodeWriter writer;
    for (int i = 0; i < count; ++i) {
        if (i % 2 == 0)
            writer.put(clearCode);
        writer.put(frame.colorAt ? frame.colorAt(i) : frame.colorIndex);
    }
    writer.put(endCode);
    return writer.finished();
}

void appendSubBlocks(QByteArray &out, const QByteArray &bytes)
{
    for (int at = 0; at < bytes.size(); at += 255) {
        const QByteArray block = bytes.mid(at, 255);
        out.append(char(block.size()));
        out.append(block);
    }
    out.append('\0');
}

} // namespace

GifBuilder::GifBuilder(int screenWidth, int screenHeight)
    : m_width(screenWidth)
    , m_height(screenHeight)
{
}

GifBuilder &GifBuilder::loop(int count)
{
    m_loop = count;
    return *this;
}

GifBuilder &GifBuilder::add(const Frame &frame)
{
    m_frames.append(frame);
    return *this;
}

GifBuilder &GifBuilder::add(int colorIndex, int delayCs)
{
    Frame frame;
    frame.rect = QRect(0, 0, m_width, m_height);
    frame.colorIndex = colorIndex;
    frame.delayCs = delayCs;
    return add(frame);
}

QByteArray GifBuilder::data() const
{
    QByteArray out("GIF89a");
    appendWord(out, m_width);
    appendWord(out, m_height);
    out.append(QByteArray::fromHex("910000")); // a palette of four colours
    out.append(QByteArray::fromHex("ff0000"
                                   "00ff00"
                                   "0000ff"
                                   "ffffff"));
    if (m_loop >= 0) {
        out.append(QByteArray::fromHex("21ff0b"));
        out.append("NETSCAPE2.0");
        out.append(QByteArray::fromHex("0301"));
        appendWord(out, m_loop);
        out.append('\0');
    }
    for (const Frame &frame : m_frames) {
        const bool hasTransparency = frame.transparentIndex >= 0;
        out.append(QByteArray::fromHex("21f904"));
        out.append(char((frame.disposal << 2) | (hasTransparency ? 1 : 0)));
        appendWord(out, frame.delayCs);
        out.append(char(hasTransparency ? frame.transparentIndex : 0));
        out.append('\0');
        out.append(',');
        appendWord(out, frame.rect.x());
        appendWord(out, frame.rect.y());
        appendWord(out, frame.rect.width());
        appendWord(out, frame.rect.height());
        out.append(frame.hasOwnPalette ? QByteArray::fromHex("81"
                                                             "ffff00"
                                                             "00ffff"
                                                             "ff00ff"
                                                             "000000")
                                       : QByteArray(1, '\0'));
        out.append('\2'); // least code size
        appendSubBlocks(out, pixelCodes(frame));
    }
    out.append(';');
    return out;
}

void GifBuilder::write(const QString &path) const
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    const QByteArray bytes = data();
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}
