#include "flipbook/base/stagedfile.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/staging.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr mode_t ModeOfNewFiles = 0666;

/// The name under which the system shows an open file.
QByteArray nameOf(const FileHandle &file)
{
    return "/proc/self/fd/" + QByteArray::number(file.get());
}

/// A file in @p folder without a name; none where the system has no such files.
FileHandle unnamedFile(const QByteArray &folder)
{
    FileHandle file(::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, ModeOfNewFiles));
    if (file.isOpen() && ::access(nameOf(file).constData(), F_OK) != 0)
        return FileHandle();
    return file;
}

/// Renames @p from to @p to unless there is a file, which errno then says.
bool renameToNew(const QByteArray &from, const QByteArray &to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    // Some file systems cannot do that, but have links.
    return errno == EINVAL && ::link(from.constData(), to.constData()) == 0 &&
           ::unlink(from.constData()) == 0;
}

} // namespace

QString StagedFile::targetOf(const QString &path)
{
    constexpr int maxLinks = 40;
    QString target = path;
    for (int i = 0; i < maxLinks; ++i) {
        QByteArray next(PATH_MAX, '\0');
        const ssize_t length = ::readlink(QFile::encodeName(target).constData(), next.data(),
                                          std::size_t(next.size()));
        if (length <= 0)
            break;
        const QString name = QFile::decodeName(next.left(int(length)));
        target = name.startsWith(QLatin1Char('/'))
                     ? name
                     : QFileInfo(target).path() + QLatin1Char('/') + name;
    }
    return target;
}

StagedFile::StagedFile(const QString &path)
    : m_path(path)
{
    const QString target = targetOf(path);
    m_target = QFile::encodeName(target);
    struct stat before = {};
    const bool exists = ::stat(m_target.constData(), &before) == 0;
    if (exists ? ::access(m_target.constData(), W_OK) != 0 : errno != ENOENT)
        fail();
    Staging::removeStale(target);
    m_file = unnamedFile(QFile::encodeName(QFileInfo(target).path()));
    if (!m_file.isOpen()) {
        m_stage = QFile::encodeName(Staging::newPath(target));
        m_file = FileHandle(
            ::open(m_stage.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ModeOfNewFiles));
        if (!m_file.isOpen()) {
            m_stage.clear();
            fail();
        }
    }
    Staging::lock(m_file);
    // Not all file systems have permissions.
    constexpr mode_t permissions = 0777;
    if (exists && ::fchmod(m_file.get(), before.st_mode & permissions) != 0 && errno != EPERM)
        fail();
}

StagedFile::~StagedFile()
{
    if (!m_stage.isEmpty())
        ::unlink(m_stage.constData());
}

void StagedFile::write(const QByteArray &bytes)
{
    if (!Staging::writeAll(m_file, bytes))
        fail();
}

void StagedFile::replace()
{
    finish();
    if (::rename(m_stage.constData(), m_target.constData()) != 0)
        fail();
    m_stage.clear();
    syncFolder();
}

void StagedFile::create()
{
    finish();
    if (!renameToNew(m_stage, m_target)) {
        if (errno == EEXIST)
            throw ExistingFile{{m_path, QStringLiteral("already exists")}};
        fail();
    }
    m_stage.clear();
    syncFolder();
}

// Flushes the file, and gives it a name that it can be renamed from.
void StagedFile::finish()
{
    if (::fsync(m_file.get()) != 0)
        fail();
    if (m_stage.isEmpty()) {
        const QByteArray stage = QFile::encodeName(Staging::newPath(QFile::decodeName(m_target)));
        if (::linkat(AT_FDCWD, nameOf(m_file).constData(), AT_FDCWD, stage.constData(),
                     AT_SYMLINK_FOLLOW) != 0)
            fail();
        m_stage = stage;
    }
    if (!Staging::close(m_file))
        fail();
}

void StagedFile::syncFolder()
{
    if (!Staging::syncFolder(QFileInfo(QFile::decodeName(m_target)).path()))
        throw Failure{m_path, QStringLiteral("is written, but its folder cannot be flushed to the "
                                             "disk: ") +
                                  qt_error_string(errno)};
}

void StagedFile::fail() const
{
    throw Failure{m_path, QStringLiteral("cannot be written: ") + qt_error_string(errno)};
}
