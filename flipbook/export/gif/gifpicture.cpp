#include "flipbook/export/gif/gifpicture.h"

#include <algorithm>
#include <new>

namespace GifPicture
{

namespace
{

/// The smallest rectangle with all pixels of two pictures for which @p isIn holds.
template<typename Predicate>
QRect bounds(const QImage &one, const QImage &other, const Predicate &isIn)
{
    const int width = one.width();
    QRect all;
    for (int y = 0; y < one.height(); ++y) {
        const QRgb *first = row(one, y);
        const QRgb *second = row(other, y);
        int left = 0;
        while (left < width && !isIn(first[left], second[left]))
            ++left;
        if (left == width)
            continue;
        int right = width - 1;
        while (!isIn(first[right], second[right]))
            --right;
        all |= QRect(QPoint(left, y), QPoint(right, y));
    }
    return all;
}

} // namespace

QImage of(const QImage &picture, int threshold)
{
    QImage result = picture.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < result.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(result.scanLine(y));
        std::transform(pixels, pixels + result.width(), pixels, [threshold](QRgb pixel) {
            return qAlpha(pixel) < threshold ? 0U : pixel | 0xff000000U;
        });
    }
    return result;
}

QImage empty(const QSize &size)
{
    QImage picture(size, QImage::Format_ARGB32);
    if (picture.isNull())
        throw std::bad_alloc();
    picture.fill(0U);
    return picture;
}

QRect difference(const QImage &one, const QImage &other)
{
    return bounds(one, other, [](QRgb first, QRgb second) { return first != second; });
}

QRect vanishing(const QImage &before, const QImage &after)
{
    return bounds(before, after, [](QRgb first, QRgb second) { return first != 0 && second == 0; });
}

bool hasTransparency(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        const QRgb *pixels = row(picture, y);
        if (std::find(pixels, pixels + picture.width(), 0U) != pixels + picture.width())
            return true;
    }
    return false;
}

void clear(QImage &picture, const QRect &rect)
{
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(picture.scanLine(y));
        std::fill(pixels + rect.left(), pixels + rect.right() + 1, 0U);
    }
}

} // namespace GifPicture
