#include "animatedimage/core/backgroundtile.h"
#include "canvas.h"
#include "tests/support/pictures.h"

#include <QtGui/QPainter>
#include <QtTest/QTest>

#include <cmath>
#include <limits>

namespace
{

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

/// The tile, which part of it is seen, and where it begins.
class TestBackgroundTile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theVisiblePartIsWhatLiesOnThePage_data();
    void theVisiblePartIsWhatLiesOnThePage();
    void anOffsetIsBroughtIntoThePattern_data();
    void anOffsetIsBroughtIntoThePattern();
    void aPatternOfNoLengthHasNoOffset();
    void theTileHasTwiceTheRoundedSize_data();
    void theTileHasTwiceTheRoundedSize();
    void theTileHoldsTheFrameFourTimes();
    void theFrameIsStretchedToTheSize();
    void aReducedFrameIsSmooth();
    void aNullFrameGivesTransparentWhite();
    void transparentPixelsStayTransparent();
    void everyPixelIsAsIfPaintedFourTimes_data();
    void everyPixelIsAsIfPaintedFourTimes();

    void theObjectWorksItsPartOut_data();
    void theObjectWorksItsPartOut();
    void thePatternsPositionDoesNotMoveTheObject();
    void withoutAPageAllOfItIsVisible();
    void thePageIsAskedBeforeTheTileIsMade();
    void theTileIsThatOfTheFrameAskedFor();
    void anIndexOutsideTheListGivesNoTile_data();
    void anIndexOutsideTheListGivesNoTile();
    void theTileIsMadeAtTheSizeOfTheObject();
};

void TestBackgroundTile::theVisiblePartIsWhatLiesOnThePage_data()
{
    QTest::addColumn<QPointF>("position");
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QRectF>("page");
    QTest::addColumn<QRectF>("expected");
    const QRectF page(0.0, 0.0, 1000.0, 800.0);

    QTest::newRow("beyond the top left corner")
        << QPointF(-30, -10) << QSizeF(200, 100) << page << QRectF(30, 10, 170, 90);
    QTest::newRow("wholly on the page")
        << QPointF(50, 60) << QSizeF(200, 100) << page << QRectF(0, 0, 200, 100);
    QTest::newRow("beyond the left edge")
        << QPointF(-30, 10) << QSizeF(100, 50) << page << QRectF(30, 0, 70, 50);
    QTest::newRow("beyond the bottom right corner")
        << QPointF(900, 750) << QSizeF(200, 100) << page << QRectF(0, 0, 100, 50);
    QTest::newRow("larger than the page")
        << QPointF(-100, -200) << QSizeF(3000, 3000) << page << QRectF(100, 200, 1000, 800);
    QTest::newRow("half units") << QPointF(-0.5, 799.25) << QSizeF(10, 10) << page
                                << QRectF(0.5, 0, 9.5, 0.75);
    QTest::newRow("wholly off the page")
        << QPointF(-300, 10) << QSizeF(200, 100) << page << QRectF(300, 0, 0, 0);
    QTest::newRow("off to the right")
        << QPointF(1000, 10) << QSizeF(200, 100) << page << QRectF(0, 0, 0, 0);
    QTest::newRow("of no size") << QPointF(10, 10) << QSizeF(0, 0) << page << QRectF(0, 0, 0, 0);
    // The object's own place decides, also where the page does not begin at 0.
    QTest::newRow("a page that begins elsewhere")
        << QPointF(50, -30) << QSizeF(200, 100) << QRectF(100, -20, 1000, 800)
        << QRectF(0, 30, 150, 90);
}

void TestBackgroundTile::theVisiblePartIsWhatLiesOnThePage()
{
    QFETCH(QPointF, position);
    QFETCH(QSizeF, size);
    QFETCH(QRectF, page);
    QTEST(BackgroundTile::visiblePart(position, size, page), "expected");
}

void TestBackgroundTile::anOffsetIsBroughtIntoThePattern_data()
{
    QTest::addColumn<double>("offset");
    QTest::addColumn<int>("length");
    QTest::addColumn<double>("expected");
    QTest::newRow("inside") << 5.0 << 100 << 5.0;
    QTest::newRow("10 - 15") << -5.0 << 100 << 95.0;
    QTest::newRow("nothing") << 0.0 << 100 << 0.0;
    QTest::newRow("the whole length") << 100.0 << 100 << 0.0;
    QTest::newRow("minus the whole length") << -100.0 << 100 << 0.0;
    QTest::newRow("several lengths") << 205.5 << 100 << 5.5;
    QTest::newRow("minus several lengths") << -205.5 << 100 << 94.5;
    QTest::newRow("a quarter before") << -0.25 << 4 << 3.75;
    QTest::newRow("a pattern of one pixel") << -7.5 << 1 << 0.5;
}

void TestBackgroundTile::anOffsetIsBroughtIntoThePattern()
{
    QFETCH(double, offset);
    QFETCH(int, length);
    QTEST(BackgroundTile::wrappedOffset(offset, length), "expected");
}

void TestBackgroundTile::aPatternOfNoLengthHasNoOffset()
{
    QVERIFY(std::isnan(BackgroundTile::wrappedOffset(5.0, 0)));
    QVERIFY(std::isnan(BackgroundTile::wrappedOffset(-5.0, 0)));
    QVERIFY(std::isnan(BackgroundTile::wrappedOffset(infinite, 100)));
    QVERIFY(std::isnan(BackgroundTile::wrappedOffset(noNumber, 100)));
}

void TestBackgroundTile::theTileHasTwiceTheRoundedSize_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("101.5 x 40.4") << QSizeF(101.5, 40.4) << QSize(204, 80);
    QTest::newRow("2.5 x 3.5 round up") << QSizeF(2.5, 3.5) << QSize(6, 8);
    QTest::newRow("half a pixel") << QSizeF(0.5, 0.5) << QSize(2, 2);
    QTest::newRow("less than half a pixel") << QSizeF(0.49, 10.0) << QSize(0, 0);
    QTest::newRow("nothing") << QSizeF(0.0, 0.0) << QSize(0, 0);
    QTest::newRow("less than nothing") << QSizeF(-5.0, 5.0) << QSize(0, 0);
    QTest::newRow("a width alone") << QSizeF(5.0, 0.0) << QSize(0, 0);
    QTest::newRow("endless") << QSizeF(infinite, 5.0) << QSize(0, 0);
    QTest::newRow("no number") << QSizeF(noNumber, 5.0) << QSize(0, 0);
}

void TestBackgroundTile::theTileHasTwiceTheRoundedSize()
{
    QFETCH(QSizeF, size);
    QFETCH(QSize, expected);
    const QImage tile = BackgroundTile::tile(Pictures::solid(3, 3, Qt::red), size);
    QCOMPARE(tile.size(), expected);
    if (!expected.isEmpty())
        QCOMPARE(tile.format(), QImage::Format_ARGB32);
}

void TestBackgroundTile::theTileHoldsTheFrameFourTimes()
{
    const QImage tile = BackgroundTile::tile(Canvas::picture({"rgb", "y.w"}), QSizeF(3.0, 2.0));
    QCOMPARE(Canvas::letters(tile), Canvas::rows({"rgbrgb", //
                                                  "y.wy.w", //
                                                  "rgbrgb", //
                                                  "y.wy.w"}));
}

void TestBackgroundTile::theFrameIsStretchedToTheSize()
{
    // Halved with smoothing: each pixel is the mean of two, here of the same colour.
    const QImage tile =
        BackgroundTile::tile(Canvas::picture({"rrgg", "rrgg", "rrgg", "rrgg"}), QSizeF(2.0, 1.0));
    QCOMPARE(Canvas::letters(tile), Canvas::rows({"rgrg", "rgrg"}));
    const QImage large = BackgroundTile::tile(Canvas::picture({"b"}), QSizeF(3.0, 2.0));
    QCOMPARE(Canvas::letters(large), Canvas::rows({"bbbbbb", "bbbbbb", "bbbbbb", "bbbbbb"}));
}

void TestBackgroundTile::aReducedFrameIsSmooth()
{
    // Black and white side by side make one grey pixel.
    QImage halves(2, 1, QImage::Format_ARGB32);
    halves.setPixelColor(0, 0, Qt::black);
    halves.setPixelColor(1, 0, Qt::white);
    const QImage tile = BackgroundTile::tile(halves, QSizeF(1.0, 1.0));
    QCOMPARE(tile.size(), QSize(2, 2));
    for (const QPoint &place : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)}) {
        const QColor grey = tile.pixelColor(place);
        QVERIFY2(grey.red() == 127 || grey.red() == 128, qPrintable(grey.name()));
        QCOMPARE(grey, QColor(grey.red(), grey.red(), grey.red()));
    }
}

void TestBackgroundTile::aNullFrameGivesTransparentWhite()
{
    const QImage tile = BackgroundTile::tile(QImage(), QSizeF(2.0, 1.0));
    QCOMPARE(tile.size(), QSize(4, 2));
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 4; ++x)
            QCOMPARE(tile.pixel(x, y), 0x00ffffffu);
    }
}

void TestBackgroundTile::transparentPixelsStayTransparent()
{
    const QImage tile = BackgroundTile::tile(Pictures::transparent(2, 2), QSizeF(2.0, 2.0));
    QCOMPARE(Canvas::letters(tile), Canvas::rows({"....", "....", "....", "...."}));
}

void TestBackgroundTile::everyPixelIsAsIfPaintedFourTimes_data()
{
    QTest::addColumn<QImage>("frame");
    QTest::addColumn<QSizeF>("size");
    // Every alpha with every level of a colour.
    QImage levels(256, 256, QImage::Format_ARGB32);
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int level = 0; level < 256; ++level)
            levels.setPixel(level, alpha, qRgba(level, 255 - level, level / 2, alpha));
    }
    QTest::newRow("at its size") << levels << QSizeF(256, 256);
    QTest::newRow("enlarged") << levels << QSizeF(301.4, 299.6);
    QTest::newRow("reduced") << levels << QSizeF(99, 130);
    QTest::newRow("premultiplied")
        << levels.convertToFormat(QImage::Format_ARGB32_Premultiplied) << QSizeF(256, 256);
    QTest::newRow("opaque") << levels.convertToFormat(QImage::Format_RGB32) << QSizeF(256, 256);
    QTest::newRow("palette") << levels.convertToFormat(QImage::Format_Indexed8) << QSizeF(200, 90);
    QImage indexed(16, 16, QImage::Format_Indexed8);
    indexed.setColorTable({qRgba(200, 100, 50, 3), qRgba(0, 0, 0, 0), qRgb(1, 2, 3)});
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x)
            indexed.setPixel(x, y, uint(x + y) % 3);
    }
    QTest::newRow("transparent palette") << indexed << QSizeF(16, 16);
    QTest::newRow("grey") << levels.convertToFormat(QImage::Format_Grayscale8) << QSizeF(10, 256);
}

void TestBackgroundTile::everyPixelIsAsIfPaintedFourTimes()
{
    QFETCH(QImage, frame);
    QFETCH(QSizeF, size);
    const int width = qRound(size.width());
    const int height = qRound(size.height());
    QImage expected(2 * width, 2 * height, QImage::Format_ARGB32);
    expected.fill(QColor(255, 255, 255, 0));
    {
        QPainter painter(&expected);
        const QImage scaled =
            frame.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        for (const QPoint &place :
             {QPoint(0, 0), QPoint(width, 0), QPoint(0, height), QPoint(width, height)})
            painter.drawImage(place, scaled);
    }
    QVERIFY(BackgroundTile::tile(frame, size) == expected);
    // Equal pixels may differ below a transparent alpha.
    const QImage tile = BackgroundTile::tile(frame, size);
    for (int y = 0; y < tile.height(); ++y)
        QCOMPARE(
            memcmp(tile.constScanLine(y), expected.constScanLine(y), size_t(8) * size_t(width)), 0);
}

void TestBackgroundTile::theObjectWorksItsPartOut_data()
{
    QTest::addColumn<QPointF>("position");
    QTest::addColumn<QRectF>("expected");
    // The object is 200 x 100, the page 800 x 600.
    QTest::newRow("at (-30, -10)") << QPointF(-30, -10) << QRectF(30, 10, 170, 90);
    QTest::newRow("at (50, 60)") << QPointF(50, 60) << QRectF(0, 0, 200, 100);
    QTest::newRow("at (700, 550)") << QPointF(700, 550) << QRectF(0, 0, 100, 50);
}

void TestBackgroundTile::theObjectWorksItsPartOut()
{
    QFETCH(QPointF, position);
    Stage stage({Pictures::solid(200, 100, Qt::red)});
    stage->setPos(position, false);
    stage->regenBGImage();
    QTEST(stage.probe.bgRect(), "expected");
    QCOMPARE(stage.probe.bgImage().size(), QSize(400, 200)); // of the whole object
}

void TestBackgroundTile::thePatternsPositionDoesNotMoveTheObject()
{
    Stage stage({Pictures::solid(200, 100, Qt::red)});
    stage->setPos(QPointF(-30.0, -10.0), false);
    stage.probe.animatedType() = 1;
    stage.document.setAlternateMode(1);
    stage->setPos(QPointF(70.0, 70.0), false);
    QCOMPARE(stage->getPos(), QPointF(70.0, 70.0));
    stage->regenBGImage();
    QCOMPARE(stage.probe.bgRect(), QRectF(30.0, 10.0, 170.0, 90.0));
}

void TestBackgroundTile::withoutAPageAllOfItIsVisible()
{
    Stage stage({Pictures::solid(200, 100, Qt::red)});
    stage->setPos(QPointF(-30.0, -10.0), false);
    const QScopedPointer<CBaseObject> alone(stage.page->takeObject(stage.image));
    QVERIFY(alone);
    stage->regenBGImage();
    QCOMPARE(stage.probe.bgRect(), QRectF(0.0, 0.0, 200.0, 100.0));
    QCOMPARE(stage.probe.bgImage().size(), QSize(400, 200));
}

void TestBackgroundTile::thePageIsAskedBeforeTheTileIsMade()
{
    struct WatchedPage : Page {
        explicit WatchedPage(Stage &shown)
            : Page(QRectF(0, 0, 800, 600), &shown.document)
            , stage(shown)
        {
        }
        QRectF pageRect() const override
        {
            hadTile.append(!stage.probe.bgImage().isNull());
            return Page::pageRect();
        }
        Stage &stage;
        mutable QVector<bool> hadTile;
    };
    Stage stage(solidFrames({{8, 6}}));
    WatchedPage page(stage);
    page.addObject(stage.image);
    page.hadTile.clear();
    stage->regenBGImage();
    QCOMPARE(page.hadTile, QVector<bool>{false});
    QCOMPARE(stage.probe.bgImage().size(), QSize(16, 12));
}

void TestBackgroundTile::theTileIsThatOfTheFrameAskedFor()
{
    Stage stage({Canvas::picture({"rr"}), Canvas::picture({"gb"})});
    stage->generateBGImage(1);
    QCOMPARE(Canvas::letters(stage.probe.bgImage()), Canvas::rows({"gbgb", "gbgb"}));
    QCOMPARE(stage.probe.runningIndex(), 0);
    stage->regenBGImage(); // of the frame shown
    QCOMPARE(Canvas::letters(stage.probe.bgImage()), Canvas::rows({"rrrr", "rrrr"}));
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestBackgroundTile::anIndexOutsideTheListGivesNoTile_data()
{
    QTest::addColumn<int>("index");
    for (const int index : {-1, 2, 1000000})
        QTest::addRow("%d", index) << index;
}

void TestBackgroundTile::anIndexOutsideTheListGivesNoTile()
{
    QFETCH(int, index);
    Stage stage({Canvas::picture({"rr"}), Canvas::picture({"gb"})});
    stage->generateBGImage(0);
    stage->generateBGImage(index);
    QVERIFY(stage.probe.bgImage().isNull());
}

void TestBackgroundTile::theTileIsMadeAtTheSizeOfTheObject()
{
    Stage stage({Pictures::solid(10, 10, Qt::red)});
    stage->setSize(QSizeF(101.5, 40.4), false, false);
    stage->generateBGImage(0);
    QCOMPARE(stage.probe.bgImage().size(), QSize(204, 80));
    QCOMPARE(stage.probe.bgImage().format(), QImage::Format_ARGB32);
}

QTEST_MAIN(TestBackgroundTile)
#include "tst_background_tile.moc"
