#pragma once

#include "animatedimage/object/animatedimage.h"

/// Steps of playback, of the object's own timer and of the host's. Those that return a value tell
/// whether the object has outlived them.
struct CAnimatedImage::Playback {
    /// Ticks at the present interval from now on; an interval of 0 or less does not tick.
    void restartTimer() const;
    /// Stops if it plays.
    [[nodiscard]] bool stop() const;
    /// Begins again at the first frame.
    [[nodiscard]] bool restart() const;
    /// Shows a frame in a step: the background type redraws its tile instead of resizing the
    /// object. Nothing without frames.
    [[nodiscard]] bool showFrame(int index) const;
    /// Brings region, place and layer effects up to the frame shown.
    [[nodiscard]] bool refreshShownFrame() const;

    PlaybackSteps::Animation animation() const;
    PlaybackSteps::Progress progress() const;

    CAnimatedImage &object;
};
