#include "tests/animatedimage/geometry/attributes.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

namespace
{

using Attributes::send;
using Heard::anotherFrame;
using Heard::changed;
using Heard::postedFalse;
using Heard::postedTrue;
using Heard::restored;

constexpr int normal = -1;
constexpr int background = 1;

QList<QImage> threeFrames()
{
    return solidFrames({{10, 10}, {20, 10}, {10, 30}});
}

bool present(Stage &stage)
{
    return send(stage, 2804);
}

bool endPresenting(Stage &stage)
{
    return send(stage, 2805);
}

QList<QSizeF> sizes(Stage &stage)
{
    QList<QSizeF> sizes;
    for (const CAnimatedPortrait &frame : qAsConst(stage.probe.frames()))
        sizes.append(frame.size);
    return sizes;
}

} // namespace

/// What comes back when the mode in which pages are presented is left.
class TestGeometryRestoring : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void theHandlesSizeIsAskedAgain();
    void sizesAndIndexComeBack();
    void theObjectKeepsItsOwnSize();
    void framesAddedOrRemovedKeepTheirSizes_data();
    void framesAddedOrRemovedKeepTheirSizes();
    void anIndexThatIsGoneStaysAway();
    void theTileOfTheSavedFrameComesBack();
    void theSamePlayStateIsToldOnly_data();
    void theSamePlayStateIsToldOnly();
    void anotherPlayStateRewinds_data();
    void anotherPlayStateRewinds();
    void withoutPresentingBeforeTheFirstFrameIsShown();
    void withoutFramesOnlyThePlayStateIsTold();
    void aDocumentPresentsAllItsObjects();
};

void TestGeometryRestoring::cleanup()
{
    CGDRootObject::SetHandleSize(8.0);
}

void TestGeometryRestoring::theHandlesSizeIsAskedAgain()
{
    Stage stage(threeFrames());
    QCOMPARE(stage.probe.handleSize(), 8.0);
    CGDRootObject::SetHandleSize(11.5);
    present(stage);
    QCOMPARE(stage.probe.handleSize(), 8.0);
    endPresenting(stage);
    QCOMPARE(stage.probe.handleSize(), 11.5);

    // Also where nothing else can be restored.
    stage.probe.savedIndex() = -1;
    CGDRootObject::SetHandleSize(12.0);
    endPresenting(stage);
    QCOMPARE(stage.probe.handleSize(), 12.0);
}

void TestGeometryRestoring::sizesAndIndexComeBack()
{
    Stage stage(threeFrames());
    stage->setCurrentIndex(1);
    stage.probe.frame(0).size = QSizeF(1.5, 2.5);
    present(stage);
    stage->setSize(QSizeF(40.0, 40.0), false, false);
    stage->setCurrentIndex(2);
    QCOMPARE(sizes(stage), QList<QSizeF>({{20, 40}, {40, 40}, {20, 120}}));
    stage.log.clear();
    QVERIFY(endPresenting(stage));
    QCOMPARE(sizes(stage), QList<QSizeF>({{1.5, 2.5}, {20, 10}, {10, 30}}));
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.log.entries(), QStringList({restored, postedFalse}));
}

void TestGeometryRestoring::theObjectKeepsItsOwnSize()
{
    Stage stage(threeFrames());
    stage->setCurrentIndex(1);
    present(stage);
    stage->setCurrentIndex(0);
    QVERIFY(endPresenting(stage));
    QCOMPARE(stage.probe.runningIndex(), 1);
    // Its geometry is the host's to restore.
    QCOMPARE(stage->getSize(), QSizeF(10.0, 10.0));
}

void TestGeometryRestoring::framesAddedOrRemovedKeepTheirSizes_data()
{
    QTest::addColumn<bool>("adds");
    QTest::newRow("added") << true;
    QTest::newRow("removed") << false;
}

void TestGeometryRestoring::framesAddedOrRemovedKeepTheirSizes()
{
    QFETCH(bool, adds);
    Stage stage(threeFrames());
    stage->setCurrentIndex(1);
    present(stage);
    if (adds)
        stage.addFrame(QStringLiteral("new"), Pictures::solid(6, 7, Qt::black));
    else
        stage.probe.frames().removeLast();
    stage.probe.frame(0).size = QSizeF(70.0, 80.0);
    stage.probe.runningIndex() = 0;
    stage.log.clear();
    QVERIFY(endPresenting(stage));
    QCOMPARE(stage.probe.frame(0).size, QSizeF(70.0, 80.0));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(20.0, 10.0));
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.log.entries(), QStringList({restored, postedFalse}));
}

void TestGeometryRestoring::anIndexThatIsGoneStaysAway()
{
    for (const int type : {normal, background}) {
        Stage stage(threeFrames());
        stage.probe.runningIndex() = 2;
        stage.probe.animatedType() = type;
        present(stage);
        stage.probe.frames().removeLast();
        stage.probe.frame(0).size = QSizeF(70.0, 80.0);
        stage.probe.runningIndex() = 0;
        const qint64 tile = stage.probe.bgImage().cacheKey();
        stage.log.clear();
        QVERIFY(endPresenting(stage));
        QCOMPARE(stage.probe.runningIndex(), 0);
        QCOMPARE(stage.probe.frame(0).size, QSizeF(70.0, 80.0));
        QCOMPARE(stage.probe.bgImage().cacheKey(), tile);
        QCOMPARE(stage.log.entries(), QStringList({postedFalse}));
    }
}

void TestGeometryRestoring::theTileOfTheSavedFrameComesBack()
{
    Stage stage(threeFrames());
    stage.probe.animatedType() = background;
    stage->setCurrentIndex(2);
    present(stage);
    stage.probe.runningIndex() = 1;
    stage->setSize(QSizeF(6.0, 4.0), false, false);
    stage->generateBGImage(1);
    QCOMPARE(stage.probe.bgImage(), Pictures::solid(12, 8, Qt::green));
    stage.log.clear();
    QVERIFY(endPresenting(stage));
    QCOMPARE(stage.probe.runningIndex(), 2);
    // At the size that the object has now.
    QCOMPARE(stage.probe.bgImage(), Pictures::solid(12, 8, Qt::blue));
    QCOMPARE(stage.log.entries(), QStringList({restored, postedFalse}));

    // Presenting another type empties the tile, and its end leaves it alone.
    Stage other(threeFrames());
    other->generateBGImage(0);
    present(other);
    QVERIFY(other.probe.bgImage().isNull());
    other.probe.bgImage() = Pictures::solid(3, 3, Qt::yellow);
    endPresenting(other);
    QCOMPARE(other.probe.bgImage(), Pictures::solid(3, 3, Qt::yellow));
}

void TestGeometryRestoring::theSamePlayStateIsToldOnly_data()
{
    QTest::addColumn<bool>("plays");
    QTest::newRow("playing") << true;
    QTest::newRow("stopped") << false;
}

void TestGeometryRestoring::theSamePlayStateIsToldOnly()
{
    QFETCH(bool, plays);
    Stage stage(threeFrames());
    stage->playImage(plays);
    stage->setCurrentIndex(2);
    present(stage);
    stage->setCurrentIndex(1);
    stage.log.clear();
    QVERIFY(endPresenting(stage));
    QCOMPARE(stage.probe.runningIndex(), 2);
    QCOMPARE(stage.probe.isRunning(), plays);
    QCOMPARE(stage.log.entries(), QStringList({restored, plays ? postedTrue : postedFalse}));
}

void TestGeometryRestoring::anotherPlayStateRewinds_data()
{
    theSamePlayStateIsToldOnly_data();
}

void TestGeometryRestoring::anotherPlayStateRewinds()
{
    QFETCH(bool, plays);
    Stage stage(threeFrames());
    stage->playImage(plays);
    stage->setCurrentIndex(2);
    present(stage);
    stage->playImage(!plays);
    stage.log.clear();
    QVERIFY(endPresenting(stage));
    QCOMPARE(stage.probe.isRunning(), plays);
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.log.entries(), QStringList({restored}) + anotherFrame +
                                      QStringList({changed, plays ? postedTrue : postedFalse}));
}

void TestGeometryRestoring::withoutPresentingBeforeTheFirstFrameIsShown()
{
    Stage stage(threeFrames());
    stage->setCurrentIndex(2);
    stage.log.clear();
    QVERIFY(endPresenting(stage));
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(sizes(stage), QList<QSizeF>({{10, 10}, {20, 10}, {10, 30}}));
    QCOMPARE(stage.log.entries(), QStringList({restored, postedFalse}));
}

void TestGeometryRestoring::withoutFramesOnlyThePlayStateIsTold()
{
    Stage stage;
    present(stage);
    QVERIFY(endPresenting(stage));
    QCOMPARE(stage.log.entries(), QStringList({postedFalse}));
}

void TestGeometryRestoring::aDocumentPresentsAllItsObjects()
{
    Stage stage(threeFrames());
    stage->setCurrentIndex(1);
    stage->setPos(QPointF(-5.0, 0.0), false);
    stage.log.clear();
    stage.document.enterAlternateMode();
    QCOMPARE(stage.probe.bgRect(), QRectF(5, 0, 15, 10));
    stage->setCurrentIndex(0);
    stage.log.clear();
    stage.document.leaveAlternateMode();
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.log.entries(), QStringList({restored, postedFalse}));
}

QTEST_MAIN(TestGeometryRestoring)
#include "tst_geometry_restoring.moc"
