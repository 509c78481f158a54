#include "flipbook/base/staging.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/file.h>

namespace Staging
{

namespace
{

constexpr int RandomLength = 8;

/// What names made up for @p path begin with. Of a long name, it has as much as there is room for.
QString prefixOf(const QString &path)
{
    constexpr int dots = 2;
    QString name = QFileInfo(path).fileName();
    while (QFile::encodeName(name).size() > NAME_MAX - dots - RandomLength)
        name.chop(name.size() > 1 && name.at(name.size() - 1).isLowSurrogate() ? 2 : 1);
    return QLatin1Char('.') + name + QLatin1Char('.');
}

bool isLetter(QChar letter)
{
    return letter >= QLatin1Char('a') && letter <= QLatin1Char('z');
}

/// Whether newPath() made up @p name for something that begins with @p prefix.
bool isStaged(const QString &name, const QString &prefix)
{
    const QString rest = name.mid(prefix.size());
    return name.startsWith(prefix) && rest.size() == RandomLength &&
           std::all_of(rest.begin(), rest.end(), isLetter);
}

void removeUnlocked(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const FileHandle entry(
        ::open(name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!entry.isOpen() || ::flock(entry.get(), LOCK_EX | LOCK_NB) != 0)
        return;
    if (QFileInfo(path).isDir())
        QDir(path).removeRecursively();
    else
        QFile::remove(path);
}

} // namespace

QString newPath(const QString &path)
{
    QString letters;
    for (int i = 0; i < RandomLength; ++i)
        letters += QLatin1Char(char('a' + QRandomGenerator::system()->bounded('z' - 'a' + 1)));
    return QFileInfo(path).path() + QLatin1Char('/') + prefixOf(path) + letters;
}

void lock(const FileHandle &file)
{
    // Without locks, what a killed process leaves is kept.
    ::flock(file.get(), LOCK_EX | LOCK_NB);
}

void removeStale(const QString &path)
{
    const QString prefix = prefixOf(path);
    const QDir folder(QFileInfo(path).path());
    const QStringList names =
        folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString &name : names) {
        if (isStaged(name, prefix))
            removeUnlocked(folder.filePath(name));
    }
}

bool writeAll(const FileHandle &file, const QByteArray &bytes)
{
    // A disk that fills up takes a part; only the next write reports the reason.
    qint64 done = 0;
    while (done < bytes.size()) {
        const ssize_t written =
            ::write(file.get(), bytes.constData() + done, std::size_t(bytes.size() - done));
        if (written < 0 && errno != EINTR)
            return false;
        done += qMax<qint64>(0, written);
    }
    return true;
}

bool writeNew(const QString &path, const QByteArray &bytes)
{
    constexpr mode_t mode = 0666;
    const QByteArray name = QFile::encodeName(path);
    FileHandle file(::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    return file.isOpen() && writeAll(file, bytes) && ::fsync(file.get()) == 0 && close(file);
}

bool close(FileHandle &file)
{
    // After a signal the file is closed all the same.
    return ::close(file.release()) == 0 || errno == EINTR;
}

bool syncFolder(const QString &folder)
{
    const QByteArray name = QFile::encodeName(folder);
    FileHandle handle(::open(name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder may be closed to readers and open to writers.
    if (!handle.isOpen())
        return errno == EACCES;
    return ::fsync(handle.get()) == 0 || errno == EINVAL;
}

} // namespace Staging
