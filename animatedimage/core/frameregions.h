#pragma once

#include "animatedimage/core/animatedportrait.h"
#include "animatedimage/core/region.h"

/// The hit shapes of a list of frames, computed when they are asked for: a film may have
/// thousands of frames with thousands of rectangles, of which hardly one is ever hit.
///
/// A frame is never updated (its fields are those of a new record, and it has no shape), or
/// updated. An updated frame has a path that is filled by winding. Its region is noted while
/// regionSize is invalid, and its path while it is empty: they are what its picture and the view
/// kept here give. Otherwise the frame holds them itself.
class FrameRegions
{
public:
    using Frames = QList<CAnimatedPortrait>;

    /// How the object shows its frames.
    struct View {
        QSizeF size; ///< in item units
        bool mirrored = false;
        bool flipped = false;

        /// Exact, unlike the comparison of sizes in Qt.
        bool operator==(const View &other) const;
        bool operator!=(const View &other) const { return !(*this == other); }
    };

    /// Gives every frame a path for @p view; @p recompute measures their pixels for it first, which
    /// frames that were never updated are in any case. Takes constant time while all frames are
    /// noted and @p recompute is not set.
    void updateAll(Frames &frames, const View &view, bool recompute);
    /// The same for one frame.
    void updateOne(CAnimatedPortrait &frame, const View &view, bool recompute);

    /// Frames were added that are not updated yet.
    void noteNewFrames() { m_hasOthers = true; }

    static bool isUpdated(const CAnimatedPortrait &frame);

    /// The hit path of @p frame; remembered until another one is asked for.
    QPainterPath pathOf(const CAnimatedPortrait &frame);

    /// Makes all updated frames hold their regions and paths themselves.
    void workOut(Frames &frames);

    /// To be called before frames of another list, with @p theirs, are added to the list @p own:
    /// frames of both may then be noted side by side.
    void merge(Frames &own, const FrameRegions &theirs);

private:
    /// What was asked for last.
    struct Shown {
        bool isHeld = false;
        qint64 picture = -1; ///< whose region it is, by its cacheKey(); unless it was held
        QList<QRect> held;   ///< the rectangles that the frame held
        OpaqueRegion::Measured region;
        View view;
        bool hasPath = false;
        QPainterPath path;
    };

    void note(CAnimatedPortrait &frame, bool recompute) const;
    bool isShown(const CAnimatedPortrait &frame) const;
    void show(const CAnimatedPortrait &frame);

    View m_view;              ///< of the noted frames
    bool m_hasOthers = false; ///< some frames may be new, or hold a path
    Shown m_shown;
};
