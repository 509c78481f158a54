#pragma once

#include "flipbook/export/filmselection.h"
#include "flipbook/object/plugin.h"

class MemoryAccount;

/// A film in the place of another, with the times of its frames.
struct ExchangedFilm {
    CBaseObject *object = nullptr; ///< on the page where the other was
    QVector<int> delaysMs;         ///< empty when the interval of the object holds for all
};

/// Puts a film with the frames that @p selection takes from @p object in its place on its page.
/// @p object, with the times @p delaysMs, is released, unless the selection is the whole film: then
/// nothing happens. A film that is thinned gets the interval that keeps its length.
/// @throw Failure, naming @p path, when there are no such frames, or no room for them in @p memory.
ExchangedFilm exchangeFilm(const Plugin &plugin, CBaseObject &object, const QVector<int> &delaysMs,
                           const FilmSelection &selection, MemoryAccount &memory,
                           const QString &path);
