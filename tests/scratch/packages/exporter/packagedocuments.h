#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QDir>

/// Documents of which packages are made.
namespace PackageDocuments
{

/// A page of 960 x 720 with three films of @p samples at different places: a walk, mirrored and
/// enlarged; a pinwheel, mirrored, enlarged, turned by @p degrees and placed on fractions of a
/// unit; and an owl as it is.
void writeThreeObjects(const Plugin &plugin, const QDir &samples, double degrees,
                       const QString &path);

/// One film whose frames have the names that are given.
void writeNamedFrames(const Plugin &plugin, const QStringList &names, const QString &path);

/// A page with an object of one frame for each of these names.
void writeNamedObjects(const Plugin &plugin, const QStringList &names, const QString &path);

/// A frame folder of two frames of different sizes, which are larger than twice the stage.
void writeLargeFolder(const QDir &folder);

/// A frame folder of three frames, of which the second has no picture.
void writeFolderWithGap(const QDir &folder);

} // namespace PackageDocuments
