#include "flipbook/cli/outputfolder.h"

#include "flipbook/failure.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>

#include <cstdio>

namespace
{

void checkFree(const QString &path)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isDir())
        throw Failure{path, QStringLiteral("is no folder")};
    if (info.exists() &&
        !QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
        throw Failure{path, QStringLiteral("is a folder with something in it; nothing in it is "
                                           "overwritten")};
    if (!info.absoluteDir().exists())
        throw Failure{path, QStringLiteral("the folder around it does not exist")};
}

} // namespace

OutputFolder::OutputFolder(const QString &path)
    : m_path(QDir::cleanPath(path))
{
    checkFree(m_path);
    QTemporaryDir folder(QFileInfo(m_path).absoluteFilePath() + QStringLiteral(".XXXXXX"));
    if (!folder.isValid())
        throw Failure{path, QStringLiteral("cannot be written: ") + folder.errorString()};
    folder.setAutoRemove(false);
    m_temporary = folder.path();
    // Made for its owner alone; the results are for whoever may see the user's other files.
    QFile::setPermissions(m_temporary, QFile::permissions(QFileInfo(m_path).absolutePath()));
}

OutputFolder::~OutputFolder()
{
    if (!m_temporary.isEmpty())
        QDir(m_temporary).removeRecursively();
}

void OutputFolder::commit()
{
    // An empty folder gives way; anything that came there meanwhile does not.
    const QByteArray from = QFile::encodeName(m_temporary);
    const QByteArray to = QFile::encodeName(m_path);
    if (std::rename(from.constData(), to.constData()) != 0)
        throw Failure{m_path, QStringLiteral("cannot be written: ") + qt_error_string()};
    m_temporary.clear();
}
