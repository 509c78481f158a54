#pragma once

#include <QtCore/QFileSystemWatcher>
#include <QtCore/QObject>
#include <QtCore/QString>

/// Which bytes are at a path, as far as the file system tells without reading them.
struct FileStamp {
    quint64 device = 0;
    quint64 number = 0; ///< of the file on its device; a save makes a new file
    qint64 size = -1;   ///< in bytes; -1 if there is no file
    qint64 changedNs = 0;

    /// Of what is at @p path now.
    static FileStamp of(const QString &path);
    bool exists() const { return size >= 0; }
    bool operator==(const FileStamp &other) const;
};

/// Notices when another program changes the file of the open document.
class FileWatch : public QObject
{
    Q_OBJECT

public:
    explicit FileWatch(QObject *parent = nullptr);

    /// The window knows the file at @p path as it was at @p stamp; an empty path for no file.
    void note(const QString &path, const FileStamp &stamp);
    /// Whether the file is there and not as it was noted. A file that is gone can be saved again
    /// without a loss.
    bool isChanged() const;

Q_SIGNALS:
    /// Told once for each change.
    void changed();

private:
    void look();

    QFileSystemWatcher m_watcher;
    QString m_path;
    FileStamp m_noted;
    FileStamp m_told;
};
