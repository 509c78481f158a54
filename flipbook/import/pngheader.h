#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSize>

#include <optional>

/// What the first bytes of a PNG file promise.
struct PngHeader {
    /// The number of bytes that read() needs.
    static constexpr int Length = 33;

    QSize size;
    int bytesPerPixel = 4; ///< when decoded

    /// Nothing when @p start is not the beginning of a PNG file, or one without pixels.
    static std::optional<PngHeader> read(const QByteArray &start);

    /// The bytes of the picture when decoded. Saturates.
    qint64 decodedBytes() const;
};
