#pragma once

#include <QtCore/QByteArray>
#include <QtGui/QImage>

/// Pictures as PNG files. The file holds the pixels and, as a text chunk, the pixel format that
/// they had, and nothing else of the image. The usual formats come back as they were; the rare
/// ones as the nearest that a PNG can hold, and as that for ever after: encoding a decoded
/// picture gives the same bytes.
namespace PictureCodec
{

/// Empty for a null image.
QByteArray encode(const QImage &image);

/// A null image for what is no PNG, is damaged, or declares a size that so few bytes cannot hold.
QImage decode(const QByteArray &png);

} // namespace PictureCodec
