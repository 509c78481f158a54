// libpng compresses the frames, each as a picture of its own, whose data then go into the chunks
// of the animation: Debian's libpng does not write animations itself. Qt calls libpng.

#include "flipbook/export/apngexport.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/base/saturating.h"
#include "flipbook/export/outgoingfilm.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <numeric>
#include <zlib.h>

namespace
{

/// How a frame comes onto those before it; the values are those of the format.
enum Blending : char { Replace = 0 };
enum Disposal : char { Keep = 0 };

QByteArray number(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray shortNumber(int value)
{
    QByteArray bytes(2, '\0');
    qToBigEndian(quint16(value), bytes.data());
    return bytes;
}

QByteArray chunk(const char *type, const QByteArray &content)
{
    const QByteArray checked = QByteArray(type, 4) + content;
    const auto *bytes = reinterpret_cast<const Bytef *>(checked.constData());
    return number(quint32(content.size())) + checked +
           number(quint32(crc32(0, bytes, uInt(checked.size()))));
}

/// The parts of a PNG file.
struct PngParts {
    QByteArray header; ///< the content of its first chunk
    QByteArray data;   ///< the compressed picture
};

/// Of a file that Qt has written.
PngParts partsOf(const QByteArray &png)
{
    PngParts parts;
    constexpr int signature = 8;
    constexpr int around = 12; // length, type and checksum
    for (int at = signature; at + around <= png.size();) {
        const int length = int(qFromBigEndian<quint32>(png.constData() + at));
        const QByteArray type = png.mid(at + 4, 4);
        if (type == "IHDR")
            parts.header = png.mid(at + 8, length);
        else if (type == "IDAT")
            parts.data += png.mid(at + 8, length);
        at += around + length;
    }
    return parts;
}

/// The smallest rectangle in which two pictures of one size differ; a pixel when they do not.
QRect changedRect(const QImage &before, const QImage &after)
{
    QRect all;
    const int width = after.width();
    for (int y = 0; y < after.height(); ++y) {
        const auto *one = reinterpret_cast<const QRgb *>(before.constScanLine(y));
        const auto *other = reinterpret_cast<const QRgb *>(after.constScanLine(y));
        const int left = int(std::mismatch(one, one + width, other).first - one);
        if (left == width)
            continue;
        int right = width - 1;
        while (one[right] == other[right])
            --right;
        all |= QRect(QPoint(left, y), QPoint(right, y));
    }
    return all.isEmpty() ? QRect(0, 0, 1, 1) : all;
}

/// A time in the form of the file: a fraction of a second, with 16 bits above and below.
struct Delay {
    int above;
    int below;
};

Delay delayOf(int ms)
{
    constexpr int most = 65535;
    const int divisor = std::gcd(ms, 1000);
    if (divisor > 0 && ms / divisor <= most)
        return {ms / divisor, 1000 / divisor};
    return {qMin((ms + 500) / 1000, most), 1};
}

class Writer
{
public:
    Writer(const OutgoingFilm &film, const MemoryAccount &memory, const QString &path)
        : m_film(film)
        , m_memory(memory)
        , m_path(path)
    {
    }

    QByteArray write(const FilmProgress &progress);

private:
    void requireMemory() const;
    void addBeginning(const PngParts &first);
    void addControl(const QRect &rect, int delayMs);
    void addFrame(const PngParts &parts, const QRect &rect, int index);
    bool hasTransparency() const;

    const OutgoingFilm &m_film;
    const MemoryAccount &m_memory;
    const QString m_path;
    QByteArray m_bytes;
    quint32 m_sequence = 0;
};

void Writer::requireMemory() const
{
    // Two pictures, the part that changes, and that part compressed.
    constexpr qint64 pictures = 5;
    m_memory.require(Saturating::sum(m_film.workingBytes(),
                                     Saturating::product(m_film.pictureBytes(), pictures)),
                     m_path,
                     QStringLiteral("writing frames of %1 x %2 pixels")
                         .arg(m_film.size().width())
                         .arg(m_film.size().height()));
}

/// All frames have the kind of pixels of the first, so it must have room for what comes.
bool Writer::hasTransparency() const
{
    for (int i = 0; i < m_film.count(); ++i) {
        const QImage picture = m_film.picture(i);
        for (int y = 0; y < picture.height(); ++y) {
            const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
            if (std::any_of(row, row + picture.width(),
                            [](QRgb pixel) { return qAlpha(pixel) != 255; }))
                return true;
        }
    }
    return false;
}

void Writer::addBeginning(const PngParts &first)
{
    m_bytes = QByteArray::fromHex("89504e470d0a1a0a") + chunk("IHDR", first.header);
    if (m_film.count() == 1)
        return;
    const int repetitions = m_film.loopCount();
    const quint32 passes = repetitions < 0 ? 0 : quint32(repetitions) + 1;
    m_bytes += chunk("acTL", number(quint32(m_film.count())) + number(passes));
}

void Writer::addControl(const QRect &rect, int delayMs)
{
    const Delay delay = delayOf(delayMs);
    m_bytes += chunk("fcTL", number(m_sequence++) + number(quint32(rect.width())) +
                                 number(quint32(rect.height())) + number(quint32(rect.left())) +
                                 number(quint32(rect.top())) + shortNumber(delay.above) +
                                 shortNumber(delay.below) + char(Keep) + char(Replace));
}

void Writer::addFrame(const PngParts &parts, const QRect &rect, int index)
{
    if (m_film.count() > 1)
        addControl(rect, m_film.delayMs(index));
    if (index == 0)
        m_bytes += chunk("IDAT", parts.data);
    else
        m_bytes += chunk("fdAT", number(m_sequence++) + parts.data);
    // As it is, and once more where it grows.
    m_memory.require(2 * qint64(m_bytes.size()), m_path, QStringLiteral("its frames"));
}

QByteArray Writer::write(const FilmProgress &progress)
{
    requireMemory();
    const QImage::Format format = hasTransparency() ? QImage::Format_ARGB32 : QImage::Format_RGB32;
    QImage before;
    for (int i = 0; i < m_film.count(); ++i) {
        const QImage shown = m_film.picture(i).convertToFormat(format);
        const QRect rect = i == 0 ? shown.rect() : changedRect(before, shown);
        const PngParts parts = partsOf(pngOf(shown.copy(rect), m_path));
        if (i == 0)
            addBeginning(parts);
        addFrame(parts, rect, i);
        before = shown;
        if (progress)
            progress(i + 1, m_film.count());
    }
    return m_bytes + chunk("IEND", {});
}

} // namespace

WrittenFilm apngOf(const OutgoingFilm &film, const MemoryAccount &memory, const QString &path,
                   const FilmProgress &progress)
{
    return {Writer(film, memory, path).write(progress), {}};
}
