#include "framework/imagestore.h"

#include "framework/encodeahead.h"
#include "framework/picturecodec.h"
#include "framework/samepixels.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QSet>

#include <algorithm>

namespace
{

QString digestOf(const QByteArray &png)
{
    return QString::fromLatin1(QCryptographicHash::hash(png, QCryptographicHash::Md5).toHex());
}

} // namespace

QString ImageStore::add(const QImage &image)
{
    const auto known = m_known.find(image.cacheKey());
    if (known != m_known.end()) {
        known->use = m_use;
        m_files[known->digest].use = m_use;
        return known->digest;
    }
    const QString digest = addEncoded(image, PictureCodec::encode(image));
    if (!digest.isEmpty())
        m_files[digest].use = m_use;
    return digest;
}

void ImageStore::addAhead(const QList<QImage> &images)
{
    QList<QImage> known;
    QList<QImage> unknown;
    QSet<qint64> keys;
    for (const QImage &image : images) {
        if (image.isNull() || keys.contains(image.cacheKey()))
            continue;
        keys.insert(image.cacheKey());
        (m_known.contains(image.cacheKey()) ? known : unknown).append(image);
    }
    // A copy of a frame has pixels of its own, with which its file would be the same.
    if (!known.isEmpty() && !unknown.isEmpty())
        unknown = recognised(unknown, SamePixels(known));
    // Each takes a few copies of its picture.
    encodeAhead(unknown, PictureCodec::encode, [&](int index, const QByteArray &png) {
        return !addEncoded(unknown.at(index), png).isEmpty();
    });
}

/// Gives those of @p images whose pixels are in @p known the digest of these, and returns the rest.
QList<QImage> ImageStore::recognised(const QList<QImage> &images, const SamePixels &known)
{
    QList<QImage> rest;
    for (const QImage &image : images) {
        if (const QImage *same = known.find(image))
            m_known.insert(image.cacheKey(), {m_known.value(same->cacheKey()).digest, m_use});
        else
            rest.append(image);
    }
    return rest;
}

/// Keeps @p png, the file of @p image, and returns its digest; an empty one if it was not kept.
QString ImageStore::addEncoded(const QImage &image, const QByteArray &png)
{
    if (png.isEmpty())
        return {};
    const QString digest = digestOf(png);
    if (!keep(digest, png))
        return {};
    m_known.insert(image.cacheKey(), {digest, m_use});
    return digest;
}

bool ImageStore::keep(const QString &digest, const QByteArray &png)
{
    if (m_files.contains(digest))
        return true;
    if (png.size() > m_capacity - m_byteCount) {
        m_overflowed = true;
        return false;
    }
    m_files.insert(digest, {png});
    m_byteCount += png.size();
    return true;
}

bool ImageStore::addPng(const QString &digest, const QByteArray &bytes)
{
    return !bytes.isEmpty() && digestOf(bytes) == digest && keep(digest, bytes);
}

QImage ImageStore::image(const QString &digest) const
{
    const PictureCodec::Decoded decoded = PictureCodec::decode(m_files.value(digest).bytes);
    // A file of another program is encoded again if added, so that equal pixels have equal bytes.
    if (decoded.isOwn)
        m_known.insert(decoded.image.cacheKey(), {digest, m_use});
    return decoded.image;
}

QByteArray ImageStore::png(const QString &digest) const
{
    return m_files.value(digest).bytes;
}

bool ImageStore::contains(const QString &digest) const
{
    return m_files.contains(digest);
}

QList<QString> ImageStore::digests() const
{
    QList<QString> digests = m_files.keys();
    std::sort(digests.begin(), digests.end());
    return digests;
}

void ImageStore::setCapacity(qint64 bytes)
{
    m_capacity = bytes;
    m_overflowed = false;
}

bool ImageStore::hasOverflowed() const
{
    return m_overflowed;
}

qint64 ImageStore::byteCount() const
{
    return m_byteCount;
}

void ImageStore::remove(const QString &digest)
{
    m_byteCount -= m_files.take(digest).bytes.size();
    forgetDropped();
}

void ImageStore::clear()
{
    m_files.clear();
    m_byteCount = 0;
    forgetDropped();
}

void ImageStore::beginUse()
{
    ++m_use;
}

void ImageStore::dropUnused()
{
    for (auto file = m_files.begin(); file != m_files.end();) {
        if (file->use == m_use) {
            ++file;
            continue;
        }
        m_byteCount -= file->bytes.size();
        file = m_files.erase(file);
    }
    for (auto known = m_known.begin(); known != m_known.end();)
        known = known->use == m_use ? std::next(known) : m_known.erase(known);
    forgetDropped();
}

/// Forgets the digests of pictures that are not in the store any more.
void ImageStore::forgetDropped()
{
    for (auto known = m_known.begin(); known != m_known.end();)
        known = m_files.contains(known->digest) ? std::next(known) : m_known.erase(known);
}
