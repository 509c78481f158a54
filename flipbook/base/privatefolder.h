#pragma once

#include "flipbook/base/filehandle.h"

#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

class QFile;

/// A temporary folder that only the user of this process can enter, removed with the object. A
/// process that is killed leaves its folder: the next one to make a folder removes it.
class PrivateFolder
{
public:
    /// @throw Failure
    PrivateFolder();

    QString path() const { return m_folder.path(); }

    /// Makes a new folder in this one, whose name ends in @p ending, and returns its path.
    /// @throw Failure
    QString makeFolder(const QString &ending = QString());

    /// Copies what @p file holds from its beginning to a new file at @p path, which is in this
    /// folder. @throw Failure of @p subject
    void copy(QFile &file, const QString &path, const QString &subject) const;

private:
    void removeStale() const;

    QTemporaryDir m_folder;
    FileHandle m_lock; ///< tells other processes that this folder is in use
    int m_madeFolders = 0;
};
