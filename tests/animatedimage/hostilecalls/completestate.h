#pragma once

#include "tests/support/stage.h"

/// All that a request could change, one line for each: fields, frames with the identity of their
/// pixels, geometry, timer, both saved forms, the undo stack, and what the host has heard since
/// the log was cleared.
QStringList completeState(Stage &stage);

/// The first line that is different; empty when the states are equal.
QString firstDifference(const QStringList &before, const QStringList &after);
