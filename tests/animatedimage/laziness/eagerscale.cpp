// The scale of a step, given to every frame at once. Compiled instead of the plug-in's own
// framescale.cpp.

#include "animatedimage/core/framescale.h"

void FrameScale::give(Frames &frames, int index, const QSizeF &shownSize)
{
    const QSize pixels = frames.at(index).image.size();
    if (pixels.isEmpty())
        return;
    for (CAnimatedPortrait &frame : frames) {
        frame.size = QSizeF(frame.image.width() * shownSize.width() / pixels.width(),
                            frame.image.height() * shownSize.height() / pixels.height());
    }
}

QSizeF FrameScale::sizeOf(const CAnimatedPortrait &frame) const
{
    return frame.size;
}

void FrameScale::apply(Frames &) {}
