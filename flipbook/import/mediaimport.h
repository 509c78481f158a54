#pragma once

#include "flipbook/import/gifdescriptors.h"
#include "flipbook/object/plugin.h"

#include <QtCore/QStringList>

#include <optional>

/// An object that was made from a file or folder.
struct ImportedMedia {
    OwnedObject object;
    /// What is wrong with the source though frames could be read; clauses without a full stop.
    QStringList warnings;
    std::optional<GifDescriptors> gif; ///< what a GIF says about itself
};

/// Makes an object, numbered @p objectId, from the GIF, frame folder or picture at @p path. What it
/// would need is worked out before anything is decoded.
/// @throw Failure when nothing could be read, or would need more than @p maxMemory bytes.
ImportedMedia importMedia(const Plugin &plugin, const QString &path, qint64 maxMemory,
                          int objectId = 0);

/// The files that reading @p path reads: the file itself, or a folder's config.json and pictures.
QStringList inputsOf(const QString &path);
