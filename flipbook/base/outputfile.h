#pragma once

#include <QtCore/QStringList>
#include <QtGui/QImage>

class Reading;

/// Makes sure, before any work, that a file can be written at @p path without harm.
/// @throw Failure when it is one of @p inputs by any path, or not a regular file, or its folder
/// does not exist.
void checkOutput(const QString &path, const QStringList &inputs);

/// The same after reading: nothing that @p reading read is overwritten, by any path or link.
void checkOutput(const QString &path, const Reading &reading);

/// Writes @p image as a PNG file. The file appears whole or not at all; what was there before
/// stays until then.
/// @throw Failure
void writePng(const QString &path, const QImage &image);

/// The same for any bytes.
void writeFile(const QString &path, const QByteArray &bytes);

/// Makes sure that @p path is a folder to write into: one that is there and empty, or a new one in
/// a folder that is there.
/// @throw Failure
void prepareOutputFolder(const QString &path);
