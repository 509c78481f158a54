#include "flipbook/object/streamform.h"

#include "flipbook/object/framesupply.h"
#include "framework/document.h"

#include <QtCore/QDataStream>
#include <QtCore/QtEndian>

#include <new>

namespace
{

constexpr QDataStream::Version Version = QDataStream::Qt_5_15;

/// What follows the pictures: interval and loop count of four bytes each, and five flags.
constexpr int SettingsLength = 13;

/// The length of the PNG file that begins at @p start in @p bytes; 0 if there is none that ends.
int pngLength(const QByteArray &bytes, qint64 start)
{
    static const QByteArray signature = QByteArray::fromHex("89504e470d0a1a0a");
    constexpr int frameLength = 12; // length, type and check sum
    if (bytes.mid(int(start), signature.size()) != signature)
        return 0;
    qint64 at = start + signature.size();
    while (at + frameLength <= bytes.size()) {
        const QByteArray type = bytes.mid(int(at) + 4, 4);
        at += frameLength + qint64(qFromBigEndian<quint32>(bytes.constData() + at));
        if (type == "IEND")
            return at <= bytes.size() ? int(at - start) : 0;
    }
    return 0;
}

/// Reads the list of pictures in @p form from the position of @p stream. False if it is damaged.
bool readPictures(const QByteArray &form, QDataStream &stream, QVector<QByteArray> &pictures)
{
    quint32 count = 0;
    stream >> count;
    for (quint32 i = 0; i < count; ++i) {
        qint32 marker = 0;
        stream >> marker;
        if (stream.status() != QDataStream::Ok)
            return false;
        const qint64 start = stream.device()->pos();
        const int length = marker == 0 ? 0 : pngLength(form, start);
        if (marker != 0 && length == 0)
            return false;
        pictures.append(form.mid(int(start), length));
        stream.skipRawData(length);
    }
    return stream.status() == QDataStream::Ok;
}

} // namespace

QByteArray StreamForm::written(Document &document, CBaseObject &object)
{
    QByteArray form;
    QDataStream stream(&form, QIODevice::WriteOnly);
    stream.setVersion(Version);
    // Whoever reads it has no store of this document's pictures.
    const bool keptInline = document.keepsImagesInline();
    document.setKeepsImagesInline(true);
    object.save(stream);
    document.setKeepsImagesInline(keptInline);
    return form;
}

std::optional<StreamForm> StreamForm::read(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(Version);
    quint32 baseLength = 0;
    stream >> baseLength;
    if (stream.skipRawData(int(baseLength)) != int(baseLength))
        return std::nullopt;
    bool isReference = false;
    stream >> isReference;
    if (stream.status() != QDataStream::Ok || isReference)
        return std::nullopt;
    StreamForm form;
    form.state = bytes.left(int(stream.device()->pos()));
    if (!readPictures(bytes, stream, form.pictures))
        return std::nullopt;
    const QByteArray settings = bytes.mid(int(stream.device()->pos()));
    form.state += settings;
    return settings.size() < SettingsLength ? std::nullopt : std::optional<StreamForm>(form);
}

OwnedObject StreamForm::object(const Plugin &plugin, const QList<QImage> &decoded) const
{
    OwnedObject object = plugin.createObject();
    QDataStream stream(state);
    stream.setVersion(Version);
    if (!FrameSupply::load(*object, stream, decoded))
        throw std::bad_alloc();
    return object;
}
