#pragma once

#include "flipbook/base/pngencoder.h"

/// @p image as a small PNG file with the same pixels: with a palette where it has at most 256
/// different colours, without an alpha channel where it is opaque. It carries no colour space, with
/// which browsers would shift its colours. Empty when it cannot be written, such as a picture
/// without pixels. Needs up to twice the memory of the picture while it works.
///
/// A picture that is read from it may have another pixel format. Objects judge by their own alpha
/// channel alone where they are hit, so it does not suit pictures that objects may show later.
QByteArray compactPng(const QImage &image, PngEffort effort = PngEffort::Most);

/// The same only where it has at most 256 different colours; empty otherwise.
QByteArray palettePng(const QImage &image, PngEffort effort = PngEffort::Most);
