#pragma once

#include "flipbook/base/filehandle.h"

#include <QtCore/QString>

/// Keeps other processes from editing a document for as long as this lives. The system drops the
/// lock with the process, however that ends, so there are no stale ones.
class DocumentLock
{
public:
    /// Locks the document at @p path. Waits up to @p waitMs for a process that has locked it.
    /// Nothing is locked if there is no such file, or the file system has no locks.
    /// @throw Failure if the other process does not end in time
    DocumentLock(const QString &path, int waitMs);

private:
    FileHandle m_file;
};
