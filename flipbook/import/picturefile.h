#pragma once

#include <QtGui/QImage>

class MemoryAccount;
class PrivateFolder;
class QFile;
class Reading;

/// Reads the picture in @p file, which the user named as @p path, in the format that its bytes
/// indicate that it is; of an animated one, the first frame. Pixels that the file leaves out are
/// transparent, or 0 where the format has no transparency.
/// @throw Failure when it is not a picture that can be read, or is only by its name a GIF, or would
/// need more than @p memory has room for.
QImage readPicture(QFile &file, const QString &path, const MemoryAccount &memory);

/// The same for the file that the user names as @p path.
QImage readPicture(const QString &path, Reading &reading);

/// Decodes the picture in the private copy @p copy of a file that the user named as @p path, where
/// an object's decoder may leave pixels unset: the copy becomes a PNG file without such pixels.
/// @throw Failure as readPicture() does.
void settleCopy(const QString &copy, const QString &path, const MemoryAccount &memory);

/// Reads the private copy @p copy of a picture that the user named as @p path.
/// @throw Failure as readPicture() does.
QImage readCopy(const QString &copy, const QString &path, const MemoryAccount &memory);

/// Puts a copy of the picture file that the user named as @p path into @p folder, for an object to
/// read. It is called as the file is, but for the ending. Returns its path. That the picture can be
/// decoded is not certain.
/// @throw Failure when it is not a picture that is read, or would need too much memory.
QString copyPicture(const QString &path, Reading &reading, PrivateFolder &folder);
