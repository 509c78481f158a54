#pragma once

#include "flipbook/base/memoryaccount.h"
#include "flipbook/export/writtenfilm.h"

#include <QtCore/QVector>
#include <QtGui/QImage>

class OutgoingFilm;

/// The frames of a film on one sheet, without labels. Equal pictures are there once.
struct Atlas {
    struct Frame {
        QRect place;    ///< on the sheet
        QPoint trimmed; ///< its top left corner in the picture of the film
    };

    QImage sheet;
    QVector<Frame> frames;
};

/// Whether the transparent borders of pictures are left out. One without any other pixel keeps one.
enum class Trimming { None, Borders };

/// Packs the pictures of @p film. @p path names the sheet in messages.
/// @throw Failure when they do not fit onto one sheet, or into @p memory.
Atlas atlasOf(const OutgoingFilm &film, Trimming trimming, const MemoryAccount &memory,
              const QString &path, const FilmProgress &progress = {});

/// The description of @p atlas for engines: an array of frames with their names, rectangles and
/// times. The sheet is at @p image, as seen from the description.
QByteArray atlasJson(const Atlas &atlas, const OutgoingFilm &film, const QString &image);
