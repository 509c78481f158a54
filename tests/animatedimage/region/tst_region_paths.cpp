#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

namespace
{

using Corners = QList<QPair<double, double>>;

/// The points of a path, to compare them exactly: points and paths of Qt compare roughly.
Corners pointsOf(const QPainterPath &path)
{
    Corners points;
    for (int i = 0; i < path.elementCount(); ++i)
        points.append({path.elementAt(i).x, path.elementAt(i).y});
    return points;
}

/// The points of a rectangle from (left, top) to (right, bottom), as a path holds them.
Corners rectangle(double left, double top, double right, double bottom)
{
    return {{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}};
}

QRect box(int left, int top, int right, int bottom)
{
    return {QPoint(left, top), QPoint(right, bottom)};
}

} // namespace

/// The hit path of a frame: its opaque rectangles at the size of the object.
class TestRegionPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePathIsTheRectanglesAtTheSizeOfTheObject();
    void thePathWindsAndHasNoRemainsOfTheLastOne();
    void pathNumbersAreOfSinglePrecision();
    void aRectangleWithoutWidthIsPartOfThePath();
    void measuringAgainReadsThePixels();
    void scalingAloneDoesNotReadThePixels();
    void aFrameNeverMeasuredIsMeasuredInAnyCase();
    void allFramesAreUpdated();
    void anIndexOutsideTheListIsIgnored_data();
    void anIndexOutsideTheListIsIgnored();
    void rectanglesAreMirroredAndFlipped_data();
    void rectanglesAreMirroredAndFlipped();
    void mirroringMovesARectangleOfThePicture100Wide();
    void theSavedMirrorAndFlipDoNotCount();
    void mirrorBackIsAsBefore();
    void resizingMovesThePathAlone();
    void aFrameMayHaveASizeOfItsOwn();
    void viewsAreComparedExactly_data();
    void viewsAreComparedExactly();
    void handlesAreComparedExactly_data();
    void handlesAreComparedExactly();
};

void TestRegionPaths::thePathIsTheRectanglesAtTheSizeOfTheObject()
{
    Stage stage;
    stage.probe.rect() = QRectF(0.0, 0.0, 12.0, 8.0);
    stage.addFrame(QStringLiteral("f"), Pictures::fromText({"##.#..", //
                                                            "##.#..", //
                                                            "......", //
                                                            "..##.."}));
    const QList<QRect> rects{box(0, 0, 1, 1), box(3, 0, 3, 1), box(2, 3, 3, 3)};
    QCOMPARE(stage.probe.frame(0).rects, rects);
    QCOMPARE(stage.probe.frame(0).regionSize, QSize(6, 4));
    QCOMPARE(pointsOf(stage.probe.frame(0).path), rectangle(0.0, 0.0, 4.0, 4.0) +
                                                      rectangle(6.0, 0.0, 8.0, 4.0) +
                                                      rectangle(4.0, 6.0, 8.0, 8.0));
}

void TestRegionPaths::thePathWindsAndHasNoRemainsOfTheLastOne()
{
    Stage stage({Pictures::solid(5, 4, Qt::red), Pictures::transparent(5, 4)});
    for (int i = 0; i < 2; ++i) {
        stage->updateRegion(0, true);
        stage->updateRegion(1, true);
        QCOMPARE(stage.probe.frame(0).path.fillRule(), Qt::WindingFill);
        QCOMPARE(pointsOf(stage.probe.frame(0).path), rectangle(0.0, 0.0, 4.0, 4.0));
        QCOMPARE(stage.probe.frame(1).path.fillRule(), Qt::WindingFill);
        QVERIFY(stage.probe.frame(1).path.isEmpty());
    }
}

void TestRegionPaths::pathNumbersAreOfSinglePrecision()
{
    Stage stage;
    stage.probe.rect() = QRectF(0.0, 0.0, 20.0, 10.0);
    stage.addFrame(QStringLiteral("f"), Pictures::fromText({"......", //
                                                            "...###", //
                                                            "......"}));
    // Both factors are 10/3, in single precision 3.33333325386047363. Three times that is
    // 9.99999976158, and its nearest number of single precision is 10.
    const Corners expected =
        rectangle(10.0, 3.33333325386047363, 16.66666650772094727, 6.66666650772094727);
    QCOMPARE(pointsOf(stage.probe.frame(0).path), expected);
}

void TestRegionPaths::aRectangleWithoutWidthIsPartOfThePath()
{
    Stage stage;
    stage.probe.rect() = QRectF(0.0, 0.0, 8.0, 2.0);
    stage.addFrame(QStringLiteral("f"), Pictures::fromText({"...#"}));
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{box(3, 0, 2, 0)});
    QPainterPath expected;
    expected.addRect(QRectF(6.0, 0.0, 0.0, 2.0));
    QCOMPARE(pointsOf(stage.probe.frame(0).path), pointsOf(expected));
    QVERIFY(expected.elementCount() > 0);
}

void TestRegionPaths::measuringAgainReadsThePixels()
{
    Stage stage({Pictures::solid(5, 4, Qt::red)});
    stage.probe.frame(0).image = Pictures::fromText({"#...", "#..."});
    stage->updateRegion(0, true);
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{box(0, 0, 0, 1)});
    QCOMPARE(stage.probe.frame(0).regionSize, QSize(4, 2));
    QCOMPARE(pointsOf(stage.probe.frame(0).path), rectangle(0.0, 0.0, 1.25, 4.0));
}

void TestRegionPaths::scalingAloneDoesNotReadThePixels()
{
    Stage stage({Pictures::solid(5, 4, Qt::red)});
    stage.probe.frame(0).image = Pictures::fromText({"#...", "#..."});
    stage.probe.rect() = QRectF(0.0, 0.0, 10.0, 4.0);
    stage->updateRegion(0, false);
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{box(0, 0, 3, 3)});
    QCOMPARE(stage.probe.frame(0).regionSize, QSize(5, 4));
    QCOMPARE(pointsOf(stage.probe.frame(0).path), rectangle(0.0, 0.0, 8.0, 4.0));
}

void TestRegionPaths::aFrameNeverMeasuredIsMeasuredInAnyCase()
{
    Stage stage({Pictures::solid(5, 4, Qt::red)});
    stage.probe.frames().append({QStringLiteral("new"), Pictures::solid(5, 4, Qt::red)});
    QCOMPARE(stage.probe.frame(1).regionSize, QSize(-1, -1));
    stage->updateRegion(1, false);
    QCOMPARE(stage.probe.frame(1).regionSize, QSize(5, 4));
    QCOMPARE(pointsOf(stage.probe.frame(1).path), rectangle(0.0, 0.0, 4.0, 4.0));
}

void TestRegionPaths::allFramesAreUpdated()
{
    Stage stage(solidFrames({{5, 4}, {3, 2}, {9, 1}}));
    stage.probe.rect() = QRectF(0.0, 0.0, 45.0, 8.0);
    stage->updateRegion(false);
    QCOMPARE(pointsOf(stage.probe.frame(0).path), rectangle(0.0, 0.0, 36.0, 8.0));
    QCOMPARE(pointsOf(stage.probe.frame(1).path), rectangle(0.0, 0.0, 30.0, 8.0));
    QCOMPARE(pointsOf(stage.probe.frame(2).path), rectangle(0.0, 0.0, 40.0, 8.0));
}

void TestRegionPaths::anIndexOutsideTheListIsIgnored_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("below") << -1;
    QTest::newRow("just after the last") << 1;
    QTest::newRow("far away") << 1000000;
}

void TestRegionPaths::anIndexOutsideTheListIsIgnored()
{
    QFETCH(int, index);
    Stage stage({Pictures::solid(5, 4, Qt::red)});
    stage->updateRegion(index, true);
    stage->updateRegion(index, false);
    QCOMPARE(stage.probe.frames().size(), 1);
    QCOMPARE(pointsOf(stage.probe.frame(0).path), rectangle(0.0, 0.0, 4.0, 4.0));
}

void TestRegionPaths::rectanglesAreMirroredAndFlipped_data()
{
    QTest::addColumn<bool>("mirror");
    QTest::addColumn<bool>("flip");
    QTest::addColumn<QList<QRect>>("expected");
    // The picture is 6 x 4; its rectangles, in order: 2 x 1 at (0, 0), none x 1 at (5, 0), 1 x 2
    // at (1, 1).
    QTest::newRow("as it is") << false << false
                              << QList<QRect>{box(0, 0, 1, 0), box(5, 0, 4, 0), box(1, 1, 1, 2)};
    QTest::newRow("mirrored") << true << false
                              << QList<QRect>{box(4, 0, 5, 0), box(1, 0, 0, 0), box(4, 1, 4, 2)};
    QTest::newRow("flipped") << false << true
                             << QList<QRect>{box(0, 3, 1, 3), box(5, 3, 4, 3), box(1, 1, 1, 2)};
    QTest::newRow("both") << true << true
                          << QList<QRect>{box(4, 3, 5, 3), box(1, 3, 0, 3), box(4, 1, 4, 2)};
}

void TestRegionPaths::rectanglesAreMirroredAndFlipped()
{
    QFETCH(bool, mirror);
    QFETCH(bool, flip);
    Stage stage({Pictures::fromText({"##...#", //
                                     ".#....", //
                                     ".#....", //
                                     "......"})});
    stage.probe.isMirrored() = mirror;
    stage.probe.isFlipped() = flip;
    stage->updateRegion(0, true);
    QTEST(stage.probe.frame(0).rects, "expected");
    QCOMPARE(stage.probe.frame(0).regionSize, QSize(6, 4));
}

void TestRegionPaths::mirroringMovesARectangleOfThePicture100Wide()
{
    QImage picture = Pictures::transparent(100, 50);
    for (int x = 10; x <= 19; ++x) {
        for (int y = 5; y <= 9; ++y)
            picture.setPixelColor(x, y, Qt::black);
    }
    Stage stage({picture});
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{box(10, 5, 19, 9)});
    stage->setMirror(true, false);
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{box(80, 5, 89, 9)});
    stage->setFlip(true, false);
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{box(80, 40, 89, 44)});
    QCOMPARE(pointsOf(stage.probe.frame(0).path), rectangle(80.0, 40.0, 90.0, 45.0));
}

void TestRegionPaths::theSavedMirrorAndFlipDoNotCount()
{
    Stage stage({Pictures::fromText({"#...", "...."})});
    stage.probe.mirror() = true;
    stage.probe.flip() = true;
    stage->updateRegion(true);
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{box(0, 0, 0, 0)});
}

void TestRegionPaths::mirrorBackIsAsBefore()
{
    Stage stage({Pictures::fromText({"##..", "#..."})});
    const QList<QRect> before{box(0, 0, 1, 0), box(0, 1, 0, 1)};
    QCOMPARE(stage.probe.frame(0).rects, before);
    stage->setMirror(true, false);
    const QList<QRect> mirrored{box(2, 0, 3, 0), box(3, 1, 3, 1)};
    QCOMPARE(stage.probe.frame(0).rects, mirrored);
    stage->setMirror(false, false);
    QCOMPARE(stage.probe.frame(0).rects, before);
}

void TestRegionPaths::resizingMovesThePathAlone()
{
    Stage stage({Pictures::solid(5, 4, Qt::red)});
    stage->setSize(QSizeF(50.0, 20.0), false, false);
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{box(0, 0, 3, 3)});
    QCOMPARE(pointsOf(stage.probe.frame(0).path), rectangle(0.0, 0.0, 40.0, 20.0));
}

void TestRegionPaths::aFrameMayHaveASizeOfItsOwn()
{
    // Two frames that share their pixels.
    const QImage picture = Pictures::solid(4, 3, Qt::red);
    Stage stage({picture, picture});
    stage->setCenterPos(QPointF(50.0, 50.0), QSizeF(8.0, 6.0), 0.0, false);
    stage->updateRegion(0, false);
    QCOMPARE(pointsOf(stage.probe.frame(0).path), rectangle(0.0, 0.0, 6.0, 6.0));
    QCOMPARE(pointsOf(stage.probe.frame(1).path), rectangle(0.0, 0.0, 3.0, 3.0));
}

void TestRegionPaths::viewsAreComparedExactly_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<bool>("mirrored");
    QTest::addColumn<bool>("flipped");
    QTest::addColumn<bool>("isSame");
    QTest::newRow("the same") << QSizeF(4.0, 3.0) << true << false << true;
    QTest::newRow("wider by little") << QSizeF(4.0 + 1e-14, 3.0) << true << false << false;
    QTest::newRow("higher by little") << QSizeF(4.0, 3.0 + 1e-14) << true << false << false;
    QTest::newRow("mirrored back") << QSizeF(4.0, 3.0) << false << false << false;
    QTest::newRow("flipped") << QSizeF(4.0, 3.0) << true << true << false;
}

void TestRegionPaths::viewsAreComparedExactly()
{
    QFETCH(QSizeF, size);
    QFETCH(bool, mirrored);
    QFETCH(bool, flipped);
    const FrameRegions::View view = {QSizeF(4.0, 3.0), true, false};
    QTEST((FrameRegions::View{size, mirrored, flipped} == view), "isSame");
}

void TestRegionPaths::handlesAreComparedExactly_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<double>("size");
    QTest::addColumn<bool>("isSame");
    QTest::newRow("the same") << QRectF(1.0, 2.0, 3.0, 4.0) << 5.0 << true;
    QTest::newRow("to the right") << QRectF(1.0 + 1e-14, 2.0, 3.0, 4.0) << 5.0 << false;
    QTest::newRow("further down") << QRectF(1.0, 2.0 + 1e-14, 3.0, 4.0) << 5.0 << false;
    QTest::newRow("wider") << QRectF(1.0, 2.0, 3.0 + 1e-14, 4.0) << 5.0 << false;
    QTest::newRow("higher") << QRectF(1.0, 2.0, 3.0, 4.0 + 1e-14) << 5.0 << false;
    QTest::newRow("larger handles") << QRectF(1.0, 2.0, 3.0, 4.0) << 5.0 + 1e-14 << false;
}

void TestRegionPaths::handlesAreComparedExactly()
{
    QFETCH(QRectF, rect);
    QFETCH(double, size);
    const HitPath::Handles handles = {QRectF(1.0, 2.0, 3.0, 4.0), 5.0};
    QTEST((HitPath::Handles{rect, size} == handles), "isSame");
}

QTEST_MAIN(TestRegionPaths)
#include "tst_region_paths.moc"
