#include "flipbook/document/documentlock.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QFile>
#include <QtCore/QThread>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace
{

/// Whether @p file is still what is at @p path: each save puts a new file there.
bool isAt(const FileHandle &file, const QByteArray &path)
{
    struct stat own = {};
    struct stat there = {};
    return ::fstat(file.get(), &own) == 0 && ::stat(path.constData(), &there) == 0 &&
           own.st_dev == there.st_dev && own.st_ino == there.st_ino;
}

/// The file at @p path; none if it cannot be opened, which is told when it is read.
FileHandle opened(const QString &path)
{
    try {
        const auto file = Reading(0, false).openFile(path);
        return FileHandle(::fcntl(file->handle(), F_DUPFD_CLOEXEC, 0));
    } catch (const Failure &) {
        return FileHandle();
    }
}

} // namespace

DocumentLock::DocumentLock(const QString &path, int waitMs)
{
    constexpr unsigned long pauseMs = 10;
    const QByteArray name = QFile::encodeName(path);
    QDeadlineTimer deadline(waitMs);
    while (true) {
        m_file = opened(path);
        if (!m_file.isOpen())
            return;
        if (::flock(m_file.get(), LOCK_EX | LOCK_NB) == 0) {
            if (isAt(m_file, name))
                return;
        } else if (errno != EWOULDBLOCK) {
            return;
        }
        if (deadline.hasExpired())
            throw Failure{path, QStringLiteral("is being edited by another process")};
        QThread::msleep(pauseMs);
    }
}
