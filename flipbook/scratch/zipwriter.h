#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <memory>

/// Collects files into a zip archive in memory. All carry one date, so that equal contents give
/// equal bytes.
class ZipWriter
{
public:
    ZipWriter();
    ~ZipWriter();

    /// Adds a file; one whose name is there already is left out.
    void add(const QString &name, const QByteArray &bytes);

    /// The whole archive. Nothing can be added afterwards.
    QByteArray finished();

private:
    struct Archive;
    std::unique_ptr<Archive> m_archive;
};

/// Reads a zip archive that anybody may have made.
class ZipReader
{
public:
    /// Opens the regular file at @p path, and never waits for another. @throw Failure when it
    /// cannot be read or is no zip archive.
    explicit ZipReader(const QString &path);
    ~ZipReader();

    /// The paths of all files in the archive.
    QStringList names() const;

    /// The content of a file. @throw Failure when there is none, it is damaged, or it has more than
    /// @p mostBytes, whatever the archive says about it.
    QByteArray read(const QString &name, qint64 mostBytes) const;

private:
    struct Archive;
    QString m_path;
    std::unique_ptr<Archive> m_archive;
};
