#include "flipbook/base/outputfolder.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/staging.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

QString withoutSlash(QString path)
{
    // With a slash at its end a path would name what is in the folder.
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    return path;
}

/// A name in @p folder for files that are moved out of it.
QString insideOf(const QString &folder)
{
    return folder + QLatin1Char('/') + QFileInfo(folder).fileName();
}

/// Whether there is a folder to replace. @throw Failure if what is there must be kept.
bool isThere(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        if (!QFileInfo(info.path()).isDir())
            throw Failure{path, QStringLiteral("its folder does not exist")};
        if (info.isSymLink())
            throw Failure{path, QStringLiteral("is a link that leads to nothing")};
        return false;
    }
    if (!info.isDir())
        throw Failure{path, QStringLiteral("is not a folder")};
    Staging::removeStale(insideOf(info.canonicalFilePath()));
    if (!QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        throw Failure{path, QStringLiteral("is a folder that is not empty")};
    return true;
}

/// Whether the folder @p path can be renamed over: not if it is another file system, and not if a
/// shell may be in it, which would not see the new one.
bool isReplaceable(const QString &path)
{
    const QByteArray parent = QFile::encodeName(QFileInfo(path).path());
    struct stat own = {};
    struct stat outer = {};
    return path != QDir::current().canonicalPath() &&
           ::stat(QFile::encodeName(path).constData(), &own) == 0 &&
           ::stat(parent.constData(), &outer) == 0 && own.st_dev == outer.st_dev &&
           ::access(parent.constData(), W_OK) == 0;
}

} // namespace

OutputFolder::OutputFolder(const QString &path)
    : m_path(withoutSlash(path))
{
    const bool exists = isThere(m_path);
    // Through links, and with the name that a path such as "." does not show.
    const QFileInfo info(m_path);
    m_target =
        exists ? info.canonicalFilePath()
               : QFileInfo(info.path()).canonicalFilePath() + QLatin1Char('/') + info.fileName();
    m_isInside = exists && !isReplaceable(m_target);
    Staging::removeStale(m_target);
    const QString stage = Staging::newPath(m_isInside ? insideOf(m_target) : m_target);
    const QByteArray name = QFile::encodeName(stage);
    constexpr mode_t modeOfNewFolders = 0777;
    if (::mkdir(name.constData(), modeOfNewFolders) != 0)
        fail(path, QStringLiteral("the folder cannot be made"));
    m_stage = stage;
    m_lock = FileHandle(::open(name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    Staging::lock(m_lock);
    struct stat before = {};
    if (exists && ::stat(QFile::encodeName(m_target).constData(), &before) == 0)
        ::chmod(name.constData(), before.st_mode & modeOfNewFolders);
}

OutputFolder::~OutputFolder()
{
    if (!m_stage.isEmpty())
        QDir(m_stage).removeRecursively();
}

void OutputFolder::write(const QString &name, const QByteArray &bytes)
{
    if (!Staging::writeNew(m_stage + QLatin1Char('/') + name, bytes))
        fail(m_path + QLatin1Char('/') + name, QStringLiteral("cannot be written"));
    m_names.append(name);
}

void OutputFolder::finish()
{
    if (!Staging::syncFolder(m_stage) || !(m_isInside ? moveFiles() : rename()))
        fail(m_path, QStringLiteral("cannot be written"));
    m_stage.clear();
    if (!Staging::syncFolder(m_isInside ? m_target : QFileInfo(m_target).path()))
        fail(m_path, QStringLiteral("is written, but its folder cannot be flushed to the disk"));
}

bool OutputFolder::rename() const
{
    return ::rename(QFile::encodeName(m_stage).constData(),
                    QFile::encodeName(m_target).constData()) == 0;
}

bool OutputFolder::moveFiles() const
{
    const QDir from(m_stage);
    const QDir to(m_target);
    for (int i = 0; i < m_names.size(); ++i) {
        const QString &name = m_names.at(i);
        if (::rename(QFile::encodeName(from.filePath(name)).constData(),
                     QFile::encodeName(to.filePath(name)).constData()) == 0)
            continue;
        const int reason = errno;
        const QStringList moved = m_names.mid(0, i);
        for (const QString &file : moved)
            QFile::remove(to.filePath(file));
        errno = reason;
        return false;
    }
    return QDir().rmdir(m_stage);
}

void OutputFolder::fail(const QString &path, const QString &what) const
{
    throw Failure{path, QStringLiteral("%1: %2").arg(what, qt_error_string(errno))};
}
