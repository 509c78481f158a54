#include "framework/imagestore.h"

#include "framework/picturecodec.h"

#include <QtCore/QCryptographicHash>

namespace
{

QString digestOf(const QByteArray &png)
{
    return QString::fromLatin1(QCryptographicHash::hash(png, QCryptographicHash::Md5).toHex());
}

} // namespace

QString ImageStore::add(const QImage &image)
{
    const auto known = m_known.constFind(image.cacheKey());
    if (known != m_known.constEnd()) {
        m_used.insert(*known);
        return *known;
    }
    const QByteArray png = PictureCodec::encode(image);
    if (png.isEmpty())
        return {};
    const QString digest = digestOf(png);
    if (!keep(digest, png))
        return {};
    m_known.insert(image.cacheKey(), digest);
    m_used.insert(digest);
    return digest;
}

bool ImageStore::keep(const QString &digest, const QByteArray &png)
{
    if (m_pngs.contains(digest))
        return true;
    if (png.size() > m_capacity - m_byteCount) {
        m_overflowed = true;
        return false;
    }
    m_pngs.insert(digest, png);
    m_byteCount += png.size();
    return true;
}

bool ImageStore::addPng(const QString &digest, const QByteArray &bytes)
{
    return !bytes.isEmpty() && digestOf(bytes) == digest && keep(digest, bytes);
}

QImage ImageStore::image(const QString &digest) const
{
    const PictureCodec::Decoded decoded = PictureCodec::decode(m_pngs.value(digest));
    // A file of another program is encoded again if added, so that equal pixels have equal bytes.
    if (decoded.isOwn)
        m_known.insert(decoded.image.cacheKey(), digest);
    return decoded.image;
}

QByteArray ImageStore::png(const QString &digest) const
{
    return m_pngs.value(digest);
}

bool ImageStore::contains(const QString &digest) const
{
    return m_pngs.contains(digest);
}

QList<QString> ImageStore::digests() const
{
    return m_pngs.keys();
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
    m_byteCount -= m_pngs.take(digest).size();
    forgetDropped();
}

void ImageStore::clear()
{
    m_pngs.clear();
    m_byteCount = 0;
    forgetDropped();
}

void ImageStore::beginUse()
{
    m_used.clear();
}

void ImageStore::dropUnused()
{
    for (auto png = m_pngs.begin(); png != m_pngs.end();) {
        if (m_used.contains(png.key())) {
            ++png;
            continue;
        }
        m_byteCount -= png->size();
        png = m_pngs.erase(png);
    }
    forgetDropped();
}

/// Forgets the digests of pictures that are not in the store any more.
void ImageStore::forgetDropped()
{
    for (auto known = m_known.begin(); known != m_known.end();)
        known = m_pngs.contains(known.value()) ? std::next(known) : m_known.erase(known);
}
