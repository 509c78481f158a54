#pragma once

#include "flipbook/base/memoryaccount.h"
#include "flipbook/export/gif/gifframe.h"
#include "flipbook/export/writtenfilm.h"

class OutgoingFilm;

/// @p film as a GIF, which will be at @p path. Its colours are exact where no more than 256 of them
/// change from one frame to the next; its pixels are opaque or transparent, whichever their alpha
/// is nearer to.
/// @throw Failure when it is too large for the format or for @p memory.
WrittenFilm gifOf(const OutgoingFilm &film, Dithering dithering, const MemoryAccount &memory,
                  const QString &path, const FilmProgress &progress = {});
