#pragma once

#include "framework/frameworkglobal.h"

#include <QtCore/QByteArray>
#include <QtGui/QImage>

/// Pictures as PNG files. The file holds the pixels and, as a text chunk, the pixel format that
/// they had, and nothing else of the image. The usual formats come back as they were; the rare
/// ones as the nearest that a PNG can hold, and as that forever after: encoding a decoded
/// picture gives the same bytes.
namespace PictureCodec
{

/// What encode() writes of @p image: its pixels in a format that PNG files have, with the name of
/// its own. Null for a null image.
FRAMEWORK_API QImage carrier(const QImage &image);

/// Empty for a null image.
QByteArray encode(const QImage &image);

struct Decoded {
    /// Null if the bytes are not a PNG, are damaged, or declare a size that they cannot hold.
    QImage image;
    /// Whether encode() wrote the file: it then gives the same bytes for the image.
    bool isOwn;
};
Decoded decode(const QByteArray &png);

} // namespace PictureCodec
