#pragma once

#include "flipbook/import/gifdescriptors.h"

#include <QtCore/QStringList>

/// A GIF file that may be imported, and what the user should know about it.
struct GifSource {
    GifDescriptors descriptors;
    /// What is wrong with the file though it can be read in part; clauses without a full stop.
    QStringList warnings;
};

/// Reads the descriptors of the GIF at @p path and judges whether to import it, before a pixel is
/// decoded.
/// @throw Failure when the path is not one that objects take as a GIF, when nothing in the file
/// can be shown, or when its frames would need more than @p maxMemory bytes.
GifSource examineGif(const QString &path, qint64 maxMemory);

/// Whether an object that is given @p path reads it as a GIF, whatever stands there.
bool isGifPath(const QString &path);
