#pragma once

#include <QtCore/QtGlobal>

class QIODevice;

/// What the headers in a zip archive will take when its directory is read, found without reading
/// it. Bytes that only look like a header count as well.
struct ArchiveScan {
    qint64 memory = 0; ///< bytes
    int deepest = 0;   ///< folders within each other, in the name of an entry

    /// Looks through all of @p device and leaves it where it was.
    static ArchiveScan of(QIODevice &device);
};
