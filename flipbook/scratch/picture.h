#pragma once

#include "flipbook/scratch/sprite.h"

#include <QtGui/QImage>

namespace Scratch
{

/// A costume of @p image with its middle as rotation centre. Its PNG file is small, and carries no
/// colour space, with which browsers would shift its colours.
/// @throw Failure, with @p name, when it cannot be written, such as a picture without pixels.
Costume costumeOf(const QString &name, const QImage &image);

/// A costume of a PNG file, with the middle of the picture as rotation centre.
Costume costumeOfPng(const QString &name, const QByteArray &png);

/// The picture of @p costume; null when it cannot be decoded.
QImage pictureOf(const Costume &costume);

/// A backdrop without anything on it.
Costume emptyBackdrop();

} // namespace Scratch
