#include "flipbook/base/privatefolder.h"

#include "flipbook/base/failure.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace
{

/// A folder is made first and locked then: one that is younger may belong to a living process.
constexpr int SecondsUntilStale = 60;

const QLatin1String NameStart("flipbook-private-");

FileHandle openFolder(const QString &path)
{
    return FileHandle(::open(QFile::encodeName(path).constData(),
                             O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

bool isOurs(const FileHandle &folder)
{
    struct stat status = {};
    return ::fstat(folder.get(), &status) == 0 && status.st_uid == ::geteuid();
}

/// Copies the first @p count bytes without bringing them into this process, where the file systems
/// can do that, and shares them where they can do even that.
bool copyInside(int from, int to, qint64 count)
{
    loff_t offset = 0;
    while (offset < count) {
        const ssize_t copied =
            ::copy_file_range(from, &offset, to, nullptr, std::size_t(count - offset), 0);
        if (copied < 0 && errno == EINTR)
            continue;
        if (copied <= 0)
            return copied == 0;
    }
    return true;
}

bool writeAll(int to, const char *bytes, ssize_t count, qint64 offset)
{
    while (count > 0) {
        const ssize_t written = ::pwrite(to, bytes, std::size_t(count), offset);
        if (written < 0 && errno != EINTR)
            return false;
        bytes += qMax<ssize_t>(0, written);
        offset += qMax<ssize_t>(0, written);
        count -= qMax<ssize_t>(0, written);
    }
    return true;
}

/// The same for any file systems.
bool copyThroughBuffer(int from, int to, qint64 count)
{
    std::array<char, 1 << 16> buffer;
    qint64 offset = 0;
    while (offset < count) {
        const auto wanted = std::size_t(qMin<qint64>(count - offset, qint64(buffer.size())));
        const ssize_t got = ::pread(from, buffer.data(), wanted, offset);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return got == 0;
        if (!writeAll(to, buffer.data(), got, offset))
            return false;
        offset += got;
    }
    return true;
}

} // namespace

PrivateFolder::PrivateFolder()
    : m_folder(QDir::temp().filePath(NameStart + QLatin1String("XXXXXX")))
{
    if (!m_folder.isValid())
        throw Failure{QDir::tempPath(),
                      QStringLiteral("no temporary folder can be made: ") + m_folder.errorString()};
    m_lock = openFolder(m_folder.path());
    if (m_lock.isOpen())
        ::flock(m_lock.get(), LOCK_EX | LOCK_NB);
    removeStale();
}

void PrivateFolder::removeStale() const
{
    const QDateTime youngest = QDateTime::currentDateTimeUtc().addSecs(-SecondsUntilStale);
    const QFileInfoList found = QDir::temp().entryInfoList(
        {NameStart + QLatin1Char('*')}, QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    for (const QFileInfo &info : found) {
        const FileHandle folder = openFolder(info.filePath());
        if (folder.isOpen() && isOurs(folder) && info.lastModified() < youngest &&
            ::flock(folder.get(), LOCK_EX | LOCK_NB) == 0)
            QDir(info.filePath()).removeRecursively();
    }
}

QString PrivateFolder::makeFolder(const QString &ending)
{
    const QString folder = m_folder.filePath(QString::number(++m_madeFolders) + ending);
    if (!QDir().mkdir(folder))
        throw Failure{folder, QStringLiteral("the folder cannot be made")};
    return folder;
}

void PrivateFolder::copy(QFile &file, const QString &path, const QString &subject) const
{
    const FileHandle target(::open(QFile::encodeName(path).constData(),
                                   O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    // Of a file that grows meanwhile, what there was at first: there might be no end of it.
    const qint64 size = file.size();
    if (!target.isOpen() || !(copyInside(file.handle(), target.get(), size) ||
                              copyThroughBuffer(file.handle(), target.get(), size)))
        throw Failure{subject, QStringLiteral("no private copy can be made: ") +
                                   QString::fromLocal8Bit(std::strerror(errno))};
}
