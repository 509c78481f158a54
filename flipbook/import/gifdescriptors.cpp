#include "flipbook/import/gifdescriptors.h"

#include "flipbook/import/lzwwalk.h"

#include <QtCore/QIODevice>

#include <algorithm>
#include <array>

namespace
{

constexpr int MaxDamagesKept = 5;
constexpr int MillisecondsPerTick = 10;
constexpr int MinHonouredDelay = 20;
constexpr int DefaultDelay = 100;

constexpr int DisposalClear = 2;
constexpr int DisposalPrevious = 3;

class GifReader
{
public:
    explicit GifReader(QIODevice &device)
        : m_device(device)
    {
    }

    GifDescriptors read();

private:
    using SubBlock = std::array<uchar, 255>;

    int takeUpTo(uchar *bytes, int count);
    bool take(uchar *bytes, int count);
    int takeByte();
    int takeSubBlock(SubBlock &block);
    bool skipSubBlocks();
    bool readHeader();
    bool readExtension();
    bool readGraphicControl();
    bool readApplication();
    bool readFrame();
    bool readPicture(qint64 pixels);
    bool walkThrough(LzwWalk &walk);
    void takeFirstFrame(const QRect &frame, bool hasOwnPalette);
    void countDelay();
    void noteCodeSize(int codeSize);
    void noteDamage(const QString &what);

    QIODevice &m_device;
    GifDescriptors m_gif;
    int m_delay = DefaultDelay;
    bool m_hasPalette = false;
    bool m_isTransparent = false; ///< the frame that follows
};

int littleEndian16(const uchar *bytes)
{
    return bytes[0] | (bytes[1] << 8);
}

int colourTableBytes(uchar flags)
{
    return (flags & 0x80) ? 3 * (2 << (flags & 0x07)) : 0;
}

int GifReader::takeUpTo(uchar *bytes, int count)
{
    const qint64 got = std::max<qint64>(m_device.read(reinterpret_cast<char *>(bytes), count), 0);
    m_gif.endOffset += got;
    return int(got);
}

bool GifReader::take(uchar *bytes, int count)
{
    return takeUpTo(bytes, count) == count;
}

int GifReader::takeByte()
{
    uchar byte = 0;
    return take(&byte, 1) ? byte : -1;
}

// The length of the sub-block, 0 for the terminator, -1 when the file ends in it.
int GifReader::takeSubBlock(SubBlock &block)
{
    const int length = takeByte();
    if (length <= 0)
        return length;
    return take(block.data(), length) ? length : -1;
}

bool GifReader::skipSubBlocks()
{
    SubBlock block;
    int length = 0;
    do {
        length = takeSubBlock(block);
    } while (length > 0);
    return length == 0;
}

bool GifReader::readHeader()
{
    std::array<uchar, 6> signature = {};
    if (!take(signature.data(), 6))
        return false;
    const auto begins = [&signature](const char *text) {
        return std::equal(signature.begin(), signature.end(), text);
    };
    m_gif.hasSignature = begins("GIF87a") || begins("GIF89a");
    if (!m_gif.hasSignature)
        return false;

    std::array<uchar, 7> screen = {};
    if (!take(screen.data(), 7))
        return false;
    m_gif.hasScreen = true;
    m_gif.screen = QSize(littleEndian16(&screen[0]), littleEndian16(&screen[2]));
    std::array<uchar, 768> colours = {};
    const int paletteBytes = colourTableBytes(screen[4]);
    m_hasPalette = paletteBytes > 0;
    const bool isWhole = take(colours.data(), paletteBytes);
    m_gif.blocksOffset = m_gif.endOffset;
    return isWhole;
}

GifDescriptors GifReader::read()
{
    if (!readHeader())
        return m_gif;
    while (true) {
        const int introducer = takeByte();
        if (introducer < 0)
            return m_gif;
        if (introducer == 0x3b) {
            m_gif.ending = GifEnding::Trailer;
            return m_gif;
        }
        if (introducer != 0x21 && introducer != 0x2c) {
            --m_gif.endOffset;
            m_gif.ending = GifEnding::UnknownBlock;
            return m_gif;
        }
        if (!(introducer == 0x21 ? readExtension() : readFrame()))
            return m_gif;
    }
}

bool GifReader::readExtension()
{
    const int label = takeByte();
    if (label == 0xf9)
        return readGraphicControl();
    if (label == 0xff)
        return readApplication();
    return label >= 0 && skipSubBlocks();
}

bool GifReader::readGraphicControl()
{
    SubBlock block;
    const int length = takeSubBlock(block);
    if (length < 0)
        return false;
    if (length >= 4) {
        m_isTransparent = (block[0] & 0x01) != 0;
        const int disposal = (block[0] >> 2) & 0x07;
        const int delay = littleEndian16(&block[1]) * MillisecondsPerTick;
        m_delay = delay < MinHonouredDelay ? DefaultDelay : delay;
        m_gif.hasTransparency |= m_isTransparent || disposal == DisposalClear;
        m_gif.restoresPrevious |= disposal == DisposalPrevious;
    }
    return skipSubBlocks();
}

bool GifReader::readApplication()
{
    SubBlock block;
    int length = takeSubBlock(block);
    if (length < 0)
        return false;
    const QByteArray name(reinterpret_cast<const char *>(block.data()), length);
    if (name != "NETSCAPE2.0" && name != "ANIMEXTS1.0")
        return skipSubBlocks();
    while ((length = takeSubBlock(block)) > 0) {
        if (length == 3 && block[0] == 1)
            m_gif.repetitions = littleEndian16(&block[1]);
    }
    return length == 0;
}

void GifReader::takeFirstFrame(const QRect &frame, bool hasOwnPalette)
{
    QSize &screen = m_gif.screen;
    if (screen.width() == 0)
        screen.setWidth(frame.x() + frame.width());
    if (screen.height() == 0)
        screen.setHeight(frame.y() + frame.height());
    m_gif.firstFrame = frame;
    const bool covers = frame.contains(QRect(QPoint(0, 0), screen));
    m_gif.leavesScreenUnset = !covers && m_hasPalette && hasOwnPalette && !m_isTransparent;
}

void GifReader::countDelay()
{
    const bool isFirst = m_gif.frames == 1;
    m_gif.shortestDelay = isFirst ? m_delay : std::min(m_gif.shortestDelay, m_delay);
    m_gif.longestDelay = std::max(m_gif.longestDelay, m_delay);
    m_delay = DefaultDelay;
}

void GifReader::noteDamage(const QString &what)
{
    ++m_gif.damagedFrames;
    if (m_gif.damages.size() < MaxDamagesKept)
        m_gif.damages.append({m_gif.frames, what});
}

bool GifReader::readFrame()
{
    ++m_gif.frames;
    countDelay();
    std::array<uchar, 9> frame = {};
    if (!take(frame.data(), 9))
        return false;
    const QRect place(littleEndian16(&frame[0]), littleEndian16(&frame[2]),
                      littleEndian16(&frame[4]), littleEndian16(&frame[6]));
    const int paletteBytes = colourTableBytes(frame[8]);
    if (m_gif.frames == 1)
        takeFirstFrame(place, paletteBytes > 0);
    std::array<uchar, 768> colours = {};
    if (!take(colours.data(), paletteBytes))
        return false;
    return readPicture(qint64(place.width()) * place.height());
}

void GifReader::noteCodeSize(int codeSize)
{
    if (!LzwWalk::isUsual(codeSize) && !m_gif.unusual)
        m_gif.unusual = {m_gif.frames,
                         QStringLiteral("its code size %1 is out of range").arg(codeSize)};
}

/// Feeds the picture data up to their end, or as far as they go. False when the file ends in them.
bool GifReader::walkThrough(LzwWalk &walk)
{
    SubBlock block;
    while (true) {
        const int length = takeByte();
        if (length <= 0)
            return length == 0;
        // Of data that are cut, decoders draw what there is.
        const int got = takeUpTo(block.data(), length);
        walk.feed(block.data(), got);
        if (got < length)
            return false;
    }
}

bool GifReader::readPicture(qint64 pixels)
{
    const int codeSize = takeByte();
    if (codeSize < 0)
        return false;
    if (!LzwWalk::accepts(codeSize)) {
        noteDamage(QStringLiteral("its code size %1 is out of range").arg(codeSize));
        return skipSubBlocks();
    }
    noteCodeSize(codeSize);
    // Decoders draw the first pixels of a picture even where it has no size.
    LzwWalk walk(codeSize, std::max<qint64>(pixels, 1));
    const bool isWhole = walkThrough(walk);
    m_gif.pixelsFound |= walk.hasPixelCode();
    if (!isWhole)
        return false;
    if (pixels == 0)
        noteDamage(QStringLiteral("it has no size"));
    else if (walk.isDamaged())
        noteDamage(QStringLiteral("its picture data are invalid"));
    else if (walk.pixels() < pixels)
        noteDamage(QStringLiteral("its picture ends early"));
    else
        ++m_gif.wholeFrames;
    return true;
}

} // namespace

GifDescriptors readGifDescriptors(QIODevice &device)
{
    return GifReader(device).read();
}

int GifDescriptors::workingPictures() const
{
    // Measured: the picture that the decoder works on, one more when frames are transparent or are
    // cleared, and two more when the decoder must be able to go back to an earlier picture.
    if (restoresPrevious)
        return 4;
    return hasTransparency ? 2 : 1;
}
