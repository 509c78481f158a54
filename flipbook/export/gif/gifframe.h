#pragma once

#include "flipbook/export/gif/gifplan.h"

#include <QtCore/QByteArray>
#include <QtCore/QHash>

#include <optional>

/// A frame of a GIF as it is in the file.
struct GifFrame {
    GifStep step;
    QVector<QRgb> ownPalette;  ///< empty when it uses that of all frames
    int symbolBits = 0;        ///< of the indices in its codes, 2 to 8
    int transparentIndex = -1; ///< -1 for none
    QByteArray codes;
};

/// Whether colours that are not in the palette are mixed from those that are.
enum class Dithering { None, Diffused };

/// Writes the frames of one GIF, each with the palette that makes it the smallest.
class GifFrameWriter
{
public:
    /// @p common is the palette of all frames, which may be empty.
    GifFrameWriter(const QVector<QRgb> &common, Dithering dithering);

    /// The frame that makes @p shown of @p canvas. Its colours are exact if those that change
    /// fit into one palette.
    GifFrame frame(const QImage &canvas, const QImage &shown, const GifStep &step);

    /// How many frames were written with other colours than their own.
    int inexactFrames() const { return m_inexactFrames; }

private:
    std::optional<GifFrame> withCommon() const;
    std::optional<GifFrame> withOwn() const;
    GifFrame withChosen();

    QVector<QRgb> m_common;
    QHash<QRgb, int> m_commonIndex;
    Dithering m_dithering;
    int m_inexactFrames = 0;

    // The frame at work.
    const QImage *m_canvas = nullptr;
    const QImage *m_shown = nullptr;
    GifStep m_step;
    QVector<QRgb> m_needed;
};
