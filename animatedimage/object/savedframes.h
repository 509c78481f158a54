#pragma once

#include "animatedimage/object/animatedimage.h"

#include <QtCore/QStringList>

/// What the two saved forms keep of the frames: names and sizes travel as named parameters of the
/// base, the pictures apart from them. Paired by position.
struct CAnimatedImage::SavedFrames {
    QStringList names;
    QList<QSizeF> sizes;
    QList<QImage> images;
};
