#include "flipbook/export/gif/gifplan.h"

#include "flipbook/export/gif/lzwencoder.h"

#include <limits>
#include <optional>

namespace
{

// What a frame takes besides its codes.
constexpr qint64 FrameBytes = 20;

/// About how many bytes @p shown takes in @p rect, drawn on @p canvas: colours are symbols by a
/// few of their bits, which compresses much like their exact numbers.
qint64 estimatedBytes(const QImage &canvas, const QImage &shown, const QRect &rect)
{
    QVector<LzwEncoder::Choice> pixels;
    pixels.reserve(rect.width() * rect.height());
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        const QRgb *before = GifPicture::row(canvas, y);
        const QRgb *after = GifPicture::row(shown, y);
        for (int x = rect.left(); x <= rect.right(); ++x) {
            const quint32 mixed = (after[x] & 0xffffffU) * 2654435761U;
            const auto symbol = qint16(before[x] == after[x] ? 0 : 1 + (mixed >> 24) % 255);
            pixels.append({symbol, -1});
        }
    }
    return FrameBytes + LzwEncoder::encoded(pixels, 8, LzwEncoder::Preference::Colour,
                                            LzwEncoder::Emptying::WhenFull)
                            .size();
}

/// Something is always written: a pixel that stays, when nothing changes.
QRect orPixel(const QRect &rect)
{
    return rect.isEmpty() ? QRect(0, 0, 1, 1) : rect;
}

class Planner
{
public:
    Planner(const GifPicture::Source &source, int count, const QSize &size)
        : m_source(source)
        , m_count(count)
        , m_canvas(size)
        , m_next(GifPicture::of(source(0)))
    {
    }

    GifStep decide(int index);

private:
    std::optional<GifStep> stepWith(GifDisposal disposal, const QRect &changed) const;
    qint64 cost(const GifStep &step) const;

    const GifPicture::Source &m_source;
    int m_count;
    GifCanvas m_canvas;
    QImage m_shown;
    QImage m_next; ///< the picture after it
};

/// The step with @p disposal after which the next picture can be drawn: what it has transparent
/// must be so on the canvas already. Nothing when there is none.
std::optional<GifStep> Planner::stepWith(GifDisposal disposal, const QRect &changed) const
{
    switch (disposal) {
    case GifDisposal::Keep:
        if (!GifPicture::vanishing(m_shown, m_next).isEmpty())
            return std::nullopt;
        return GifStep{orPixel(changed), disposal};
    case GifDisposal::Clear:
        return GifStep{orPixel(changed | GifPicture::vanishing(m_shown, m_next)), disposal};
    case GifDisposal::Restore:
        if (!GifPicture::vanishing(m_canvas.picture(), m_next).isEmpty())
            return std::nullopt;
        return GifStep{orPixel(changed), disposal};
    }
    return std::nullopt;
}

/// Of this frame and the next.
qint64 Planner::cost(const GifStep &step) const
{
    GifCanvas canvas = m_canvas;
    canvas.pass(m_shown, step);
    const QRect changed = orPixel(GifPicture::difference(canvas.picture(), m_next));
    return estimatedBytes(m_canvas.picture(), m_shown, step.rect) +
           estimatedBytes(canvas.picture(), m_next, changed);
}

GifStep Planner::decide(int index)
{
    m_shown = m_next;
    // The first frame covers the canvas: readers do not agree on what is there before it.
    const QRect changed =
        index == 0 ? m_shown.rect() : GifPicture::difference(m_canvas.picture(), m_shown);
    GifStep best{orPixel(changed), GifDisposal::Keep};
    if (index + 1 == m_count)
        return best;
    m_next = GifPicture::of(m_source(index + 1));

    const bool neverClears = GifPicture::vanishing(m_shown, m_next).isEmpty();
    const bool isOpaque = neverClears && !GifPicture::hasTransparency(m_next);
    if (!isOpaque) {
        qint64 least = std::numeric_limits<qint64>::max();
        for (const GifDisposal disposal :
             {GifDisposal::Keep, GifDisposal::Clear, GifDisposal::Restore}) {
            const std::optional<GifStep> step = stepWith(disposal, changed);
            if (!step)
                continue;
            const qint64 bytes = cost(*step);
            if (bytes < least) {
                least = bytes;
                best = *step;
            }
        }
    }
    m_canvas.pass(m_shown, best);
    return best;
}

} // namespace

void GifCanvas::pass(const QImage &shown, const GifStep &step)
{
    if (step.disposal == GifDisposal::Restore)
        return;
    m_picture = shown;
    if (step.disposal == GifDisposal::Clear)
        GifPicture::clear(m_picture, step.rect);
}

QVector<GifStep> planGif(const GifPicture::Source &source, int count, const QSize &size,
                         const std::function<void(int)> &progress)
{
    QVector<GifStep> steps;
    Planner planner(source, count, size);
    for (int i = 0; i < count; ++i) {
        steps.append(planner.decide(i));
        if (progress)
            progress(i + 1);
    }
    return steps;
}
