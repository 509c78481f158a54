#pragma once

#include <QtCore/QList>
#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtGui/QImage>
#include <QtGui/QPainterPath>

/// @p image with one unit for each pixel, independent of its device pixel ratio. Qt's reader takes
/// it from the names of files, such as walk@2x.png.
inline QImage withUnitRatio(QImage image)
{
    image.setDevicePixelRatio(1.0);
    return image;
}

/// One frame of an animated image: a plain value, cheap to copy.
struct CAnimatedPortrait {
    CAnimatedPortrait() = default;

    /// A frame that has not been measured yet, displayed at the pixel size of its picture.
    CAnimatedPortrait(const QString &frameName, const QImage &picture)
        : name(frameName)
        , image(withUnitRatio(picture))
        , size(picture.size())
    {
    }

    QString name;
    QImage image;            ///< the pixels at their stored resolution, of ratio 1; may be null
    QList<QRect> rects;      ///< opaque rectangles, in pixels of the picture they were measured on
    QPainterPath path;       ///< hit shape in item coordinates
    QSize regionSize;        ///< pixel size of the picture measured; invalid until then
    QSizeF size{-1.0, -1.0}; ///< display size in item units
};
