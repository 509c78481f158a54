#pragma once

#include "tests/flipbook/flipbookrun.h"

/// A run of the flipbook program, with what it took.
struct MeasuredRun : FlipbookRun {
    qint64 peakBytes = 0;  ///< the most memory that was in use at once
    double cpuSeconds = 0; ///< of all its threads
};

/// Runs the program that was built with the test in @p folder, without any display. It is ended
/// when it has taken a minute of the processor.
MeasuredRun measuredFlipbook(const QString &folder, const QStringList &arguments);
