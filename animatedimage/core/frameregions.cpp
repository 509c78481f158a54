#include "animatedimage/core/frameregions.h"

#include <new>

namespace
{

using View = FrameRegions::View;

bool holdsRegion(const CAnimatedPortrait &frame)
{
    return frame.regionSize.isValid();
}

/// Exact, unlike the comparison of sizes in Qt.
bool isSameSize(const QSizeF &a, const QSizeF &b)
{
    return a.width() == b.width() && a.height() == b.height();
}

bool isTurnedAlike(const View &a, const View &b)
{
    return a.mirrored == b.mirrored && a.flipped == b.flipped;
}

// A note is a path that begins left of and above the origin, further if the frame is mirrored or
// flipped. A size of its own is the end of a line. Nothing else that a frame holds is so short and
// begins there.
constexpr int MostNoteElements = 2;

QPointF beginningOfNote(const View &turn)
{
    return {turn.mirrored ? -2.0 : -1.0, turn.flipped ? -2.0 : -1.0};
}

QPainterPath newNote(const View &turn)
{
    QPainterPath path = HitPath::empty();
    path.moveTo(beginningOfNote(turn));
    return path;
}

/// The note of a frame that has the size of all frames. Frames share it.
const QPainterPath &note(const View &turn)
{
    static const QPainterPath notes[] = {
        newNote({QSizeF(), false, false}), newNote({QSizeF(), false, true}),
        newNote({QSizeF(), true, false}), newNote({QSizeF(), true, true})};
    return notes[(turn.mirrored ? 2 : 0) + (turn.flipped ? 1 : 0)];
}

QPainterPath noteWithSize(const View &view)
{
    QPainterPath path = newNote(view);
    path.lineTo(view.size.width(), view.size.height());
    return path;
}

bool isNoted(const QPainterPath &path)
{
    return path.elementCount() > 0 && path.elementCount() <= MostNoteElements &&
           path.elementAt(0).x < 0.0;
}

bool hasOwnSize(const QPainterPath &note)
{
    return note.elementCount() == MostNoteElements;
}

/// How the frame with @p note is mirrored and flipped.
View turnOf(const QPainterPath &note)
{
    const QPainterPath::Element beginning = note.elementAt(0);
    return {QSizeF(), beginning.x < -1.0, beginning.y < -1.0};
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

/// How @p frame is turned after an update by @p view. Without new measuring, a region stays as the
/// object was turned when it was measured.
View turnAfter(const CAnimatedPortrait &frame, const View &view, bool recompute)
{
    const bool stays = !recompute && FrameRegions::isUpdated(frame) && isNoted(frame.path);
    return stays ? turnOf(frame.path) : view;
}

void forgetRegion(CAnimatedPortrait &frame)
{
    if (!holdsRegion(frame))
        return;
    frame.rects = QList<QRect>();
    frame.regionSize = QSize();
}

} // namespace

bool FrameRegions::View::operator==(const View &other) const
{
    return isSameSize(size, other.size) && isTurnedAlike(*this, other);
}

bool FrameRegions::isUpdated(const CAnimatedPortrait &frame)
{
    return frame.path.fillRule() == Qt::WindingFill;
}

void FrameRegions::updateAll(Frames &frames, const View &view, bool recompute)
{
    if (recompute || m_hasOthers) {
        for (CAnimatedPortrait &frame : frames) {
            const View turn = turnAfter(frame, view, recompute);
            if (recompute)
                forgetRegion(frame);
            frame.path = note(turn);
        }
    }
    m_size = view.size;
    m_hasOthers = false;
}

void FrameRegions::updateOne(CAnimatedPortrait &frame, const View &view, bool recompute)
{
    View turned = turnAfter(frame, view, recompute);
    if (recompute)
        forgetRegion(frame);
    if (isSameSize(view.size, m_size)) {
        frame.path = note(turned);
        return;
    }
    turned.size = view.size;
    frame.path = noteWithSize(turned);
    m_hasOthers = true;
}

/// What the note of @p frame says.
FrameRegions::View FrameRegions::viewOf(const CAnimatedPortrait &frame) const
{
    View view = turnOf(frame.path);
    view.size = m_size;
    if (hasOwnSize(frame.path)) {
        const QPointF size = frame.path.currentPosition();
        view.size = QSizeF(size.x(), size.y());
    }
    return view;
}

QPainterPath FrameRegions::pathOf(const CAnimatedPortrait &frame,
                                  const std::optional<HitPath::Handles> &handles)
{
    if (!isNoted(frame.path)) {
        QPainterPath path = frame.path;
        if (handles)
            HitPath::addHandles(path, *handles);
        return path;
    }
    const View view = viewOf(frame);
    if (!isShown(frame, view))
        show(frame, view);
    if (!m_shown.hasPath || m_shown.view != view || !(m_shown.handles == handles)) {
        // What was shown goes first: memory is for one path.
        m_shown.hasPath = false;
        m_shown.path = QPainterPath();
        m_shown.path =
            HitPath::of(m_shown.region.rects, m_shown.region.size, view.size, handles.has_value());
        if (handles)
            HitPath::addHandles(m_shown.path, *handles);
        m_shown.view = view;
        m_shown.handles = handles;
        m_shown.hasPath = true;
    }
    const QPainterPath path = m_shown.path;
    keepShown();
    return path;
}

/// Whether the region of @p frame is the one that was asked for last.
bool FrameRegions::isShown(const CAnimatedPortrait &frame, const View &view) const
{
    if (holdsRegion(frame)) {
        return m_shown.isHeld && m_shown.held.isSharedWith(frame.rects) &&
               m_shown.region.size == frame.regionSize;
    }
    return !m_shown.isHeld && m_shown.picture == frame.image.cacheKey() &&
           isTurnedAlike(m_shown.view, view);
}

void FrameRegions::show(const CAnimatedPortrait &frame, const View &view)
{
    dropShown();
    if (holdsRegion(frame)) {
        m_shown.region = heldRegion(frame);
        m_shown.held = frame.rects;
        m_shown.isHeld = true;
    } else {
        m_shown.region = regionOf(frame.image, view);
        m_shown.view = view;
        m_shown.picture = frame.image.cacheKey();
    }
}

/// Counts what is shown, and keeps it if there is room for it.
void FrameRegions::keepShown()
{
    m_budget.giveBack(m_shownBytes);
    m_shownBytes = qint64(m_shown.region.rects.capacity() * sizeof(QRect)) +
                   qint64(m_shown.path.elementCount()) * qint64(sizeof(QPainterPath::Element));
    if (m_budget.take(m_shownBytes))
        return;
    m_shownBytes = 0;
    m_shown = Shown();
}

void FrameRegions::dropShown()
{
    m_budget.giveBack(m_shownBytes);
    m_shownBytes = 0;
    m_shown = Shown();
}

void FrameRegions::workOut(Frames &frames)
{
    const CAnimatedPortrait *before = nullptr;
    QPainterPath noteBefore;
    for (CAnimatedPortrait &frame : frames) {
        if (!isNoted(frame.path))
            continue;
        const QPainterPath noteOfFrame = frame.path;
        const bool isMeasured = holdsRegion(frame);
        // Frames in a row often share one picture, so that it is shown longer.
        if (!isMeasured && before && before->image.cacheKey() == frame.image.cacheKey() &&
            noteBefore == noteOfFrame) {
            frame.rects = before->rects;
            frame.regionSize = before->regionSize;
            frame.path = before->path;
            continue;
        }
        const View view = viewOf(frame);
        if (!isMeasured)
            holdRegion(frame, view);
        holdPath(frame, view);
        before = isMeasured ? nullptr : &frame;
        noteBefore = noteOfFrame;
    }
    m_hasOthers = true;
}

void FrameRegions::follow(Frames &own, const FrameRegions &theirs)
{
    if (!isSameSize(m_size, theirs.m_size)) {
        for (CAnimatedPortrait &frame : own) {
            if (isNoted(frame.path))
                frame.path = noteWithSize(viewOf(frame));
        }
        m_hasOthers = m_hasOthers || !own.isEmpty();
    }
    m_size = theirs.m_size;
    m_hasOthers = m_hasOthers || theirs.m_hasOthers;
}
