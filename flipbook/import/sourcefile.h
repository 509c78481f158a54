#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

class MemoryAccount;
class QFile;
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

/// All that is in @p file, which the user named as @p path: what is looked at is what is decoded,
/// even if the file is changed. @throw Failure when there is no room in @p memory.
QByteArray contentOf(QFile &file, const QString &path, const MemoryAccount &memory);

/// Whether the user named standard input, as "-".
bool isStandardInput(const QString &path);

/// Qt takes paths that begin with a colon for its own: this makes them plain files.
QString plainPath(const QString &path);
