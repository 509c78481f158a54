#include "flipbook/window/filewatch.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <sys/stat.h>

FileStamp FileStamp::of(const QString &path)
{
    constexpr qint64 nsPerSecond = 1000000000;
    struct stat there = {};
    if (path.isEmpty() || ::stat(QFile::encodeName(path).constData(), &there) != 0)
        return {};
    FileStamp stamp;
    stamp.device = there.st_dev;
    stamp.number = there.st_ino;
    stamp.size = there.st_size;
    stamp.changedNs = there.st_mtim.tv_sec * nsPerSecond + there.st_mtim.tv_nsec;
    return stamp;
}

bool FileStamp::operator==(const FileStamp &other) const
{
    return device == other.device && number == other.number && size == other.size &&
           changedNs == other.changedNs;
}

FileWatch::FileWatch(QObject *parent)
    : QObject(parent)
{
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatch::look);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatch::look);
}

void FileWatch::note(const QString &path, const FileStamp &stamp)
{
    if (path != m_path) {
        const QStringList before = m_watcher.files() + m_watcher.directories();
        if (!before.isEmpty())
            m_watcher.removePaths(before);
        m_path = path;
        // A file that is replaced is another one: its folder tells that.
        if (!path.isEmpty())
            m_watcher.addPath(QFileInfo(path).absolutePath());
    }
    m_noted = stamp;
    m_told = stamp;
    if (stamp.exists())
        m_watcher.addPath(path);
}

bool FileWatch::isChanged() const
{
    const FileStamp now = FileStamp::of(m_path);
    return now.exists() && !(now == m_noted);
}

void FileWatch::look()
{
    const FileStamp now = FileStamp::of(m_path);
    if (!now.exists() || now == m_noted || now == m_told)
        return;
    m_told = now;
    m_watcher.addPath(m_path);
    Q_EMIT changed();
}
