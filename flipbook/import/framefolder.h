#pragma once

#include <QtCore/QStringList>

class FileHandle;
class PrivateFolder;
class Reading;

/// A frame folder that an object may read.
struct FrameFolder {
    /// The path of a private copy. It is called as the folder of the user's is, and holds a
    /// config.json and each picture that this one names and that can be read.
    QString copy;
    /// What is wrong though frames can be read; clauses without a full stop.
    QStringList warnings;
    /// The names that the config.json gives to the frames, in order; a null one where it gives
    /// none.
    QStringList names;
};

/// Copies what the frame folder @p source, which the user named as @p path, holds of a film into
/// @p folder. Names in its config.json are looked up literally, once and here.
/// @throw Failure when an object would find no frames, when a picture is outside of the folder
/// or is not a regular file, or when the pictures would need more memory than @p reading allows.
FrameFolder copyFrameFolder(const FileHandle &source, const QString &path, Reading &reading,
                            PrivateFolder &folder);
