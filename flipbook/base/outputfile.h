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

/// Whether files that are written at @p one and @p other would be the same one, by any path or
/// link, even if there is none yet.
bool isSameOutput(const QString &one, const QString &other);

/// @p image as a PNG file, which will be at @p path; see encodedPng(). @throw Failure
QByteArray pngOf(const QImage &image, const QString &path);

/// Writes @p image as a PNG file. The file appears whole or not at all; what was there before
/// stays until then.
/// @throw Failure
void writePng(const QString &path, const QImage &image);

/// The same as a small file, for pictures that are only looked at; see compactPng(). @throw Failure
void writeCompactPng(const QString &path, const QImage &image);

/// What happens to a file that is there when another is about to take its place.
enum class IfExists { Replace, Refuse };

/// The same for any bytes. @throw ExistingFile if there is a file that is not to be replaced
void writeFile(const QString &path, const QByteArray &bytes, IfExists ifExists = IfExists::Replace);
