#include "animatedimage/core/region.h"

#include "animatedimage/core/opaquebits.h"

#include <algorithm>

namespace OpaqueRegion
{

namespace
{

constexpr int BitsPerWord = 64;

qint64 area(const QRect &rect)
{
    return qint64(rect.width()) * rect.height();
}

/// Whether every run of @p row lies exactly below its partner, so that their unions add nothing.
bool fitsBelow(const QList<QRect> &open, const QList<QRect> &row)
{
    if (open.size() != row.size())
        return false;
    for (int i = 0; i < row.size(); ++i) {
        if (area(open.at(i) | row.at(i)) != area(open.at(i)) + area(row.at(i)))
            return false;
    }
    return true;
}

/// Whether @p source is measured on a reduced copy.
bool isReduced(const QImage &source, int maxSide)
{
    const auto pixels = qint32(quint32(source.width()) * quint32(source.height()));
    return pixels > qint64(maxSide) * maxSide;
}

/// The size that QImage::scaled() gives a picture of @p size.
QSize reducedSize(const QSize &size, int maxSide)
{
    return size.scaled(maxSide, maxSide, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

/// The place of the lowest bit that is set, which is cleared.
int takeLowest(quint64 &bits)
{
    const auto place = int(qCountTrailingZeroBits(bits));
    bits &= bits - 1;
    return place;
}

/// The opaque runs of a picture: bands of lines that have the same runs, one below the other.
class Bands
{
public:
    Bands(const QImage &image, int threshold)
        : m_lastColumn(image.width() - 1)
        , m_line(size_t(OpaqueBits::wordCount(image.width())))
    {
        for (int y = 0; y < image.height(); ++y) {
            // The bits of the line above are still there, as a guess.
            OpaqueBits::read({image.constScanLine(y), image.width(), image.depth() / 8, threshold},
                             m_line.data());
            // The last column counts only where it is a separate run, so that lines with the
            // same runs have the same bits.
            if (m_lastColumn > 0 && hasPixel(m_lastColumn - 1))
                wordOf(m_lastColumn) &= ~bitOf(m_lastColumn);
            if (!isEmpty())
                add(y);
        }
    }

    /// The rectangles: one for each run of each band.
    template<typename List>
    List rects() const
    {
        List list;
        list.reserve(static_cast<typename List::size_type>(runCount()));
        const quint64 *line = m_bits.data();
        for (const Band &band : m_bands) {
            appendRuns(list, line, band);
            line += m_line.size();
        }
        return list;
    }

private:
    struct Band {
        int top;
        int bottom;
    };

    bool isEmpty() const
    {
        return std::all_of(m_line.begin(), m_line.end(), [](quint64 word) { return word == 0; });
    }

    /// The only run is the last pixel, a rectangle of no width.
    bool isLastPixelAlone() const
    {
        return m_line.back() == bitOf(m_lastColumn) &&
               std::all_of(m_line.begin(), m_line.end() - 1,
                           [](quint64 word) { return word == 0; });
    }

    bool isLikeLastBand() const
    {
        return !m_bands.empty() &&
               std::equal(m_line.begin(), m_line.end(), m_bits.end() - qptrdiff(m_line.size()));
    }

    /// The line at @p y makes the last band grow, or begins a new one. Rectangles of no width have
    /// no area, so that no gap is too wide for them.
    void add(int y)
    {
        if (isLikeLastBand() && (m_bands.back().bottom == y - 1 || isLastPixelAlone())) {
            m_bands.back().bottom = y;
            return;
        }
        m_bands.push_back({y, y});
        m_bits.insert(m_bits.end(), m_line.begin(), m_line.end());
    }

    size_t runCount() const
    {
        size_t count = 0;
        // A run that goes on in the next word is counted twice; no harm is done.
        for (const quint64 word : m_bits)
            count += qPopulationCount(word & ~(word << 1));
        return count;
    }

    template<typename List>
    void appendRuns(List &list, const quint64 *line, const Band &band) const
    {
        const auto append = [&](int start, int end) {
            // The last column alone has no width.
            const int last = start == m_lastColumn ? start - 1 : end - 1;
            list.push_back(QRect(QPoint(start, band.top), QPoint(last, band.bottom)));
        };
        constexpr int none = -1;
        int open = none;
        for (int first = 0; first <= m_lastColumn; first += BitsPerWord, ++line) {
            // Bits that differ from the one before them: where runs begin and end.
            quint64 edges = *line ^ (*line << 1);
            if (open != none) {
                edges ^= 1;
                if (edges == 0)
                    continue;
                append(open, first + takeLowest(edges));
                open = none;
            }
            while (edges != 0) {
                const int start = first + takeLowest(edges);
                if (edges == 0)
                    open = start;
                else
                    append(start, first + takeLowest(edges));
            }
        }
        if (open != none)
            append(open, m_lastColumn + 1);
    }

    static quint64 bitOf(int x) { return quint64(1) << (x % BitsPerWord); }
    quint64 &wordOf(int x) { return m_line[size_t(x / BitsPerWord)]; }
    bool hasPixel(int x) { return (wordOf(x) & bitOf(x)) != 0; }

    int m_lastColumn;
    std::vector<quint64> m_line; ///< the line that is looked at
    std::vector<quint64> m_bits; ///< the line of each band, one after the other
    std::vector<Band> m_bands;
};

/// The rectangles of a picture whose pixels are all opaque.
QRect wholeOf(const QSize &size)
{
    return {QPoint(0, 0), QPoint(size.width() - 2, size.height() - 1)};
}

template<typename List>
List rectsOf(const QImage &image, int threshold)
{
    constexpr int greatest = 255;
    if ((image.depth() != 8 && image.depth() != 32) || threshold > greatest)
        return {};
    if (threshold <= 0)
        return {wholeOf(image.size())};
    return Bands(image, threshold).rects<List>();
}

} // namespace

QImage measuredImage(const QImage &source, int maxSide)
{
    if (!isReduced(source, maxSide))
        return source;
    return source.scaled(maxSide, maxSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

Measured measured(const QImage &image, int maxSide)
{
    // The reduction writes the unused byte of such a picture as 255; in the original it may be
    // anything.
    if (image.format() == QImage::Format_RGB32 && isReduced(image, maxSide)) {
        const QSize size = reducedSize(image.size(), maxSide);
        return {{wholeOf(size)}, size};
    }
    const QImage reduced = measuredImage(image, maxSide);
    return {opaqueRects(reduced, OpaqueThreshold), reduced.size()};
}

Rects opaqueRects(const QImage &image, int threshold)
{
    return rectsOf<Rects>(image, threshold);
}

QList<QRect> rectsFromImage(const QImage &image, int threshold)
{
    return rectsOf<QList<QRect>>(image, threshold);
}

QList<QRect> toList(const Rects &rects)
{
    QList<QRect> list;
    list.reserve(int(rects.size()));
    for (const QRect &rect : rects)
        list.append(rect);
    return list;
}

void mergeRects(QList<QRect> &done, QList<QRect> &open, const QList<QRect> &row)
{
    if (!fitsBelow(open, row)) {
        done += open;
        open = row;
        return;
    }
    for (int i = 0; i < row.size(); ++i)
        open[i] |= row.at(i);
}

QRect mirrored(const QRect &rect, int width)
{
    return {width - 1 - rect.right(), rect.y(), rect.width(), rect.height()};
}

QRect flipped(const QRect &rect, int height)
{
    return {rect.x(), height - 1 - rect.bottom(), rect.width(), rect.height()};
}

} // namespace OpaqueRegion
