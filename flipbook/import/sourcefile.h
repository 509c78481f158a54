#pragma once

#include <QtCore/QFile>
#include <QtCore/QString>

#include <memory>

/// What a path that the user named leads to.
enum class SourceKind {
    Gif,         ///< a file that begins as a GIF does
    FrameFolder, ///< a folder
    Document,    ///< a file named so, or one that begins as a zip archive does
    OtherFile,   ///< a file that begins in another way
};

/// Looks at what stands at @p path. Opens regular files only, so that a pipe or a device under any
/// name is neither waited for nor changed.
/// @throw Failure when nothing is there, or it is neither a regular file nor a folder, or it
/// cannot be read or is empty.
SourceKind identifySource(const QString &path);

/// Qt takes paths that begin with a colon for its own: this makes them plain files.
QString plainPath(const QString &path);

/// Opens the regular file at @p path for reading. Never waits.
/// @throw Failure for anything else.
std::unique_ptr<QFile> openRegularFile(const QString &path);

/// Whether a pipe, a socket or a device stands at @p path, which reading might wait for.
bool isSpecialFile(const QString &path);

/// Whether @p one and @p other lead to the same file or folder, by whatever path or link.
bool isSameFile(const QString &one, const QString &other);
