#pragma once

#include "flipbook/object/plugin.h"

/// What the frames of an object take, in bytes.
struct FilmMemory {
    qint64 pixels = 0;  ///< of all pictures, as if none shared its pixels with another
    qint64 largest = 0; ///< of the largest picture

    static FilmMemory of(const Plugin &plugin, CBaseObject &object);

    /// What @p objects keep at most when they are painted again and again: each prepares a copy of
    /// the picture with alpha that it shows, within what the plug-in allows all of them.
    static qint64 ofPaintedCopies(const Plugin &plugin, const QList<CBaseObject *> &objects);
};
