#pragma once

#include "flipbook/object/plugin.h"

/// What the frames of an object take, in bytes.
struct FilmMemory {
    qint64 pixels = 0;     ///< of all pictures, as if none shared its pixels with another
    qint64 largest = 0;    ///< of the largest picture
    qint64 thumbnails = 0; ///< of an answer that holds the thumbnails of all frames

    static FilmMemory of(const Plugin &plugin, CBaseObject &object);
};
