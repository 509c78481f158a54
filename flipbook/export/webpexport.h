#pragma once

#include "flipbook/base/memoryaccount.h"
#include "flipbook/export/writtenfilm.h"

#include <optional>

class OutgoingFilm;

/// @p film as an animated WebP, which will be at @p path. Its pixels are exact, those below fully
/// transparent ones too, unless @p quality, 0 to 100, allows to lose some of them. Equal pictures
/// that follow each other become one that is shown for the time of all.
/// @throw Failure when it is too large for the format or for @p memory.
WrittenFilm webpOf(const OutgoingFilm &film, std::optional<double> quality,
                   const MemoryAccount &memory, const QString &path,
                   const FilmProgress &progress = {});
