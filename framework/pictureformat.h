#pragma once

#include <QtGui/QImage>

/// Pixel formats on their way through a PNG file, which knows fewer of them.
namespace PictureFormat
{

/// @p image in a format that a PNG holds exactly, without text, colour space and scale; the name
/// of the format that it had goes to @p name.
QImage carried(const QImage &image, QString &name);

/// The name under which carried() carries @p image.
QString name(const QImage &image);

/// A carried image in the format @p name again. Where the two do not go together, as in a file
/// that others wrote, the image stays as it is.
QImage restored(QImage carrier, const QString &name);

} // namespace PictureFormat
