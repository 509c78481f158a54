#pragma once

#include "animatedimage/object/animatedimage.h"

#include <QtCore/QByteArray>
#include <QtCore/QDir>

#include <cstddef>
#include <cstdint>

/// What the fuzz targets share.
namespace Fuzzing
{

/// Keeps memory for pictures within what one run may take: a GIF that claims a huge screen is the
/// caller's to refuse, and would otherwise end every run.
constexpr qint64 MaxMemory = 64 * 1024 * 1024;

/// @p data as an array that shares its bytes.
QByteArray bytes(const uint8_t *data, size_t size);

/// A folder of this process alone, which ends with it.
const QDir &folder();

/// Writes @p data to a file in folder() and returns its path, which ends in @p suffix.
QString file(const uint8_t *data, size_t size, const QString &suffix);

/// Gives the file at @p path this content. It stays open and keeps its place on the disk: some file
/// systems write a file that was emptied to the disk when it is closed, which takes as long as
/// thousands of runs.
void write(const QString &path, const QByteArray &content);

/// Uses an object on the page of a Stage the way a host does: paints, measures and hit-tests it
/// while it is edited and while it is presented, and steps it while it is presented. One whose
/// tile as a background would be beyond MaxMemory is not presented.
void use(CAnimatedImage &image);

/// Ends the process, with a message, when @p holds is false.
void require(bool holds, const char *what);

} // namespace Fuzzing
