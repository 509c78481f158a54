#pragma once

#include <QtCore/QVector>

/// A film whose frames are shown for different times, played with one interval for all.
struct RepeatPlan {
    int intervalMs = 0;   ///< the greatest common divisor of the times
    QVector<int> repeats; ///< how many times in a row each frame is shown, at least once

    qint64 frameCount() const;
};

/// The plan that keeps the rhythm of frames shown for @p delaysMs milliseconds each. A time of 0
/// or less counts as 1 ms. Without frames the plan is empty.
RepeatPlan planRepeats(const QVector<int> &delaysMs);

/// Whether the frames are shown for different times.
bool isUneven(const QVector<int> &delaysMs);

/// The time that the frames take together, in milliseconds.
qint64 totalMs(const QVector<int> &delaysMs);
