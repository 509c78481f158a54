#pragma once

#include "flipbook/base/memoryaccount.h"
#include "flipbook/export/writtenfilm.h"

class OutgoingFilm;

/// @p film as an animated PNG, which will be at @p path. Its pixels are exact; of each frame, the
/// part that changes is written. A single frame is a PNG without animation.
/// @throw Failure when it is too large for @p memory.
WrittenFilm apngOf(const OutgoingFilm &film, const MemoryAccount &memory, const QString &path,
                   const FilmProgress &progress = {});
