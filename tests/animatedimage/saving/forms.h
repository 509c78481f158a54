#pragma once

#include "animatedimage/object/animatedimage.h"
#include "framework/document.h"
#include "framework/page.h"
#include "tests/support/probe.h"

#include <QtCore/QDataStream>
#include <QtCore/QJsonObject>

/// Saving and loading in a line.
namespace Forms
{

inline QByteArray saved(CAnimatedImage &image)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    image.save(stream);
    return bytes;
}

/// What the base class alone writes of an object that was saved before.
inline QByteArray savedBase(CAnimatedImage &image)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    image.CBaseObject::save(stream);
    return bytes;
}

/// What the object writes after the base's part, in hexadecimal digits.
inline QByteArray savedTail(CAnimatedImage &image)
{
    const QByteArray whole = saved(image);
    return whole.mid(savedBase(image).size()).toHex();
}

inline bool load(CAnimatedImage &image, const QByteArray &bytes)
{
    QDataStream stream(bytes);
    return image.load(stream);
}

inline QJsonObject savedJson(CAnimatedImage &image)
{
    QJsonObject json;
    image.saveJson(json);
    return json;
}

} // namespace Forms

/// A document whose pictures travel as the text "store", and whose file references all lead to one
/// file: what a host's own encoding may look like.
class StoreDocument : public Document
{
public:
    bool keepsImagesInline() const override { return isInline; }

    void streamImageList(QDataStream &stream, QList<QImage> &images, QStringList &names,
                         QStringList &files, bool saving) override
    {
        scratchWasEmpty = names.isEmpty() && files.isEmpty();
        if (saving) {
            written = images;
            stream.writeRawData("store", 5);
            return;
        }
        QByteArray marker(5, '\0');
        stream.readRawData(marker.data(), marker.size());
        isMarkerFound = marker == "store";
        images = written;
    }

    void streamFileReference(QDataStream &stream, QString &path, QString &scratch,
                             bool saving) override
    {
        scratchWasEmpty = scratch.isEmpty() && !saving;
        QByteArray marker(4, '\0');
        stream.readRawData(marker.data(), marker.size());
        isMarkerFound = marker == "file";
        path = referredFile;
    }

    void jsonFileReference(QJsonObject &json, QString &path, const QString &key,
                           bool saving) override
    {
        isMarkerFound = !saving && json.contains(key);
        referenceKey = key;
        path = referredFile;
    }

    bool isInline = false;
    bool scratchWasEmpty = false;
    bool isMarkerFound = false;
    QString referenceKey;
    QString referredFile;
    QList<QImage> written;
};

/// An animated image on the page of a StoreDocument, which owns it.
struct StoredObject {
    StoredObject()
        : image(new CAnimatedImage(1, true, nullptr))
        , probe(*image)
    {
        document.addPage(QRectF(0, 0, 800, 600))->addObject(image);
    }

    StoreDocument document;
    CAnimatedImage *image;
    AnimatedImageProbe probe;
};
