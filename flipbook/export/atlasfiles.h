#pragma once

#include "flipbook/export/atlas.h"

/// The two files of an atlas, which name each other by their paths.
struct AtlasFiles {
    QString sheet;       ///< a PNG file
    QString description; ///< a JSON file

    /// Writes both before either appears. The sheet appears first, and does not stay as a new file
    /// when the description cannot follow. Returns the bytes of the sheet. @throw Failure
    qint64 write(const Atlas &atlas, const OutgoingFilm &film) const;
};
