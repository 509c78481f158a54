#pragma once

#include "flipbook/base/outputfile.h"

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>

#include <memory>

class ArchiveFile;
class KArchiveDirectory;
class KArchiveFile;
class KZip;
class MemoryAccount;
class QFile;

/// The zip archive that a document is kept in: document.json, and each picture once as
/// pictures/DIGEST.png. Reading trusts nothing that the archive says about itself.
class DocumentArchive
{
public:
    /// Opens the archive in @p file, which the user named as @p path. What is read is checked
    /// against @p memory, which must outlive this object.
    /// @throw Failure if it is not the archive of a document, or needs too much memory.
    DocumentArchive(std::unique_ptr<QFile> file, const QString &path, MemoryAccount &memory);
    ~DocumentArchive();

    /// The text of document.json. @throw Failure when it is damaged or too large.
    QByteArray json() const;

    /// The first bytes of the picture @p digest, @p count or fewer; empty when it is missing.
    QByteArray pictureStart(const QString &digest, int count) const;

    /// The whole picture; empty when it is missing or damaged. @throw Failure when it is too large.
    QByteArray picture(const QString &digest) const;

    /// Writes an archive of @p json and @p pictures (by digest). A file at @p path is kept until
    /// the new archive is completely written. Equal content gives equal bytes.
    /// @throw Failure
    static void write(const QString &path, const QByteArray &json,
                      const QMap<QString, QByteArray> &pictures,
                      IfExists ifExists = IfExists::Replace);

private:
    Q_DISABLE_COPY(DocumentArchive)

    const KArchiveFile *entry(const QString &name) const;

    QByteArray content(const KArchiveFile &file) const;

    QString m_path;
    MemoryAccount &m_memory;
    qint64 m_taken = 0; ///< of the memory, by the directory
    std::unique_ptr<ArchiveFile> m_file;
    std::unique_ptr<KZip> m_zip;
};
