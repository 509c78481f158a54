#pragma once

#include <QtCore/QVector>
#include <QtGui/QImage>

/// The index into @p palette for each pixel in @p rect of @p shown, row by row: of the nearest
/// colour, or -1 where the pixel does not differ from @p canvas.
QVector<qint16> nearestIndices(const QImage &canvas, const QImage &shown, const QRect &rect,
                               const QVector<QRgb> &palette);

/// The same with the error of each pixel passed on to its neighbours, after Floyd and Steinberg, so
/// that areas keep their mean colour. Pixels that stay neither take nor pass on an error.
QVector<qint16> ditheredIndices(const QImage &canvas, const QImage &shown, const QRect &rect,
                                const QVector<QRgb> &palette);
