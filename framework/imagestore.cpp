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
    const QByteArray png = PictureCodec::encode(image);
    if (png.isEmpty())
        return {};
    const QString digest = digestOf(png);
    m_pngs.insert(digest, png);
    return digest;
}

bool ImageStore::addPng(const QString &digest, const QByteArray &bytes)
{
    if (bytes.isEmpty() || digestOf(bytes) != digest)
        return false;
    m_pngs.insert(digest, bytes);
    return true;
}

QImage ImageStore::image(const QString &digest) const
{
    return PictureCodec::decode(m_pngs.value(digest));
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

void ImageStore::remove(const QString &digest)
{
    m_pngs.remove(digest);
}

void ImageStore::clear()
{
    m_pngs.clear();
}
