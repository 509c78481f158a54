#pragma once

#include <QtGui/QImage>

#include <functional>

/// Pictures as a GIF can show them: in Format_ARGB32, each pixel either opaque or 0.
namespace GifPicture
{

/// The pictures of a film by their index, each made anew.
using Source = std::function<QImage(int)>;

/// @p picture with its pixels opaque from an alpha of @p threshold on, and transparent below.
QImage of(const QImage &picture, int threshold = 128);

/// A picture of transparent pixels. @throw std::bad_alloc
QImage empty(const QSize &size);

inline const QRgb *row(const QImage &picture, int y)
{
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
}

/// The smallest rectangle with all pixels in which the two, of one size, differ.
QRect difference(const QImage &one, const QImage &other);

/// The smallest rectangle with all pixels that are opaque in @p before and transparent in
/// @p after.
QRect vanishing(const QImage &before, const QImage &after);

/// Whether a pixel is transparent.
bool hasTransparency(const QImage &picture);

/// Makes the pixels in @p rect transparent.
void clear(QImage &picture, const QRect &rect);

} // namespace GifPicture
