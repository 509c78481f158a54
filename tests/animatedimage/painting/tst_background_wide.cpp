#include "animatedimage/core/backgroundtile.h"
#include "canvas.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

#include <algorithm>
#include <limits>

namespace
{

constexpr int background = 1;

QRgb *pixels(QImage &image, int row)
{
    return reinterpret_cast<QRgb *>(image.scanLine(row));
}

/// A picture in which neighbouring pixels differ, some of them transparent in part.
QImage motley()
{
    QImage image(64, 16, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, QColor(x * 4, y * 15, (x * y) % 256, 55 + (x * 7) % 201));
    }
    return image;
}

/// @p frame at @p size, as the painter puts it onto transparent white: a few columns at a time.
QImage scaled(const QImage &frame, const QSize &size)
{
    const QImage source = frame.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage result(size, QImage::Format_ARGB32);
    constexpr int few = 1000;
    for (int y = 0; y < size.height(); y += few) {
        for (int x = 0; x < size.width(); x += few) {
            QImage part(qMin(few, size.width() - x), qMin(few, size.height() - y), result.format());
            part.fill(QColor(255, 255, 255, 0));
            QPainter painter(&part);
            painter.drawImage(0, 0, source.copy(QRect(QPoint(x, y), part.size())));
            painter.end();
            for (int row = 0; row < part.height(); ++row)
                std::copy_n(pixels(part, row), part.width(), pixels(result, y + row) + x);
        }
    }
    return result;
}

/// What a picture of @p size shows that repeats @p pattern, beginning at @p offset.
QImage repeated(const QImage &pattern, const QPoint &offset, const QSize &size)
{
    QImage source = pattern.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QImage result(size, source.format());
    for (int y = 0; y < size.height(); ++y) {
        const QRgb *from = pixels(source, (y + offset.y()) % source.height());
        QRgb *to = pixels(result, y);
        for (int x = 0; x < size.width(); ++x)
            to[x] = from[(x + offset.x()) % source.width()];
    }
    return result;
}

/// A presented background of @p size on a page that holds all of it.
struct Presented {
    Presented(const QImage &frame, const QSize &size)
        : stage({frame})
    {
        stage.page->setPageRect(QRectF(0.0, 0.0, 50000.0, 50000.0));
        stage->setSize(size, false, false);
        stage.probe.animatedType() = background;
        stage.document.setAlternateMode(1);
        stage->regenBGImage();
    }

    Stage stage;
};

} // namespace

/// Backgrounds that are too large for one call of the painter.
class TestBackgroundWide : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTileHoldsTheScaledFrameFourTimes_data();
    void theTileHoldsTheScaledFrameFourTimes();
    void aSizeBeyondAllMemoryGivesNoTile_data();
    void aSizeBeyondAllMemoryGivesNoTile();
    void everyPixelIsPaintedWhereThePatternIsMoved_data();
    void everyPixelIsPaintedWhereThePatternIsMoved();
    void everyPartIsPaintedWhereItIsScrolledTo_data();
    void everyPartIsPaintedWhereItIsScrolledTo();
    void partsOfAPixelCountAsInASmallOne();
    void aBackgroundSeenSmallShowsAllOfIt();
};

void TestBackgroundWide::theTileHoldsTheScaledFrameFourTimes_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize &size :
         {QSize(300, 200), QSize(16383, 20), QSize(16384, 300), QSize(20, 16384), QSize(20000, 300),
          QSize(30000, 20), QSize(40000, 6), QSize(3, 70000)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size;
}

void TestBackgroundWide::theTileHoldsTheScaledFrameFourTimes()
{
    QFETCH(QSize, size);
    const QImage frame = motley();
    const QImage tile = BackgroundTile::tile(frame, size);
    QCOMPARE(tile.size(), size * 2);
    QCOMPARE(tile.format(), QImage::Format_ARGB32);
    const QImage expected = scaled(frame, size);
    for (const int y : {0, size.height()}) {
        for (const int x : {0, size.width()})
            QVERIFY(tile.copy(QRect(QPoint(x, y), size)) == expected);
    }
}

void TestBackgroundWide::aSizeBeyondAllMemoryGivesNoTile_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("a million by a million") << QSizeF(1e6, 1e6);
    QTest::newRow("wider than a picture can say") << QSizeF(2e9, 1.0);
    QTest::newRow("higher than a number can say") << QSizeF(1.0, 1e300);
    QTest::newRow("endless") << QSizeF(std::numeric_limits<double>::infinity(), 1.0);
}

void TestBackgroundWide::aSizeBeyondAllMemoryGivesNoTile()
{
    QFETCH(QSizeF, size);
    QVERIFY(BackgroundTile::tile(motley(), size).isNull());
}

void TestBackgroundWide::everyPixelIsPaintedWhereThePatternIsMoved_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("moved");
    QTest::newRow("16384 x 300") << QSize(16384, 300) << QPoint(0, 0);
    QTest::newRow("16384 x 300, moved") << QSize(16384, 300) << QPoint(3000, 100);
    QTest::newRow("20000 x 300") << QSize(20000, 300) << QPoint(0, 0);
    QTest::newRow("20000 x 300, moved") << QSize(20000, 300) << QPoint(1, 299);
    QTest::newRow("20000 x 300, moved back") << QSize(20000, 300) << QPoint(-19000, -1);
    QTest::newRow("30000 x 20") << QSize(30000, 20) << QPoint(0, 0);
    QTest::newRow("30000 x 20, moved") << QSize(30000, 20) << QPoint(29999, 19);
    QTest::newRow("10 x 30000, moved") << QSize(10, 30000) << QPoint(3, 17);
}

void TestBackgroundWide::everyPixelIsPaintedWhereThePatternIsMoved()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, moved);
    Presented presented(motley(), size);
    presented.stage->setPos(moved, false);
    const QPoint offset((size.width() - moved.x()) % size.width(),
                        (size.height() - moved.y()) % size.height());
    const QImage pattern = scaled(motley(), size);
    QVERIFY(Canvas::painted(presented.stage.image, size) == repeated(pattern, offset, size));
}

void TestBackgroundWide::everyPartIsPaintedWhereItIsScrolledTo_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("moved");
    QTest::addColumn<int>("left");
    for (const int left : {0, 20000, 32700, 39800}) {
        QTest::addRow("40000, from %d", left) << QSize(40000, 6) << QPoint(0, 0) << left;
        QTest::addRow("40000 moved, from %d", left) << QSize(40000, 6) << QPoint(1000, 5) << left;
    }
    for (const int left : {0, 32700, 65500, 69800})
        QTest::addRow("70000 moved, from %d", left) << QSize(70000, 6) << QPoint(-9000, 5) << left;
}

void TestBackgroundWide::everyPartIsPaintedWhereItIsScrolledTo()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, moved);
    QFETCH(int, left);
    Presented presented(motley(), size);
    presented.stage.page->setPageRect(QRectF(0.0, 0.0, 100000.0, 100.0));
    presented.stage->regenBGImage();
    presented.stage->setPos(moved, false);
    const QPoint offset((size.width() - moved.x()) % size.width(),
                        (size.height() - moved.y()) % size.height());
    const QImage pattern = scaled(motley(), size);
    QImage window(200, size.height(), QImage::Format_ARGB32_Premultiplied);
    window.fill(Qt::transparent);
    QPainter painter(&window);
    painter.translate(-left, 0);
    presented.stage->OnQPainterDraw(&painter);
    painter.end();
    const QImage expected = repeated(pattern, offset, size).copy(left, 0, 200, size.height());
    QCOMPARE(window, expected.convertToFormat(window.format()));
}

void TestBackgroundWide::partsOfAPixelCountAsInASmallOne()
{
    // The same eight columns, over and over.
    const QImage columns = Canvas::picture({"rgbywrbg"});
    Presented small(columns, {24, 2});
    Presented wide(columns, {20000, 2});
    for (Presented *presented : {&small, &wide}) {
        Stage &stage = presented->stage;
        const QSize size = stage->getSize().toSize();
        stage.probe.frame(0).image = repeated(columns, {0, 0}, size);
        stage->regenBGImage();
    }
    for (const double moved : {0.25, 0.5, 0.75, 7.5}) {
        small.stage->setPos(QPointF(moved, 0.0), false);
        wide.stage->setPos(QPointF(moved, 0.0), false);
        const QImage expected = Canvas::painted(small.stage.image, {16, 2});
        const QImage actual = Canvas::painted(wide.stage.image, {20000, 2});
        for (const int x : {0, 8, 12000, 16384, 19984})
            QVERIFY(actual.copy(x, 0, 16, 2) == expected);
    }
}

void TestBackgroundWide::aBackgroundSeenSmallShowsAllOfIt()
{
    // Ten blocks of 4000 units, red and blue in turn, moved by one block.
    const QSize size(40000, 40);
    QImage blocks(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            pixels(blocks, y)[x] = x / 4000 % 2 == 0 ? qRgb(255, 0, 0) : qRgb(0, 0, 255);
    }
    Presented presented(blocks, size);
    presented.stage->setPos(QPointF(4000.0, 0.0), false);

    QImage result(1000, 1, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.scale(1.0 / 40.0, 1.0 / 40.0);
    presented.stage->OnQPainterDraw(&painter);
    painter.end();
    for (int x = 0; x < 1000; ++x) {
        if (x % 100 == 0 || x % 100 == 99)
            continue; // where colours meet
        QCOMPARE(result.pixelColor(x, 0), QColor(x / 100 % 2 == 0 ? Qt::blue : Qt::red));
    }
}

QTEST_MAIN(TestBackgroundWide)
#include "tst_background_wide.moc"
