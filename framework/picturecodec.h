#pragma once

#include <QtCore/QByteArray>
#include <QtGui/QImage>

/// Pictures as PNG files. The file holds the pixels and, as a text chunk, the pixel format that
/// they had, and nothing else of the image. The usual formats come back as they were; the rare
/// ones as the nearest that a PNG can hold, and as that forever after: encoding a decoded
/// picture gives the same bytes.
namespace PictureCodec
{

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
