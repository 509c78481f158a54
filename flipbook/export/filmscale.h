#pragma once

#include <QtGui/QImage>

/// Pictures of a film in another size.
namespace FilmScale
{

/// A size with both sides multiplied by @p scale, at least one pixel; an empty one stays empty.
QSize scaled(const QSize &size, double scale);

/// @p picture in that size, in Format_ARGB32. Whole numbers repeat pixels, so that drawn ones stay
/// what they are; others smooth them. @throw std::bad_alloc
QImage scaled(const QImage &picture, double scale);

} // namespace FilmScale
