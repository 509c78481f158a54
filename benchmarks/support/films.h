#pragma once

#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QImage>

#include <functional>

/// GIF films for the benchmarks, made when they are first asked for and removed at the end.
namespace Films
{

/// A film of @p count frames, each drawn by @p draw from its number. @p name tells films apart.
QString gif(const QString &name, const QSize &size, int count,
            const std::function<QImage(int)> &draw);

QString cartoon(); ///< 320 x 240, 60 frames
QString photo();   ///< 1280 x 720, 30 frames
QString sprites(); ///< 64 x 64, 4,000 frames
QString dither();  ///< 256 x 256, 60 frames
/// 256 x 256, each frame of 1,000 rectangles.
QString rectangles(int count);
/// 8 x 8.
QString tiny(int count);

/// A folder for the files of this run, with a separator at its end; removed at the end.
QString folder();

} // namespace Films
