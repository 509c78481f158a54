#pragma once

#include <QtCore/QByteArray>
#include <QtGui/QImage>

/// How much time a PNG file with a palette may take to become smaller.
enum class PngEffort { Least, Usual, Most };

/// @p image as a PNG file from which it comes back in the same pixel format, if that is one that
/// PNG files have: with its resolution, its texts and its colour space. Pictures of few colours
/// are written without row filters, which would make them larger, and take most of the time.
/// Empty when it cannot be written, such as a picture without pixels.
QByteArray encodedPng(const QImage &image, PngEffort effort = PngEffort::Usual);
