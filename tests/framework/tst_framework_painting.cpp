#include "framework/document.h"
#include "framework/framework.h"
#include "framework/page.h"
#include "tests/framework/paintedobject.h"

#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsView>

namespace
{

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
    void refreshingPaintsAtOnce();
    void refreshingPaintsTheObjectsPlaceAlone();
    void refreshingNothingIsAllowed();
    void aPageIsRenderedToScale();
    void aPageThatNoPictureCanHoldIsNotRendered();
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

void TestFrameworkPainting::refreshingPaintsTheObjectsPlaceAlone()
{
    struct Listener : QObject {
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Paint)
                painted.append(static_cast<QPaintEvent *>(event)->rect());
            return false;
        }
        QList<QRect> painted;
    };
    Page page(QRectF(0, 0, 200, 200));
    auto *object = new PaintedObject(paintCorner);
    object->setSize(QSizeF(20, 10), false, false);
    page.addObject(object);
    QGraphicsView view(&page);
    view.setFrameShape(QFrame::NoFrame);
    view.resize(200, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCoreApplication::processEvents();
    Listener listener;
    view.viewport()->installEventFilter(&listener);

    // The bounds of 42 x 48 begin 11 to the left and 27 above; two pixels more on each side.
    object->CBaseObject::setPos(QPointF(50, 60), false);
    QCoreApplication::processEvents();
    listener.painted.clear();
    GetFramework()->refreshObject(object);
    QCOMPARE(listener.painted, QList<QRect>{QRect(QPoint(37, 31), QPoint(83, 83))});

    // What lies outside the view is not asked for.
    object->CBaseObject::setPos(QPointF(0, 0), false);
    QCoreApplication::processEvents();
    listener.painted.clear();
    GetFramework()->refreshObject(object);
    QCOMPARE(listener.painted, QList<QRect>{QRect(QPoint(0, 0), QPoint(33, 23))});
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

void TestFrameworkPainting::aPageThatNoPictureCanHoldIsNotRendered()
{
    // 2^28 pixels are the most, 268,435,456: here are 268,960,000 and 800,000,000.
    QVERIFY(Page(QRectF(0, 0, 20, 20)).rendered(820.0).isNull());
    QVERIFY(Page(QRectF(0, 0, 40, 20)).rendered(1000.0).isNull());
    // A page of less than one pixel is one pixel.
    QCOMPARE(Page(QRectF(0, 0, 1000, 1)).rendered(0.25).size(), QSize(250, 1));
    QCOMPARE(Page(QRectF(0, 0, 1, 1000)).rendered(0.25).size(), QSize(1, 250));
    // Without a scale it is of the page's own size, on white.
    const QImage plain = Page(QRectF(0, 0, 3, 2)).rendered();
    QCOMPARE(plain.size(), QSize(3, 2));
    QCOMPARE(plain.pixel(2, 1), white);
    QCOMPARE(Page(QRectF(0, 0, 3, 2)).rendered(1.0, Qt::blue).pixel(0, 0), blue);
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
