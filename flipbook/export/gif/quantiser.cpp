// Leptonica chooses the colours, by median cut: it is in Debian, well kept, and under a permissive
// licence. libimagequant chooses better ones, but is under the GPL or a commercial licence; the
// function of giflib is deprecated, and that of libgd comes with a display server's libraries. What
// median cut gives is refined here: each colour becomes the mean of the pixels that are nearest to
// it, a few times over.

#include "flipbook/export/gif/quantiser.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <leptonica/allheaders.h>
#include <limits>
#include <memory>
#include <new>

namespace Quantiser
{

namespace
{

struct DestroyPix {
    void operator()(PIX *pix) const { pixDestroy(&pix); }
};
using OwnedPix = std::unique_ptr<PIX, DestroyPix>;

/// The mean of pixels that have nearly one colour, and how many there are.
struct Bin {
    std::array<double, 3> sum = {};
    double count = 0.0;
};

std::array<int, 3> channels(QRgb colour)
{
    return {qRed(colour), qGreen(colour), qBlue(colour)};
}

/// The pixels, those of one colour by 5 bits of each channel together.
QVector<Bin> binsOf(const QVector<QRgb> &pixels)
{
    QVector<Bin> bins(1 << 15);
    for (const QRgb pixel : pixels) {
        const std::array<int, 3> values = channels(pixel);
        Bin &bin = bins[(values[0] >> 3) << 10 | (values[1] >> 3) << 5 | values[2] >> 3];
        for (std::size_t i = 0; i < 3; ++i)
            bin.sum[i] += values[i];
        bin.count += 1.0;
    }
    QVector<Bin> filled;
    std::copy_if(bins.begin(), bins.end(), std::back_inserter(filled),
                 [](const Bin &bin) { return bin.count > 0.0; });
    return filled;
}

int nearestTo(const std::array<int, 3> &values, const QVector<QRgb> &palette)
{
    int best = 0;
    int least = std::numeric_limits<int>::max();
    for (int i = 0; i < palette.size(); ++i) {
        const QRgb colour = palette.at(i);
        const int red = qRed(colour) - values[0];
        const int green = qGreen(colour) - values[1];
        const int blue = qBlue(colour) - values[2];
        const int distance = red * red + green * green + blue * blue;
        if (distance < least) {
            least = distance;
            best = i;
        }
    }
    return best;
}

void refine(QVector<QRgb> &palette, const QVector<Bin> &bins)
{
    QVector<Bin> means(palette.size());
    for (const Bin &bin : bins) {
        std::array<int, 3> values = {};
        for (std::size_t i = 0; i < 3; ++i)
            values[i] = int(std::lround(bin.sum[i] / bin.count));
        Bin &mean = means[nearestTo(values, palette)];
        for (std::size_t i = 0; i < 3; ++i)
            mean.sum[i] += bin.sum[i];
        mean.count += bin.count;
    }
    for (int i = 0; i < palette.size(); ++i) {
        const Bin &mean = means.at(i);
        if (mean.count > 0.0)
            palette[i] = qRgb(int(std::lround(mean.sum[0] / mean.count)),
                              int(std::lround(mean.sum[1] / mean.count)),
                              int(std::lround(mean.sum[2] / mean.count)));
    }
}

OwnedPix pixOf(const QVector<QRgb> &pixels)
{
    // In rows: a single one may be longer than a picture can be.
    constexpr int columns = 1024;
    const int rows = (pixels.size() + columns - 1) / columns;
    OwnedPix pix(pixCreateNoInit(columns, rows, 32));
    if (!pix)
        throw std::bad_alloc();
    l_uint32 *data = pixGetData(pix.get());
    for (int i = 0; i < columns * rows; ++i) {
        // The rest of the last row repeats the last pixel.
        const QRgb pixel = pixels.at(qMin(i, pixels.size() - 1));
        composeRGBPixel(qRed(pixel), qGreen(pixel), qBlue(pixel), data + i);
    }
    return pix;
}

} // namespace

QVector<QRgb> palette(const QVector<QRgb> &pixels, int most)
{
    QVector<QRgb> colours;
    if (pixels.isEmpty())
        return colours;
    setMsgSeverity(L_SEVERITY_NONE);
    const OwnedPix pix = pixOf(pixels);
    constexpr int noDither = 0;
    constexpr int bitsOfPixels = 8;
    constexpr int bitsOfHistogram = 6;
    constexpr int everyPixel = 1;
    constexpr int greyIsColour = 0;
    const OwnedPix chosen(pixMedianCutQuantGeneral(pix.get(), noDither, bitsOfPixels, most,
                                                   bitsOfHistogram, everyPixel, greyIsColour));
    PIXCMAP *map = chosen ? pixGetColormap(chosen.get()) : nullptr;
    if (!map)
        throw std::bad_alloc();
    const int count = qMin(pixcmapGetCount(map), most);
    for (int i = 0; i < count; ++i) {
        l_int32 red = 0;
        l_int32 green = 0;
        l_int32 blue = 0;
        pixcmapGetColor(map, i, &red, &green, &blue);
        colours.append(qRgb(red, green, blue));
    }
    const QVector<Bin> bins = binsOf(pixels);
    constexpr int passes = 20;
    for (int i = 0; i < passes; ++i)
        refine(colours, bins);
    return colours;
}

Nearest::Nearest(const QVector<QRgb> &palette)
    : m_palette(palette)
{
}

int Nearest::index(QRgb colour)
{
    const auto found = m_found.constFind(colour);
    if (found != m_found.constEnd())
        return *found;
    const int index = nearestTo(channels(colour), m_palette);
    m_found.insert(colour, index);
    return index;
}

} // namespace Quantiser
