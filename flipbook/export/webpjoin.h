#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSize>

#include <functional>

/// Makes one animated WebP of several that are shown one after the other. The chunks of their
/// frames are taken as they are. libwebp's own writer looks for the end of its list of frames
/// whenever it adds one, so that its time grows with the square of their number.
class WebpJoin
{
public:
    /// All parts must have this size in pixels.
    explicit WebpJoin(const QSize &canvas)
        : m_canvas(canvas)
    {
    }

    /// Adds the WebP file @p part. One that is not an animation is shown for @p durationMs.
    /// @p firstPicture is called if its first frame would leave something of the part before: it
    /// returns a WebP file of the whole picture. False if one of the two files cannot be read, or
    /// all would be larger than an array of bytes can be.
    bool add(const QByteArray &part, int durationMs,
             const std::function<QByteArray()> &firstPicture);

    /// The file. It is shown @p passes times, 0 is forever.
    QByteArray file(int passes) const;

private:
    QSize m_canvas;
    bool m_hasAlpha = false;
    QByteArray m_frames; ///< their chunks
};
