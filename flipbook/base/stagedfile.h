#pragma once

#include "flipbook/base/filehandle.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// A file that appears at its path as a whole, flushed to the disk, or not at all. What was there
/// before is kept until then. If the file system can do so, the file has no name until it is
/// complete.
class StagedFile
{
public:
    /// Makes a file that will be at @p path, or at the file that a symbolic link there leads to.
    /// @throw Failure
    explicit StagedFile(const QString &path);
    ~StagedFile();

    /// Writes all of the content. @throw Failure
    void write(const QByteArray &bytes);

    /// Lets the file appear, in the place of one that is there. @throw Failure
    void replace();

    /// Lets the file appear. @throw ExistingFile if there is one, Failure for other reasons
    void create();

    /// The path of the file that @p path leads to through symbolic links, even if there is none
    /// yet.
    static QString targetOf(const QString &path);

private:
    Q_DISABLE_COPY(StagedFile)

    void finish();
    void syncFolder();
    [[noreturn]] void fail() const;

    QString m_path; ///< as the user named it
    QByteArray m_target;
    QByteArray m_stage; ///< its name until it appears; empty while it has none
    FileHandle m_file;
};
