#pragma once

#include "flipbook/base/filehandle.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// A folder of files that appears as a whole or not at all. It is made beside its path, and renamed
/// when it is complete. If that is not possible, because the path is a mount point or the working
/// folder, it is made in it, and its files are moved out, in their order.
class OutputFolder
{
public:
    /// Makes a folder that will be at @p path, in the place of an empty one.
    /// @throw Failure if that is not possible.
    explicit OutputFolder(const QString &path);
    /// Removes everything unless the folder has appeared.
    ~OutputFolder();

    /// The path as the user named it.
    const QString &path() const { return m_path; }

    /// Writes a new file @p name into the folder. @throw Failure
    void write(const QString &name, const QByteArray &bytes);

    /// Lets the folder appear. @throw Failure
    void finish();

private:
    Q_DISABLE_COPY(OutputFolder)

    bool rename() const;
    bool moveFiles() const;
    [[noreturn]] void fail(const QString &path, const QString &what) const;

    QString m_path;   ///< without a slash at its end
    QString m_target; ///< the same, absolute
    QString m_stage;  ///< where the files are until it is complete
    bool m_isInside = false;
    QStringList m_names;
    FileHandle m_lock;
};
