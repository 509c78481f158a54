#include "flipbook/document/documentpictures.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/document/documentarchive.h"
#include "flipbook/import/pngheader.h"
#include "framework/imagestore.h"

#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QSet>

#include <algorithm>
#include <limits>

namespace
{

constexpr int MaxWarnings = 20;
constexpr int DigestLength = 32;

/// A picture of the archive, before it is decoded.
struct StoredPicture {
    qint64 decodedBytes = 0;
    QString flaw; ///< why it cannot be shown; empty when it can
};

bool isDigest(const QString &text)
{
    return text.size() == DigestLength && std::all_of(text.begin(), text.end(), [](QChar digit) {
               return (digit >= QLatin1Char('0') && digit <= QLatin1Char('9')) ||
                      (digit >= QLatin1Char('a') && digit <= QLatin1Char('f'));
           });
}

class PictureReader
{
public:
    PictureReader(const DocumentArchive &archive, MemoryAccount &memory, const QString &subject,
                  ImageStore &store)
        : m_archive(archive)
        , m_memory(memory)
        , m_subject(subject)
        , m_store(store)
    {
    }

    void readObject(const QJsonObject &state, const QString &where);
    QStringList warnings() const;

private:
    void readFrame(const QJsonObject &image, const QString &where);
    const StoredPicture &stored(const QString &digest);
    StoredPicture read(const QString &digest);
    void countOncePerObject(const QString &digest, qint64 decodedBytes);
    void count(qint64 decodedBytes);
    void warn(const QString &what);

    const DocumentArchive &m_archive;
    MemoryAccount &m_memory;
    const QString m_subject;
    ImageStore &m_store;
    QHash<QString, StoredPicture> m_pictures;
    QSet<QString> m_countedOfObject;
    qint64 m_largest = 0;
    QStringList m_warnings;
    int m_unnamedWarnings = 0;
};

void PictureReader::readObject(const QJsonObject &state, const QString &where)
{
    const QJsonArray images = state.value(QLatin1String("ImageList")).toArray();
    m_countedOfObject.clear();
    for (int i = 0; i < images.size(); ++i)
        readFrame(images.at(i).toObject(), QStringLiteral("frame %1 of %2").arg(i + 1).arg(where));
}

void PictureReader::readFrame(const QJsonObject &image, const QString &where)
{
    const QJsonValue digest = image.value(QLatin1String("digest"));
    if (digest.isUndefined()) {
        // A picture within the text itself.
        const QByteArray text = image.value(QLatin1String("png")).toString().toLatin1();
        const auto header = PngHeader::read(QByteArray::fromBase64(text.left(64)));
        if (header)
            count(header->decodedBytes());
        return;
    }
    const StoredPicture &picture = stored(digest.toString());
    if (picture.flaw.isEmpty())
        countOncePerObject(digest.toString(), picture.decodedBytes);
    else
        warn(QStringLiteral("%1 is empty: its picture '%2' is %3")
                 .arg(where, digest.toString(), picture.flaw));
}

const StoredPicture &PictureReader::stored(const QString &digest)
{
    auto known = m_pictures.find(digest);
    if (known == m_pictures.end())
        known = m_pictures.insert(digest, read(digest));
    return *known;
}

StoredPicture PictureReader::read(const QString &digest)
{
    const QByteArray start =
        isDigest(digest) ? m_archive.pictureStart(digest, PngHeader::Length) : QByteArray();
    if (start.isEmpty())
        return {0, QStringLiteral("missing")};
    const StoredPicture damaged = {0, QStringLiteral("damaged")};
    const auto header = PngHeader::read(start);
    if (!header)
        return damaged;
    // Before its bytes are read: too large a picture is refused as such.
    count(header->decodedBytes());
    m_memory.giveBack(header->decodedBytes());
    // A PNG file is never much longer than its pixels.
    constexpr qint64 overhead = qint64(1) << 20;
    const QByteArray png = m_archive.picture(digest, header->decodedBytes() * 2 + overhead);
    return m_store.addPng(digest, png) ? StoredPicture{header->decodedBytes(), QString()} : damaged;
}

// Frames of one object that show the same picture share its pixels.
void PictureReader::countOncePerObject(const QString &digest, qint64 decodedBytes)
{
    if (m_countedOfObject.contains(digest))
        return;
    m_countedOfObject.insert(digest);
    count(decodedBytes);
}

void PictureReader::count(qint64 decodedBytes)
{
    // The decoder holds one more while it works.
    m_largest = std::max(m_largest, decodedBytes);
    m_memory.take(decodedBytes);
    if (!m_memory.hasRoomFor(m_largest))
        throw OverBudget{
            {m_subject,
             QStringLiteral("its pictures would need more memory than the %1 that "
                            "--max-memory allows, %2 for one alone")
                 .arg(MemoryBudget::text(m_memory.limit()), MemoryBudget::text(m_largest))},
            m_memory.taken()};
}

void PictureReader::warn(const QString &what)
{
    if (m_warnings.size() < MaxWarnings)
        m_warnings << what;
    else
        ++m_unnamedWarnings;
}

QStringList PictureReader::warnings() const
{
    if (m_unnamedWarnings == 0)
        return m_warnings;
    return m_warnings +
           QStringList(QStringLiteral("%1 more frames are empty").arg(m_unnamedWarnings));
}

} // namespace

QStringList readPictures(const DocumentArchive &archive, const QVector<PageForm> &pages,
                         MemoryAccount &memory, const QString &subject, ImageStore &store)
{
    PictureReader reader(archive, memory, subject, store);
    for (int page = 0; page < pages.size(); ++page) {
        const QVector<ObjectForm> &objects = pages.at(page).objects;
        for (int object = 0; object < objects.size(); ++object)
            reader.readObject(objects.at(object).state,
                              QStringLiteral("object %1 of page %2").arg(object + 1).arg(page + 1));
    }
    return reader.warnings();
}
