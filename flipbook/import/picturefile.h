#pragma once

#include <QtGui/QImage>

/// Reads the picture file at @p path, of whatever format its bytes say that it is; of an animated
/// one, the first frame.
/// @throw Failure when it is no picture that can be read, or is only by its name a GIF, or
/// would need more than @p maxMemory bytes.
QImage readPicture(const QString &path, qint64 maxMemory);

/// The bytes that the picture at @p path, a regular file, needs while it is decoded; found without
/// decoding it. 0 when it is no picture.
qint64 pictureMemory(const QString &path);
