#include "tests/support/usability.h"

#include <QtCore/QJsonObject>
#include <QtGui/QPainter>

#include <cmath>

namespace
{

bool isFinite(const QRectF &rect)
{
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width()) &&
           std::isfinite(rect.height());
}

void look(CAnimatedImage &image, StageDocument &document)
{
    QImage canvas(20, 20, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    const int modeBefore = document.alternateMode();
    for (const int mode : {0, 1}) {
        document.setAlternateMode(mode);
        image.OnQPainterDraw(&painter);
        image.shape();
        image.boundingRect();
    }
    document.setAlternateMode(modeBefore);
}

/// An object like one that was saved.
struct Loaded {
    Loaded()
        : image(new CAnimatedImage(2, true, nullptr))
        , probe(*image)
    {
        document.addPage(QRectF(0.0, 0.0, 800.0, 600.0))->addObject(image);
    }

    Document document;
    CAnimatedImage *image;
    AnimatedImageProbe probe;
};

QByteArray streamed(CAnimatedImage &image)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    return image.save(stream) ? bytes : QByteArray();
}

QString flawOfTheStreamForm(CAnimatedImage &image)
{
    const QByteArray bytes = streamed(image);
    Loaded loaded;
    QDataStream stream(bytes);
    if (bytes.isEmpty() || !loaded.image->load(stream))
        return QStringLiteral("the stream form was not saved or loaded");
    const int frames = AnimatedImageProbe(image).storedFrames().size();
    if (loaded.probe.storedFrames().size() != frames || streamed(*loaded.image) != bytes)
        return QStringLiteral("the stream form has lost something");
    return QString();
}

QString flawOfTheJsonForm(CAnimatedImage &image)
{
    QJsonObject json;
    if (!image.saveJson(json))
        return QStringLiteral("the JSON form was not saved");
    Loaded loaded;
    QJsonObject read = json;
    QJsonObject again;
    if (!loaded.image->loadJson(read) || !loaded.image->saveJson(again))
        return QStringLiteral("the JSON form was not loaded");
    return again == json ? QString() : QStringLiteral("the JSON form has lost something");
}

} // namespace

QString Usability::flaw(CAnimatedImage &image, StageDocument &document)
{
    AnimatedImageProbe probe(image);
    look(image, document);
    if (!isFinite(image.boundingRect()) || !isFinite(probe.rect()))
        return QStringLiteral("the place is not finite");
    if (probe.timer()->isActive() && probe.timer()->interval() <= 0)
        return QStringLiteral("the timer keeps the event loop busy");
    for (int tick = 0; tick < 4; ++tick)
        probe.tick();
    // Both forms tell that a playing object played, and a loaded one has stopped.
    image.playImage(false);
    document.setKeepsImagesInline(true);
    const QString flaw = flawOfTheStreamForm(image);
    return flaw.isEmpty() ? flawOfTheJsonForm(image) : flaw;
}
