#include "flipbook/documents/zip.h"

#include "flipbook/failure.h"
#include "flipbook/sourcefile.h"

#include <KZip>

#include <QtCore/QBuffer>
#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QSet>

struct ZipWriter::Archive {
    QBuffer buffer;
    KZip zip{&buffer};
    QSet<QString> names;
};

ZipWriter::ZipWriter()
    : m_archive(std::make_unique<Archive>())
{
    m_archive->zip.open(QIODevice::WriteOnly);
}

ZipWriter::~ZipWriter() = default;

void ZipWriter::add(const QString &name, const QByteArray &bytes)
{
    if (m_archive->names.contains(name))
        return;
    m_archive->names.insert(name);
    constexpr mode_t permissions = 0100644;
    const QDateTime date(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC);
    m_archive->zip.writeFile(name, bytes, permissions, QString(), QString(), date, date, date);
}

QByteArray ZipWriter::finished()
{
    m_archive->zip.close();
    return m_archive->buffer.data();
}

struct ZipReader::Archive {
    explicit Archive(std::unique_ptr<QFile> source)
        : file(std::move(source))
        , zip(file.get())
    {
    }

    std::unique_ptr<QFile> file;
    KZip zip;
};

namespace
{

void collect(const KArchiveDirectory &directory, const QString &prefix, QStringList &names)
{
    const QStringList entries = directory.entries();
    for (const QString &entry : entries) {
        const KArchiveEntry *found = directory.entry(entry);
        if (found->isFile())
            names.append(prefix + entry);
        else
            collect(static_cast<const KArchiveDirectory &>(*found),
                    prefix + entry + QLatin1Char('/'), names);
    }
}

} // namespace

ZipReader::ZipReader(const QString &path)
    : m_path(path)
    , m_archive(std::make_unique<Archive>(openRegularFile(path)))
{
    if (!m_archive->zip.open(QIODevice::ReadOnly) || !m_archive->zip.directory())
        throw Failure{path, QStringLiteral("is damaged: the archive in it cannot be read")};
}

ZipReader::~ZipReader() = default;

QStringList ZipReader::names() const
{
    QStringList names;
    collect(*m_archive->zip.directory(), QString(), names);
    return names;
}

QByteArray ZipReader::read(const QString &name, qint64 mostBytes) const
{
    const KArchiveEntry *entry = m_archive->zip.directory()->entry(name);
    if (!entry || !entry->isFile())
        throw Failure{m_path, QStringLiteral("has no file %1").arg(name)};
    const auto &file = static_cast<const KArchiveFile &>(*entry);
    if (file.size() > mostBytes)
        throw Failure{m_path, QStringLiteral("%1 in it is too large").arg(name)};
    // What it says about its size may be untrue: no more is unpacked than may be there.
    const std::unique_ptr<QIODevice> device(file.createDevice());
    const QByteArray bytes = device ? device->read(mostBytes + 1) : QByteArray();
    if (bytes.size() > mostBytes)
        throw Failure{m_path, QStringLiteral("%1 in it is too large").arg(name)};
    if (bytes.size() != file.size())
        throw Failure{m_path, QStringLiteral("%1 in it is damaged").arg(name)};
    return bytes;
}
