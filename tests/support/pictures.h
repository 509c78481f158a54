#pragma once

#include <QtGui/QColor>
#include <QtGui/QImage>

#include <initializer_list>

/// Small pictures for tests.
namespace Pictures
{

/// One colour all over.
QImage solid(int width, int height, const QColor &color,
             QImage::Format format = QImage::Format_ARGB32);

/// Fully transparent black, in Format_ARGB32.
QImage transparent(int width, int height);

/// A drawing in text: each row is a line, '#' is opaque black and any other character transparent.
/// Format_ARGB32.
QImage fromText(std::initializer_list<const char *> rows);

} // namespace Pictures
