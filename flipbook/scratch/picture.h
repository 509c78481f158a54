#pragma once

#include "flipbook/scratch/sprite.h"

#include <QtGui/QImage>

namespace Scratch
{

/// A costume of @p image with its middle as rotation centre. The PNG carries no colour space, with
/// which browsers would shift its colours.
/// @throw Failure, with @p name, when it cannot be written, such as a picture without pixels.
Costume costumeOf(const QString &name, const QImage &image);

/// The picture of @p costume; null when it cannot be decoded.
QImage pictureOf(const Costume &costume);

/// A backdrop without anything on it.
Costume emptyBackdrop();

} // namespace Scratch
