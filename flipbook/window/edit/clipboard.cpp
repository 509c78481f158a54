#include "flipbook/window/edit/clipboard.h"

#include "flipbook/base/pngencoder.h"
#include "framework/document.h"
#include "host/baseobject.h"

#include <QtCore/QDataStream>
#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionGraphicsItem>

namespace
{

const QLatin1String ObjectsFormat("application/x-flipbook-objects");
const QLatin1String FramesFormat("application/x-flipbook-encoded-frames");
constexpr quint32 MaxObjects = 10000;
constexpr quint32 MaxFrames = 20000;
constexpr double MostPixels = 1 << 26;

void prepare(QDataStream &stream)
{
    stream.setVersion(QDataStream::Qt_5_15);
}

const QMimeData *content()
{
    return QGuiApplication::clipboard()->mimeData();
}

/// The objects as they are seen, on nothing.
QImage pictureOf(const QList<CBaseObject *> &objects)
{
    QRectF bounds;
    for (const CBaseObject *object : objects)
        bounds |= object->mapRectToScene(object->getClientRect());
    if (bounds.isEmpty() || bounds.width() * bounds.height() > MostPixels)
        return QImage();
    QImage picture(bounds.size().toSize().expandedTo(QSize(1, 1)), QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (CBaseObject *object : objects) {
        painter.setTransform(object->sceneTransform() *
                             QTransform::fromTranslate(-bounds.x(), -bounds.y()));
        QStyleOptionGraphicsItem option;
        object->paint(&painter, &option, nullptr);
    }
    return picture;
}

} // namespace

void Clipboard::copyObjects(Document &document, const QList<CBaseObject *> &objects)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    prepare(stream);
    stream << quint32(objects.size());
    // Whoever pastes has no store of this document's pictures.
    document.setKeepsImagesInline(true);
    for (CBaseObject *object : objects) {
        QByteArray form;
        QDataStream formStream(&form, QIODevice::WriteOnly);
        prepare(formStream);
        object->save(formStream);
        stream << form;
    }
    document.setKeepsImagesInline(false);
    auto *data = new QMimeData;
    data->setData(ObjectsFormat, bytes);
    data->setImageData(pictureOf(objects));
    QGuiApplication::clipboard()->setMimeData(data);
}

std::vector<OwnedObject> Clipboard::objects(const Plugin &plugin)
{
    std::vector<OwnedObject> objects;
    if (!content())
        return objects;
    const QByteArray bytes = content()->data(ObjectsFormat);
    QDataStream stream(bytes);
    prepare(stream);
    quint32 count = 0;
    stream >> count;
    for (quint32 i = 0; i < qMin(count, MaxObjects); ++i) {
        QByteArray form;
        stream >> form;
        if (stream.status() != QDataStream::Ok)
            break;
        OwnedObject object = plugin.createObject();
        QDataStream formStream(form);
        prepare(formStream);
        object->load(formStream);
        if (AnimatedObject(*object).frameCount() > 0)
            objects.push_back(std::move(object));
    }
    return objects;
}

void Clipboard::copyFrames(const Plugin::Frames &frames)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    prepare(stream);
    stream << quint32(frames.size());
    for (const auto &frame : frames)
        stream << frame.first << encodedPng(frame.second);
    auto *data = new QMimeData;
    data->setData(FramesFormat, bytes);
    if (!frames.isEmpty())
        data->setImageData(frames.first().second);
    QGuiApplication::clipboard()->setMimeData(data);
}

QVector<EncodedFrame> Clipboard::frames()
{
    QVector<EncodedFrame> frames;
    if (!content())
        return frames;
    const QByteArray bytes = content()->data(FramesFormat);
    QDataStream stream(bytes);
    prepare(stream);
    quint32 count = 0;
    stream >> count;
    for (quint32 i = 0; i < qMin(count, MaxFrames); ++i) {
        EncodedFrame frame;
        stream >> frame.name >> frame.picture;
        if (stream.status() != QDataStream::Ok)
            break;
        frames.append(frame);
    }
    return frames;
}
