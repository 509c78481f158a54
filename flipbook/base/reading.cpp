#include "flipbook/base/reading.h"

#include "flipbook/base/failure.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryFile>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

QString reasonOf(int error)
{
    if (error == ENOENT)
        return QStringLiteral("not found");
    return QString::fromLocal8Bit(std::strerror(error));
}

/// Finds what is at @p path without opening it, which could have an effect on a device, or
/// wait.
FileHandle find(int folder, const QString &path)
{
    // A name ends at a zero byte: another file would be found.
    if (path.contains(QChar(u'\0')))
        throw MissingFile{{path, QStringLiteral("not found")}};
    FileHandle found(::openat(folder, QFile::encodeName(path).constData(), O_PATH | O_CLOEXEC));
    if (!found.isOpen())
        throw MissingFile{{path, reasonOf(errno)}};
    return found;
}

struct stat statusOf(const FileHandle &found)
{
    struct stat status = {};
    ::fstat(found.get(), &status);
    return status;
}

QString kindOf(mode_t mode)
{
    if (S_ISFIFO(mode))
        return QStringLiteral("is a pipe, not a file");
    if (S_ISSOCK(mode))
        return QStringLiteral("is a socket, not a file");
    return QStringLiteral("is a device, not a file");
}

/// The path by which the system lets a process open again what it has found.
QByteArray pathOf(const FileHandle &found)
{
    return "/proc/self/fd/" + QByteArray::number(found.get());
}

/// The path of @p found, without any link; empty if the system does not know it.
QByteArray placeOf(const FileHandle &found)
{
    QByteArray place(PATH_MAX, '\0');
    const ssize_t length =
        ::readlink(pathOf(found).constData(), place.data(), std::size_t(place.size()));
    return length > 0 && length < place.size() ? place.left(int(length)) : QByteArray();
}

bool liesIn(const FileHandle &folder, const FileHandle &found)
{
    const QByteArray outer = placeOf(folder);
    const QByteArray inner = placeOf(found);
    if (outer.isEmpty() || inner.isEmpty())
        return false;
    return outer == "/" || inner == outer || inner.startsWith(outer + '/');
}

FileHandle openFound(const FileHandle &found, int flags, const QString &path)
{
    FileHandle file(::open(pathOf(found).constData(), O_RDONLY | flags | O_CLOEXEC));
    if (!file.isOpen() && errno == ENOENT)
        throw Failure{path, QStringLiteral("cannot be opened, since /proc is not there")};
    if (!file.isOpen())
        throw MissingFile{{path, reasonOf(errno)}};
    return file;
}

} // namespace

Reading::Reading(qint64 maxMemory, bool allowsOutside)
    : m_memory(maxMemory)
    , m_allowsOutside(allowsOutside)
{
}

const QLatin1String Reading::StandardInput("-");

std::unique_ptr<QFile> Reading::copiedStandardInput()
{
    QFile input;
    if (::isatty(STDIN_FILENO) != 0 || !input.open(stdin, QIODevice::ReadOnly))
        throw Failure{StandardInput, QStringLiteral("nothing is piped into it")};
    // It has no name that others could find.
    auto copy = std::make_unique<QTemporaryFile>();
    bool isCopied = copy->open();
    constexpr qint64 pieceLength = 1 << 16;
    while (isCopied) {
        const QByteArray piece = input.read(pieceLength);
        if (piece.isEmpty())
            break;
        m_memory.require(copy->size() + piece.size(), StandardInput,
                         QStringLiteral("the bytes of the file alone"));
        isCopied = copy->write(piece) == piece.size() && copy->flush();
    }
    if (!isCopied)
        throw Failure{StandardInput,
                      QStringLiteral("no private copy can be made: ") + copy->errorString()};
    copy->seek(0);
    return copy;
}

Source Reading::open(const QString &path)
{
    if (path == StandardInput)
        return {copiedStandardInput(), FileHandle()};
    FileHandle found = find(AT_FDCWD, path);
    if (S_ISDIR(statusOf(found).st_mode))
        return {nullptr, std::move(found)};
    return {opened(found, path), FileHandle()};
}

QStringList Reading::filesIn(const FileHandle &folder, const QString &path)
{
    openFound(folder, O_DIRECTORY, path);
    return QDir(QFile::decodeName(pathOf(folder))).entryList(QDir::Files);
}

bool Reading::holds(const FileHandle &folder, const QString &name)
{
    struct stat status = {};
    return ::fstatat(folder.get(), QFile::encodeName(name).constData(), &status,
                     AT_SYMLINK_NOFOLLOW) == 0;
}

std::unique_ptr<QFile> Reading::openFile(const QString &path)
{
    return opened(find(AT_FDCWD, path), path);
}

FileHandle Reading::openFolderOf(const QString &path)
{
    return find(AT_FDCWD, QFileInfo(path).path());
}

std::unique_ptr<QFile> Reading::openFrom(const FileHandle &folder, const QString &name)
{
    const FileHandle found = find(folder.get(), name);
    if (!m_allowsOutside && !liesIn(folder, found))
        throw OutsideFile{
            {{name, QStringLiteral("leads out of the folder; --allow-outside reads it")}}};
    return opened(found, name);
}

std::unique_ptr<QFile> Reading::opened(const FileHandle &found, const QString &path)
{
    const struct stat status = statusOf(found);
    if (S_ISDIR(status.st_mode))
        throw MissingFile{{path, QStringLiteral("is a folder")}};
    if (!S_ISREG(status.st_mode))
        throw ForbiddenFile{{path, kindOf(status.st_mode)}};
    FileHandle handle = openFound(found, O_NONBLOCK | O_NOCTTY, path);
    auto file = std::make_unique<QFile>();
    if (!file->open(handle.get(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        throw Failure{path, file->errorString()};
    handle.release();
    m_read.insert({quint64(status.st_dev), quint64(status.st_ino)});
    return file;
}

bool Reading::hasRead(const QString &path) const
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 &&
           m_read.contains({quint64(status.st_dev), quint64(status.st_ino)});
}
