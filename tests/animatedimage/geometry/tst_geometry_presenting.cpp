#include "tests/animatedimage/geometry/attributes.h"

#include <QtTest/QTest>

namespace
{

using Attributes::send;

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

} // namespace

/// The attributes of entering and leaving the mode in which pages are presented.
class TestGeometryPresenting : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void theVisiblePartIsWorkedOut_data();
    void theVisiblePartIsWorkedOut();
    void withoutAPageAllOfItIsVisible();
    void theObjectsOwnPositionCounts();
    void aBackgroundBeginsItsPatternAnew();
    void anotherTypeHasNoTile();
    void editingIsRememberedAndNothingTold_data();
    void editingIsRememberedAndNothingTold();
    void presentingTwiceRemembersTheSecondState();
    void withoutFramesThereIsLittleToRemember();
};

void TestGeometryPresenting::theVisiblePartIsWorkedOut_data()
{
    QTest::addColumn<QRectF>("object");
    QTest::addColumn<QRectF>("page");
    QTest::addColumn<QRectF>("visible");
    const QRectF page(0, 0, 800, 600);
    QTest::newRow("over the left edge")
        << QRectF(-30, 10, 100, 50) << page << QRectF(30, 0, 70, 50);
    QTest::newRow("over the top edge")
        << QRectF(10, -20, 100, 50) << page << QRectF(0, 20, 100, 30);
    QTest::newRow("over the bottom right corner")
        << QRectF(750, 590, 100, 50) << page << QRectF(0, 0, 50, 10);
    QTest::newRow("in the middle") << QRectF(50, 60, 100, 50) << page << QRectF(0, 0, 100, 50);
    QTest::newRow("in the top left corner")
        << QRectF(0, 0, 100, 50) << page << QRectF(0, 0, 100, 50);
    QTest::newRow("over all edges")
        << QRectF(-100, -50, 1000, 700) << page << QRectF(100, 50, 800, 600);
    QTest::newRow("in fractions") << QRectF(-30.5, -0.25, 100, 50) << page
                                  << QRectF(30.5, 0.25, 69.5, 49.75);
    QTest::newRow("to the left of the page")
        << QRectF(-200, 10, 100, 50) << page << QRectF(200, 0, 0, 0);
    QTest::newRow("to the right of the page")
        << QRectF(900, 10, 100, 50) << page << QRectF(0, 0, 0, 0);
    // The object's own coordinates tell whether it begins outside, wherever the page begins.
    QTest::newRow("a page away from the origin")
        << QRectF(50, 150, 100, 50) << QRectF(100, 100, 800, 600) << QRectF(0, 0, 50, 50);
    QTest::newRow("a page before the origin")
        << QRectF(-30, 10, 100, 50) << QRectF(-100, 0, 800, 600) << QRectF(30, 0, 100, 50);
}

void TestGeometryPresenting::theVisiblePartIsWorkedOut()
{
    QFETCH(QRectF, object);
    QFETCH(QRectF, page);
    for (const int type : {normal, background}) {
        Stage stage(threeFrames());
        stage.page->setPageRect(page);
        stage.probe.animatedType() = type;
        stage->setSize(object.size(), false, false);
        stage->setPos(object.topLeft(), false);
        stage.probe.bgRect() = QRectF(1, 2, 3, 4);
        QVERIFY(present(stage));
        QTEST(stage.probe.bgRect(), "visible");
    }
}

void TestGeometryPresenting::withoutAPageAllOfItIsVisible()
{
    Stage stage(threeFrames());
    stage->setPos(QPointF(-3.0, -4.0), false);
    QCOMPARE(stage.page->takeObject(stage.image), static_cast<CBaseObject *>(stage.image));
    QVERIFY(present(stage));
    QCOMPARE(stage.probe.bgRect(), QRectF(0, 0, 10, 10));
    stage.page->addObject(stage.image);
}

void TestGeometryPresenting::theObjectsOwnPositionCounts()
{
    Stage stage(threeFrames());
    stage->setPos(QPointF(-4.0, 7.0), false);
    stage.probe.animatedType() = background;
    stage.document.setAlternateMode(1);
    stage->setPos(QPointF(100.0, -5.0), false); // of the pattern
    QVERIFY(present(stage));
    QCOMPARE(stage.probe.bgRect(), QRectF(4, 0, 6, 10));
    QCOMPARE(stage.probe.bgPos(), QPointF(0.0, 0.0));
}

void TestGeometryPresenting::aBackgroundBeginsItsPatternAnew()
{
    Stage stage(threeFrames());
    stage.probe.animatedType() = background;
    stage.probe.runningIndex() = 2;
    stage.probe.bgPos() = QPointF(3.0, 4.0);
    QVERIFY(present(stage));
    QCOMPARE(stage.probe.bgPos(), QPointF(0.0, 0.0));
    QCOMPARE(stage.probe.bgImage().size(), QSize(20, 20));
    QCOMPARE(stage.probe.bgImage().pixelColor(5, 5), QColor(Qt::blue));
}

void TestGeometryPresenting::anotherTypeHasNoTile()
{
    for (const int type : {normal, 0, 2}) {
        Stage stage(threeFrames());
        stage.probe.animatedType() = type;
        stage.probe.bgPos() = QPointF(3.0, 4.0);
        stage->generateBGImage(0);
        QVERIFY(present(stage));
        QVERIFY(stage.probe.bgImage().isNull());
        QCOMPARE(stage.probe.bgPos(), QPointF(3.0, 4.0));
    }
}

void TestGeometryPresenting::editingIsRememberedAndNothingTold_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("plays");
    QTest::newRow("stopped") << normal << false;
    QTest::newRow("playing") << normal << true;
    QTest::newRow("a stopped background") << background << false;
    QTest::newRow("a playing background") << background << true;
}

void TestGeometryPresenting::editingIsRememberedAndNothingTold()
{
    QFETCH(int, type);
    QFETCH(bool, plays);
    Stage stage(threeFrames());
    stage.probe.animatedType() = type;
    stage->playImage(plays);
    stage.probe.runningIndex() = 1;
    stage.probe.frame(0).size = QSizeF(1.5, 2.5);
    stage.log.clear();
    QVERIFY(present(stage));
    QCOMPARE(stage.probe.savedIndex(), 1);
    QCOMPARE(stage.probe.savedRunning(), plays);
    QCOMPARE(stage.probe.savedFrameSizes(), QList<QSizeF>({{1.5, 2.5}, {20, 10}, {10, 30}}));
    QCOMPARE(stage.log.entries(), QStringList());
    QCOMPARE(stage.probe.isRunning(), plays);
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage->getSize(), QSizeF(10.0, 10.0));
}

void TestGeometryPresenting::presentingTwiceRemembersTheSecondState()
{
    Stage stage(threeFrames());
    stage->playImage(true);
    present(stage);
    stage->playImage(false);
    stage->setCurrentIndex(2);
    stage.probe.frames().removeFirst();
    stage.probe.runningIndex() = 1;
    present(stage);
    QCOMPARE(stage.probe.savedIndex(), 1);
    QVERIFY(!stage.probe.savedRunning());
    QCOMPARE(stage.probe.savedFrameSizes(), QList<QSizeF>({{20, 10}, {10, 30}}));
}

void TestGeometryPresenting::withoutFramesThereIsLittleToRemember()
{
    Stage stage;
    stage.probe.animatedType() = background;
    stage.probe.savedFrameSizes() = {{1, 1}};
    QVERIFY(present(stage));
    QCOMPARE(stage.probe.savedIndex(), 0);
    QCOMPARE(stage.probe.savedFrameSizes(), QList<QSizeF>());
    QVERIFY(stage.probe.bgImage().isNull());
    QCOMPARE(stage.log.entries(), QStringList());
}

QTEST_MAIN(TestGeometryPresenting)
#include "tst_geometry_presenting.moc"
