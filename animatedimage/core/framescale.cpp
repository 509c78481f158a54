#include "animatedimage/core/framescale.h"

void FrameScale::give(Frames &frames, int index, const QSizeF &shownSize)
{
    const QSize pixels = frames.at(index).image.size();
    if (pixels.isEmpty())
        return;
    // It replaces a scale that was not applied yet.
    m_pixels = pixels;
    m_shownSize = shownSize;
}

QSizeF FrameScale::sizeOf(const CAnimatedPortrait &frame) const
{
    if (m_pixels.isEmpty())
        return frame.size;
    return {frame.image.width() * m_shownSize.width() / m_pixels.width(),
            frame.image.height() * m_shownSize.height() / m_pixels.height()};
}

void FrameScale::apply(Frames &frames)
{
    if (m_pixels.isEmpty())
        return;
    for (CAnimatedPortrait &frame : frames)
        frame.size = sizeOf(frame);
    m_pixels = QSize();
}
