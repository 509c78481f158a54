#pragma once

#include <QtCore/QStringList>

/// Looks through the frame folder at @p path, its config.json and the picture files that this
/// names, before an object reads them, and answers what is wrong though frames can be read.
/// @throw Failure when an object would find no frames, when a picture is no regular file (which
/// might be waited for without end), or when the pictures would need more than @p maxMemory bytes.
QStringList examineFrameFolder(const QString &path, qint64 maxMemory);

/// The config.json of the frame folder at @p path and the files that it names; fewer where it
/// cannot be read.
QStringList frameFolderFiles(const QString &path);
