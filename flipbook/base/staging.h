#pragma once

#include "flipbook/base/filehandle.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// Files and folders that are not complete yet. Each has the name of what it will become, with a
/// dot before it and random letters after it, and is locked by the process that makes it: when the
/// lock is free, that process was killed, and the next one removes what it left.
namespace Staging
{

/// A path for a new file or folder that will become @p path, not in use when it is made up.
QString newPath(const QString &path);

/// Locks @p file until it is closed.
void lock(const FileHandle &file);

/// Removes what killed processes left of @p path.
void removeStale(const QString &path);

/// Writes all of @p bytes. False, with the reason in errno, when that fails.
bool writeAll(const FileHandle &file, const QByteArray &bytes);

/// Writes @p bytes to a new file at @p path, flushes it to the disk and closes it. False, with the
/// reason in errno, when one of these steps fails.
bool writeNew(const QString &path, const QByteArray &bytes);

/// Closes @p file now. False, with the reason in errno, when the system reports an error.
bool close(FileHandle &file);

/// Flushes the names in @p folder to the disk, so that they survive a loss of power. False, with
/// the reason in errno, when that fails; true where the system cannot do that for folders.
bool syncFolder(const QString &folder);

} // namespace Staging
