#include "animatedimage/core/frameregions.h"

#include "animatedimage/core/hitpath.h"

#include <limits>
#include <new>

namespace
{

using View = FrameRegions::View;

bool holdsRegion(const CAnimatedPortrait &frame)
{
    return frame.regionSize.isValid();
}

/// The placeholder of a noted path: it is empty, and starts where no other empty one does. A
/// path that the frame holds may be empty too. All frames share this one.
const QPainterPath &notedPath()
{
    static const QPainterPath path = [] {
        constexpr double farAway = std::numeric_limits<float>::lowest();
        QPainterPath mark = HitPath::empty();
        mark.moveTo(farAway, farAway);
        return mark;
    }();
    return path;
}

bool isNoted(const QPainterPath &path)
{
    return path.elementCount() == 1 && path.currentPosition() == notedPath().currentPosition();
}

/// The opaque rectangles of @p picture as it is painted, mirrored and flipped.
OpaqueRegion::Measured regionOf(const QImage &picture, const View &view)
{
    OpaqueRegion::Measured region = OpaqueRegion::measured(picture, OpaqueRegion::MeasuredSide);
    for (QRect &rect : region.rects) {
        if (view.mirrored)
            rect = OpaqueRegion::mirrored(rect, region.size.width());
        if (view.flipped)
            rect = OpaqueRegion::flipped(rect, region.size.height());
    }
    return region;
}

OpaqueRegion::Measured heldRegion(const CAnimatedPortrait &frame)
{
    return {OpaqueRegion::Rects(frame.rects.begin(), frame.rects.end()), frame.regionSize};
}

/// Without memory for its region, a frame has none for now.
void holdRegion(CAnimatedPortrait &frame, const View &view)
{
    try {
        const OpaqueRegion::Measured region = regionOf(frame.image, view);
        frame.rects = OpaqueRegion::toList(region.rects);
        frame.regionSize = region.size;
    } catch (const std::bad_alloc &) {
        frame.rects = QList<QRect>();
        frame.regionSize = QSize();
    }
}

void holdPath(CAnimatedPortrait &frame, const View &view)
{
    try {
        const OpaqueRegion::Measured region = heldRegion(frame);
        frame.path = HitPath::of(region.rects, region.size, view.size);
    } catch (const std::bad_alloc &) {
        frame.rects = QList<QRect>();
        frame.path = HitPath::empty();
    }
}

} // namespace

bool FrameRegions::View::operator==(const View &other) const
{
    return size.width() == other.size.width() && size.height() == other.size.height() &&
           mirrored == other.mirrored && flipped == other.flipped;
}

bool FrameRegions::isUpdated(const CAnimatedPortrait &frame)
{
    return frame.path.fillRule() == Qt::WindingFill;
}

/// Leaves @p frame as one whose path, and with @p recompute whose region, is noted.
void FrameRegions::note(CAnimatedPortrait &frame, bool recompute) const
{
    if (recompute && holdsRegion(frame)) {
        frame.rects = QList<QRect>();
        frame.regionSize = QSize();
    }
    if (!isNoted(frame.path))
        frame.path = notedPath();
}

void FrameRegions::updateAll(Frames &frames, const View &view, bool recompute)
{
    const bool turns = view.mirrored != m_view.mirrored || view.flipped != m_view.flipped;
    if (recompute || turns || m_hasOthers) {
        for (CAnimatedPortrait &frame : frames) {
            // Without new measuring, a region stays as the object was turned at that time.
            if (!recompute && turns && isUpdated(frame) && !holdsRegion(frame))
                holdRegion(frame, m_view);
            note(frame, recompute);
        }
    }
    m_view = view;
    m_hasOthers = false;
}

void FrameRegions::updateOne(CAnimatedPortrait &frame, const View &view, bool recompute)
{
    const bool isMeasured = isUpdated(frame) && !recompute;
    if (isMeasured && view != m_view && !holdsRegion(frame))
        holdRegion(frame, m_view);
    note(frame, recompute);
    if (view == m_view)
        return;
    if (!isMeasured)
        holdRegion(frame, view);
    holdPath(frame, view);
    m_hasOthers = true;
}

QPainterPath FrameRegions::pathOf(const CAnimatedPortrait &frame)
{
    if (!isNoted(frame.path))
        return frame.path;
    if (!isShown(frame))
        show(frame);
    if (!m_shown.hasPath || m_shown.view != m_view) {
        // What was shown goes first: memory is for one path.
        m_shown.hasPath = false;
        m_shown.path = QPainterPath();
        m_shown.path = HitPath::of(m_shown.region.rects, m_shown.region.size, m_view.size);
        m_shown.view = m_view;
        m_shown.hasPath = true;
    }
    return m_shown.path;
}

/// Whether the region of @p frame is the one that was asked for last.
bool FrameRegions::isShown(const CAnimatedPortrait &frame) const
{
    if (holdsRegion(frame)) {
        return m_shown.isHeld && m_shown.held.isSharedWith(frame.rects) &&
               m_shown.region.size == frame.regionSize;
    }
    return !m_shown.isHeld && m_shown.picture == frame.image.cacheKey() &&
           m_shown.view.mirrored == m_view.mirrored && m_shown.view.flipped == m_view.flipped;
}

void FrameRegions::show(const CAnimatedPortrait &frame)
{
    m_shown = Shown();
    if (holdsRegion(frame)) {
        m_shown.region = heldRegion(frame);
        m_shown.held = frame.rects;
        m_shown.isHeld = true;
    } else {
        m_shown.region = regionOf(frame.image, m_view);
        m_shown.view = m_view;
        m_shown.picture = frame.image.cacheKey();
    }
}

void FrameRegions::workOut(Frames &frames)
{
    const CAnimatedPortrait *before = nullptr;
    for (CAnimatedPortrait &frame : frames) {
        if (!isNoted(frame.path))
            continue;
        // Frames in a row often share one picture, so that it is shown longer.
        if (!holdsRegion(frame) && before && before->image.cacheKey() == frame.image.cacheKey()) {
            frame.rects = before->rects;
            frame.regionSize = before->regionSize;
            frame.path = before->path;
            continue;
        }
        const bool isNoted = !holdsRegion(frame);
        if (isNoted)
            holdRegion(frame, m_view);
        holdPath(frame, m_view);
        before = isNoted ? &frame : nullptr;
    }
    m_hasOthers = true;
}

void FrameRegions::merge(Frames &own, const FrameRegions &theirs)
{
    if (!own.isEmpty() && m_view != theirs.m_view)
        workOut(own);
    m_view = theirs.m_view;
    m_hasOthers = m_hasOthers || theirs.m_hasOthers;
}
