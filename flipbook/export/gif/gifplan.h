#pragma once

#include "flipbook/export/gif/gifpicture.h"

#include <QtCore/QVector>

/// What becomes of a frame when its time is over; the values are those of the format.
enum class GifDisposal { Keep = 1, Clear = 2, Restore = 3 };

/// How a frame is written.
struct GifStep {
    QRect rect; ///< the part of the canvas that it covers
    GifDisposal disposal = GifDisposal::Keep;
};

/// The canvas on which the frames of a GIF are drawn one after another, as a reader does.
class GifCanvas
{
public:
    explicit GifCanvas(const QSize &size)
        : m_picture(GifPicture::empty(size))
    {
    }

    /// What is there when the next frame is drawn.
    const QImage &picture() const { return m_picture; }

    /// Shows @p shown, the frame that is written as @p step, and ends its time.
    void pass(const QImage &shown, const GifStep &step);

private:
    QImage m_picture;
};

/// Decides how each of the @p count pictures of @p size pixels is written: the smallest rectangle
/// with all that changes, and the disposal with which this frame and the next are the smallest.
/// @p progress hears how many are decided; it may be empty.
QVector<GifStep> planGif(const GifPicture::Source &source, int count, const QSize &size,
                         const std::function<void(int)> &progress = {});
