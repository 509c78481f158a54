#pragma once

#include "animatedimage/core/animatedportrait.h"

/// The scale that a step of playback gives to every frame of a list. It is noted, and applied to
/// all frames before their sizes are used, so that a step takes constant time.
class FrameScale
{
public:
    using Frames = QList<CAnimatedPortrait>;

    /// Gives every frame the scale at which the frame @p index is shown, whose size on the page is
    /// @p shownSize. A frame without pixels has no scale to give.
    void give(Frames &frames, int index, const QSizeF &shownSize);

    /// The display size of @p frame, which is in the list.
    QSizeF sizeOf(const CAnimatedPortrait &frame) const;

    /// Gives all frames their sizes. To be called before sizes are read or written, before frames
    /// are added, and before a picture is replaced.
    void apply(Frames &frames);

private:
    QSize m_pixels; ///< of the frame whose scale is noted; empty if none is
    QSizeF m_shownSize;
};
