#pragma once

#include <QtCore/QSize>

#include <optional>

class QIODevice;

/// What the markers of a JPEG file say of it.
struct JpegMarkers {
    QSize size;
    int components = 0;
    bool isProgressive = false; ///< the whole picture is kept in a second form while it is decoded
    int scans = 0;              ///< how often the decoder goes through the picture
    qint64 commentBytes = 0;    ///< of texts and profiles, with something for each

    /// Reads the markers of the JPEG file on @p device, from its beginning; nothing when it
    /// describes no picture.
    static std::optional<JpegMarkers> read(QIODevice &device);
};
