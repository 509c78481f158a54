#pragma once

#include "tests/animatedimage/walks/importsource.h"

#include <QtCore/QHash>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

/// The files that walks import, created once in their own folder.
class WalkFiles
{
public:
    static WalkFiles &instance();

    /// Paths of picture files; some cannot be read, and one does not exist.
    const QStringList &pictures() const { return m_pictures; }
    /// The number of the picture at one of these paths.
    int pictureAt(const QString &path) const { return m_pictureAt.value(path); }
    /// The name of a file without its folder and without what follows its first dot.
    static QString baseName(const QString &path);

    const QVector<ImportSource> &sources() const { return m_sources; }

private:
    WalkFiles();
    QString path(const char *name) const { return m_folder.filePath(QString::fromLatin1(name)); }
    void addPicture(const char *name, const QImage &picture);
    void addGif(const char *name);
    void addFolder(const char *name, const QByteArray &config);
    void write(const QString &path, const QByteArray &bytes) const;

    QTemporaryDir m_folder;
    QStringList m_pictures;
    QHash<QString, int> m_pictureAt;
    QVector<ImportSource> m_sources;
};
