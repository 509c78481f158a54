#include "tests/framework/paintedobject.h"

#include <QtTest/QTest>

namespace
{

constexpr QRgb red = 0xffff0000;
constexpr QRgb white = 0xffffffff;
constexpr QRgb blue = 0xff0000ff;

} // namespace

/// The shadow that an object may have as its layer effect.
class TestFrameworkShadows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aShadowHasTheShapeOfTheContent();
    void aShadowIsMirroredWithItsObject();
    void aShadowIsFlippedWithItsObject();
    void aShadowIsWholeWhateverStateTheContentLeaves();
    void aShadowIsDrawnInWholePixels_data();
    void aShadowIsDrawnInWholePixels();
    void anEnlargedShadowIsSmooth();
    void aShadowsColourMayBeTranslucent();
    void anInvalidColourRemovesTheShadow();
    void theShadowIsKeptUntilItIsCleared();
    void theShadowFollowsTheSize();
    void aHugeShadowIsReduced();
    void aShadowOfNothingIsNothing();
};

void TestFrameworkShadows::aShadowHasTheShapeOfTheContent()
{
    PaintedObject object(paintCorner);
    object.setSize(QSizeF(20, 10), false, false);
    object.setLayerShadow(Qt::blue, QPointF(4, 8));
    const QImage ground = painted(object);
    QCOMPARE(ground.pixel(10, 10), red);
    // The content covers (10, 10) to (19, 14), its shadow (14, 18) to (23, 22).
    QCOMPARE(ground.pixel(14, 18), blue);
    QCOMPARE(ground.pixel(23, 22), blue);
    QCOMPARE(ground.pixel(13, 18), white);
    QCOMPARE(ground.pixel(24, 22), white);
    QCOMPARE(ground.pixel(14, 23), white);
}

void TestFrameworkShadows::aShadowIsMirroredWithItsObject()
{
    PaintedObject object(paintCorner);
    object.setSize(QSizeF(20, 10), false, false);
    object.setLayerShadow(Qt::blue, QPointF(0, 10));
    painted(object);
    object.setMirror(true, false);
    const QImage ground = painted(object);
    QCOMPARE(ground.pixel(20, 20), blue);
    QCOMPARE(ground.pixel(29, 24), blue);
    QCOMPARE(ground.pixel(19, 20), white);
}

void TestFrameworkShadows::aShadowIsFlippedWithItsObject()
{
    PaintedObject object(paintCorner);
    object.setSize(QSizeF(20, 10), false, false);
    object.setLayerShadow(Qt::blue, QPointF(0, 10));
    painted(object);
    object.setFlip(true, false);
    const QImage ground = painted(object);
    QCOMPARE(ground.pixel(10, 25), blue);
    QCOMPARE(ground.pixel(19, 29), blue);
    QCOMPARE(ground.pixel(10, 24), white);
    QCOMPARE(ground.pixel(20, 25), white);
}

void TestFrameworkShadows::aShadowIsWholeWhateverStateTheContentLeaves()
{
    PaintedObject object([](QPainter *painter) {
        painter->fillRect(QRectF(0, 0, 20, 10), Qt::red);
        painter->setClipRect(QRectF(0, 0, 1, 1));
        painter->setOpacity(0.5);
        painter->translate(7, 7);
    });
    object.setSize(QSizeF(20, 10), false, false);
    object.setLayerShadow(Qt::blue, QPointF(0, 15));
    const QImage ground = painted(object);
    QCOMPARE(ground.pixel(10, 25), blue);
    QCOMPARE(ground.pixel(29, 34), blue);
}

void TestFrameworkShadows::aShadowIsDrawnInWholePixels_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QSize>("pixels");
    QTest::newRow("whole") << QSizeF(20, 10) << QSize(20, 10);
    QTest::newRow("rounded up") << QSizeF(20.1, 10.9) << QSize(21, 11);
    QTest::newRow("less than one") << QSizeF(0.25, 0.5) << QSize(1, 1);
    QTest::newRow("at the limit") << QSizeF(2048, 2047.5) << QSize(2048, 2048);
    QTest::newRow("too wide") << QSizeF(5000, 10) << QSize(2048, 10);
    QTest::newRow("too high") << QSizeF(10, 2048.5) << QSize(10, 2048);
}

void TestFrameworkShadows::aShadowIsDrawnInWholePixels()
{
    QFETCH(QSizeF, size);
    QFETCH(QSize, pixels);
    // The shadow is painted first; its painter fills all the pixels with the whole object.
    QSize seen;
    QRectF covered;
    PaintedObject object([&](QPainter *painter) {
        if (seen.isValid())
            return;
        seen = QSize(painter->device()->width(), painter->device()->height());
        covered = painter->transform().mapRect(QRectF(QPointF(0, 0), size));
    });
    object.setSize(size, false, false);
    object.setLayerShadow(Qt::blue, QPointF(0, 0));
    painted(object);
    QCOMPARE(seen, pixels);
    QCOMPARE(covered, QRectF(QPointF(0, 0), pixels));
}

void TestFrameworkShadows::anEnlargedShadowIsSmooth()
{
    PaintedObject object([](QPainter *painter) { painter->fillRect(QRectF(0, 0, 1, 1), Qt::red); });
    object.setSize(QSizeF(2, 1), false, false);
    object.setLayerShadow(Qt::blue, QPointF(0, 10));
    QImage ground(16, 96, QImage::Format_RGB32);
    ground.fill(Qt::white);
    QPainter painter(&ground);
    painter.scale(8, 8);
    object.paint(&painter, nullptr, nullptr);
    painter.end();
    QCOMPARE(ground.pixel(1, 84), blue);
    QCOMPARE(ground.pixel(14, 84), white);
    // Between them the blue fades.
    const QColor middle = ground.pixelColor(8, 84);
    QVERIFY2(middle.red() > 40 && middle.red() < 215, qPrintable(middle.name()));
}

void TestFrameworkShadows::aShadowsColourMayBeTranslucent()
{
    PaintedObject object(paintCorner);
    object.setSize(QSizeF(20, 10), false, false);
    object.setLayerShadow(QColor(0, 0, 0, 128), QPointF(0, 10));
    const QColor shade = painted(object).pixelColor(12, 22);
    // Black of opacity 128/255 over white leaves 127 of 255.
    QVERIFY(qAbs(shade.red() - 127) <= 1);
    QCOMPARE(shade.red(), shade.blue());
}

void TestFrameworkShadows::anInvalidColourRemovesTheShadow()
{
    PaintedObject object(paintCorner);
    object.setSize(QSizeF(20, 10), false, false);
    object.setLayerShadow(Qt::blue, QPointF(0, 10));
    object.setLayerShadow(QColor(), QPointF(0, 10));
    QCOMPARE(painted(object).pixel(12, 22), white);
}

void TestFrameworkShadows::theShadowIsKeptUntilItIsCleared()
{
    PaintedObject object(paintCorner);
    object.setSize(QSizeF(20, 10), false, false);
    object.setLayerShadow(Qt::blue, QPointF(0, 10));
    painted(object);
    QCOMPARE(object.paintings, 2);
    painted(object);
    QCOMPARE(object.paintings, 3);
    object.clearLayerEffectCache(ClearLayerEffectCacheReason::ContentChanged);
    painted(object);
    QCOMPARE(object.paintings, 5);
}

void TestFrameworkShadows::theShadowFollowsTheSize()
{
    PaintedObject object(
        [](QPainter *painter) { painter->fillRect(QRectF(0, 0, 10, 6), Qt::red); });
    object.setSize(QSizeF(5, 5), false, false);
    object.setLayerShadow(Qt::blue, QPointF(0, 20));
    QCOMPARE(painted(object).pixel(16, 32), white);
    object.setSize(QSizeF(10, 6), false, false);
    QCOMPARE(painted(object).pixel(19, 35), blue);
}

void TestFrameworkShadows::aHugeShadowIsReduced()
{
    PaintedObject object(
        [](QPainter *painter) { painter->fillRect(QRectF(0, 0, 1e7, 1e7), Qt::red); });
    object.setSize(QSizeF(1e7, 1e7), false, false);
    object.setLayerShadow(Qt::blue, QPointF(-5e6, 0));
    QImage ground(10, 10, QImage::Format_RGB32);
    ground.fill(Qt::white);
    QPainter painter(&ground);
    painter.scale(1e-6, 1e-6);
    painter.translate(6e6, 0);
    object.paint(&painter, nullptr, nullptr);
    painter.end();
    QCOMPARE(ground.pixel(3, 5), blue);
    QCOMPARE(ground.pixel(8, 5), red);
}

void TestFrameworkShadows::aShadowOfNothingIsNothing()
{
    PaintedObject object(paintCorner);
    object.setLayerShadow(Qt::blue, QPointF(0, 10));
    painted(object);
    QCOMPARE(object.paintings, 1);
}

QTEST_MAIN(TestFrameworkShadows)
#include "tst_framework_shadows.moc"
