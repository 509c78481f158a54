#include "flipbook/scratch/spriteexport.h"

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
#include <QtGui/QTransform>

#include <algorithm>
#include <cmath>
#include <functional>

namespace Scratch
{

namespace
{

/// Beyond these Scratch is slow to load a sprite, and may fail to.
constexpr int ManyCostumes = 200;
constexpr qint64 ManyBytes = qint64(10) * 1024 * 1024;

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
    sprite.costumes = costumesOf(object, name);

    sprite.size = 100.0 * m_placement.scale();
    // A single frame is never resized by a step: its costume may differ from the object.
    const double costumeWidth = sprite.costumes.constFirst().rotationCenter.x();
    if (sprite.costumes.size() == 1 && costumeWidth > 0.0)
        sprite.size *= size.width() / costumeWidth;
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
    const QSizeF size = largestCostume(m_plugin, object.base());
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

/// A costume as its description and its file in @p folder give it.
Costume SpriteExporter::readCostume(const QJsonObject &json, const QString &folder,
                                    const QString &objectName)
{
    Costume costume;
    costume.digest = json.value(QLatin1String("assetId")).toString();
    costume.rotationCenter = QPointF(json.value(QLatin1String("rotationCenterX")).toDouble(),
                                     json.value(QLatin1String("rotationCenterY")).toDouble());
    QFile file(folder + json.value(QLatin1String("md5ext")).toString());
    if (!costume.digest.isEmpty() && file.open(QIODevice::ReadOnly)) {
        // Once as a costume, and once in the package.
        m_memory.require(2 * file.size(), objectName, QStringLiteral("its costumes"));
        costume.png = file.readAll();
        m_memory.take(2 * file.size());
    }
    if (!isComplete(costume.png))
        throw Failure{objectName, QStringLiteral("its costumes could not be written")};
    return costume;
}

QVector<Costume> SpriteExporter::costumesOf(AnimatedObject &object, const QString &name)
{
    const QTemporaryDir folder;
    if (!folder.isValid())
        throw Failure{name, folder.errorString()};
    const QString prefix = folder.path() + QLatin1Char('/');
    const bool isMirrored = object.base().isMirrored();
    const bool isFlipped = object.base().isFlipped();

    QVector<Costume> costumes;
    QSet<QString> takenNames;
    const QJsonArray list = object.base().generateCostumesCode(prefix);
    for (const QJsonValue &value : list) {
        const QJsonObject json = value.toObject();
        Costume costume = readCostume(json, prefix, name);
        // A sprite cannot be mirrored or flipped as an object can: its pictures are.
        if (isMirrored || isFlipped) {
            const QPointF center = costume.rotationCenter;
            const QImage picture = pictureOf(costume).mirrored(isMirrored, isFlipped);
            costume = costumeOf(name, picture);
            costume.rotationCenter = {isMirrored ? picture.width() - center.x() : center.x(),
                                      isFlipped ? picture.height() - center.y() : center.y()};
        }
        costume.name = Names::costume(json.value(QLatin1String("name")).toString(), takenNames);
        costumes.append(costume);
    }
    return costumes;
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
    for (Costume &costume : sprite.costumes) {
        const QImage picture =
            pictureOf(costume).scaled(reduced, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        costume = costumeOf(costume.name, picture);
    }
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
