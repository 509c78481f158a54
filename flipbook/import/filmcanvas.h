#pragma once

#include <QtGui/QImage>

/// The canvas on which the frames of an APNG or a WebP film are put, one after the other. Colours
/// are not premultiplied, in Format_ARGB32.
class FilmCanvas
{
public:
    /// How a frame is put on the canvas.
    enum class Blend {
        Source, ///< its pixels replace those that are there, transparent ones as well
        Over,   ///< its pixels are painted over those that are there
    };
    /// What becomes of the place of a frame before the next one is put.
    enum class Disposal {
        Keep,    ///< it stays
        Clear,   ///< it becomes transparent
        Restore, ///< it becomes what it was before the frame
    };

    /// Begins with transparent pixels.
    explicit FilmCanvas(const QSize &size);

    /// Puts @p picture, of any format, with its top left corner at @p place, where it must be
    /// inside of the canvas. Returns the whole canvas then, which is what is to be shown.
    QImage show(const QImage &picture, const QPoint &place, Blend blend, Disposal disposal);

private:
    void dispose();

    QImage m_canvas;
    QImage m_before; ///< what was in the place of the frame before, for Restore
    QRect m_place;   ///< of the frame before
    Disposal m_disposal = Disposal::Keep;
};
