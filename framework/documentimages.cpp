#include "framework/bytestream.h"
#include "framework/document.h"
#include "framework/picturecodec.h"

#include <QtCore/QDataStream>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

namespace
{

/// How a picture is stored in a stream, before a block with its content. An unknown kind, of a
/// later version perhaps, is passed over by its block.
enum class Kind : quint8 {
    Null = 0,
    Png = 1,
    Digest = 2,
};

const QLatin1String PngMember("png");
const QLatin1String DigestMember("digest");

} // namespace

void Document::streamImageList(QDataStream &stream, QList<QImage> &images, QStringList &,
                               QStringList &, bool saving)
{
    if (saving)
        writeImages(stream, m_omitsPictures ? QList<QImage>() : images);
    else
        images = readImages(stream);
}

void Document::writeImages(QDataStream &stream, const QList<QImage> &images)
{
    stream << quint32(images.size());
    if (!m_keepsImagesInline)
        m_imageStore.addAhead(images);
    // Pictures that share their pixels are encoded once.
    QHash<qint64, QByteArray> encoded;
    for (const QImage &image : images) {
        auto known = encoded.find(image.cacheKey());
        if (known == encoded.end())
            known = encoded.insert(image.cacheKey(), m_keepsImagesInline
                                                         ? PictureCodec::encode(image)
                                                         : m_imageStore.add(image).toLatin1());
        const QByteArray &content = *known;
        const Kind kind = m_keepsImagesInline ? Kind::Png : Kind::Digest;
        stream << quint8(content.isEmpty() ? Kind::Null : kind);
        ByteStream::writeBlock(stream, content);
    }
}

QList<QImage> Document::readImages(QDataStream &stream)
{
    quint32 count = 0;
    stream >> count;
    QList<QImage> images;
    Decoded decoded;
    for (quint32 i = 0; i < count; ++i) {
        quint8 kind = 0;
        stream >> kind;
        const QByteArray content = ByteStream::readBlock(stream);
        if (stream.status() != QDataStream::Ok)
            break;
        if (kind == quint8(Kind::Png))
            images.append(PictureCodec::decode(content).image);
        else if (kind == quint8(Kind::Digest))
            images.append(storedImage(QString::fromLatin1(content), decoded));
        else
            images.append(QImage());
    }
    return images;
}

void Document::jsonImageList(QJsonObject &json, QList<QImage> &images, const QString &key,
                             bool saving)
{
    if (saving && m_omitsPictures) {
        json.insert(key, QJsonArray());
        return;
    }
    if (saving) {
        if (!m_keepsImagesInline)
            m_imageStore.addAhead(images);
        QJsonArray elements;
        QHash<qint64, QJsonValue> encoded;
        for (const QImage &image : std::as_const(images)) {
            auto known = encoded.find(image.cacheKey());
            if (known == encoded.end())
                known = encoded.insert(image.cacheKey(), jsonImage(image));
            elements.append(*known);
        }
        json.insert(key, elements);
        return;
    }
    images.clear();
    Decoded decoded;
    const QJsonArray elements = json.value(key).toArray();
    for (const QJsonValue &element : elements)
        images.append(imageOfJson(element.toObject(), decoded));
}

QJsonValue Document::jsonImage(const QImage &image)
{
    if (image.isNull())
        return QJsonValue::Null;
    if (!m_keepsImagesInline)
        return QJsonObject{{DigestMember, m_imageStore.add(image)}};
    return QJsonObject{{PngMember, QString::fromLatin1(PictureCodec::encode(image).toBase64())}};
}

QImage Document::imageOfJson(const QJsonObject &json, Decoded &decoded)
{
    if (json.contains(DigestMember))
        return storedImage(json.value(DigestMember).toString(), decoded);
    // Strict: what is not the text of a picture would hide one from whoever looks at it before.
    const auto png = QByteArray::fromBase64Encoding(json.value(PngMember).toString().toLatin1(),
                                                    QByteArray::AbortOnBase64DecodingErrors);
    return png ? PictureCodec::decode(*png).image : QImage();
}

QImage Document::storedImage(const QString &digest, Decoded &decoded)
{
    const auto known = decoded.constFind(digest);
    if (known != decoded.constEnd())
        return *known;
    const QImage image = m_imageStore.image(digest);
    if (image.isNull() && !m_missingPictures.contains(digest))
        m_missingPictures.append(digest);
    decoded.insert(digest, image);
    return image;
}

QStringList Document::missingPictures() const
{
    return m_missingPictures;
}
