#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

namespace
{

const QString changed = QStringLiteral("changed 1002");
const QString moved = QStringLiteral("changed 104");

constexpr int background = 1;

QList<QImage> threeFrames()
{
    return solidFrames({{10, 20}, {30, 10}, {8, 8}});
}

/// Notes how it is placed.
class PlacedImage final : public CAnimatedImage
{
public:
    struct Placing {
        QPointF center;
        QSizeF size;
        double angle;
        bool update;
    };

    PlacedImage()
        : CAnimatedImage(1, true, nullptr)
    {
    }

    void setCenterPos(const QPointF &center, const QSizeF &size, double angle, bool update) override
    {
        placings.append({center, size, angle, update});
        CAnimatedImage::setCenterPos(center, size, angle, update);
    }

    QList<Placing> placings;
};

} // namespace

/// Showing a frame by its index.
class TestPlaybackIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theIndexIsClamped_data();
    void theIndexIsClamped();
    void showingAFrameTells();
    void showingTheSameFrameAgainDoesNothing();
    void withoutFramesNothingChanges_data();
    void withoutFramesNothingChanges();

    void theObjectTakesTheSizeOfTheFrameAroundItsCentre();
    void allFramesTakeTheScaleOfTheOneShown();
    void sizesAreWorkedOutInDoublesInThisOrder();
    void anOldIndexOutsideTheListLeavesTheSizes_data();
    void anOldIndexOutsideTheListLeavesTheSizes();
    void anOldFrameWithoutPictureLeavesTheSizes();
    void theHitPathFollowsTheNewSize();

    void theAngleIsThatOfAFreelyTurningObjectOnly_data();
    void theAngleIsThatOfAFreelyTurningObjectOnly();
    void aTurnedObjectKeepsItsCentre();
    void theLayerEffectIsDrawnAnew_data();
    void theLayerEffectIsDrawnAnew();

    void aBackgroundStoresTheIndexAsItIs_data();
    void aBackgroundStoresTheIndexAsItIs();
    void aBackgroundKeepsItsSizeAndItsTile();
};

void TestPlaybackIndex::theIndexIsClamped_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("expected");
    QTest::newRow("inside") << 1 << 1;
    QTest::newRow("the last") << 2 << 2;
    QTest::newRow("just after the last") << 3 << 2;
    QTest::newRow("10") << 10 << 2;
    QTest::newRow("-5") << -5 << 0;
    QTest::newRow("the least") << std::numeric_limits<int>::min() << 0;
    QTest::newRow("the greatest") << std::numeric_limits<int>::max() << 2;
}

void TestPlaybackIndex::theIndexIsClamped()
{
    QFETCH(int, index);
    for (const int start : {0, 1, 2}) {
        Stage stage(threeFrames());
        stage.probe.runningIndex() = start;
        stage->setCurrentIndex(index);
        QTEST(stage.probe.runningIndex(), "expected");
    }
}

void TestPlaybackIndex::showingAFrameTells()
{
    Stage stage(threeFrames());
    stage->setCurrentIndex(2);
    // The placing tells of the geometry, and so does the new shape.
    QCOMPARE(stage.log.entries(), QStringList({moved, moved, changed}));
}

void TestPlaybackIndex::showingTheSameFrameAgainDoesNothing()
{
    Stage stage(threeFrames());
    stage->setCurrentIndex(2);
    stage->setSize(QSizeF(50.0, 60.0), false, false);
    stage.log.clear();
    stage->setCurrentIndex(2);
    stage->setCurrentIndex(10);
    QCOMPARE(stage.log.entries(), QStringList());
    QCOMPARE(stage->getSize(), QSizeF(50.0, 60.0));
    QCOMPARE(stage.probe.frame(0).size, QSizeF(10.0, 20.0));
}

void TestPlaybackIndex::withoutFramesNothingChanges_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("0") << 0;
    QTest::newRow("1") << 1;
    QTest::newRow("-1") << -1;
}

void TestPlaybackIndex::withoutFramesNothingChanges()
{
    QFETCH(int, index);
    Stage stage;
    const QSizeF size = stage->getSize();
    stage->setCurrentIndex(index);
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage->getSize(), size);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPlaybackIndex::theObjectTakesTheSizeOfTheFrameAroundItsCentre()
{
    Stage stage(threeFrames());
    stage->setPos(QPointF(100.0, 200.0), false);
    stage->setCurrentIndex(1); // 10 x 20 around (105, 210) becomes 30 x 10
    QCOMPARE(stage->getSize(), QSizeF(30.0, 10.0));
    QCOMPARE(stage->getPos(), QPointF(90.0, 205.0));
    stage->setCurrentIndex(2);
    QCOMPARE(stage->getSize(), QSizeF(8.0, 8.0));
    QCOMPARE(stage->getPos(), QPointF(101.0, 206.0));
    stage->setCurrentIndex(0);
    QCOMPARE(stage->getPos(), QPointF(100.0, 200.0));
}

void TestPlaybackIndex::allFramesTakeTheScaleOfTheOneShown()
{
    Stage stage(threeFrames());
    stage->setSize(QSizeF(20.0, 10.0), false, false); // frame 0 at 200 % x 50 %
    stage->setCurrentIndex(2);
    QCOMPARE(stage.probe.frame(0).size, QSizeF(20.0, 10.0));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(60.0, 5.0));
    QCOMPARE(stage.probe.frame(2).size, QSizeF(16.0, 4.0));
    QCOMPARE(stage->getSize(), QSizeF(16.0, 4.0));

    // The pictures keep their pixels, and the object's own size counts, not that of the frame.
    QCOMPARE(stage.probe.frame(1).image.size(), QSize(30, 10));
    stage.probe.frame(2).size = QSizeF(1.0, 1.0);
    stage->setCurrentIndex(0);
    QCOMPARE(stage.probe.frame(2).size, QSizeF(16.0, 4.0));
}

void TestPlaybackIndex::sizesAreWorkedOutInDoublesInThisOrder()
{
    Stage stage(solidFrames({{3, 49}, {7, 10}}));
    stage->setSize(QSizeF(12.7, 0.1), false, false);
    stage->setCurrentIndex(1);
    const QSizeF size = stage.probe.frame(1).size;
    // 7 x 12.7 / 3 and 10 x 0.1 / 49. The product comes first: 7 x (12.7 / 3) and 7 / 3 x 12.7
    // would be 29.633333333333333, and 10 x (0.1 / 49) would be 0.020408163265306124.
    QVERIFY(size.width() == 29.63333333333333);
    QVERIFY(size.height() == 0.02040816326530612);
}

void TestPlaybackIndex::anOldIndexOutsideTheListLeavesTheSizes_data()
{
    QTest::addColumn<int>("old");
    QTest::newRow("before") << -1;
    QTest::newRow("after the last") << 3;
}

void TestPlaybackIndex::anOldIndexOutsideTheListLeavesTheSizes()
{
    QFETCH(int, old);
    Stage stage(threeFrames());
    stage->setSize(QSizeF(20.0, 10.0), false, false);
    stage.probe.runningIndex() = old;
    stage->setCurrentIndex(1);
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.probe.frame(0).size, QSizeF(10.0, 20.0));
    QCOMPARE(stage.probe.frame(2).size, QSizeF(8.0, 8.0));
    QCOMPARE(stage->getSize(), QSizeF(30.0, 10.0));
}

void TestPlaybackIndex::anOldFrameWithoutPictureLeavesTheSizes()
{
    Stage stage(threeFrames());
    stage.probe.frame(0).image = QImage();
    stage->setSize(QSizeF(20.0, 10.0), false, false);
    stage->setCurrentIndex(1);
    QCOMPARE(stage->getSize(), QSizeF(30.0, 10.0));
    QCOMPARE(stage.probe.frame(2).size, QSizeF(8.0, 8.0));
}

void TestPlaybackIndex::theHitPathFollowsTheNewSize()
{
    Stage stage(threeFrames());
    stage->setSize(QSizeF(20.0, 40.0), false, false); // 200 %
    stage->setCurrentIndex(1);
    // The last of the 30 columns is never part of it.
    QCOMPARE(stage.probe.frame(1).path.boundingRect(), QRectF(0.0, 0.0, 58.0, 20.0));
}

void TestPlaybackIndex::theAngleIsThatOfAFreelyTurningObjectOnly_data()
{
    QTest::addColumn<int>("rotateType");
    QTest::addColumn<double>("expected");
    QTest::newRow("stays upright") << 0 << 0.0;
    QTest::newRow("looks left or right") << 1 << 0.0;
    QTest::newRow("turns freely") << 2 << 30.0;
}

void TestPlaybackIndex::theAngleIsThatOfAFreelyTurningObjectOnly()
{
    QFETCH(int, rotateType);
    PlacedImage image;
    AnimatedImageProbe probe(image);
    const auto pictures = threeFrames();
    for (const QImage &picture : pictures)
        probe.frames().append({QStringLiteral("f"), picture});
    image.setSize(QSizeF(10.0, 20.0), false, false);
    image.setPos(QPointF(100.0, 200.0), false);
    image.setKTRotateType(rotateType);
    image.setRotate(30.0, false);

    image.setCurrentIndex(1);

    QCOMPARE(image.placings.size(), 1);
    const PlacedImage::Placing placing = image.placings.constFirst();
    QCOMPARE(placing.center, QPointF(105.0, 210.0));
    QCOMPARE(placing.size, QSizeF(30.0, 10.0));
    QTEST(placing.angle, "expected");
    QVERIFY(placing.update);
}

void TestPlaybackIndex::aTurnedObjectKeepsItsCentre()
{
    Stage stage(threeFrames());
    stage->setPos(QPointF(100.0, 200.0), false);
    stage->setRotate(90.0, false);
    stage->setCurrentIndex(1);
    QCOMPARE(stage->getPos(), QPointF(90.0, 205.0));
    QCOMPARE(stage->getRotate(), 90.0);
    QCOMPARE(stage->mapToScene(stage->getClientRect().center()), QPointF(105.0, 210.0));
}

void TestPlaybackIndex::theLayerEffectIsDrawnAnew_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("normal") << -1;
    QTest::newRow("background") << background;
}

void TestPlaybackIndex::theLayerEffectIsDrawnAnew()
{
    QFETCH(int, type);
    // The second frame has nothing in it that could throw a shadow.
    Stage stage({Pictures::solid(10, 10, Qt::black), Pictures::transparent(10, 10)});
    stage->setLayerShadow(Qt::red, QPointF(20.0, 0.0));
    stage.probe.animatedType() = type;
    QCOMPARE(stage.page->rendered().pixelColor(25, 5), QColor(Qt::red));
    stage->setCurrentIndex(1);
    QCOMPARE(stage.page->rendered().pixelColor(25, 5), QColor(Qt::white));
}

void TestPlaybackIndex::aBackgroundStoresTheIndexAsItIs_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("7 of 3") << 7;
    QTest::newRow("-4") << -4;
    QTest::newRow("inside") << 1;
    QTest::newRow("the same again") << 0;
}

void TestPlaybackIndex::aBackgroundStoresTheIndexAsItIs()
{
    QFETCH(int, index);
    Stage stage(threeFrames());
    stage.probe.animatedType() = background;
    stage->setCurrentIndex(index);
    QCOMPARE(stage.probe.runningIndex(), index);
    // It tells of its geometry, and not that another frame is shown.
    QCOMPARE(stage.log.entries(), QStringList({moved}));
}

void TestPlaybackIndex::aBackgroundKeepsItsSizeAndItsTile()
{
    Stage stage(threeFrames());
    stage.probe.animatedType() = background;
    stage->generateBGImage(0);
    const qint64 tile = stage.probe.bgImage().cacheKey();
    stage->setCurrentIndex(1);
    QCOMPARE(stage->getSize(), QSizeF(10.0, 20.0));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(30.0, 10.0));
    QCOMPARE(stage.probe.bgImage().cacheKey(), tile);
    // The path is at the object's size: 29 of 30 columns.
    QCOMPARE(stage.probe.frame(1).path.boundingRect().height(), 20.0);
}

QTEST_MAIN(TestPlaybackIndex)
#include "tst_playback_index.moc"
