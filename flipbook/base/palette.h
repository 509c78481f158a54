#pragma once

#include <QtGui/QImage>

/// Whether @p image, which is in Format_RGB32 or Format_ARGB32, has at most 256 different colours.
bool hasFewColors(const QImage &image);

/// @p image, which is in Format_RGB32 or Format_ARGB32, in Format_Indexed8 with the same colours.
/// If some are not opaque, they come first: a PNG file lists the opacity of colours up to the last
/// that is not. Null when there are more than 256 of them.
QImage withPalette(const QImage &image);
