#pragma once

#include "tests/support/stage.h"

/// Whether an object can be used after something hostile was done to it.
namespace Usability
{

/// Paints and shapes @p image, on whatever page it is, while @p document edits and presents, ticks,
/// stops it, saves it in both forms, and loads what was saved. What does not hold, or an empty
/// text.
QString flaw(CAnimatedImage &image, StageDocument &document);

} // namespace Usability
