#include "flipbook/base/compactpng.h"

#include "flipbook/base/palette.h"

#include <QtGui/QColorSpace>

#include <algorithm>

namespace
{

bool isOpaque(const QImage &image)
{
    const int width = image.width();
    for (int y = 0; y < image.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (std::any_of(row, row + width, [](QRgb pixel) { return qAlpha(pixel) < 255; }))
            return false;
    }
    return true;
}

/// @p image as 32 bits a pixel, without a colour space.
QImage plain(const QImage &image)
{
    QImage result = image.format() == QImage::Format_RGB32
                        ? image
                        : image.convertToFormat(QImage::Format_ARGB32);
    result.setColorSpace(QColorSpace());
    return result;
}

} // namespace

QByteArray palettePng(const QImage &image, PngEffort effort)
{
    return encodedPng(withPalette(plain(image)), effort);
}

QByteArray compactPng(const QImage &image, PngEffort effort)
{
    QImage picture = plain(image);
    const QImage indexed = withPalette(picture);
    if (!indexed.isNull())
        return encodedPng(indexed, effort);
    if (picture.format() == QImage::Format_ARGB32 && isOpaque(picture))
        picture.reinterpretAsFormat(QImage::Format_RGB32);
    return encodedPng(picture, effort);
}
