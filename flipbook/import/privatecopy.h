#pragma once

#include <QtCore/QString>

class PrivateFolder;
class QFile;

/// Copies @p file, which the user named as @p path, into @p folder and returns the path of the
/// copy: an object that reads it reads what was opened and checked, even if the file changes
/// meanwhile. It is called as the file is up to its first dot, since objects name their frames so,
/// followed by @p suffix, such as ".gif", which is in its path even if the name has no room.
/// @throw Failure
QString privateCopy(QFile &file, const QString &path, const QString &suffix, PrivateFolder &folder);
