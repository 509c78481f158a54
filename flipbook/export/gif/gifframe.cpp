#include "flipbook/export/gif/gifframe.h"

#include "flipbook/export/gif/dithering.h"
#include "flipbook/export/gif/gifcolours.h"
#include "flipbook/export/gif/lzwencoder.h"
#include "flipbook/export/gif/quantiser.h"

#include <array>

using namespace GifColours;

namespace
{

constexpr int Unchanged = -1;
constexpr int MinSymbolBits = 2;

/// The pixels of a frame, row by row, by the palette that it is written with.
struct IndexedFrame {
    /// The index of the colour of each pixel that changes; Unchanged for the others.
    QVector<qint16> changed;
    /// The index of the colour of each other pixel; -1 when the palette lacks it, and for
    /// transparent pixels.
    QVector<qint16> others;
    std::array<bool, MaxColours> isUsed = {}; ///< by pixels that change
    bool hasOthers = false;
    bool othersAreThere = true; ///< the palette has the colours of all pixels that stay
};

/// Nothing when @p index lacks a colour that changes.
std::optional<IndexedFrame> indexed(const QImage &canvas, const QImage &shown, const QRect &rect,
                                    const QHash<QRgb, int> &index)
{
    IndexedFrame frame;
    frame.changed.reserve(rect.width() * rect.height());
    frame.others.reserve(rect.width() * rect.height());
    QRgb last = 0;
    int lastIndex = -1;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        const QRgb *before = GifPicture::row(canvas, y);
        const QRgb *after = GifPicture::row(shown, y);
        for (int x = rect.left(); x <= rect.right(); ++x) {
            if (after[x] != last) {
                last = after[x];
                lastIndex = index.value(last, -1);
            }
            const bool isChanged = after[x] != before[x];
            if (isChanged && lastIndex < 0)
                return std::nullopt;
            frame.changed.append(qint16(isChanged ? lastIndex : Unchanged));
            frame.others.append(qint16(isChanged ? -1 : lastIndex));
            if (isChanged)
                frame.isUsed[std::size_t(lastIndex)] = true;
            frame.hasOthers |= !isChanged;
            frame.othersAreThere &= isChanged || lastIndex >= 0;
        }
    }
    return frame;
}

int bitsOfIndex(int highest)
{
    return qMax(MinSymbolBits, bitsFor(highest + 1));
}

int highestUsed(const IndexedFrame &frame)
{
    for (int i = MaxColours - 1; i >= 0; --i) {
        if (frame.isUsed[std::size_t(i)])
            return i;
    }
    return 0;
}

/// The lowest index that no changed pixel uses; -1 when there is none.
int unusedIndex(const IndexedFrame &frame)
{
    for (int i = 0; i < MaxColours; ++i) {
        if (!frame.isUsed[std::size_t(i)])
            return i;
    }
    return -1;
}

QVector<LzwEncoder::Choice> choicesOf(const IndexedFrame &frame, int symbolBits, int transparent)
{
    QVector<LzwEncoder::Choice> choices(frame.changed.size());
    for (int i = 0; i < choices.size(); ++i) {
        LzwEncoder::Choice &choice = choices[i];
        choice.colour = frame.changed.at(i);
        if (choice.colour != Unchanged)
            continue;
        choice.transparent = qint16(transparent);
        const qint16 colour = frame.others.at(i);
        const bool isFit = colour >= 0 && colour < 1 << symbolBits && colour != transparent;
        choice.colour = isFit ? colour : qint16(-1);
    }
    return choices;
}

GifFrame encoded(const IndexedFrame &frame, const GifStep &step, int symbolBits, int transparent)
{
    return {step,
            {},
            symbolBits,
            transparent,
            LzwEncoder::shortest(choicesOf(frame, symbolBits, transparent), symbolBits)};
}

/// All colours, and no transparent index. Nothing when a pixel needs one.
std::optional<GifFrame> encodedOpaque(const IndexedFrame &frame, const GifStep &step)
{
    if (!frame.othersAreThere || step.disposal == GifDisposal::Clear)
        return std::nullopt;
    int highest = highestUsed(frame);
    for (const qint16 index : frame.others)
        highest = qMax<int>(highest, index);
    return encoded(frame, step, bitsOfIndex(highest), -1);
}

/// The smaller of what can be written with the index @p transparent, which nothing uses, and
/// without a transparent index.
GifFrame smallest(const IndexedFrame &frame, const GifStep &step, int transparent)
{
    const int bits = bitsOfIndex(highestUsed(frame));
    const int bitsWithIndex = qMax(bits, bitsOfIndex(transparent));
    GifFrame best = encoded(frame, step, bitsWithIndex, transparent);
    if (bitsWithIndex > bits) {
        const std::optional<GifFrame> opaque = encodedOpaque(frame, step);
        if (opaque && opaque->codes.size() < best.codes.size())
            best = *opaque;
    }
    return best;
}

/// The smaller of what can be written with and without a transparent index. Nothing when neither
/// can.
std::optional<GifFrame> smallest(const IndexedFrame &frame, const GifStep &step)
{
    const int transparent = unusedIndex(frame);
    // Readers clear the place of a frame with its transparent colour.
    const bool wantsIndex = frame.hasOthers || step.disposal == GifDisposal::Clear;
    if (transparent < 0 || !wantsIndex)
        return encodedOpaque(frame, step);
    return smallest(frame, step, transparent);
}

int tableBytes(int bits)
{
    return 3 * (1 << bits);
}

int bytesOf(const GifFrame &frame)
{
    const int table =
        frame.ownPalette.isEmpty()
            ? 0
            : tableBytes(bitsFor(qMax<int>(frame.ownPalette.size(), frame.transparentIndex + 1)));
    return frame.codes.size() + table;
}

} // namespace

GifFrameWriter::GifFrameWriter(const QVector<QRgb> &common, Dithering dithering)
    : m_common(common)
    , m_commonIndex(indexOf(common))
    , m_dithering(dithering)
{
}

std::optional<GifFrame> GifFrameWriter::withCommon() const
{
    const auto pixels = indexed(*m_canvas, *m_shown, m_step.rect, m_commonIndex);
    return pixels ? smallest(*pixels, m_step) : std::nullopt;
}

/// With a palette of its own: of the colours that change, or of all in its place.
std::optional<GifFrame> GifFrameWriter::withOwn() const
{
    std::optional<GifFrame> best;
    for (const bool withUnchanged : {false, true}) {
        const QVector<QRgb> palette =
            withUnchanged ? needed(*m_canvas, *m_shown, m_step.rect, true) : m_needed;
        if (palette.size() > MaxColours || (withUnchanged && palette == m_needed))
            continue;
        const auto pixels = indexed(*m_canvas, *m_shown, m_step.rect, indexOf(palette));
        std::optional<GifFrame> frame = pixels ? smallest(*pixels, m_step) : std::nullopt;
        if (!frame)
            continue;
        // A frame that changes nothing has a colour too.
        frame->ownPalette = palette.isEmpty() ? QVector<QRgb>{0xff000000} : palette;
        if (!best || bytesOf(*frame) < bytesOf(*best))
            best = frame;
    }
    return best;
}

/// With the best colours for those that change, one less than fit, and a transparent index.
GifFrame GifFrameWriter::withChosen()
{
    ++m_inexactFrames;
    const QRect rect = m_step.rect;
    QVector<QRgb> pixels;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        const QRgb *before = GifPicture::row(*m_canvas, y);
        const QRgb *after = GifPicture::row(*m_shown, y);
        for (int x = rect.left(); x <= rect.right(); ++x) {
            if (after[x] != before[x])
                pixels.append(after[x]);
        }
    }
    const QVector<QRgb> palette = Quantiser::palette(pixels, MaxColours - 1);

    IndexedFrame frame;
    frame.changed = m_dithering == Dithering::Diffused
                        ? ditheredIndices(*m_canvas, *m_shown, rect, palette)
                        : nearestIndices(*m_canvas, *m_shown, rect, palette);
    frame.hasOthers = true;
    frame.othersAreThere = false;
    frame.others.fill(-1, frame.changed.size());
    for (const qint16 index : qAsConst(frame.changed)) {
        if (index != Unchanged)
            frame.isUsed[std::size_t(index)] = true;
    }
    // The palette leaves an index free.
    GifFrame result = smallest(frame, m_step, unusedIndex(frame));
    result.ownPalette = palette;
    return result;
}

GifFrame GifFrameWriter::frame(const QImage &canvas, const QImage &shown, const GifStep &step)
{
    m_canvas = &canvas;
    m_shown = &shown;
    m_step = step;
    m_needed = needed(canvas, shown, step.rect);
    if (m_needed.size() > MaxColours)
        return withChosen();
    const std::optional<GifFrame> common = withCommon();
    // A palette of its own pays only if it saves bits of each index.
    const int ownBits = qMax(MinSymbolBits, bitsFor(m_needed.size()));
    if (common && (common->symbolBits <= ownBits || bytesOf(*common) <= tableBytes(ownBits)))
        return *common;
    const std::optional<GifFrame> own = withOwn();
    if (!own)
        return common ? *common : withChosen();
    return !common || bytesOf(*own) < bytesOf(*common) ? *own : *common;
}
