#include "flipbook/window/edit/clipboard.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/pngencoder.h"
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
constexpr double MostPixels = 1 << 26;

void prepare(QDataStream &stream)
{
    stream.setVersion(QDataStream::Qt_5_15);
}

const QMimeData *content()
{
    return QGuiApplication::clipboard()->mimeData();
}

bool holds(const QLatin1String &format)
{
    return content() && content()->hasFormat(format);
}

/// Lets @p read take each element of a counted list from the clipboard; it answers whether the
/// element is sound. @throw Failure unless as many are there as it says, one at least.
template<typename Read>
void readList(const QLatin1String &format, const Read &read)
{
    const QByteArray bytes = content() ? content()->data(format) : QByteArray();
    QDataStream stream(bytes);
    prepare(stream);
    quint32 count = 0;
    stream >> count;
    bool isSound = count > 0;
    for (quint32 i = 0; isSound && i < count; ++i)
        isSound = read(stream) && stream.status() == QDataStream::Ok;
    if (!isSound || !stream.atEnd())
        throw Failure{FilmReader::clipboardName(),
                      FilmReader::tr("its content is damaged, and nothing was pasted")};
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
    for (CBaseObject *object : objects)
        stream << StreamForm::written(document, *object);
    auto *data = new QMimeData;
    data->setData(ObjectsFormat, bytes);
    data->setImageData(pictureOf(objects));
    QGuiApplication::clipboard()->setMimeData(data);
}

bool Clipboard::holdsObjects()
{
    return holds(ObjectsFormat);
}

QVector<StreamForm> Clipboard::objects()
{
    QVector<StreamForm> objects;
    readList(ObjectsFormat, [&objects](QDataStream &stream) {
        QByteArray bytes;
        stream >> bytes;
        const std::optional<StreamForm> form = StreamForm::read(bytes);
        objects.append(form.value_or(StreamForm()));
        return form.has_value();
    });
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

bool Clipboard::holdsFrames()
{
    return holds(FramesFormat);
}

QVector<EncodedFrame> Clipboard::frames()
{
    QVector<EncodedFrame> frames;
    readList(FramesFormat, [&frames](QDataStream &stream) {
        EncodedFrame frame;
        stream >> frame.name >> frame.picture;
        frames.append(frame);
        return true;
    });
    return frames;
}
