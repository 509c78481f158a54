#pragma once

#include "flipbook/import/gifdescriptors.h"

#include <QtCore/QStringList>

class MemoryAccount;
class PrivateFolder;
class QFile;

/// A GIF file that may be imported, and what the user should know about it.
struct GifSource {
    GifDescriptors descriptors;
    QString copy; ///< the path of a private copy, which is the file that was judged
    /// What is wrong with the file though it can be read in part; clauses without a full stop.
    QStringList warnings;
};

/// Copies the GIF in @p file, which the user named as @p path, into @p folder, reads the
/// descriptors of the copy and judges whether to import it, before a pixel is decoded. What its
/// frames are going to take is counted in @p memory.
/// @throw Failure when the path is not one that objects take as a GIF, when nothing in the file
/// can be shown, or when its frames would need more memory than there is.
GifSource copyGif(QFile &file, const QString &path, MemoryAccount &memory, PrivateFolder &folder);

/// Judges the GIF at @p copy, which nobody else changes, in the same way.
GifSource examineGif(const QString &copy, const QString &path, MemoryAccount &memory);

/// The reason why nothing of a GIF could be shown, from its descriptors.
QString reasonNothingIsRead(const GifDescriptors &gif);

/// Whether an object that is given @p path reads it as a GIF, whatever is there.
bool isGifPath(const QString &path);
