#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/object/animatedobject.h"
#include "flipbook/object/plugin.h"
#include "flipbook/scratch/package.h"
#include "flipbook/scratch/picture.h"
#include "flipbook/scratch/spriteexport.h"

#include <KZip>
#include <QtCore/QBuffer>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QColorSpace>
#include <QtTest/QTest>

using namespace Scratch;

namespace
{

QString sample(const char *name)
{
    return QStringLiteral(SAMPLES "/") + QLatin1String(name);
}

QImage twoColors()
{
    QImage image(4, 2, QImage::Format_ARGB32);
    image.fill(Qt::red);
    image.setPixelColor(0, 0, Qt::blue);
    return image;
}

QStringList entries(const QByteArray &package)
{
    QByteArray bytes = package;
    QBuffer buffer(&bytes);
    KZip zip(&buffer);
    zip.open(QIODevice::ReadOnly);
    return zip.directory()->entries();
}

} // namespace

class TestPackageSprite : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWalkCycleBecomesASpriteOfTwelveCostumes()
    {
        load("walk.gif");
        const Sprite sprite = exported(QRectF(0, 0, 960, 720));
        QCOMPARE(sprite.name, QStringLiteral("walk"));
        QCOMPARE(sprite.costumes.size(), 12);
        QCOMPARE(sprite.costumes.at(0).name, QStringLiteral("walk_1"));
        QCOMPARE(sprite.costumes.at(11).name, QStringLiteral("walk_12"));
        QCOMPARE(sprite.costumes.at(0).rotationCenter, QPointF(160, 160));
        QCOMPARE(pictureOf(sprite.costumes.at(0)).size(), QSize(320, 320));
        QCOMPARE(sprite.size, 50.0);
        QCOMPARE(sprite.direction, 90.0);
        QCOMPARE(sprite.playback.intervalMs, 100);
        QCOMPARE(sprite.playback.loopCount, -1);
    }

    void aCostumeWithoutAPictureIsAFailure()
    {
        QVERIFY_EXCEPTION_THROWN(costumeOf(QStringLiteral("empty"), QImage()), Failure);
        QVERIFY_EXCEPTION_THROWN(
            costumeOf(QStringLiteral("empty"), QImage(0, 3, QImage::Format_RGB32)), Failure);
        QVERIFY(!costumeOf(QStringLiteral("full"), twoColors()).png.isEmpty());
    }

    void theSpriteStandsWhereTheObjectDoes()
    {
        load("walk.gif");
        m_object->setPos(QPointF(0, 0), false);
        // The middle of the object is (80, 80) on a page of twice the stage.
        QCOMPARE(exported(QRectF(0, 0, 960, 720)).place, QPointF(-200, 140));
    }

    void whatScratchRoundsOffAPlaceGoesIntoTheRotationCentre()
    {
        loadPicture(twoColors());
        // The middle of the 4 x 2 picture is (242.5, 181.75): 2.5 right, 1.75 below the stage's.
        m_object->setPos(QPointF(240.5, 180.75), false);
        const Sprite sprite = exported(QRectF(0, 0, 480, 360));
        QCOMPARE(sprite.place, QPointF(3, -2));
        // It is half a unit left and a quarter above (3, -2); two pixels are one unit.
        QCOMPARE(sprite.costumes.at(0).rotationCenter, QPointF(4 + 1, 2 + 0.5));
    }

    void theRestIsTurnedWithTheSprite()
    {
        loadPicture(twoColors());
        m_object->setRotate(90.0, false);
        m_object->setPos(QPointF(238.25, 179), false);
        const Sprite sprite = exported(QRectF(0, 0, 480, 360));
        QCOMPARE(sprite.place, QPointF(0, 0));
        // A quarter to the right on the stage is a quarter up in a picture turned clockwise.
        QCOMPARE(sprite.costumes.at(0).rotationCenter.x(), 4.0);
        QCOMPARE(sprite.costumes.at(0).rotationCenter.y(), 2.0 + 0.5);
    }

    void aResizedObjectKeepsItsSize()
    {
        load("walk.gif");
        m_object->setSize(QSizeF(320, 320), false, false);
        const Sprite sprite = exported(QRectF(0, 0, 480, 360));
        QCOMPARE(sprite.size, 100.0);
        QCOMPARE(sprite.costumes.at(0).rotationCenter, QPointF(320, 320));
    }

    void aResizedSinglePictureKeepsItsSize()
    {
        loadPicture(twoColors());
        m_object->setSize(QSizeF(12, 6), false, false);
        const Sprite sprite = exported(QRectF(0, 0, 480, 360));
        QCOMPARE(sprite.costumes.at(0).rotationCenter, QPointF(4, 2));
        QCOMPARE(sprite.size, 300.0);
        QVERIFY(m_remarks.isEmpty());
    }

    void aTurnedObjectTurnsItsSprite()
    {
        loadPicture(twoColors());
        m_object->setRotate(30.0, false);
        QCOMPARE(exported(QRectF(0, 0, 480, 360)).direction, 120.0);
    }

    void aMirroredObjectHasMirroredPictures()
    {
        loadPicture(twoColors());
        m_object->setMirror(true, false);
        const Sprite sprite = exported(QRectF(0, 0, 480, 360));
        const QImage picture = pictureOf(sprite.costumes.at(0));
        QCOMPARE(picture.size(), QSize(8, 4));
        QCOMPARE(picture.pixelColor(7, 0), QColor(Qt::blue));
        QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(sprite.costumes.at(0).digest, costumeOf(QString(), picture).digest);
    }

    void aStretchedObjectIsRemarkedOn()
    {
        loadPicture(twoColors());
        m_object->setSize(QSizeF(40, 40), false, false);
        exported(QRectF(0, 0, 480, 360));
        QCOMPARE(m_remarks,
                 QStringList(QStringLiteral("walk: is stretched on its page, but Scratch keeps the "
                                            "proportions of its pictures")));
    }

    void picturesBeyondATextureAreReducedAndTheSpriteGrows()
    {
        QImage wide(8192, 2, QImage::Format_ARGB32);
        wide.fill(Qt::green);
        loadPicture(wide);
        const Sprite sprite = exported(QRectF(0, 0, 480, 360));
        QCOMPARE(pictureOf(sprite.costumes.at(0)).size(), QSize(8192, 2));
        QCOMPARE(sprite.size, 200.0);
        QCOMPARE(m_remarks, QStringList(QStringLiteral(
                                "walk: pictures of 16384 x 4 pixels are larger than Scratch can "
                                "draw, and were reduced to 8192 x 2")));
    }

    void aFilmThatTheStageShowsAtLessThanHalfKeepsItsPixels()
    {
        load("walk.gif");
        m_object->setPos(QPointF(640, 460), false);
        // The stage has a third of a unit for each of this page, in the middle of which it is.
        const Sprite sprite = exported(QRectF(0, 0, 1440, 1080));
        const QImage picture = pictureOf(sprite.costumes.at(0));
        QCOMPARE(picture.size(), QSize(160, 160));
        QCOMPARE(sprite.costumes.at(0).rotationCenter, QPointF(80, 80));
        // Costumes have two pixels to a unit: 160 pixels at 66.7 % are 53.3 units, a third of 160.
        QCOMPARE(sprite.size, 200.0 / 3.0);
        QCOMPARE(picture.convertToFormat(QImage::Format_ARGB32),
                 AnimatedObject(*m_object).frameImage(0).convertToFormat(QImage::Format_ARGB32));
    }

    void costumesOfFewColoursHaveAPalette()
    {
        loadPicture(twoColors());
        const Sprite few = exported(QRectF(0, 0, 1440, 1080));
        // A palette of two colours may have one bit for each pixel.
        QCOMPARE(pictureOf(few.costumes.at(0)).colorCount(), 2);
        QCOMPARE(pictureOf(few.costumes.at(0)).convertToFormat(QImage::Format_ARGB32), twoColors());
        QImage many(40, 40, QImage::Format_ARGB32);
        for (int i = 0; i < 1600; ++i)
            many.setPixel(i % 40, i / 40, qRgba(i % 256, i / 256, 7, 255 - i % 3));
        loadPicture(many);
        const QImage picture = pictureOf(exported(QRectF(0, 0, 1440, 1080)).costumes.at(0));
        QCOMPARE(picture.format(), QImage::Format_ARGB32);
        QCOMPARE(picture, many);
    }

    void anObjectWithoutFramesIsRefused()
    {
        makeObject();
        AnimatedObject object(*m_object);
        MemoryAccount memory;
        SpriteExporter exporter{m_plugin, StagePlacement(QRectF(0, 0, 480, 360)), true, memory};
        try {
            exporter.exported(object, QStringLiteral("nothing"));
            QFAIL("a sprite without costumes was made");
        } catch (const Failure &failure) {
            QCOMPARE(failure.subject, QStringLiteral("nothing"));
            QCOMPARE(failure.reason,
                     QStringLiteral(
                         "has no frames, and Scratch does not accept a sprite without costumes"));
        }
    }

    void eachPictureIsOnceInThePackage()
    {
        Sprite sprite;
        sprite.name = QStringLiteral("twins");
        sprite.costumes = {costumeOf(QStringLiteral("a"), twoColors()),
                           costumeOf(QStringLiteral("b"), twoColors())};
        const QStringList names = entries(spritePackage(sprite));
        QCOMPARE(names.size(), 2);
        QVERIFY(names.contains(QStringLiteral("sprite.json")));
        QVERIFY(names.contains(sprite.costumes.at(0).digest + QLatin1String(".png")));
    }

    void aProjectHasABackdropOfItsOwn()
    {
        const QStringList names = entries(projectPackage({}));
        QCOMPARE(names.size(), 2);
        QVERIFY(names.contains(QStringLiteral("project.json")));
        QVERIFY(names.contains(emptyBackdrop().digest + QLatin1String(".png")));
    }

    void theSameSpriteGivesTheSameBytes()
    {
        load("walk.gif");
        const Sprite sprite = exported(QRectF(0, 0, 960, 720));
        QCOMPARE(spritePackage(sprite), spritePackage(sprite));
    }

    void picturesCarryNoColourSpace()
    {
        QImage picture = twoColors();
        picture.setColorSpace(QColorSpace::SRgb);
        const QByteArray png = costumeOf(QString(), picture).png;
        for (const char *chunk : {"gAMA", "cHRM", "sRGB", "iCCP"})
            QVERIFY2(!png.contains(chunk), chunk);
    }

private:
    void makeObject() { m_object = m_plugin.createObject(); }

    void load(const char *name)
    {
        makeObject();
        AnimatedObject(*m_object).loadPath(sample(name));
    }

    void loadPicture(const QImage &picture)
    {
        makeObject();
        AnimatedObject(*m_object).loadPicture(picture, QStringLiteral("picture"));
    }

    Sprite exported(const QRectF &page)
    {
        MemoryAccount memory;
        SpriteExporter exporter{m_plugin, StagePlacement(page), true, memory};
        AnimatedObject object(*m_object);
        const Sprite sprite = exporter.exported(object, QStringLiteral("walk"));
        m_remarks = exporter.remarks();
        return sprite;
    }

    Plugin m_plugin{QString()};
    OwnedObject m_object;
    QStringList m_remarks;
};

QTEST_MAIN(TestPackageSprite)
#include "tst_package_sprite.moc"
