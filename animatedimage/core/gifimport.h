#pragma once

#include "animatedimage/core/animatedportrait.h"

class QImageReader;

/// The content of a GIF file: frames that are not measured yet, and its timing.
struct GifFile {
    QList<CAnimatedPortrait> frames;
    int intervalMs; ///< the delay after the first frame; 0 or less if it cannot be read
    int loopCount;  ///< passes after the first; -1 never ends
};

/// Reads the frames of the file at @p path, as far as Qt can, and takes the interval from @p probe,
/// a reader of the same GIF, if that can be read.
GifFile readGifFile(const QString &path, QImageReader &probe);
