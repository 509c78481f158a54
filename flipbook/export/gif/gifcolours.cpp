#include "flipbook/export/gif/gifcolours.h"

#include "flipbook/export/gif/gifpicture.h"

#include <algorithm>
#include <iterator>

namespace GifColours
{

namespace
{

/// The colours of @p frame that are not in @p palette.
QVector<QRgb> missing(const QVector<QRgb> &frame, const QSet<QRgb> &palette)
{
    QVector<QRgb> colours;
    std::copy_if(frame.begin(), frame.end(), std::back_inserter(colours),
                 [&palette](QRgb colour) { return !palette.contains(colour); });
    return colours;
}

/// What a frame gains when its colours come into the common palette, for each of @p added colours.
double gain(int colours, int added)
{
    const double ownPalette = 3.0 * (1 << bitsFor(colours));
    return ownPalette / (added + 1);
}

/// Adds the frame that gains most by it, with all others that then need nothing more. False when
/// none fits any more.
bool addBestFrame(const QVector<QVector<QRgb>> &frames, QVector<bool> &isIn, QSet<QRgb> &palette)
{
    double most = 0.0;
    QVector<QRgb> best;
    bool isFound = false;
    for (int i = 0; i < frames.size(); ++i) {
        if (isIn.at(i) || frames.at(i).size() > MaxColours)
            continue;
        const QVector<QRgb> added = missing(frames.at(i), palette);
        if (added.isEmpty())
            isIn[i] = true;
        if (added.isEmpty() || palette.size() + added.size() > MaxColours)
            continue;
        const double gained = gain(frames.at(i).size(), added.size());
        if (gained > most) {
            most = gained;
            best = added;
            isFound = true;
        }
    }
    for (const QRgb colour : qAsConst(best))
        palette.insert(colour);
    return isFound;
}

} // namespace

QVector<QRgb> needed(const QImage &canvas, const QImage &shown, const QRect &rect,
                     bool withUnchanged)
{
    QSet<QRgb> colours;
    QRgb last = 0;
    for (int y = rect.top(); y <= rect.bottom() && colours.size() <= MaxColours; ++y) {
        const QRgb *before = GifPicture::row(canvas, y);
        const QRgb *after = GifPicture::row(shown, y);
        for (int x = rect.left(); x <= rect.right(); ++x) {
            const bool isNeeded = withUnchanged ? after[x] != 0 : after[x] != before[x];
            if (!isNeeded || after[x] == last)
                continue;
            last = after[x];
            colours.insert(last);
        }
    }
    QVector<QRgb> sorted(colours.begin(), colours.end());
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

QVector<QRgb> common(const QVector<QVector<QRgb>> &frames)
{
    QSet<QRgb> palette;
    QVector<bool> isIn(frames.size(), false);
    while (addBestFrame(frames, isIn, palette)) {
    }
    QHash<QRgb, int> uses;
    for (const QVector<QRgb> &frame : frames) {
        if (frame.size() > MaxColours)
            continue;
        for (const QRgb colour : frame)
            ++uses[colour];
    }
    QVector<QRgb> sorted(palette.begin(), palette.end());
    std::sort(sorted.begin(), sorted.end(), [&uses](QRgb one, QRgb other) {
        const int first = uses.value(one);
        const int second = uses.value(other);
        return first != second ? first > second : one < other;
    });
    return sorted;
}

int bitsFor(int count)
{
    int bits = 1;
    while (1 << bits < count)
        ++bits;
    return bits;
}

QHash<QRgb, int> indexOf(const QVector<QRgb> &palette)
{
    QHash<QRgb, int> index;
    for (int i = 0; i < palette.size(); ++i)
        index.insert(palette.at(i), i);
    return index;
}

} // namespace GifColours
