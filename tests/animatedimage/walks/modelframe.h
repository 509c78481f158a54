#pragma once

#include "tests/animatedimage/walks/picturepool.h"

#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QImage>

/// A frame as the model knows it.
struct ModelFrame {
    ModelFrame() = default;
    /// Not yet measured, and displayed at the pixel size of its picture.
    ModelFrame(const QString &itsName, int itsPicture)
        : name(itsName)
        , picture(itsPicture)
        , size(PicturePool::instance().size(itsPicture))
    {
    }

    QString name;
    int picture = PicturePool::Null;
    QSizeF size{-1.0, -1.0};

    bool isMeasured = false;
    QList<QRect> rects;       ///< mirrored and flipped as the object was when it was measured
    QSize regionSize{-1, -1}; ///< what the rectangles were measured on
    bool hasPath = false;     ///< whether a hit path was made since
    QSizeF pathSize;          ///< the size of the object when it was made
};

/// A background tile: a picture at a size, twice across and twice down.
struct ModelTile {
    int width = 0; ///< of one of the four; 0 for no tile
    int height = 0;
    int picture = PicturePool::Null;

    bool isEmpty() const { return width == 0 || height == 0; }
};
