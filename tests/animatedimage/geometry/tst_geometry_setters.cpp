#include "framework/framework.h"
#include "tests/animatedimage/geometry/attributes.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

#include <cmath>
#include <limits>

namespace
{

using Heard::moved;

constexpr int normal = -1;
constexpr int background = 1;

/// Two frames whose opaque rectangles are (0, 0, 9, 10) and (0, 0, 19, 10): the last column is
/// never part of one.
QList<QImage> twoFrames()
{
    return solidFrames({{10, 10}, {20, 10}});
}

QRectF pathOf(Stage &stage, int index)
{
    return stage.probe.frame(index).path.boundingRect();
}

/// Calls @p check each time the host hears of the property @p id.
template<typename Check>
void whenChanged(Stage &stage, int id, Check check)
{
    QObject::connect(Framework::instance().notifier(), &Notifier::propertyChanged, &stage.log,
                     [id, check](CBaseObject *, int changedId) {
                         if (changedId == id)
                             check();
                     });
}

} // namespace

/// The setters of size and centre.
class TestGeometrySetters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewSizeIsToldAsAsked_data();
    void aNewSizeIsToldAsAsked();
    void aNewSizeScalesAllHitPaths();
    void aNewSizeMeasuresNoPixels();
    void aNewSizeMayChangeTheProportions();
    void framesOfANormalObjectKeepTheirSizes();
    void framesOfABackgroundTakeItsSize();
    void aRefusedSizeStillReachesTheFramesOfABackground_data();
    void aRefusedSizeStillReachesTheFramesOfABackground();
    void aNewSizeLeavesTheTile();
    void withoutFramesTheSizeIsSet();

    void aNewCentreGivesPlaceSizeAndAngle();
    void aNewCentreIsToldWhenAskedFor_data();
    void aNewCentreIsToldWhenAskedFor();
    void hitPathsFollowACentreWhenAskedFor_data();
    void hitPathsFollowACentreWhenAskedFor();
    void hitPathsFollowBeforeTheHostHears();
    void aNewCentreLeavesANormalObjectsFrames();
    void aBackgroundFollowsACentreInAnyCase_data();
    void aBackgroundFollowsACentreInAnyCase();
    void aRefusedCentreStillReachesTheFramesOfABackground();
};

void TestGeometrySetters::aNewSizeIsToldAsAsked_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("keepCenter");
    QTest::addColumn<bool>("notify");
    for (const int type : {normal, background}) {
        for (const bool keepCenter : {false, true}) {
            for (const bool notify : {false, true})
                QTest::addRow("type %d, %d, %d", type, keepCenter, notify)
                    << type << keepCenter << notify;
        }
    }
}

void TestGeometrySetters::aNewSizeIsToldAsAsked()
{
    QFETCH(int, type);
    QFETCH(bool, keepCenter);
    QFETCH(bool, notify);
    Stage stage(twoFrames());
    stage.probe.animatedType() = type;
    stage->setPos(QPointF(100.0, 100.0), false);
    stage->setSize(QSizeF(30.0, 50.0), keepCenter, notify);
    QCOMPARE(stage->getSize(), QSizeF(30.0, 50.0));
    QCOMPARE(stage->getPos(), keepCenter ? QPointF(90.0, 80.0) : QPointF(100.0, 100.0));
    QCOMPARE(stage.log.entries(), notify ? QStringList({moved}) : QStringList());
}

void TestGeometrySetters::aNewSizeScalesAllHitPaths()
{
    Stage stage(twoFrames());
    QCOMPARE(pathOf(stage, 0), QRectF(0.0, 0.0, 9.0, 10.0));
    stage->setSize(QSizeF(20.0, 40.0), false, false);
    QCOMPARE(pathOf(stage, 0), QRectF(0.0, 0.0, 18.0, 40.0)); // 2 and 4 times
    QCOMPARE(pathOf(stage, 1), QRectF(0.0, 0.0, 19.0, 40.0)); // 1 and 4 times
}

void TestGeometrySetters::aNewSizeMeasuresNoPixels()
{
    Stage stage(twoFrames());
    stage.probe.frame(0).rects = {QRect(1, 2, 3, 4)};
    stage->setSize(QSizeF(20.0, 40.0), false, false);
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>({QRect(1, 2, 3, 4)}));
    QCOMPARE(pathOf(stage, 0), QRectF(2.0, 8.0, 6.0, 16.0));

    // A frame that was never measured could otherwise not be hit.
    stage.probe.frame(1) = CAnimatedPortrait(QStringLiteral("new"), Pictures::solid(5, 5, Qt::red));
    stage->setSize(QSizeF(10.0, 10.0), false, false);
    QCOMPARE(pathOf(stage, 1), QRectF(0.0, 0.0, 8.0, 10.0));
}

void TestGeometrySetters::aNewSizeMayChangeTheProportions()
{
    Stage stage(twoFrames());
    QVERIFY(stage.probe.keepRatio());
    stage->setSize(QSizeF(33.0, 7.0), false, false);
    QCOMPARE(stage->getSize(), QSizeF(33.0, 7.0));
    QVERIFY(stage.probe.keepRatio());
}

void TestGeometrySetters::framesOfANormalObjectKeepTheirSizes()
{
    for (const int type : {normal, 0, 2}) {
        Stage stage(twoFrames());
        stage.probe.animatedType() = type;
        stage->setSize(QSizeF(33.0, 7.0), false, false);
        QCOMPARE(stage.probe.frame(0).size, QSizeF(10.0, 10.0));
        QCOMPARE(stage.probe.frame(1).size, QSizeF(20.0, 10.0));
    }
}

void TestGeometrySetters::framesOfABackgroundTakeItsSize()
{
    Stage stage(twoFrames());
    stage.probe.animatedType() = background;
    stage->setSize(QSizeF(33.5, 7.25), false, false);
    QCOMPARE(stage.probe.frame(0).size, QSizeF(33.5, 7.25));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(33.5, 7.25));
}

void TestGeometrySetters::aRefusedSizeStillReachesTheFramesOfABackground_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("negative") << QSizeF(-1.0, 5.0);
    QTest::newRow("no number") << QSizeF(5.0, std::nan(""));
    QTest::newRow("infinite") << QSizeF(std::numeric_limits<double>::infinity(), 5.0);
}

void TestGeometrySetters::aRefusedSizeStillReachesTheFramesOfABackground()
{
    QFETCH(QSizeF, size);
    Stage stage(twoFrames());
    stage.probe.animatedType() = background;
    stage->setSize(size, false, true);
    // What the base holds counts, which is still the old size.
    QCOMPARE(stage->getSize(), QSizeF(10.0, 10.0));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(10.0, 10.0));
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestGeometrySetters::aNewSizeLeavesTheTile()
{
    Stage stage(twoFrames());
    stage.probe.animatedType() = background;
    stage->regenBGImage();
    const qint64 tile = stage.probe.bgImage().cacheKey();
    stage->setSize(QSizeF(33.0, 7.0), true, true);
    QCOMPARE(stage.probe.bgImage().cacheKey(), tile);
    QCOMPARE(stage.probe.bgRect(), QRectF(0.0, 0.0, 10.0, 10.0));
}

void TestGeometrySetters::withoutFramesTheSizeIsSet()
{
    for (const int type : {normal, background}) {
        Stage stage;
        stage.probe.animatedType() = type;
        stage->setSize(QSizeF(33.0, 7.0), false, true);
        stage->setCenterPos(QPointF(50.0, 50.0), QSizeF(10.0, 20.0), 0.0, true);
        QCOMPARE(stage->getSize(), QSizeF(10.0, 20.0));
        QCOMPARE(stage.log.entries(), QStringList({moved, moved}));
        QVERIFY(stage.probe.bgImage().isNull());
    }
}

void TestGeometrySetters::aNewCentreGivesPlaceSizeAndAngle()
{
    Stage stage(twoFrames());
    stage->setCenterPos(QPointF(50.0, 60.0), QSizeF(30.0, 20.0), 45.0, false);
    QCOMPARE(stage->getPos(), QPointF(35.0, 50.0));
    QCOMPARE(stage->getSize(), QSizeF(30.0, 20.0));
    QCOMPARE(stage->getRotate(), 45.0);
    QCOMPARE(stage->mapToScene(QPointF(15.0, 10.0)), QPointF(50.0, 60.0));
}

void TestGeometrySetters::aNewCentreIsToldWhenAskedFor_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("update");
    QTest::newRow("normal") << normal << true;
    QTest::newRow("normal, silently") << normal << false;
    QTest::newRow("background") << background << true;
    QTest::newRow("background, silently") << background << false;
}

void TestGeometrySetters::aNewCentreIsToldWhenAskedFor()
{
    QFETCH(int, type);
    QFETCH(bool, update);
    Stage stage(twoFrames());
    stage.probe.animatedType() = type;
    stage->setCenterPos(QPointF(50.0, 60.0), QSizeF(30.0, 20.0), 45.0, update);
    QCOMPARE(stage.log.entries(), update ? QStringList({moved}) : QStringList());
}

void TestGeometrySetters::hitPathsFollowACentreWhenAskedFor_data()
{
    aNewCentreIsToldWhenAskedFor_data();
}

void TestGeometrySetters::hitPathsFollowACentreWhenAskedFor()
{
    QFETCH(int, type);
    QFETCH(bool, update);
    Stage stage(twoFrames());
    stage.probe.animatedType() = type;
    stage.probe.frame(1).rects = {QRect(1, 2, 3, 4)};
    stage->setCenterPos(QPointF(50.0, 60.0), QSizeF(20.0, 40.0), 0.0, update);
    QCOMPARE(pathOf(stage, 0), update ? QRectF(0.0, 0.0, 18.0, 40.0) : QRectF(0.0, 0.0, 9.0, 10.0));
    // All frames, and none is measured again.
    QCOMPARE(stage.probe.frame(1).rects, QList<QRect>({QRect(1, 2, 3, 4)}));
    QCOMPARE(pathOf(stage, 1), update ? QRectF(1.0, 8.0, 3.0, 16.0) : QRectF(0.0, 0.0, 9.5, 10.0));
}

void TestGeometrySetters::hitPathsFollowBeforeTheHostHears()
{
    Stage stage(twoFrames());
    stage.probe.animatedType() = background;
    QRectF path;
    QSizeF frame;
    QSize tile;
    whenChanged(stage, 104, [&] {
        path = pathOf(stage, 1);
        frame = stage.probe.frame(1).size;
        tile = stage.probe.bgImage().size();
    });
    stage->setCenterPos(QPointF(50.0, 60.0), QSizeF(20.0, 40.0), 0.0, true);
    QCOMPARE(path, QRectF(0.0, 0.0, 19.0, 40.0));
    QCOMPARE(frame, QSizeF(20.0, 40.0));
    QCOMPARE(tile, QSize(40, 80));
}

void TestGeometrySetters::aNewCentreLeavesANormalObjectsFrames()
{
    Stage stage(twoFrames());
    stage.probe.bgRect() = QRectF(1.0, 2.0, 3.0, 4.0);
    stage->setCenterPos(QPointF(50.0, 60.0), QSizeF(30.0, 20.0), 0.0, true);
    QCOMPARE(stage.probe.frame(0).size, QSizeF(10.0, 10.0));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(20.0, 10.0));
    QCOMPARE(stage.probe.bgRect(), QRectF(1.0, 2.0, 3.0, 4.0));
    QVERIFY(stage.probe.bgImage().isNull());
}

void TestGeometrySetters::aBackgroundFollowsACentreInAnyCase_data()
{
    QTest::addColumn<bool>("update");
    QTest::addColumn<bool>("presented");
    QTest::newRow("telling") << true << false;
    QTest::newRow("silently") << false << false;
    QTest::newRow("presented") << true << true;
}

void TestGeometrySetters::aBackgroundFollowsACentreInAnyCase()
{
    QFETCH(bool, update);
    QFETCH(bool, presented);
    Stage stage(twoFrames());
    stage.probe.animatedType() = background;
    stage.probe.runningIndex() = 1;
    stage.document.setAlternateMode(presented ? 1 : 0);
    stage.probe.bgPos() = QPointF(300.0, 300.0);
    stage->setCenterPos(QPointF(0.0, 60.0), QSizeF(30.5, 20.0), 0.0, update);
    QCOMPARE(stage.probe.frame(0).size, QSizeF(30.5, 20.0));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(30.5, 20.0));
    // It is at (-15.25, 50), half of it on the page, wherever its pattern is.
    QCOMPARE(stage.probe.bgRect(), QRectF(15.25, 0.0, 15.25, 20.0));
    QCOMPARE(stage.probe.bgPos(), QPointF(300.0, 300.0));
    QCOMPARE(stage.probe.bgImage().size(), QSize(62, 40));
    QCOMPARE(stage.probe.bgImage().pixelColor(5, 5), QColor(Qt::green));
}

void TestGeometrySetters::aRefusedCentreStillReachesTheFramesOfABackground()
{
    Stage stage(twoFrames());
    stage.probe.animatedType() = background;
    stage->setCenterPos(QPointF(std::nan(""), 60.0), QSizeF(30.0, 20.0), 0.0, true);
    QCOMPARE(stage->getSize(), QSizeF(10.0, 10.0));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(10.0, 10.0));
    QCOMPARE(stage.probe.bgImage().size(), QSize(20, 20));
    QCOMPARE(stage.log.entries(), QStringList({moved}));
}

QTEST_MAIN(TestGeometrySetters)
#include "tst_geometry_setters.moc"
