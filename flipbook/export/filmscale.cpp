#include "flipbook/export/filmscale.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace FilmScale
{

namespace
{

/// Of a picture in pixels; no format and no picture in memory has a longer one.
constexpr double MaxSide = 1e6;

int scaledSide(int side, double scale)
{
    return int(std::clamp(std::round(side * scale), 1.0, MaxSide));
}

} // namespace

QSize scaled(const QSize &size, double scale)
{
    if (size.isEmpty() || scale == 1.0)
        return size;
    return {scaledSide(size.width(), scale), scaledSide(size.height(), scale)};
}

QImage scaled(const QImage &picture, double scale)
{
    const QSize size = scaled(picture.size(), scale);
    if (picture.isNull() || size == picture.size())
        return picture;
    const bool isWhole = scale == std::round(scale);
    const QImage result = picture.scaled(
        size, Qt::IgnoreAspectRatio, isWhole ? Qt::FastTransformation : Qt::SmoothTransformation);
    if (result.isNull())
        throw std::bad_alloc();
    return result.convertToFormat(QImage::Format_ARGB32);
}

} // namespace FilmScale
