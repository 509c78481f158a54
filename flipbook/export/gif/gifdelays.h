#pragma once

#include <QtCore/QVector>

/// The times of a film in hundredths of a second, as a GIF has them.
struct GifDelays {
    QVector<int> centiseconds;
    qint64 lengthMs = 0; ///< of one pass
};

/// The shortest time that players keep to: they show frames of a shorter one for 100 ms.
constexpr int MinGifDelayMs = 20;

/// @p delaysMs rounded so that every frame begins where it should, to half a hundredth of a second.
/// Frames of less than MinGifDelayMs get that time, which those after them make up for if they can.
GifDelays gifDelays(const QVector<int> &delaysMs);
