#pragma once

#include "flipbook/base/privatefolder.h"
#include "flipbook/import/filmtimes.h"
#include "flipbook/import/gifdescriptors.h"
#include "flipbook/object/plugin.h"

#include <QtCore/QStringList>

#include <memory>
#include <optional>

class Reading;
struct Source;

/// An object that was made from a file or folder.
struct ImportedMedia {
    OwnedObject object;
    /// What is wrong with the source though frames could be read; clauses without a full stop.
    QStringList warnings;
    std::optional<GifDescriptors> gif;            ///< what a GIF says about itself
    std::unique_ptr<PrivateFolder> privateFolder; ///< holds the copy that the object was made from
    QString copy;                                 ///< its path, of a GIF or frame folder
    QString format;  ///< as people call it, such as "GIF" or "frame folder"
    FilmTimes times; ///< readable as long as the folder is there

    /// The time in milliseconds for which the file says that each frame is shown; empty when it
    /// says nothing of that, as frame folders and pictures do.
    QVector<int> delaysMs() const { return times.delaysMs(); }
};

/// Makes an object, numbered @p objectId, from @p source, which the user named as @p path: a GIF,
/// an animated PNG or WebP file, a frame folder, a folder of pictures, a sprite sheet with its
/// JSON, or a picture, which is cut into frames if @p reading says so. What it would need is
/// computed before anything is decoded.
/// @throw Failure when nothing could be read, or would need more memory than @p reading allows.
ImportedMedia importMedia(const Plugin &plugin, Source &source, const QString &path,
                          Reading &reading, int objectId = 0);

/// Makes one film of the pictures in the files that the user named as @p paths, in this order.
/// @throw Failure in the same way.
ImportedMedia importPictures(const Plugin &plugin, const QStringList &paths, Reading &reading,
                             int objectId = 0);

/// The same for what the user names as @p path.
ImportedMedia importMedia(const Plugin &plugin, const QString &path, Reading &reading,
                          int objectId = 0);
