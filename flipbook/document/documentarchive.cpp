#include "flipbook/document/documentarchive.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/base/zipwriter.h"
#include "flipbook/document/archivefile.h"
#include "flipbook/document/archivescan.h"

#include <KArchive/KZip>
#include <QtCore/QFile>

#include <zlib.h>

namespace
{

constexpr qint64 MaxJsonBytes = qint64(64) << 20;
constexpr int MaxFolders = 100;

QString jsonName()
{
    return QStringLiteral("document.json");
}

QString pictureName(const QString &digest)
{
    return QStringLiteral("pictures/%1.png").arg(digest);
}

// Reads no more than this, even if the archive claims a larger size.
QByteArray readUpTo(const KArchiveFile &file, qint64 most)
{
    const std::unique_ptr<QIODevice> device(file.createDevice());
    if (!device || (!device->isOpen() && !device->open(QIODevice::ReadOnly)))
        return QByteArray();
    QByteArray bytes;
    bytes.reserve(int(qMin<qint64>(most, 1 << 30)));
    while (bytes.size() < most) {
        const QByteArray part = device->read(qMin<qint64>(most - bytes.size(), 1 << 16));
        if (part.isEmpty())
            break;
        bytes += part;
    }
    return bytes;
}

quint32 checkSum(const QByteArray &bytes)
{
    return quint32(
        ::crc32(0, reinterpret_cast<const Bytef *>(bytes.constData()), uInt(bytes.size())));
}

bool isSound(const KArchiveFile &file, const QByteArray &bytes)
{
    const auto *zipped = dynamic_cast<const KZipFileEntry *>(&file);
    return bytes.size() == file.size() && zipped && quint32(zipped->crc32()) == checkSum(bytes);
}

} // namespace

DocumentArchive::DocumentArchive(std::unique_ptr<QFile> file, const QString &path,
                                 MemoryAccount &memory)
    : m_path(path)
    , m_memory(memory)
    , m_file(std::make_unique<ArchiveFile>(std::move(file)))
{
    if (m_file->peek(2) != "PK")
        throw Failure{path, QStringLiteral("not a flipbook document: it is not a zip archive")};
    const ArchiveScan scan = ArchiveScan::of(*m_file);
    // The archive library recurses once per folder in a name.
    if (scan.deepest > MaxFolders)
        throw Failure{path, QStringLiteral("the document is damaged: its archive has folders "
                                           "nested %1 deep")
                                .arg(scan.deepest)};
    m_memory.require(scan.memory, path, QStringLiteral("the directory of its archive"));
    m_zip = std::make_unique<KZip>(m_file.get());
    if (!m_zip->open(QIODevice::ReadOnly) || !m_zip->directory())
        throw Failure{path, QStringLiteral("the document is damaged: its archive cannot be read")};
    if (!entry(jsonName()))
        throw Failure{path, QStringLiteral("not a flipbook document: it has no document.json")};
    m_memory.take(scan.memory);
    m_taken = scan.memory;
}

DocumentArchive::~DocumentArchive()
{
    m_memory.giveBack(m_taken);
}

const KArchiveFile *DocumentArchive::entry(const QString &name) const
{
    const KArchiveEntry *found = m_zip->directory()->entry(name);
    if (!found || !found->isFile() || !found->symLinkTarget().isEmpty())
        return nullptr;
    return static_cast<const KArchiveFile *>(found);
}

// All of @p file; empty when it is not what was written.
QByteArray DocumentArchive::content(const KArchiveFile &file) const
{
    m_memory.require(file.size(), m_path, QStringLiteral("its '%1'").arg(file.name()));
    const QByteArray bytes = readUpTo(file, file.size());
    return isSound(file, bytes) ? bytes : QByteArray();
}

QByteArray DocumentArchive::json() const
{
    const KArchiveFile &file = *entry(jsonName());
    if (file.size() > MaxJsonBytes)
        throw Failure{m_path, QStringLiteral("its document.json is too large")};
    m_memory.require(MemoryBudget::leastForJson(file.size()), m_path,
                     QStringLiteral("its document.json"));
    const QByteArray bytes = content(file);
    if (bytes.isEmpty())
        throw Failure{m_path, QStringLiteral("the document is damaged: its document.json is not "
                                             "what was written")};
    return bytes;
}

QByteArray DocumentArchive::pictureStart(const QString &digest, int count) const
{
    const KArchiveFile *file = entry(pictureName(digest));
    return file ? readUpTo(*file, count) : QByteArray();
}

QByteArray DocumentArchive::picture(const QString &digest) const
{
    const KArchiveFile *file = entry(pictureName(digest));
    return file ? content(*file) : QByteArray();
}

void DocumentArchive::write(const QString &path, const QByteArray &json,
                            const QMap<QString, QByteArray> &pictures, IfExists ifExists)
{
    ZipWriter zip;
    zip.add(jsonName(), json);
    for (auto picture = pictures.begin(); picture != pictures.end(); ++picture)
        zip.add(pictureName(picture.key()), picture.value());
    writeFile(path, zip.finished(), ifExists);
}
