#pragma once

#include "flipbook/import/decodedfilm.h"

class FileHandle;
class Reading;

/// The picture files in @p folder, which the user named as @p path, by their names, in natural
/// order: 2 before 10. @throw Failure when it cannot be listed.
QStringList picturesInFolder(const FileHandle &folder, const QString &path);

/// Makes one film of the picture files in @p folder, which the user named as @p path, in natural
/// order. A file that cannot be read is left out, with a warning.
/// @throw Failure when no picture can be read, or one is outside of the folder, or they need too
/// much memory.
DecodedFilm readPictureFolder(const FileHandle &folder, const QString &path, Reading &reading);

/// Makes one film of the pictures in the files that the user named as @p paths, in this order.
/// @throw Failure when one cannot be read, or they need too much memory.
DecodedFilm readPictureFiles(const QStringList &paths, Reading &reading);

/// What the names of these pictures have in common: "walk" for walk_01.png.
QString commonName(const QStringList &paths);

/// Gives frames of @p film whose names are taken another one, with a warning for each.
void makeNamesUnique(DecodedFilm &film);
