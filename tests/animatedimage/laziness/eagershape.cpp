// The hit shapes of animated images as they were before they were computed on demand: everything
// at once. Compiled into the plug-in in place of its own shape.cpp, it is what the lazy one is
// compared with.

#include "animatedimage/core/region.h"
#include "animatedimage/object/animatedimage.h"

namespace
{

/// The nearest number of single precision. It is a separate call because GCC 12 drops the
/// rounding where it works on the two coordinates of a point at once.
[[gnu::noinline]] float nearestFloat(double value)
{
    return float(value);
}

/// Whether @p frame gets the region that the frame @p before it has just got: frames in a row often
/// share one picture, so that it is shown longer.
bool hasRegionOf(const CAnimatedPortrait &before, const CAnimatedPortrait &frame, bool recompute)
{
    if (recompute)
        return frame.image.cacheKey() == before.image.cacheKey();
    return frame.regionSize.isValid() && frame.regionSize == before.regionSize &&
           frame.rects.isSharedWith(before.rects);
}

/// Measures the opaque rectangles of @p frame as it is painted, mirrored and flipped.
void measure(CAnimatedPortrait &frame, bool mirrored, bool flipped)
{
    const QImage measured = OpaqueRegion::measuredImage(frame.image, OpaqueRegion::MeasuredSide);
    frame.rects = OpaqueRegion::rectsFromImage(measured, OpaqueRegion::OpaqueThreshold);
    frame.regionSize = measured.size();
    for (QRect &rect : frame.rects) {
        if (mirrored)
            rect = OpaqueRegion::mirrored(rect, frame.regionSize.width());
        if (flipped)
            rect = OpaqueRegion::flipped(rect, frame.regionSize.height());
    }
}

/// Adds the grab areas of the eight resize handles and of the rotation handle above the object.
void addHandles(QPainterPath &path, const QRectF &rect, double handleSize)
{
    const double radius = 2.0 + handleSize;
    const auto addHandle = [&path, radius](double x, double y) {
        path.addEllipse(QRectF(x - radius, y - radius, 2.0 * radius, 2.0 * radius));
    };
    const QSizeF size = rect.size();
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            if (row == 1 && column == 1)
                continue;
            addHandle(size.width() * column * 0.5, size.height() * row * 0.5);
        }
    }
    addHandle(double(nearestFloat(0.5 * size.width() + rect.left())),
              double(nearestFloat(rect.top() - 2.0 * handleSize)));
}

} // namespace

QList<QRect> CAnimatedImage::rectsFromImage(const QImage &image, int threshold)
{
    return OpaqueRegion::rectsFromImage(image, threshold);
}

void CAnimatedImage::mergeRects(QList<QRect> &done, QList<QRect> &open, QList<QRect> &row)
{
    OpaqueRegion::mergeRects(done, open, row);
}

bool CAnimatedImage::getImageForPath(QImage &source, QImage &out, int maxSide)
{
    out = OpaqueRegion::measuredImage(source, maxSide);
    return true;
}

void CAnimatedImage::updateRegion(bool recompute)
{
    for (int i = 0; i < m_portraits.size(); ++i) {
        if (i == 0 || !hasRegionOf(m_portraits.at(i - 1), m_portraits.at(i), recompute)) {
            updateRegion(i, recompute);
            continue;
        }
        const CAnimatedPortrait &before = m_portraits.at(i - 1);
        m_portraits[i].rects = before.rects;
        m_portraits[i].regionSize = before.regionSize;
        m_portraits[i].path = before.path;
    }
}

void CAnimatedImage::updateRegion(int index, bool recompute)
{
    if (!isFrame(index))
        return;
    CAnimatedPortrait &frame = m_portraits[index];
    // A frame that came back through undo has no region yet, and could never be hit without one.
    if (recompute || !frame.regionSize.isValid())
        measure(frame, m_mirrored, m_flipped);

    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    if (!frame.rects.isEmpty()) {
        const float sx = nearestFloat(m_rect.width() / frame.regionSize.width());
        const float sy = nearestFloat(m_rect.height() / frame.regionSize.height());
        for (const QRect &rect : qAsConst(frame.rects)) {
            path.addRect(double(float(rect.left()) * sx), double(float(rect.top()) * sy),
                         double(float(rect.width()) * sx), double(float(rect.height()) * sy));
        }
    }
    frame.path = path;
}

/// Gives a frame that came back through undo its hit path, where it is shown without the object
/// being resized to it.
void CAnimatedImage::measureOnce(int index)
{
    if (isFrame(index) && !m_portraits.at(index).regionSize.isValid())
        updateRegion(index, true);
}

QPainterPath CAnimatedImage::shape() const
{
    if (!m_hasShape)
        return {};
    QPainterPath path =
        isFrame(m_runningIndex) ? m_portraits.at(m_runningIndex).path : QPainterPath();
    if (!isAlternateMode())
        addHandles(path, m_rect, m_handleSize);
    return path;
}
