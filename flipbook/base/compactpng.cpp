#include "flipbook/base/compactpng.h"

#include <QtCore/QBuffer>
#include <QtCore/QHash>
#include <QtGui/QColorSpace>
#include <QtGui/QImageWriter>

#include <algorithm>

namespace
{

constexpr int MostColors = 256;

// How hard a file is compressed. Without a palette more than usual takes several times as long, and
// gains a few per cent.
constexpr int Smallest = 100;
constexpr int Usual = -1;

/// The colours of @p image, which has 32 bits a pixel; empty when they are too many. Transparent
/// ones come first: a PNG lists the opacity of colours up to the last that is not opaque.
QVector<QRgb> colorsOf(const QImage &image)
{
    QHash<QRgb, int> found;
    for (int y = 0; y < image.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (x > 0 && row[x] == row[x - 1])
                continue;
            found.insert(row[x], 0);
            if (found.size() > MostColors)
                return {};
        }
    }
    QVector<QRgb> colors(found.keyBegin(), found.keyEnd());
    std::sort(colors.begin(), colors.end());
    return colors;
}

QImage withPalette(const QImage &image, const QVector<QRgb> &colors)
{
    QHash<QRgb, uchar> numbers;
    for (int i = 0; i < colors.size(); ++i)
        numbers.insert(colors.at(i), uchar(i));
    QImage result(image.size(), QImage::Format_Indexed8);
    result.setColorTable(colors);
    for (int y = 0; y < image.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        uchar *numbered = result.scanLine(y);
        for (int x = 0; x < image.width(); ++x)
            numbered[x] = x > 0 && row[x] == row[x - 1] ? numbered[x - 1] : numbers.value(row[x]);
    }
    return result;
}

bool isOpaque(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (std::any_of(row, row + image.width(), [](QRgb pixel) { return qAlpha(pixel) < 255; }))
            return false;
    }
    return true;
}

/// @p image as 32 bits a pixel, without a colour space.
QImage plain(const QImage &image)
{
    QImage result = image.convertToFormat(QImage::Format_ARGB32);
    result.setColorSpace(QColorSpace());
    return result;
}

QByteArray written(const QImage &image, int compression)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    writer.setCompression(compression);
    return writer.write(image) ? buffer.data() : QByteArray();
}

} // namespace

QByteArray palettePng(const QImage &image)
{
    if (image.isNull())
        return {};
    const QImage picture = plain(image);
    const QVector<QRgb> colors = colorsOf(picture);
    return colors.isEmpty() ? QByteArray() : written(withPalette(picture, colors), Smallest);
}

QByteArray compactPng(const QImage &image)
{
    if (image.isNull())
        return {};
    const QByteArray png = palettePng(image);
    if (!png.isEmpty())
        return png;
    const QImage picture = plain(image);
    return written(isOpaque(picture) ? picture.convertToFormat(QImage::Format_RGB32) : picture,
                   Usual);
}
