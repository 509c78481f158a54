#pragma once

#include <QtCore/QString>

struct Source;

/// What a path that the user named leads to.
enum class SourceKind {
    Gif,         ///< a file that begins as a GIF does
    FrameFolder, ///< a folder
    Document,    ///< a file named so, or one that begins as a zip archive does
    OtherFile,   ///< a file that begins in another way
};

/// Looks at @p source, which the user named as @p path.
/// @throw Failure when it is a file that cannot be read or is empty.
SourceKind kindOf(const Source &source, const QString &path);

/// Qt takes paths that begin with a colon for its own: this makes them plain files.
QString plainPath(const QString &path);
