#pragma once

#include "flipbook/export/outgoingfilm.h"

/// Films for tests of what is written from them.
namespace FilmFixture
{

/// An object on no page with these pictures, named "f1" and so on, 100 ms each.
OwnedObject object(const Plugin &plugin, const QList<QImage> &pictures, int loopCount = -1);

/// All of it as it goes out.
OutgoingFilm film(const Plugin &plugin, CBaseObject &object, const QVector<int> &delaysMs = {},
                  const FilmSelection &selection = {});

/// How random pictures are made.
struct Random {
    quint32 seed = 1;
    int frames = 6;
    QSize size = QSize(24, 17);
    int colours = 20;          ///< of which each frame has more or fewer
    bool hasOwn = false;       ///< each frame has colours of its own
    bool hasHoles = true;      ///< some pixels are transparent
    bool hasHalfHoles = false; ///< some pixels have any alpha
};

/// Pictures of which each is the one before with rectangles that were moved, filled or emptied.
QList<QImage> randomPictures(const Random &random);

} // namespace FilmFixture
