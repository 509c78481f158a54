#include "canvas.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

#include <limits>

namespace
{

constexpr int background = 1;

/// Four columns of one colour each.
QImage fourColumns()
{
    return Canvas::picture({"rgby", "rgby"});
}

/// No row and no column like another, and neither like the other's.
QImage patchwork()
{
    return Canvas::picture({"rgby", //
                            "gwwr", //
                            "yb.g"});
}

/// A presented background on the page, of 4 x 2 unless another picture is given, its tile ready.
struct Presented {
    explicit Presented(const QImage &picture = fourColumns())
        : stage({picture})
    {
        stage.probe.animatedType() = background;
        stage.document.setAlternateMode(1);
        stage->regenBGImage();
    }

    Stage stage;
};

} // namespace

/// The visible part of the tile, drawn while the document is presented.
class TestBackgroundPainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allOfItIsDrawnWhereItLiesOnThePage();
    void thePatternIsMovedByItsPosition_data();
    void thePatternIsMovedByItsPosition();
    void theOffsetOfThePartAndOfThePatternAreCountedTogether();
    void theyAreCountedTogetherDownwardsToo();
    void onlyTheVisiblePartIsDrawn();
    void theTileIsDrawnNotTheFrame();
    void theTileIsDrawnForAnIndexOutsideTheList_data();
    void theTileIsDrawnForAnIndexOutsideTheList();
    void withoutFramesNoTileIsDrawn();
    void paintingLeavesTheTile();
    void whileEditedItIsDrawnLikeANormalOne();
    void theNormalTypeIsDrawnWholeWhilePresented();
    void otherTypesAreNormal_data();
    void otherTypesAreNormal();
    void anUnknownDocumentIsLookedUpForPaintingAlone();
    void theBoundsAreTheVisiblePart();
    void whatCannotBeDrawnDrawsNothing_data();
    void whatCannotBeDrawnDrawsNothing();
};

void TestBackgroundPainting::allOfItIsDrawnWhereItLiesOnThePage()
{
    Presented presented;
    QCOMPARE(Canvas::letters(Canvas::painted(presented.stage.image, {6, 4}, {1, 1})),
             Canvas::rows({"......", //
                           ".rgby.", //
                           ".rgby.", //
                           "......"}));
}

void TestBackgroundPainting::thePatternIsMovedByItsPosition_data()
{
    QTest::addColumn<QPointF>("position");
    QTest::addColumn<QStringList>("expected");
    const QStringList unmoved = Canvas::rows({"rgby", "gwwr", "yb.g"});
    const QStringList rightByOne = Canvas::rows({"yrgb", "rgww", "gyb."});
    const QStringList leftByOne = Canvas::rows({"gbyr", "wwrg", "b.gy"});
    const QStringList downByOne = Canvas::rows({"yb.g", "rgby", "gwwr"});
    const QStringList upByOne = Canvas::rows({"gwwr", "yb.g", "rgby"});
    QTest::newRow("not") << QPointF(0.0, 0.0) << unmoved;
    QTest::newRow("right by one") << QPointF(1.0, 0.0) << rightByOne;
    QTest::newRow("right by three") << QPointF(3.0, 0.0) << leftByOne;
    QTest::newRow("right by the whole width") << QPointF(4.0, 0.0) << unmoved;
    QTest::newRow("right by more") << QPointF(9.0, 0.0) << rightByOne;
    QTest::newRow("left by one") << QPointF(-1.0, 0.0) << leftByOne;
    QTest::newRow("left by more") << QPointF(-403.0, 0.0) << rightByOne;
    QTest::newRow("down by one") << QPointF(0.0, 1.0) << downByOne;
    QTest::newRow("down by two") << QPointF(0.0, 2.0) << upByOne;
    QTest::newRow("down by the whole height") << QPointF(0.0, 3.0) << unmoved;
    QTest::newRow("up by one") << QPointF(0.0, -1.0) << upByOne;
    QTest::newRow("up by more") << QPointF(0.0, -301.0) << upByOne;
    QTest::newRow("right and down by one")
        << QPointF(1.0, 1.0) << Canvas::rows({"gyb.", "yrgb", "rgww"});
}

void TestBackgroundPainting::thePatternIsMovedByItsPosition()
{
    QFETCH(QPointF, position);
    Presented presented(patchwork());
    presented.stage->setPos(position, true);
    QTEST(Canvas::letters(Canvas::painted(presented.stage.image, {4, 3})), "expected");
}

void TestBackgroundPainting::theyAreCountedTogetherDownwardsToo()
{
    Stage stage({patchwork()});
    stage.probe.animatedType() = background;
    stage->setPos(QPointF(0.0, -1.0), false); // one row above the page
    stage.document.setAlternateMode(1);
    stage->regenBGImage();
    QCOMPARE(stage.probe.bgRect(), QRectF(0.0, 1.0, 4.0, 2.0));
    QCOMPARE(Canvas::letters(Canvas::painted(stage.image, {4, 3})),
             Canvas::rows({"....", "gwwr", "yb.g"}));

    // The source begins at 1 - 2 = -1, that is row 2.
    stage.probe.bgPos() = QPointF(0.0, 2.0);
    QCOMPARE(Canvas::letters(Canvas::painted(stage.image, {4, 3})),
             Canvas::rows({"....", "yb.g", "rgby"}));
}

void TestBackgroundPainting::theOffsetOfThePartAndOfThePatternAreCountedTogether()
{
    // Each column of the frame has its own colour: column c is (c, 0, 255 - c).
    QImage columns(100, 4, QImage::Format_ARGB32);
    for (int x = 0; x < 100; ++x) {
        for (int y = 0; y < 4; ++y)
            columns.setPixelColor(x, y, QColor(x, 0, 255 - x));
    }
    Stage stage({columns});
    stage.probe.animatedType() = background;
    stage->setPos(QPointF(-10.0, 0.0), false);
    stage.document.setAlternateMode(1);
    stage->regenBGImage();
    QCOMPARE(stage.probe.bgRect(), QRectF(10.0, 0.0, 90.0, 4.0));
    stage.probe.bgPos() = QPointF(15.0, 0.0);

    // The source begins at 10 - 15 = -5, that is 95: column 10 shows 95, column 15 shows 0.
    const QImage result = Canvas::painted(stage.image, {100, 4});
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 10; ++x)
            QCOMPARE(result.pixelColor(x, y).alpha(), 0);
        for (int x = 10; x < 100; ++x) {
            const int column = x < 15 ? x + 85 : x - 15;
            QCOMPARE(result.pixelColor(x, y), QColor(column, 0, 255 - column));
        }
    }
}

void TestBackgroundPainting::onlyTheVisiblePartIsDrawn()
{
    Stage stage({fourColumns()});
    stage.probe.animatedType() = background;
    stage->setPos(QPointF(-1.0, 599.0), false); // the page is 800 x 600
    stage.document.setAlternateMode(1);
    stage->regenBGImage();
    QCOMPARE(Canvas::letters(Canvas::painted(stage.image, {5, 3})),
             Canvas::rows({".gby.", //
                           ".....", //
                           "....."}));
}

void TestBackgroundPainting::theTileIsDrawnNotTheFrame()
{
    Presented presented;
    presented.stage.probe.frame(0).image = Canvas::picture({"ww", "ww"});
    QCOMPARE(Canvas::letters(Canvas::painted(presented.stage.image, {4, 1})),
             Canvas::rows({"rgby"}));
}

void TestBackgroundPainting::theTileIsDrawnForAnIndexOutsideTheList_data()
{
    QTest::addColumn<int>("index");
    for (const int index : {-1, 1, 1000000})
        QTest::addRow("%d", index) << index;
}

void TestBackgroundPainting::theTileIsDrawnForAnIndexOutsideTheList()
{
    QFETCH(int, index);
    Presented presented;
    presented.stage->setCurrentIndex(index);
    QCOMPARE(presented.stage.probe.runningIndex(), index);
    QCOMPARE(Canvas::letters(Canvas::painted(presented.stage.image, {4, 1})),
             Canvas::rows({"rgby"}));

    presented.stage->generateBGImage(index);
    QCOMPARE(Canvas::letters(Canvas::painted(presented.stage.image, {4, 1})),
             Canvas::rows({"...."}));
}

void TestBackgroundPainting::withoutFramesNoTileIsDrawn()
{
    Presented presented;
    presented.stage.probe.frames().clear();
    QVERIFY(!presented.stage.probe.bgImage().isNull());
    QCOMPARE(Canvas::letters(Canvas::painted(presented.stage.image, {4, 1})),
             Canvas::rows({"...."}));
}

void TestBackgroundPainting::paintingLeavesTheTile()
{
    Presented presented;
    const qint64 tile = presented.stage.probe.bgImage().cacheKey();
    Canvas::painted(presented.stage.image, {4, 2});
    QCOMPARE(presented.stage.probe.bgImage().cacheKey(), tile);
    QCOMPARE(presented.stage.log.entries(), QStringList());
}

void TestBackgroundPainting::whileEditedItIsDrawnLikeANormalOne()
{
    Presented presented;
    presented.stage.document.setAlternateMode(0);
    presented.stage.probe.bgPos() = QPointF(1.0, 0.0);
    presented.stage.probe.bgRect() = QRectF(1.0, 0.0, 2.0, 2.0);
    QCOMPARE(Canvas::letters(Canvas::painted(presented.stage.image, {5, 2})),
             Canvas::rows({"rgby.", "rgby."}));
    const QRectF bounds = presented.stage->CBaseObject::boundingRect();
    QCOMPARE(presented.stage->boundingRect(), bounds);
    QVERIFY(bounds.contains(QRectF(0.0, 0.0, 4.0, 2.0)));
}

void TestBackgroundPainting::theNormalTypeIsDrawnWholeWhilePresented()
{
    Presented presented;
    presented.stage.probe.animatedType() = -1;
    presented.stage.probe.bgPos() = QPointF(1.0, 0.0);
    presented.stage.probe.bgRect() = QRectF(1.0, 0.0, 2.0, 2.0);
    QCOMPARE(Canvas::letters(Canvas::painted(presented.stage.image, {5, 2})),
             Canvas::rows({"rgby.", "rgby."}));
    QCOMPARE(presented.stage->boundingRect(), presented.stage->CBaseObject::boundingRect());
}

void TestBackgroundPainting::otherTypesAreNormal_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {-1, 0, 2, 257, std::numeric_limits<int>::min()})
        QTest::addRow("%d", type) << type;
}

void TestBackgroundPainting::otherTypesAreNormal()
{
    QFETCH(int, type);
    Presented presented;
    presented.stage.probe.animatedType() = type;
    presented.stage.probe.bgPos() = QPointF(1.0, 0.0);
    QCOMPARE(Canvas::letters(Canvas::painted(presented.stage.image, {4, 2})),
             Canvas::rows({"rgby", "rgby"}));
}

void TestBackgroundPainting::anUnknownDocumentIsLookedUpForPaintingAlone()
{
    Presented presented;
    presented.stage.probe.bgPos() = QPointF(1.0, 0.0);
    presented.stage.probe.belongDoc() = nullptr;
    QCOMPARE(presented.stage->boundingRect(), presented.stage->CBaseObject::boundingRect());
    QVERIFY(!presented.stage.probe.belongDoc());

    QCOMPARE(Canvas::letters(Canvas::painted(presented.stage.image, {4, 1})),
             Canvas::rows({"yrgb"}));
    QVERIFY(presented.stage.probe.belongDoc() == &presented.stage.document);
    QCOMPARE(presented.stage->boundingRect(), QRectF(0.0, 0.0, 4.0, 2.0));
}

void TestBackgroundPainting::theBoundsAreTheVisiblePart()
{
    Presented presented;
    presented.stage.probe.bgRect() = QRectF(1.5, 0.25, 2.0, 1.0);
    QCOMPARE(presented.stage->boundingRect(), QRectF(1.5, 0.25, 2.0, 1.0));
}

void TestBackgroundPainting::whatCannotBeDrawnDrawsNothing_data()
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
    const QImage tile = Pictures::solid(8, 4, Qt::red);
    QTest::addColumn<QImage>("tile");
    QTest::addColumn<QRectF>("part");
    QTest::addColumn<QPointF>("position");
    QTest::newRow("no tile") << QImage() << QRectF(0.0, 0.0, 4.0, 2.0) << QPointF();
    QTest::newRow("a tile of one column")
        << Pictures::solid(1, 4, Qt::red) << QRectF(0.0, 0.0, 4.0, 2.0) << QPointF();
    QTest::newRow("nothing visible") << tile << QRectF() << QPointF();
    QTest::newRow("an endless part") << tile << QRectF(0.0, 0.0, infinite, 2.0) << QPointF();
    QTest::newRow("a part without end downwards")
        << tile << QRectF(0.0, 0.0, 4.0, infinite) << QPointF();
    QTest::newRow("a part infinitely far") << tile << QRectF(infinite, 0.0, 4.0, 2.0) << QPointF();
    QTest::newRow("a part that is not a number")
        << tile << QRectF(0.0, noNumber, 4.0, 2.0) << QPointF();
    QTest::newRow("a position without end")
        << tile << QRectF(0.0, 0.0, 4.0, 2.0) << QPointF(infinite, 0.0);
    QTest::newRow("a position without end downwards")
        << tile << QRectF(0.0, 0.0, 4.0, 2.0) << QPointF(0.0, infinite);
}

void TestBackgroundPainting::whatCannotBeDrawnDrawsNothing()
{
    QFETCH(QImage, tile);
    QFETCH(QRectF, part);
    QFETCH(QPointF, position);
    Presented presented;
    presented.stage.probe.bgImage() = tile;
    presented.stage.probe.bgRect() = part;
    presented.stage.probe.bgPos() = position;
    QCOMPARE(Canvas::letters(Canvas::painted(presented.stage.image, {4, 2})),
             Canvas::rows({"....", "...."}));
}

QTEST_MAIN(TestBackgroundPainting)
#include "tst_background_painting.moc"
