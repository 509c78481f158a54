#include "flipbook/document/documentlock.h"

#include "flipbook/base/failure.h"

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

} // namespace

DocumentLock::DocumentLock(const QString &path, int waitMs)
{
    constexpr unsigned long pauseMs = 10;
    const QByteArray name = QFile::encodeName(path);
    QDeadlineTimer deadline(waitMs);
    while (true) {
        // A pipe is not waited for; it is refused when it is read.
        m_file = FileHandle(::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
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
