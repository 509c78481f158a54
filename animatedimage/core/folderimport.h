#pragma once

#include "animatedimage/core/animatedportrait.h"

#include <optional>

/// The content of a folder with a config.json: frames that are not measured yet, and the settings
/// that the file names.
struct FrameFolder {
    QList<CAnimatedPortrait> frames;
    std::optional<int> intervalMs;
    std::optional<bool> keepsRatio;
    std::optional<bool> isMirrored;
    std::optional<bool> isFlipped;
    std::optional<int> loopCount;
};

/// Empty if there is no such file, or no list of images in it. A picture that cannot be read gives
/// a frame without one.
FrameFolder readFrameFolder(const QString &path);
