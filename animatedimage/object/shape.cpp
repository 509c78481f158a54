#include "animatedimage/core/hitpath.h"
#include "animatedimage/core/region.h"
#include "animatedimage/object/animatedimage.h"

#include <new>
#include <optional>

QList<QRect> CAnimatedImage::rectsFromImage(const QImage &image, int threshold)
try {
    return OpaqueRegion::rectsFromImage(image, threshold);
} catch (const std::bad_alloc &) {
    return QList<QRect>();
}

void CAnimatedImage::mergeRects(QList<QRect> &done, QList<QRect> &open, QList<QRect> &row)
try {
    OpaqueRegion::mergeRects(done, open, row);
} catch (const std::bad_alloc &) {
}

bool CAnimatedImage::getImageForPath(QImage &source, QImage &out, int maxSide)
try {
    out = OpaqueRegion::measuredImage(source, maxSide);
    return true;
} catch (const std::bad_alloc &) {
    return false;
}

FrameRegions::View CAnimatedImage::view() const
{
    return {m_rect.size(), m_mirrored, m_flipped};
}

void CAnimatedImage::updateRegion(bool recompute)
try {
    m_regions.updateAll(m_portraits, view(), recompute);
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::updateRegion(int index, bool recompute)
try {
    if (isFrame(index))
        m_regions.updateOne(m_portraits[index], view(), recompute);
} catch (const std::bad_alloc &) {
}

/// Gives a frame that came back through undo its hit path, where it is shown without the object
/// being resized to it.
void CAnimatedImage::measureOnce(int index)
{
    if (isFrame(index) && !FrameRegions::isUpdated(m_portraits.at(index)))
        updateRegion(index, true);
}

QPainterPath CAnimatedImage::shape() const
{
    if (!m_hasShape)
        return {};
    try {
        std::optional<HitPath::Handles> handles;
        if (!isAlternateMode())
            handles = HitPath::Handles{m_rect, m_handleSize};
        if (isFrame(m_runningIndex))
            return m_regions.pathOf(m_portraits.at(m_runningIndex), handles);
        QPainterPath path;
        if (handles)
            HitPath::addHandles(path, *handles);
        return path;
    } catch (const std::bad_alloc &) {
        return {};
    }
}
