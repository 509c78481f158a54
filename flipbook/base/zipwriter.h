#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>

/// Collects files into a zip archive in memory: on a full disk, an archive that is written piece by
/// piece may be incomplete without an error. All files carry one date, so that equal contents give
/// equal bytes. Functions throw std::bad_alloc if memory is used up; the archive is lost then.
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
