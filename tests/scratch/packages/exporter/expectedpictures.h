#pragma once

#include "host/baseobject.h"

#include <QtCore/QVector>
#include <QtGui/QImage>

/// One frame as its object shows it.
struct FramePicture {
    QImage image;      ///< null for a frame without a picture
    QSizeF size;       ///< in units of which a costume has two pixels to each
    QSizeF largest;    ///< width and height of the widest and the highest frame
    double shownScale; ///< how much larger than @c size the object shows it
};

/// The frames of @p object, shown one after the other to learn their sizes. Afterwards it shows
/// what it showed.
QVector<FramePicture> framePictures(CBaseObject &object);

/// What is wrong with a costume's @p picture of @p frame; empty when nothing is.
QString differenceOf(const QImage &picture, const FramePicture &frame, const CBaseObject &object);
