#include "framework/document.h"
#include "framework/framework.h"
#include "framework/page.h"
#include "tests/framework/paintedobject.h"

#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsView>

namespace
{

/// A red square in the top left quarter of an object of 20 x 10.
void paintCorner(QPainter *painter)
{
    if (painter)
        painter->fillRect(QRectF(0, 0, 10, 5), Qt::red);
}

/// What the object paints on a white ground of 40 x 40, its own origin at (10, 10).
QImage painted(CBaseObject &object)
{
    QImage ground(40, 40, QImage::Format_ARGB32_Premultiplied);
    ground.fill(Qt::white);
    QPainter painter(&ground);
    painter.translate(10, 10);
    object.paint(&painter, nullptr, nullptr);
    return ground;
}

constexpr QRgb red = 0xffff0000;
constexpr QRgb white = 0xffffffff;
constexpr QRgb blue = 0xff0000ff;

} // namespace

class TestFrameworkPainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void contentIsPaintedInItemCoordinates();
    void mirrorTurnsAroundTheMiddle();
    void flipTurnsAroundTheMiddle();
    void thePainterIsLeftAsItWas();
    void aNullPainterDrawsNothing();
    void aShadowHasTheShapeOfTheContent();
    void aShadowIsMirroredWithItsObject();
    void aShadowsColourMayBeTranslucent();
    void anInvalidColourRemovesTheShadow();
    void theShadowIsKeptUntilItIsCleared();
    void theShadowFollowsTheSize();
    void aHugeShadowIsReduced();
    void aShadowOfNothingIsNothing();
    void refreshingPaintsAtOnce();
    void refreshingNothingIsAllowed();
    void aPageIsRenderedToScale();
    void aRotatedObjectIsPaintedTurned();
};

void TestFrameworkPainting::contentIsPaintedInItemCoordinates()
{
    PaintedObject object(paintCorner);
    object.setSize(QSizeF(20, 10), false, false);
    const QImage ground = painted(object);
    QCOMPARE(ground.pixel(10, 10), red);
    QCOMPARE(ground.pixel(19, 14), red);
    QCOMPARE(ground.pixel(20, 14), white);
    QCOMPARE(ground.pixel(19, 15), white);
    QCOMPARE(ground.pixel(9, 10), white);
}

void TestFrameworkPainting::mirrorTurnsAroundTheMiddle()
{
    PaintedObject object(paintCorner);
    object.setSize(QSizeF(20, 10), false, false);
    object.setMirror(true, false);
    const QImage ground = painted(object);
    QCOMPARE(ground.pixel(19, 10), white);
    QCOMPARE(ground.pixel(20, 10), red);
    QCOMPARE(ground.pixel(29, 14), red);
    QCOMPARE(ground.pixel(29, 15), white);
}

void TestFrameworkPainting::flipTurnsAroundTheMiddle()
{
    PaintedObject object(paintCorner);
    object.setSize(QSizeF(20, 10), false, false);
    object.setFlip(true, false);
    const QImage ground = painted(object);
    QCOMPARE(ground.pixel(10, 14), white);
    QCOMPARE(ground.pixel(10, 15), red);
    QCOMPARE(ground.pixel(19, 19), red);
    QCOMPARE(ground.pixel(20, 19), white);
}

void TestFrameworkPainting::thePainterIsLeftAsItWas()
{
    PaintedObject object([](QPainter *painter) {
        painter->setPen(Qt::green);
        painter->setOpacity(0.5);
        painter->translate(3, 3);
    });
    object.setSize(QSizeF(20, 10), false, false);
    object.setMirror(true, false);
    object.setLayerShadow(Qt::blue, QPointF(1, 1));
    QImage ground(10, 10, QImage::Format_RGB32);
    QPainter painter(&ground);
    painter.setPen(Qt::blue);
    const QTransform before = painter.transform();
    object.paint(&painter, nullptr, nullptr);
    QCOMPARE(painter.pen().color(), QColor(Qt::blue));
    QCOMPARE(painter.opacity(), 1.0);
    QCOMPARE(painter.transform(), before);
}

void TestFrameworkPainting::aNullPainterDrawsNothing()
{
    PaintedObject object(paintCorner);
    object.paint(nullptr, nullptr, nullptr);
    QCOMPARE(object.paintings, 0);
}

void TestFrameworkPainting::aShadowHasTheShapeOfTheContent()
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

void TestFrameworkPainting::aShadowIsMirroredWithItsObject()
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

void TestFrameworkPainting::aShadowsColourMayBeTranslucent()
{
    PaintedObject object(paintCorner);
    object.setSize(QSizeF(20, 10), false, false);
    object.setLayerShadow(QColor(0, 0, 0, 128), QPointF(0, 10));
    const QColor shade = painted(object).pixelColor(12, 22);
    // Black of opacity 128/255 over white leaves 127 of 255.
    QVERIFY(qAbs(shade.red() - 127) <= 1);
    QCOMPARE(shade.red(), shade.blue());
}

void TestFrameworkPainting::anInvalidColourRemovesTheShadow()
{
    PaintedObject object(paintCorner);
    object.setSize(QSizeF(20, 10), false, false);
    object.setLayerShadow(Qt::blue, QPointF(0, 10));
    object.setLayerShadow(QColor(), QPointF(0, 10));
    QCOMPARE(painted(object).pixel(12, 22), white);
}

void TestFrameworkPainting::theShadowIsKeptUntilItIsCleared()
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

void TestFrameworkPainting::theShadowFollowsTheSize()
{
    PaintedObject object(
        [](QPainter *painter) { painter->fillRect(QRectF(0, 0, 10, 6), Qt::red); });
    object.setSize(QSizeF(5, 5), false, false);
    object.setLayerShadow(Qt::blue, QPointF(0, 20));
    QCOMPARE(painted(object).pixel(16, 32), white);
    object.setSize(QSizeF(10, 6), false, false);
    QCOMPARE(painted(object).pixel(19, 35), blue);
}

void TestFrameworkPainting::aHugeShadowIsReduced()
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

void TestFrameworkPainting::aShadowOfNothingIsNothing()
{
    PaintedObject object(paintCorner);
    object.setLayerShadow(Qt::blue, QPointF(0, 10));
    painted(object);
    QCOMPARE(object.paintings, 1);
}

void TestFrameworkPainting::refreshingPaintsAtOnce()
{
    Document document;
    Page *page = document.addPage(QRectF(0, 0, 100, 100));
    auto *object = new PaintedObject(paintCorner);
    object->setSize(QSizeF(20, 10), false, false);
    page->addObject(object);
    QGraphicsView view(page);
    view.resize(200, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCoreApplication::processEvents();
    object->paintings = 0;
    GetFramework()->refreshObject(object);
    QCOMPARE(object->paintings, 1);
}

void TestFrameworkPainting::refreshingNothingIsAllowed()
{
    PaintedObject onNoPage(paintCorner);
    GetFramework()->refreshObject(nullptr);
    GetFramework()->refreshObject(&onNoPage);
    QCOMPARE(onNoPage.paintings, 0);
}

void TestFrameworkPainting::aPageIsRenderedToScale()
{
    Page page(QRectF(-10, 0, 40, 20));
    auto *object = new PaintedObject(paintCorner);
    object->setSize(QSizeF(20, 10), false, false);
    page.addObject(object);
    const QImage picture = page.rendered(2.0);
    QCOMPARE(picture.size(), QSize(80, 40));
    QCOMPARE(picture.pixel(20, 0), red);
    QCOMPARE(picture.pixel(39, 9), red);
    QCOMPARE(picture.pixel(40, 9), white);
    QCOMPARE(picture.pixel(19, 0), white);
    for (double scale : {0.0, -1.0, 1e9, qQNaN(), qInf()})
        QVERIFY(page.rendered(scale).isNull());
}

void TestFrameworkPainting::aRotatedObjectIsPaintedTurned()
{
    Page page(QRectF(0, 0, 40, 40));
    auto *object = new PaintedObject(paintCorner);
    object->setSize(QSizeF(20, 20), false, false);
    object->CBaseObject::setPos(QPointF(10, 10), false);
    object->setRotate(90, false);
    page.addObject(object);
    const QImage picture = page.rendered();
    // The red 10 x 5 in the top left corner turns into 5 x 10 in the top right corner.
    QCOMPARE(picture.pixel(28, 12), red);
    QCOMPARE(picture.pixel(26, 18), red);
    QCOMPARE(picture.pixel(12, 12), white);
    QCOMPARE(picture.pixel(23, 12), white);
    QCOMPARE(picture.pixel(28, 22), white);
}

QTEST_MAIN(TestFrameworkPainting)
#include "tst_framework_painting.moc"
