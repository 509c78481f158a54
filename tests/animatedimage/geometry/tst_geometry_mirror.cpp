#include "framework/framework.h"
#include "tests/animatedimage/geometry/attributes.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

namespace
{

using Heard::changed;
using Heard::moved;

constexpr int background = 1;

/// A stroke at the top left of a picture of 8 x 4: its opaque rectangle is (1, 0, 3, 2).
QImage stroke()
{
    return Pictures::fromText({".###....", ".###....", "........", "........"});
}

QList<QRect> rects(Stage &stage, int index = 0)
{
    return stage.probe.frame(index).rects;
}

/// One of the two setters, and where it is kept.
struct Setter {
    void (CAnimatedImage::*set)(bool, bool);
    bool (CGDRootObject::*isSet)() const;
    QRect expected; ///< where it moves the stroke
};

const Setter mirror{&CAnimatedImage::setMirror, &CGDRootObject::isMirrored, QRect(4, 0, 3, 2)};
const Setter flip{&CAnimatedImage::setFlip, &CGDRootObject::isFlipped, QRect(1, 2, 3, 2)};

} // namespace

Q_DECLARE_METATYPE(Setter)

/// The setters of mirror and flip, which are alike.
class TestGeometryMirror : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsToldTwiceOrOnce_data();
    void itIsToldTwiceOrOnce();
    void setAgainItIsToldAgain_data();
    void setAgainItIsToldAgain();
    void theHitPathsMove_data();
    void theHitPathsMove();
    void thePixelsAreMeasuredAgain_data();
    void thePixelsAreMeasuredAgain();
    void bothMoveOneAfterTheOther();
    void theContentIsToldOfAfterTheHitPathsMoved_data();
    void theContentIsToldOfAfterTheHitPathsMoved();
    void theLayerEffectIsDrawnAnew_data();
    void theLayerEffectIsDrawnAnew();
    void nothingElseChanges_data();
    void nothingElseChanges();
    void withoutFramesItIsToldToo_data();
    void withoutFramesItIsToldToo();

private:
    static void addSetters();
};

void TestGeometryMirror::addSetters()
{
    QTest::addColumn<Setter>("setter");
    QTest::newRow("mirror") << mirror;
    QTest::newRow("flip") << flip;
}

void TestGeometryMirror::itIsToldTwiceOrOnce_data()
{
    addSetters();
}

void TestGeometryMirror::itIsToldTwiceOrOnce()
{
    QFETCH(Setter, setter);
    Stage stage({stroke()});
    (stage.image->*setter.set)(true, true);
    QVERIFY((stage.image->*setter.isSet)());
    QCOMPARE(stage.log.entries(), QStringList({moved, changed}));
    stage.log.clear();
    (stage.image->*setter.set)(false, false);
    QVERIFY(!(stage.image->*setter.isSet)());
    QCOMPARE(stage.log.entries(), QStringList({changed}));
}

void TestGeometryMirror::setAgainItIsToldAgain_data()
{
    addSetters();
}

void TestGeometryMirror::setAgainItIsToldAgain()
{
    QFETCH(Setter, setter);
    Stage stage({stroke()});
    (stage.image->*setter.set)(true, true);
    stage.log.clear();
    (stage.image->*setter.set)(true, true);
    QCOMPARE(stage.log.entries(), QStringList({moved, changed}));
    // The stroke is not turned back by it.
    QCOMPARE(rects(stage), QList<QRect>({setter.expected}));
}

void TestGeometryMirror::theHitPathsMove_data()
{
    addSetters();
}

void TestGeometryMirror::theHitPathsMove()
{
    QFETCH(Setter, setter);
    Stage stage({Pictures::transparent(8, 4), stroke()});
    QCOMPARE(rects(stage, 1), QList<QRect>({QRect(1, 0, 3, 2)}));
    stage->setSize(QSizeF(16.0, 40.0), false, false);
    (stage.image->*setter.set)(true, false);
    // Also those of frames that are not shown.
    QCOMPARE(rects(stage, 1), QList<QRect>({setter.expected}));
    const QRect &r = setter.expected;
    QCOMPARE(stage.probe.frame(1).path.boundingRect(),
             QRectF(2.0 * r.x(), 10.0 * r.y(), 2.0 * r.width(), 10.0 * r.height()));
    (stage.image->*setter.set)(false, false);
    QCOMPARE(rects(stage, 1), QList<QRect>({QRect(1, 0, 3, 2)}));
}

void TestGeometryMirror::thePixelsAreMeasuredAgain_data()
{
    addSetters();
}

void TestGeometryMirror::thePixelsAreMeasuredAgain()
{
    QFETCH(Setter, setter);
    Stage stage({stroke()});
    stage.probe.frame(0).image = Pictures::fromText({"..", "#.", "#."});
    (stage.image->*setter.set)(false, false);
    QCOMPARE(rects(stage), QList<QRect>({QRect(0, 1, 1, 2)}));
    QCOMPARE(stage.probe.frame(0).regionSize, QSize(2, 3));
}

void TestGeometryMirror::bothMoveOneAfterTheOther()
{
    Stage stage({stroke()});
    stage->setMirror(true, false);
    stage->setFlip(true, false);
    QCOMPARE(rects(stage), QList<QRect>({QRect(4, 2, 3, 2)}));
    stage->setMirror(false, false);
    QCOMPARE(rects(stage), QList<QRect>({flip.expected}));
}

void TestGeometryMirror::theContentIsToldOfAfterTheHitPathsMoved_data()
{
    addSetters();
}

void TestGeometryMirror::theContentIsToldOfAfterTheHitPathsMoved()
{
    QFETCH(Setter, setter);
    Stage stage({stroke()});
    QMap<int, QList<QRect>> heardWith;
    connect(Framework::instance().notifier(), &Notifier::propertyChanged, &stage.log,
            [&](CBaseObject *, int id) { heardWith.insert(id, rects(stage)); });
    (stage.image->*setter.set)(true, true);
    // The base tells of the geometry first.
    QCOMPARE(heardWith.value(104), QList<QRect>({QRect(1, 0, 3, 2)}));
    QCOMPARE(heardWith.value(1002), QList<QRect>({setter.expected}));
}

void TestGeometryMirror::theLayerEffectIsDrawnAnew_data()
{
    addSetters();
}

void TestGeometryMirror::theLayerEffectIsDrawnAnew()
{
    QFETCH(Setter, setter);
    Stage stage({Pictures::solid(10, 10, Qt::black)});
    stage->setLayerShadow(Qt::red, QPointF(20.0, 0.0));
    QCOMPARE(stage.page->rendered().pixelColor(25, 5), QColor(Qt::red));
    stage.probe.frame(0).image = Pictures::transparent(10, 10);
    QCOMPARE(stage.page->rendered().pixelColor(25, 5), QColor(Qt::red));
    (stage.image->*setter.set)(true, false);
    QCOMPARE(stage.page->rendered().pixelColor(25, 5), QColor(Qt::white));
}

void TestGeometryMirror::nothingElseChanges_data()
{
    addSetters();
}

void TestGeometryMirror::nothingElseChanges()
{
    QFETCH(Setter, setter);
    Stage stage({stroke(), stroke()});
    stage.probe.animatedType() = background;
    stage->setPos(QPointF(30.0, 40.0), false);
    stage->regenBGImage();
    const qint64 tile = stage.probe.bgImage().cacheKey();
    const QImage picture = stage.probe.frame(0).image;
    (stage.image->*setter.set)(true, true);
    QCOMPARE(stage->getPos(), QPointF(30.0, 40.0));
    QCOMPARE(stage->getSize(), QSizeF(8.0, 4.0));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(8.0, 4.0));
    QCOMPARE(stage.probe.bgImage().cacheKey(), tile);
    QCOMPARE(stage.probe.frame(0).image, picture);
    // The values that documents keep are not the live ones.
    QVERIFY(!stage.probe.mirror());
    QVERIFY(!stage.probe.flip());
}

void TestGeometryMirror::withoutFramesItIsToldToo_data()
{
    addSetters();
}

void TestGeometryMirror::withoutFramesItIsToldToo()
{
    QFETCH(Setter, setter);
    Stage stage;
    (stage.image->*setter.set)(true, true);
    QCOMPARE(stage.log.entries(), QStringList({moved, changed}));
}

QTEST_MAIN(TestGeometryMirror)
#include "tst_geometry_mirror.moc"
