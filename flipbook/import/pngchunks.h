#pragma once

#include <QtCore/QtGlobal>

class QIODevice;

/// What a PNG file holds in addition to its pixels.
struct PngChunks {
    /// Every chunk up to the end of the picture is as long as it says. Others would have the
    /// decoder take memory for what is not there.
    bool isComplete = false;
    /// The bytes of its texts and colour profiles when they are inflated, with something for each.
    qint64 textBytes = 0;
    /// A text names a pixel format of eight bytes, to which a document brings its pictures back.
    bool namesDeepFormat = false;

    /// Reads the chunks of the PNG file on @p device, from its beginning. Stops inflating beyond
    /// @p mostText bytes. Needs a small fixed amount of memory.
    static PngChunks read(QIODevice &device, qint64 mostText);
};
