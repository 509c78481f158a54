#include "flipbook/export/gif/dithering.h"

#include "flipbook/export/gif/gifpicture.h"
#include "flipbook/export/gif/quantiser.h"

#include <algorithm>
#include <array>

namespace
{

using Error = std::array<int, 3>; ///< of red, green and blue, in sixteenths of a level

constexpr int Sixteen = 16;

/// @p error and half a sixteenth, rounded down to levels.
int levels(int error)
{
    return (error + Sixteen / 2) >> 4;
}

QRgb corrected(QRgb colour, const Error &error)
{
    const auto channel = [](int value, int sixteenths) {
        return std::clamp(value + levels(sixteenths), 0, 255);
    };
    return qRgb(channel(qRed(colour), error[0]), channel(qGreen(colour), error[1]),
                channel(qBlue(colour), error[2]));
}

void pass(Error &to, QRgb wanted, QRgb given, int sixteenths)
{
    to[0] += (qRed(wanted) - qRed(given)) * sixteenths;
    to[1] += (qGreen(wanted) - qGreen(given)) * sixteenths;
    to[2] += (qBlue(wanted) - qBlue(given)) * sixteenths;
}

} // namespace

QVector<qint16> nearestIndices(const QImage &canvas, const QImage &shown, const QRect &rect,
                               const QVector<QRgb> &palette)
{
    Quantiser::Nearest nearest(palette);
    QVector<qint16> indices;
    indices.reserve(rect.width() * rect.height());
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        const QRgb *before = GifPicture::row(canvas, y);
        const QRgb *after = GifPicture::row(shown, y);
        for (int x = rect.left(); x <= rect.right(); ++x)
            indices.append(qint16(before[x] == after[x] ? -1 : nearest.index(after[x])));
    }
    return indices;
}

QVector<qint16> ditheredIndices(const QImage &canvas, const QImage &shown, const QRect &rect,
                                const QVector<QRgb> &palette)
{
    Quantiser::Nearest nearest(palette);
    QVector<qint16> indices;
    indices.reserve(rect.width() * rect.height());
    // With a place more on both sides, for what is passed beyond them.
    QVector<Error> here(rect.width() + 2, Error{});
    QVector<Error> below = here;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        const QRgb *before = GifPicture::row(canvas, y) + rect.left();
        const QRgb *after = GifPicture::row(shown, y) + rect.left();
        for (int x = 0; x < rect.width(); ++x) {
            if (before[x] == after[x]) {
                indices.append(-1);
                continue;
            }
            const QRgb wanted = corrected(after[x], here.at(x + 1));
            const int index = nearest.index(wanted);
            const QRgb given = palette.at(index);
            indices.append(qint16(index));
            pass(here[x + 2], wanted, given, 7);
            pass(below[x], wanted, given, 3);
            pass(below[x + 1], wanted, given, 5);
            pass(below[x + 2], wanted, given, 1);
        }
        std::swap(here, below);
        below.fill(Error{});
    }
    return indices;
}
