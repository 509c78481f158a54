#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QRect>
#include <QtGui/QImage>

/// A frame of a small film for tests.
struct FilmFrame {
    QImage picture;
    QPoint place;
    int delay = 100;    ///< APNG: numerator of a fraction of a second; WebP: ms
    int divisor = 1000; ///< APNG alone
    int disposal = 0;   ///< 0 keep, 1 clear, 2 restore (APNG alone)
    bool blends = false;
};

/// Builds small APNG files in memory: chunks as they are asked for, of 8-bit RGBA.
class ApngBuilder
{
public:
    ApngBuilder(const QSize &canvas, int plays)
        : m_canvas(canvas)
        , m_plays(plays)
    {
    }

    /// A picture for programs that know no animations, which is not a frame.
    ApngBuilder &still(const QImage &picture);
    ApngBuilder &add(const FilmFrame &frame);
    /// Says that there are so many frames, whatever there is.
    ApngBuilder &announce(int frames);
    QByteArray data() const;

private:
    QSize m_canvas;
    int m_plays;
    int m_announced = -1;
    QImage m_still;
    QVector<FilmFrame> m_frames;
};

/// Builds small lossless WebP films in memory.
QByteArray webpFilm(const QSize &canvas, int loops, const QVector<FilmFrame> &frames);

/// A still WebP picture without loss.
QByteArray webpPicture(const QImage &picture);

/// One pixel for each colour, in a row. 0xAARRGGBB.
QImage pixelRow(std::initializer_list<QRgb> colours);

/// The pixels of a picture, row by row.
QVector<QRgb> pixelsOf(const QImage &picture);
