#pragma once

#include "animatedimage/core/folderimport.h"
#include "animatedimage/core/gifimport.h"
#include "animatedimage/object/animatedimage.h"

/// Stores the result of an import in the object.
struct CAnimatedImage::Import {
    /// Empties the list of frames, before another is imported.
    void begin() const;
    void takeGif(const GifFile &gif) const;
    /// The timer keeps its interval until play starts.
    void takeFolder(const FrameFolder &folder) const;
    /// Sizes the object to its first frame, if there is one. False when that was its end.
    [[nodiscard]] bool sizeToFirstFrame(bool notify) const;

    CAnimatedImage &object;
};
