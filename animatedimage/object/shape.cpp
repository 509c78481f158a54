#include "animatedimage/core/hitpath.h"
#include "animatedimage/core/region.h"
#include "animatedimage/object/animatedimage.h"

#include <new>

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
        QPainterPath path;
        if (isFrame(m_runningIndex))
            path = m_regions.pathOf(m_portraits.at(m_runningIndex));
        if (!isAlternateMode())
            addHandles(path);
        return path;
    } catch (const std::bad_alloc &) {
        return {};
    }
}

/// Adds the grab areas of the eight resize handles and of the rotation handle above the object.
void CAnimatedImage::addHandles(QPainterPath &path) const
{
    const double radius = 2.0 + m_handleSize;
    const auto addHandle = [&path, radius](double x, double y) {
        path.addEllipse(QRectF(x - radius, y - radius, 2.0 * radius, 2.0 * radius));
    };
    const QSizeF size = m_rect.size();
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            if (row == 1 && column == 1)
                continue;
            addHandle(size.width() * column * 0.5, size.height() * row * 0.5);
        }
    }
    addHandle(double(HitPath::nearestFloat(0.5 * size.width() + m_rect.left())),
              double(HitPath::nearestFloat(m_rect.top() - 2.0 * m_handleSize)));
}
