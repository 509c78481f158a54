#include "flipbook/import/sourcefile.h"

#include "flipbook/base/failure.h"

#include <cerrno>
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

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        throw Failure{path, reasonOf(errno)};
    return status;
}

QString kindOf(const struct stat &status)
{
    if (S_ISDIR(status.st_mode))
        return QStringLiteral("is a folder");
    if (S_ISFIFO(status.st_mode))
        return QStringLiteral("is a pipe, not a file");
    if (S_ISSOCK(status.st_mode))
        return QStringLiteral("is a socket, not a file");
    return QStringLiteral("is a device, not a file");
}

} // namespace

QString plainPath(const QString &path)
{
    return path.startsWith(QLatin1Char(':')) ? QStringLiteral("./") + path : path;
}

std::unique_ptr<QFile> openRegularFile(const QString &path)
{
    // Looked at before it is opened, since opening alone can have an effect on a device; and
    // opened without waiting, in case that something else stands there by now.
    const struct stat before = statusOf(path);
    if (!S_ISREG(before.st_mode))
        throw Failure{path, kindOf(before)};
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        throw Failure{path, reasonOf(errno)};
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        throw Failure{path, kindOf(status)};
    }
    auto file = std::make_unique<QFile>();
    if (!file->open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        throw Failure{path, file->errorString()};
    }
    return file;
}

SourceKind identifySource(const QString &path)
{
    if (S_ISDIR(statusOf(path).st_mode))
        return SourceKind::FrameFolder;
    const std::unique_ptr<QFile> file = openRegularFile(path);
    const QByteArray start = file->read(6);
    if (start.isEmpty()) {
        if (file->error() != QFileDevice::NoError)
            throw Failure{path, file->errorString()};
        throw Failure{path, QStringLiteral("the file is empty")};
    }
    if (start == "GIF87a" || start == "GIF89a")
        return SourceKind::Gif;
    if (path.endsWith(QLatin1String(".flipbook"), Qt::CaseInsensitive) ||
        start.startsWith("PK\x03\x04") || start.startsWith("PK\x05\x06"))
        return SourceKind::Document;
    return SourceKind::OtherFile;
}

bool isSpecialFile(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && !S_ISREG(status.st_mode) &&
           !S_ISDIR(status.st_mode);
}

bool isSameFile(const QString &one, const QString &other)
{
    struct stat first = {};
    struct stat second = {};
    if (::stat(QFile::encodeName(one).constData(), &first) != 0 ||
        ::stat(QFile::encodeName(other).constData(), &second) != 0)
        return false;
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}
