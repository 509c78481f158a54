#include "tests/scratch/packages/exporter/expectation.h"

#include "flipbook/base/failure.h"
#include "tests/scratch/packages/exporter/expectedpictures.h"

#include <QtCore/QCryptographicHash>
#include <QtGui/QTransform>

#include <cmath>

namespace
{

constexpr double stageWidth = 480.0;
constexpr double stageHeight = 360.0;
constexpr double pixelsPerUnit = 2.0;
constexpr double negligible = 1e-6;

double scaleTo(const QRectF &stage)
{
    return qMin(stageWidth / stage.width(), stageHeight / stage.height());
}

QPointF pointOf(const QJsonObject &json, const char *x, const char *y)
{
    return {json.value(QLatin1String(x)).toDouble(), json.value(QLatin1String(y)).toDouble()};
}

double turnOf(const QJsonObject &sprite)
{
    return sprite.value(QLatin1String("direction")).toDouble() - 90.0;
}

/// Where Scratch draws @p pixel of a costume, in stage units with y down.
QPointF drawnAt(const QPointF &pixel, const QJsonObject &costume, const QJsonObject &sprite)
{
    const QPointF place = pointOf(sprite, "x", "y");
    const double size = sprite.value(QLatin1String("size")).toDouble() / 100.0;
    const QPointF offset = pixel - pointOf(costume, "rotationCenterX", "rotationCenterY");
    return QPointF(place.x(), -place.y()) +
           QTransform().rotate(turnOf(sprite)).map(offset) * size / pixelsPerUnit;
}

void demand(bool holds, const QString &subject, const QString &reason)
{
    if (!holds)
        throw Failure{subject, reason};
}

/// The two pixels of a picture that show the corners of a frame, in the frame's own order.
QPair<QPointF, QPointF> cornersIn(const QSize &picture, const QSizeF &frame, const QSizeF &largest,
                                  double density, const CBaseObject &object)
{
    // Frames are in the middle of the canvas, which may have lost a fraction of a pixel.
    const QPointF middle = QPointF(largest.width(), largest.height()) * density / 2.0;
    const QPointF half = QPointF(frame.width(), frame.height()) * density / 2.0;
    QPointF first = middle - half;
    QPointF last = middle + half;
    if (object.isMirrored()) {
        first.setX(picture.width() - first.x());
        last.setX(picture.width() - last.x());
    }
    if (object.isFlipped()) {
        first.setY(picture.height() - first.y());
        last.setY(picture.height() - last.y());
    }
    return {first, last};
}

/// The corners of the object on its page while it shows a frame of @p size, in stage units with y
/// down; painted, so that mirror and flip exchange them.
QPair<QPointF, QPointF> cornersOn(const QRectF &stage, const QSizeF &size, CBaseObject &object)
{
    const QPointF center = object.CGDRootObject::getPos() +
                           QPointF(object.getSize().width(), object.getSize().height()) / 2.0;
    const QPointF half = QPointF(object.isMirrored() ? -size.width() : size.width(),
                                 object.isFlipped() ? -size.height() : size.height()) /
                         2.0;
    const QTransform turn = QTransform().rotate(object.getRotate());
    const auto toStage = [&](const QPointF &point) {
        return (point - stage.center()) * scaleTo(stage);
    };
    return {toStage(center - turn.map(half)), toStage(center + turn.map(half))};
}

bool isNear(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y()) < negligible;
}

QString text(const QPointF &point)
{
    return QStringLiteral("(%1, %2)").arg(point.x()).arg(point.y());
}

/// The costume that should arrive, after its picture and place were compared.
QJsonObject expectedCostume(const PackageFile &package, const QJsonObject &sprite,
                            const QJsonObject &costume, const FramePicture &frame,
                            const QPair<QPointF, QPointF> &corners, const CBaseObject &object)
{
    const QString file = costume.value(QLatin1String("md5ext")).toString();
    const QByteArray png = package.files.value(file);
    const QImage picture = QImage::fromData(png, "PNG");
    const QString difference = differenceOf(picture, frame, object);
    demand(difference.isEmpty(), file, difference);

    const auto pixels = cornersIn(picture.size(), frame.size, frame.largest, frame.density, object);
    const QPointF first = drawnAt(pixels.first, costume, sprite);
    const QPointF last = drawnAt(pixels.second, costume, sprite);
    demand(isNear(first, corners.first) && isNear(last, corners.second), file,
           QStringLiteral("lies from %1 to %2 on the stage, its frame from %3 to %4")
               .arg(text(first), text(last), text(corners.first), text(corners.second)));

    const QByteArray digest = QCryptographicHash::hash(png, QCryptographicHash::Md5).toHex();
    return {
        {QStringLiteral("assetId"), QString::fromLatin1(digest)},
        {QStringLiteral("width"), picture.width()},
        {QStringLiteral("height"), picture.height()},
        {QStringLiteral("rotationCenterX"), costume.value(QLatin1String("rotationCenterX"))},
        {QStringLiteral("rotationCenterY"), costume.value(QLatin1String("rotationCenterY"))},
    };
}

QJsonArray expectedCostumes(const PackageFile &package, const QJsonObject &sprite,
                            const ExpectedSprite &expected, const QRectF &stage)
{
    CBaseObject &object = *expected.object;
    const AnimatedObject animated(object);
    const QVector<FramePicture> frames = framePictures(object, scaleTo(stage));
    const QJsonArray found = sprite.value(QLatin1String("costumes")).toArray();
    demand(found.size() == frames.size(), expected.name,
           QStringLiteral("has %1 costumes, not %2").arg(found.size()).arg(frames.size()));
    QJsonArray costumes;
    for (int i = 0; i < frames.size(); ++i) {
        QJsonObject costume = expectedCostume(
            package, sprite, found.at(i).toObject(), frames.at(i),
            cornersOn(stage, frames.at(i).size * frames.at(i).shownScale, object), object);
        costume[QStringLiteral("name")] =
            expected.costumeNames.isEmpty() ? animated.frameName(i) : expected.costumeNames.at(i);
        costumes.append(costume);
    }
    return costumes;
}

QJsonObject playOf(const AnimatedObject &animated, const QVector<int> &delaysMs)
{
    QJsonArray delays;
    for (int i = 0; i < animated.frameCount(); ++i)
        delays.append(delaysMs.value(i, animated.intervalMs()));
    return {{QStringLiteral("delaysMs"), delays},
            {QStringLiteral("loopCount"), animated.loopCount()}};
}

QJsonObject expectedSprite(const PackageFile &package, const QJsonObject &sprite,
                           const ExpectedSprite &expected, const QRectF &stage)
{
    const AnimatedObject animated(*expected.object);
    const int shown = animated.shownIndex();
    const QJsonArray costumes = expectedCostumes(package, sprite, expected, stage);
    const QPointF place = pointOf(sprite, "x", "y");
    demand(place.x() == std::round(place.x()) && place.y() == std::round(place.y()), expected.name,
           QStringLiteral("stands at %1, which Scratch rounds").arg(text(place)));

    QJsonValue plays;
    if (expected.plays)
        plays = playOf(animated, expected.delaysMs);
    return {
        {QStringLiteral("name"), expected.name},
        {QStringLiteral("x"), place.x()},
        {QStringLiteral("y"), place.y()},
        {QStringLiteral("size"), sprite.value(QLatin1String("size"))},
        {QStringLiteral("direction"), 90.0 + expected.object->getRotate()},
        {QStringLiteral("visible"), true},
        {QStringLiteral("currentCostume"), shown},
        {QStringLiteral("costumes"), costumes},
        {QStringLiteral("plays"), plays},
    };
}

} // namespace

QRectF stageAround(const QRectF &page, bool isDocument)
{
    if (isDocument)
        return page;
    const double width = qMax(stageWidth, page.width());
    const double height = qMax(stageHeight, page.height());
    return {page.center() - QPointF(width, height) / 2.0, QSizeF(width, height)};
}

QJsonObject expectationOf(const PackageFile &package, const QVector<ExpectedSprite> &sprites,
                          const QRectF &stage)
{
    demand(
        package.sprites.size() == sprites.size(), QStringLiteral("the package"),
        QStringLiteral("has %1 sprites, not %2").arg(package.sprites.size()).arg(sprites.size()));
    QJsonArray list;
    for (int i = 0; i < sprites.size(); ++i)
        list.append(
            expectedSprite(package, package.sprites.at(i).toObject(), sprites.at(i), stage));
    return {{QStringLiteral("sprites"), list}};
}
