#pragma once

#include "tests/animatedimage/reentrancy/scene.h"

/// What does not hold after an operation that was interrupted; empty when all does. The object, if
/// it lives, is painted and shaped in both modes, ticks, is saved in both forms and loaded; the
/// undo stack is walked to its ends. Afterwards the stack is empty.
QString flawAfter(Scene &scene);
