#include "flipbook/window/recovery/openmarker.h"

#include <QtCore/QFileInfo>
#include <QtCore/QLockFile>

OpenMarker::OpenMarker() = default;

OpenMarker::~OpenMarker() = default;

bool OpenMarker::take(const QString &path)
{
    m_lock.reset();
    if (path.isEmpty())
        return true;
    const QFileInfo file(path);
    m_lock = std::make_unique<QLockFile>(
        QStringLiteral("%1/.%2.lock").arg(file.absolutePath(), file.fileName()));
    // Only the end of the other process frees its lock.
    m_lock->setStaleLockTime(0);
    if (m_lock->tryLock(0))
        return true;
    const bool isElsewhere = m_lock->error() == QLockFile::LockFailedError;
    m_lock.reset();
    return !isElsewhere;
}
