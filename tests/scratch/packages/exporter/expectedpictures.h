#pragma once

#include "host/baseobject.h"

#include <QtCore/QVector>
#include <QtGui/QImage>

/// One frame as its object shows it.
struct FramePicture {
    QImage image;      ///< null for a frame without a picture
    QSizeF size;       ///< in units, of which a costume has @c density pixels to each
    QSizeF largest;    ///< width and height of the widest and the highest frame
    double shownScale; ///< how much larger than @c size the object shows it
    double density;    ///< two, or fewer where the stage shows less than every second pixel
};

/// The frames of @p object, shown one after the other to learn their sizes. Afterwards it shows
/// what it showed. @p stageScale: units of the stage for each unit of the page.
QVector<FramePicture> framePictures(CBaseObject &object, double stageScale);

/// What is wrong with a costume's @p picture of @p frame; empty when nothing is.
QString differenceOf(const QImage &picture, const FramePicture &frame, const CBaseObject &object);
