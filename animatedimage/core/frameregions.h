#pragma once

#include "animatedimage/core/animatedportrait.h"
#include "animatedimage/core/cachebudget.h"
#include "animatedimage/core/hitpath.h"
#include "animatedimage/core/region.h"

#include <optional>

/// The hit shapes of a list of frames, computed when they are asked for: a film may have
/// thousands of frames with thousands of rectangles, of which hardly one is ever hit.
///
/// A frame is never updated (its fields are those of a new record, and it has no shape), or
/// updated. The path of an updated frame is filled by winding. Normally it is a note of a few
/// bytes, which says how the frame is mirrored and flipped, and at which size it is hit: that of
/// all frames, which is kept here, or its own. The region then is what the picture gives. A frame
/// may also hold its region, while regionSize is valid, and its path.
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

    /// What is kept of the frame that was asked for last counts in @p budget.
    explicit FrameRegions(CacheBudget &budget = CacheBudget::shared())
        : m_budget(budget)
    {
    }
    ~FrameRegions() { dropShown(); }
    Q_DISABLE_COPY(FrameRegions)

    /// Gives every frame a path for the size of @p view; @p recompute measures their pixels, as
    /// @p view turns them, first, which frames that were never updated are in any case. Takes
    /// constant time while all frames are noted for one size and @p recompute is not set.
    void updateAll(Frames &frames, const View &view, bool recompute);
    /// The same for one frame.
    void updateOne(CAnimatedPortrait &frame, const View &view, bool recompute);

    /// Frames were added that are not updated yet.
    void noteNewFrames() { m_hasOthers = true; }

    static bool isUpdated(const CAnimatedPortrait &frame);

    /// The hit path of @p frame, with the handles of its object if there are any; remembered until
    /// another one is asked for, as far as the budget allows.
    QPainterPath pathOf(const CAnimatedPortrait &frame,
                        const std::optional<HitPath::Handles> &handles = std::nullopt);

    /// Makes all updated frames hold their regions and paths themselves, for whoever looks at them.
    void workOut(Frames &frames);

    /// To be called before frames of another list, with @p theirs, are added to the list @p own:
    /// from then on, the size of all frames is that of the other list. Frames of @p own keep
    /// theirs.
    void follow(Frames &own, const FrameRegions &theirs);

    /// Bytes of what is kept.
    qint64 keptBytes() const { return m_shownBytes; }

private:
    /// What was asked for last.
    struct Shown {
        bool isHeld = false;
        /// Whose region it is, by its cacheKey(), unless it was held. A null picture has none.
        qint64 picture = QImage().cacheKey();
        QList<QRect> held; ///< the rectangles that the frame held
        OpaqueRegion::Measured region;
        View view;
        bool hasPath = false;
        std::optional<HitPath::Handles> handles;
        QPainterPath path;
    };

    View viewOf(const CAnimatedPortrait &frame) const;
    bool isShown(const CAnimatedPortrait &frame, const View &view) const;
    void show(const CAnimatedPortrait &frame, const View &view);
    void keepShown();
    void dropShown();

    CacheBudget &m_budget;
    QSizeF m_size;            ///< of all frames that have no size of their own noted
    bool m_hasOthers = false; ///< some frames may be new, hold a path, or have a size of their own
    Shown m_shown;
    qint64 m_shownBytes = 0; ///< counted in the budget
};
