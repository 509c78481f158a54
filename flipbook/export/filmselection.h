#pragma once

#include <QtCore/QVector>

/// Which frames of a film are written, and how.
struct FilmSelection {
    int first = 1; ///< the first frame, counted from 1
    int last = 0;  ///< the last one; 0 is the last that there is
    int every = 1; ///< of each so many frames, the first is written
    bool isReversed = false;
    double scale = 1.0; ///< of both sides of the pictures

    /// All frames as they are.
    bool isWhole() const;
};

/// A frame that is written.
struct FilmStep {
    int frame = 0;   ///< its index in the film, from 0
    int delayMs = 0; ///< for how long it is shown

    bool operator==(const FilmStep &other) const
    {
        return frame == other.frame && delayMs == other.delayMs;
    }
};

/// The frames that @p selection takes from a film whose frames have the times @p delaysMs, in the
/// order in which they are written. The time of a frame that is skipped is added to the one before
/// it, so that the length stays. Nothing when the film has no such frames.
QVector<FilmStep> selectedSteps(const QVector<int> &delaysMs, const FilmSelection &selection);
