#pragma once

#include <QtGui/QImage>

/// @p image fitted into 150 x 150 pixels in its own proportions, without smoothing; a smaller one
/// is enlarged. A null image stays null.
QImage thumbnail(const QImage &image);
