#include "flipbook/document/documentpictures.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/saturating.h"
#include "flipbook/base/warninglimit.h"
#include "flipbook/document/documentarchive.h"
#include "flipbook/import/pngchunks.h"
#include "flipbook/import/pngheader.h"
#include "flipbook/object/formkeys.h"
#include "framework/imagestore.h"

#include <QtCore/QBuffer>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>

#include <algorithm>

namespace
{

constexpr int DigestLength = 32;
constexpr int DeepPixelBytes = 8;

/// A PNG file of the document, before it is decoded.
struct StoredPicture {
    qint64 pixelBytes = 0; ///< of the decoded picture
    qint64 workBytes = 0;  ///< what decoding also takes
    QString flaw;          ///< why it cannot be shown; empty when it can
    int countedFor = 0;    ///< the number of the last object for which it was counted
};

/// What decoding takes in addition to the picture: the picture as the file carries it, and one more
/// where its pixel format changes.
qint64 workBytesOf(qint64 pixelBytes, const PngChunks &chunks)
{
    constexpr qint64 bytesPerTextByte = 6;
    return Saturating::sum(Saturating::product(2, pixelBytes),
                           Saturating::product(bytesPerTextByte, chunks.textBytes));
}

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

    void readObject(QJsonObject &state, const QString &where);
    QStringList warnings() const;

private:
    bool readFrame(const QJsonObject &image, const QString &where);
    StoredPicture inlinePicture(const QString &text) const;
    StoredPicture &stored(const QString &digest);
    StoredPicture read(const QString &digest);
    StoredPicture examined(const QByteArray &png) const;
    void countOncePerObject(StoredPicture &picture);
    void count(const StoredPicture &picture);
    void require(qint64 bytes) const;
    void warn(const QString &what);

    const DocumentArchive &m_archive;
    MemoryAccount &m_memory;
    const QString m_subject;
    ImageStore &m_store;
    QHash<QString, StoredPicture> m_pictures;
    int m_objectNumber = 0;
    qint64 m_work = 0; ///< the most that decoding takes in addition to what is kept
    QStringList m_warnings;
    int m_unnamedWarnings = 0;
};

// Frames whose picture cannot be used become empty.
void PictureReader::readObject(QJsonObject &state, const QString &where)
{
    QJsonArray images = state.value(FormKey::ImageList).toArray();
    bool isChanged = false;
    ++m_objectNumber;
    m_memory.require(images.size() * MemoryBudget::BytesPerFrame, m_subject,
                     QStringLiteral("%1 frames").arg(images.size()));
    m_memory.take(images.size() * MemoryBudget::BytesPerFrame);
    for (int i = 0; i < images.size(); ++i) {
        if (images.at(i).isNull())
            continue;
        const QString frame = QStringLiteral("frame %1 of %2").arg(i + 1).arg(where);
        if (!readFrame(images.at(i).toObject(), frame)) {
            images[i] = QJsonValue::Null;
            isChanged = true;
        }
    }
    if (isChanged)
        state.insert(FormKey::ImageList, images);
}

/// False when the picture must not be decoded.
bool PictureReader::readFrame(const QJsonObject &image, const QString &where)
{
    const QJsonValue digest = image.value(QLatin1String("digest"));
    if (digest.isUndefined()) {
        const StoredPicture picture = inlinePicture(image.value(QLatin1String("png")).toString());
        if (picture.flaw.isEmpty())
            count(picture);
        else
            warn(QStringLiteral("%1 is empty: its picture is %2").arg(where, picture.flaw));
        return picture.flaw.isEmpty();
    }
    const QString name = digest.toString();
    StoredPicture &picture = stored(name);
    if (picture.flaw.isEmpty())
        countOncePerObject(picture);
    else
        warn(QStringLiteral("%1 is empty: its picture '%2' is %3").arg(where, name, picture.flaw));
    return true;
}

/// A picture within the text itself.
StoredPicture PictureReader::inlinePicture(const QString &text) const
{
    const auto decoded =
        QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return {0, 0, QStringLiteral("damaged")};
    return examined(*decoded);
}

StoredPicture &PictureReader::stored(const QString &digest)
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
        return {0, 0, QStringLiteral("missing")};
    // Before its bytes are read: too large a picture is refused as such.
    const auto header = PngHeader::read(start);
    if (header)
        require(header->decodedBytes());
    const QByteArray png = header ? m_archive.picture(digest) : QByteArray();
    StoredPicture picture = examined(png);
    if (picture.flaw.isEmpty() && !m_store.addPng(digest, png))
        picture.flaw = QStringLiteral("damaged");
    if (picture.flaw.isEmpty())
        m_memory.take(png.size());
    return picture;
}

StoredPicture PictureReader::examined(const QByteArray &png) const
{
    const auto header = PngHeader::read(png.left(PngHeader::Length));
    if (!header)
        return {0, 0, QStringLiteral("damaged")};
    QByteArray bytes = png;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const PngChunks chunks = PngChunks::read(buffer, m_memory.limit());
    if (!chunks.isComplete)
        return {0, 0, QStringLiteral("damaged")};
    const qint64 pixels = header->decodedBytes();
    const bool grows = chunks.namesDeepFormat && header->bytesPerPixel < DeepPixelBytes;
    const qint64 pixelBytes = grows ? Saturating::product(2, pixels) : pixels;
    return {pixelBytes, workBytesOf(pixelBytes, chunks), QString()};
}

// Frames of one object that show the same picture share its pixels.
void PictureReader::countOncePerObject(StoredPicture &picture)
{
    if (picture.countedFor == m_objectNumber)
        return;
    picture.countedFor = m_objectNumber;
    count(picture);
}

void PictureReader::count(const StoredPicture &picture)
{
    m_work = std::max(m_work, picture.workBytes);
    require(Saturating::sum(picture.pixelBytes, m_work));
    m_memory.take(picture.pixelBytes);
}

void PictureReader::require(qint64 bytes) const
{
    if (!m_memory.hasRoomFor(bytes))
        throw OverBudget{
            {m_subject,
             QStringLiteral("its pictures would need more memory than the %1 that --max-memory "
                            "allows, %2 for one alone")
                 .arg(MemoryBudget::text(m_memory.limit()), MemoryBudget::text(bytes))},
            bytes};
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

QStringList readPictures(const DocumentArchive &archive, QVector<PageForm> &pages,
                         MemoryAccount &memory, const QString &subject, ImageStore &store)
{
    PictureReader reader(archive, memory, subject, store);
    for (int page = 0; page < pages.size(); ++page) {
        QVector<ObjectForm> &objects = pages[page].objects;
        for (int object = 0; object < objects.size(); ++object)
            reader.readObject(objects[object].state,
                              QStringLiteral("object %1 of page %2").arg(object + 1).arg(page + 1));
    }
    return reader.warnings();
}
