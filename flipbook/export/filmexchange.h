#pragma once

#include "flipbook/export/filmselection.h"
#include "flipbook/object/plugin.h"

class MemoryAccount;
class Page;

/// A film in the place of another, with the times of its frames.
struct ExchangedFilm {
    CBaseObject *object = nullptr; ///< on the page where the other was
    QVector<int> delaysMs;         ///< empty when the interval of the object holds for all
};

/// Puts a film with the frames that @p selection takes from @p object in its place on its page.
/// @p object, with the times @p delaysMs, is released, unless the selection is the whole film: then
/// nothing happens. The interval becomes the mean of the times of the frames that are left, so that
/// a film that is thinned keeps its length.
/// @throw Failure, naming @p path, when there are no such frames, or no room for them in @p memory.
ExchangedFilm exchangeFilm(const Plugin &plugin, CBaseObject &object, const QVector<int> &delaysMs,
                           const FilmSelection &selection, MemoryAccount &memory,
                           const QString &path);

/// Does so with every object of @p page that has more than one frame; those with a single one stay
/// as they are, and so do the sizes of all: the scale of the selection is left to what is written.
/// Returns the times of the frames of a lone film, whose times were @p delaysMs; empty when
/// the interval of the object holds for all.
/// @throw Failure, naming @p path, and the object if there are several.
QVector<int> exchangeFilms(const Plugin &plugin, Page &page, const QVector<int> &delaysMs,
                           FilmSelection selection, MemoryAccount &memory, const QString &path);
