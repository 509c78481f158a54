#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QVector>

#include <functional>

/// The frames of a GIF as an object would import them.
struct GifFrames {
    Plugin::Frames frames;
    int intervalMs = 0; ///< the time that an object gives all of them
    int loopCount = -1; ///< repetitions after the first pass; -1 is forever
};

/// Reads the GIF at @p copy, which was examined before and which nobody else changes, frame by
/// frame. The frames are numbered after @p stem. @p progress hears how many are read; what it
/// throws ends the reading.
GifFrames readGifFrames(const QString &copy, const QString &stem,
                        const std::function<void(int)> &progress);
