#include "flipbook/scratch/spriteexport.h"

#include "flipbook/base/compactpng.h"
#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/saturating.h"
#include "flipbook/object/animatedobject.h"
#include "flipbook/scratch/costumesize.h"
#include "flipbook/scratch/names.h"
#include "flipbook/scratch/picture.h"

#include <QtCore/QFile>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtGui/QPainter>
#include <QtGui/QTransform>

#include <algorithm>
#include <cmath>
#include <functional>

namespace Scratch
{

namespace
{

/// Beyond this Scratch is slow to load a sprite, and may fail to.
constexpr int ManyCostumes = 200;

/// Gives every frame the size that it has during playback: each step scales them all like the
/// frame that was shown.
void settleFrameSizes(AnimatedObject &object)
{
    const int count = object.frameCount();
    const int shown = object.shownIndex();
    if (count < 2)
        return;
    object.showFrame((shown + 1) % count);
    object.showFrame(shown);
}

/// @p costume with a picture of another size.
Costume resized(const Costume &costume, const QSize &size, Qt::TransformationMode mode)
{
    return costumeOf(costume.name, pictureOf(costume).scaled(size, Qt::IgnoreAspectRatio, mode));
}

bool isStretched(const QSizeF &size, const QSize &pixels)
{
    constexpr double visible = 0.01;
    const double wide = size.width() * pixels.height();
    const double high = size.height() * pixels.width();
    return std::abs(wide - high) > visible * qMax(wide, high);
}

/// Puts the middle of a sprite at @p exact. Scratch rounds the places of sprites: what is left over
/// goes into the rotation centres, as the sprite sees it, turned and scaled.
void place(Sprite &sprite, const QPointF &exact)
{
    sprite.place = QPointF(std::round(exact.x()), std::round(exact.y()));
    const QPointF rest(exact.x() - sprite.place.x(), sprite.place.y() - exact.y());
    const double pixelsPerUnit = BitmapResolution * 100.0 / sprite.size;
    const QPointF shift = QTransform().rotate(90.0 - sprite.direction).map(rest) * pixelsPerUnit;
    for (Costume &costume : sprite.costumes)
        costume.rotationCenter -= shift;
}

Playback playbackOf(AnimatedObject &object, const QVector<int> &delaysMs)
{
    Playback playback{object.intervalMs(), object.loopCount(), {}};
    const bool isUneven = std::adjacent_find(delaysMs.cbegin(), delaysMs.cend(),
                                             std::not_equal_to<>()) != delaysMs.cend();
    if (isUneven && delaysMs.size() == object.frameCount())
        playback.delaysMs = delaysMs;
    return playback;
}

QByteArray smallest(const QByteArray &png, const QByteArray &other)
{
    return !other.isEmpty() && other.size() < png.size() ? other : png;
}

/// Whether the PNG file @p bytes was written to its end; on a full disk it was not.
bool isComplete(const QByteArray &bytes)
{
    return bytes.endsWith(QByteArray::fromHex("49454e44ae426082"));
}

} // namespace

SpriteExporter::SpriteExporter(const Plugin &plugin, const StagePlacement &placement,
                               bool withScripts, MemoryAccount &memory)
    : m_plugin(plugin)
    , m_memory(memory)
    , m_placement(placement)
    , m_withScripts(withScripts)
{
}

Sprite SpriteExporter::exported(AnimatedObject &object, const QString &name,
                                const QVector<int> &delaysMs)
{
    if (object.frameCount() == 0)
        throw Failure{name, QStringLiteral("has no frames, and Scratch does not accept a sprite "
                                           "without costumes")};
    requireMemory(object, name);
    settleFrameSizes(object);
    CBaseObject &base = object.base();
    const QSizeF size = base.getSize();

    Sprite sprite;
    sprite.name = Names::sprite(name, m_takenNames);
    sprite.direction = 90.0 + base.getRotate();
    sprite.shownCostume = qBound(0, object.shownIndex(), object.frameCount() - 1);
    sprite.playback = playbackOf(object, delaysMs);
    sprite.hasScript = m_withScripts;
    sprite.size = 100.0 * m_placement.scale();
    const double unitsPerPixel = m_placement.scale() * size.width() / base.getImageSize().width();
    // The stage shows no more than these pixels: twice as many would only take room.
    if (unitsPerPixel * BitmapResolution < 1.0 && !isStretched(size, base.getImageSize())) {
        sprite.costumes = framesOf(object, name);
        sprite.size = 100.0 * unitsPerPixel * BitmapResolution;
    } else {
        sprite.costumes = costumesOf(object, name);
        // A single frame is never resized by a step: its costume may differ from the object.
        const double costumeWidth = sprite.costumes.constFirst().rotationCenter.x();
        if (sprite.costumes.size() == 1 && costumeWidth > 0.0)
            sprite.size *= size.width() / costumeWidth;
    }
    sprite.size *= scalePictures(sprite);
    sprite.size *= shrinkToTexture(sprite);
    place(sprite, m_placement.toStage(QRectF(base.CGDRootObject::getPos(), size).center()));
    if (isStretched(size, base.getImageSize()))
        m_remarks.append(QStringLiteral("%1: is stretched on its page, but Scratch keeps the "
                                        "proportions of its pictures")
                             .arg(sprite.name));
    remarkOnAmount(sprite);
    return sprite;
}

void SpriteExporter::requireMemory(AnimatedObject &object, const QString &name) const
{
    // A costume is drawn, its frame is scaled for it, and it may be mirrored or reduced.
    constexpr qint64 pictures = 4;
    constexpr qint64 bytesPerPixel = 4;
    // They are drawn one after another, but what would take too long is not begun either.
    constexpr qint64 costumesAtOnce = 16;
    QSizeF size = largestCostume(m_plugin, object.base());
    size = size.expandedTo(size * m_pictureScale);
    const double pixels = size.width() * size.height();
    const qint64 bytes = pixels < double(std::numeric_limits<int>::max())
                             ? qint64(pixels) * bytesPerPixel
                             : std::numeric_limits<qint64>::max();
    const int count = object.frameCount();
    const qint64 all = Saturating::product(bytes, count) / costumesAtOnce;
    const QString what = QStringLiteral("%1 of %2 x %3 pixels")
                             .arg(count == 1 ? QStringLiteral("1 costume")
                                             : QStringLiteral("%1 costumes").arg(count))
                             .arg(size.width(), 0, 'f', 0)
                             .arg(size.height(), 0, 'f', 0);
    m_memory.require(std::max(Saturating::product(bytes, pictures), all), name, what);
}

/// The picture of a costume as the object wrote it into @p folder.
QByteArray SpriteExporter::readPicture(const QJsonObject &json, const QString &folder,
                                       const QString &objectName) const
{
    const bool hasDigest = !json.value(QLatin1String("assetId")).toString().isEmpty();
    QFile file(folder + json.value(QLatin1String("md5ext")).toString());
    QByteArray png;
    if (hasDigest && file.open(QIODevice::ReadOnly)) {
        m_memory.require(file.size(), objectName, QStringLiteral("its costumes"));
        png = file.readAll();
    }
    if (!isComplete(png))
        throw Failure{objectName, QStringLiteral("its costumes could not be written")};
    return png;
}

/// The costume of a description, as a small file. A sprite cannot be mirrored or flipped as an
/// object can: its pictures are.
Costume SpriteExporter::costumeAs(const QJsonObject &json, const QByteArray &png,
                                  const CBaseObject &object, const QString &objectName)
{
    const bool isMirrored = object.isMirrored();
    const bool isFlipped = object.isFlipped();
    const QImage picture = QImage::fromData(png, "PNG").mirrored(isMirrored, isFlipped);
    Costume costume;
    if (isMirrored || isFlipped)
        costume = costumeOf(objectName, picture);
    else
        costume = costumeOfPng(objectName, smallest(png, palettePng(picture, PngEffort::Usual)));
    const QPointF center(json.value(QLatin1String("rotationCenterX")).toDouble(),
                         json.value(QLatin1String("rotationCenterY")).toDouble());
    costume.rotationCenter = {isMirrored ? picture.width() - center.x() : center.x(),
                              isFlipped ? picture.height() - center.y() : center.y()};
    count(costume, objectName);
    return costume;
}

/// Counts a costume, and its picture in the package.
void SpriteExporter::count(const Costume &costume, const QString &objectName)
{
    const qint64 bytes = 2 * qint64(costume.png.size());
    m_memory.require(bytes, objectName, QStringLiteral("its costumes"));
    m_memory.take(bytes);
}

/// The frames pixel by pixel, in the middle of pictures of one size.
QVector<Costume> SpriteExporter::framesOf(AnimatedObject &object, const QString &name)
{
    const CBaseObject &base = object.base();
    const Plugin::Frames frames = m_plugin.frames(object.base());
    QSize largest;
    for (const auto &frame : frames)
        largest = largest.expandedTo(frame.second.size());
    QVector<Costume> costumes;
    QSet<QString> takenNames;
    for (const auto &frame : frames) {
        QImage canvas(largest, QImage::Format_ARGB32);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage((largest.width() - frame.second.width()) / 2,
                          (largest.height() - frame.second.height()) / 2, frame.second);
        painter.end();
        Costume costume = costumeOf(name, canvas.mirrored(base.isMirrored(), base.isFlipped()));
        costume.name = Names::costume(frame.first, takenNames);
        count(costume, name);
        costumes.append(costume);
        m_progress(costumes.size(), frames.size());
    }
    return costumes;
}

QVector<Costume> SpriteExporter::costumesOf(AnimatedObject &object, const QString &name)
{
    const QTemporaryDir folder;
    if (!folder.isValid())
        throw Failure{name, folder.errorString()};
    const QString prefix = folder.path() + QLatin1Char('/');

    QVector<Costume> costumes;
    QSet<QString> takenNames;
    const QJsonArray list = object.base().generateCostumesCode(prefix);
    for (const QJsonValue &value : list) {
        const QJsonObject json = value.toObject();
        Costume costume = costumeAs(json, readPicture(json, prefix, name), object.base(), name);
        costume.name = Names::costume(json.value(QLatin1String("name")).toString(), takenNames);
        costumes.append(costume);
        m_progress(costumes.size(), list.size());
    }
    return costumes;
}

/// Gives the pictures the pixels that the user wants; the factor by which the sprite must grow.
/// Whole numbers repeat pixels.
double SpriteExporter::scalePictures(Sprite &sprite)
{
    const QSize pixels = pictureOf(sprite.costumes.constFirst()).size();
    const QSize scaled = (QSizeF(pixels) * m_pictureScale).toSize().expandedTo(QSize(1, 1));
    if (scaled == pixels)
        return 1.0;
    const bool isWhole = m_pictureScale == std::round(m_pictureScale);
    for (Costume &costume : sprite.costumes) {
        costume =
            resized(costume, scaled, isWhole ? Qt::FastTransformation : Qt::SmoothTransformation);
        if (m_pictureScale > 1.0)
            count(costume, sprite.name);
    }
    return pixels.width() > pixels.height() ? double(pixels.width()) / scaled.width()
                                            : double(pixels.height()) / scaled.height();
}

/// Reduces pictures that are larger than a texture, all alike; the factor by which the sprite must
/// grow in return.
double SpriteExporter::shrinkToTexture(Sprite &sprite)
{
    const QSize pixels = pictureOf(sprite.costumes.constFirst()).size();
    const int longest = qMax(pixels.width(), pixels.height());
    if (longest <= MaxPictureSide)
        return 1.0;
    const QSize reduced =
        pixels.scaled(MaxPictureSide, MaxPictureSide, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    for (Costume &costume : sprite.costumes)
        costume = resized(costume, reduced, Qt::SmoothTransformation);
    m_remarks.append(QStringLiteral("%1: pictures of %2 x %3 pixels are larger than Scratch can "
                                    "draw, and were reduced to %4 x %5")
                         .arg(sprite.name, QString::number(pixels.width()),
                              QString::number(pixels.height()), QString::number(reduced.width()),
                              QString::number(reduced.height())));
    return double(longest) / MaxPictureSide;
}

void SpriteExporter::remarkOnAmount(const Sprite &sprite)
{
    if (sprite.costumes.size() > ManyCostumes)
        m_remarks.append(QStringLiteral("%1: has %2 costumes; Scratch is slow with more than %3")
                             .arg(sprite.name, QString::number(sprite.costumes.size()),
                                  QString::number(ManyCostumes)));
    QSet<QString> counted;
    qint64 bytes = 0;
    for (const Costume &costume : sprite.costumes) {
        if (!counted.contains(costume.digest))
            bytes += costume.png.size();
        counted.insert(costume.digest);
    }
    if (bytes > ManyBytes)
        m_remarks.append(
            QStringLiteral("%1: has pictures of %2; Scratch is slow with more than %3")
                .arg(sprite.name, MemoryBudget::text(bytes), MemoryBudget::text(ManyBytes)));
}

} // namespace Scratch
