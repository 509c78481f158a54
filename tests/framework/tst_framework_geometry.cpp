#include "host/attributeids.h"
#include "host/baseobject.h"
#include "tests/framework/changelog.h"
#include "tests/framework/paintedobject.h"

#include <QtCore/QDataStream>
#include <QtCore/QPointer>
#include <QtTest/QTest>

#include <limits>

namespace
{

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// An object at (10, 20) of 100 x 50.
struct Placed : CBaseObject {
    Placed()
        : CBaseObject(7, true, nullptr, nullptr)
    {
        setSize(QSizeF(100, 50), false, false);
        CBaseObject::setPos(QPointF(10, 20), false);
    }

    void setStale() { m_rectStale = true; }
    bool isStale() const { return m_rectStale; }
    void setHasShape(bool hasShape) { m_hasShape = hasShape; }
};

} // namespace

class TestFrameworkGeometry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewObjectHasNoExtent();
    void anObjectsRectangleBeginsAtItsOwnOrigin();
    void theItemStandsAtTheUnrotatedCorner();
    void resizingKeepsTheCorner();
    void resizingMayKeepTheCentre();
    void centreSizeAndAngleAreGivenInOneStep();
    void anUprightObjectKeepsItsDirection();
    void onlyAFreelyTurningObjectIsPaintedTurned();
    void anUnknownRotationTypeTurnsFreely();
    void geometryIsNotifiedOnlyWhenAsked();
    void smallAndEmptySizesArePossible();
    void impossibleGeometryIsIgnored_data();
    void impossibleGeometryIsIgnored();
    void aStaleObjectIsPlacedAgain();
    void aListenerMayReleaseTheObject();
    void theShapeIsTheRectangleOrNothing();
    void boundsHoldTheHandles();
    void theHandleSizeIsOneForTheWholeEditor();
    void attributesOfTheModeAreTheBasesOwn();
    void theBaseKnowsNoContent();
    void theStatusIsWhatTheHostSet();
};

void TestFrameworkGeometry::aNewObjectHasNoExtent()
{
    CBaseObject object(7, false, nullptr, nullptr);
    QCOMPARE(object.objectId(), 7);
    QVERIFY(!object.isEditable());
    QVERIFY(!object.flags().testFlag(QGraphicsItem::ItemIsSelectable));
    QVERIFY(Placed().flags().testFlag(QGraphicsItem::ItemIsSelectable));
    QCOMPARE(object.type(), 65536);
    QCOMPARE(object.getSize(), QSizeF(0, 0));
    QCOMPARE(object.getPos(), QPointF(0, 0));
    QCOMPARE(object.getRotate(), 0.0);
    QCOMPARE(object.getKTRotateType(), 2);
    QVERIFY(!object.isMirrored());
    QVERIFY(!object.isFlipped());
    QVERIFY(!object.GetPage());
    QCOMPARE(object.GetGraphicsItemPtr(), static_cast<QGraphicsItem *>(&object));
}

void TestFrameworkGeometry::anObjectsRectangleBeginsAtItsOwnOrigin()
{
    Placed object;
    QCOMPARE(object.getClientRect(), QRectF(0, 0, 100, 50));
    QCOMPARE(object.getSize(), QSizeF(100, 50));
    QCOMPARE(object.getPos(), QPointF(10, 20));
}

void TestFrameworkGeometry::theItemStandsAtTheUnrotatedCorner()
{
    Placed object;
    object.setRotate(90, false);
    QCOMPARE(object.pos(), QPointF(10, 20));
    QCOMPARE(object.transformOriginPoint(), QPointF(50, 25));
    QCOMPARE(object.rotation(), 90.0);
    // A quarter turn clockwise around (60, 45) takes the top left corner to the top right.
    QCOMPARE(object.mapToScene(QPointF(0, 0)), QPointF(85, -5));
}

void TestFrameworkGeometry::resizingKeepsTheCorner()
{
    Placed object;
    object.setSize(QSizeF(40, 30), false, false);
    QCOMPARE(object.getPos(), QPointF(10, 20));
    QCOMPARE(object.getClientRect(), QRectF(0, 0, 40, 30));
    QCOMPARE(object.transformOriginPoint(), QPointF(20, 15));
}

void TestFrameworkGeometry::resizingMayKeepTheCentre()
{
    Placed object;
    object.setSize(QSizeF(40, 30), true, false);
    QCOMPARE(object.getPos(), QPointF(40, 30));
    QCOMPARE(object.mapToScene(QPointF(20, 15)), QPointF(60, 45));
}

void TestFrameworkGeometry::centreSizeAndAngleAreGivenInOneStep()
{
    Placed object;
    object.setCenterPos(QPointF(200, 100), QSizeF(60, 20), 30, true);
    QCOMPARE(object.getPos(), QPointF(170, 90));
    QCOMPARE(object.getSize(), QSizeF(60, 20));
    QCOMPARE(object.getRotate(), 30.0);
    QCOMPARE(object.pos(), QPointF(170, 90));
    QCOMPARE(object.rotation(), 30.0);
}

void TestFrameworkGeometry::anUprightObjectKeepsItsDirection()
{
    Placed object;
    object.setRotate(75, false);
    object.setKTRotateType(1);
    object.setCenterPos(QPointF(200, 100), QSizeF(60, 20), 0, true);
    QCOMPARE(object.getRotate(), 0.0);
    QCOMPARE(object.getKTRotateDegree(), 75.0);
}

void TestFrameworkGeometry::onlyAFreelyTurningObjectIsPaintedTurned()
{
    Placed object;
    object.setRotate(45, false);
    for (int type : {0, 1}) {
        object.setKTRotateType(type);
        QCOMPARE(object.getKTRotateType(), type);
        QCOMPARE(object.getRotate(), 0.0);
        QCOMPARE(object.rotation(), 0.0);
        QCOMPARE(object.getKTRotateDegree(), 45.0);
    }
    object.setKTRotateType(2);
    QCOMPARE(object.rotation(), 45.0);
}

void TestFrameworkGeometry::anUnknownRotationTypeTurnsFreely()
{
    Placed object;
    object.setKTRotateType(0);
    object.setKTRotateType(-3);
    QCOMPARE(object.getKTRotateType(), 2);
}

void TestFrameworkGeometry::geometryIsNotifiedOnlyWhenAsked()
{
    Placed object;
    ChangeLog log;
    object.setSize(QSizeF(1, 1), false, false);
    object.CBaseObject::setPos(QPointF(1, 1), false);
    object.setMirror(true, false);
    object.setFlip(true, false);
    object.setRotate(1, false);
    object.setCenterPos(QPointF(5, 5), QSizeF(2, 2), 0, true);
    object.updateAfterObjRectChanged(&object, false);
    QCOMPARE(log.entries, QStringList());
    object.setSize(QSizeF(2, 2), false, true);
    object.CBaseObject::setPos(QPointF(2, 2), true);
    object.setMirror(false, true);
    object.setFlip(false, true);
    object.setRotate(2, true);
    object.updateAfterObjRectChanged(&object, true);
    QCOMPARE(log.entries.size(), 6);
    QCOMPARE(log.entries.count(QStringLiteral("104:")), 6);
}

void TestFrameworkGeometry::smallAndEmptySizesArePossible()
{
    for (const QSizeF &size : {QSizeF(0.25, 0.5), QSizeF(0, 0), QSizeF(7, 0), QSizeF(0, 7)}) {
        Placed object;
        object.setSize(size, false, false);
        QCOMPARE(object.getSize(), size);
        object.setSize(QSizeF(1, 1), false, false);
        object.setCenterPos(QPointF(3, 4), size, 0, true);
        QCOMPARE(object.getSize(), size);
    }
    Placed object;
    for (const QSizeF &size : {QSizeF(10, -0.5), QSizeF(-0.5, 10), QSizeF(10, infinity)})
        object.setSize(size, false, false);
    object.CBaseObject::setPos(QPointF(0, infinity), false);
    QCOMPARE(object.getClientRect(), QRectF(0, 0, 100, 50));
    QCOMPARE(object.getPos(), QPointF(10, 20));
}

void TestFrameworkGeometry::impossibleGeometryIsIgnored_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("angle");
    QTest::newRow("width nan") << notANumber << 0.0 << 0.0;
    QTest::newRow("width infinite") << infinity << 0.0 << 0.0;
    QTest::newRow("width negative") << -1.0 << 0.0 << 0.0;
    QTest::newRow("place nan") << 10.0 << notANumber << 0.0;
    QTest::newRow("place infinite") << 10.0 << -infinity << 0.0;
    QTest::newRow("corner beyond every number") << 1.7e308 << -1.7e308 << 0.0;
    QTest::newRow("angle nan") << 10.0 << 0.0 << notANumber;
}

void TestFrameworkGeometry::impossibleGeometryIsIgnored()
{
    QFETCH(double, width);
    QFETCH(double, x);
    QFETCH(double, angle);
    Placed object;
    ChangeLog log;
    object.setCenterPos(QPointF(x, 0), QSizeF(width, 10), angle, true);
    if (!(width >= 0.0 && width < 1e300))
        object.setSize(QSizeF(10, width < 1e300 ? width : notANumber), true, true);
    if (!(std::abs(x) < 1e300))
        object.CBaseObject::setPos(QPointF(x < -1e300 ? notANumber : x, 0), true);
    if (angle != 0.0)
        object.setRotate(angle, true);
    QCOMPARE(object.getClientRect(), QRectF(0, 0, 100, 50));
    QCOMPARE(object.getPos(), QPointF(10, 20));
    QCOMPARE(object.pos(), QPointF(10, 20));
    QCOMPARE(object.getKTRotateDegree(), 0.0);
    QCOMPARE(log.entries, QStringList());
}

void TestFrameworkGeometry::aStaleObjectIsPlacedAgain()
{
    Placed object;
    object.QGraphicsItem::setPos(1000, 1000);
    object.setStale();
    object.updateAfterObjRectChanged(&object, false);
    QVERIFY(!object.isStale());
    QCOMPARE(object.pos(), QPointF(10, 20));
    object.updateAfterObjRectChanged(nullptr, false);
}

void TestFrameworkGeometry::aListenerMayReleaseTheObject()
{
    ChangeLog log;
    log.whenHeard = [](CBaseObject *object) { object->Release(); };
    const QList<std::function<void(Placed *)>> changes{
        [](Placed *object) { object->updateAfterObjRectChanged(object, true); },
        [](Placed *object) { object->setSize(QSizeF(1, 1), true, true); },
        [](Placed *object) { object->CBaseObject::setPos(QPointF(1, 1), true); },
        [](Placed *object) { object->setMirror(true, true); },
        [](Placed *object) { object->setFlip(true, true); },
        [](Placed *object) { object->setRotate(1, true); },
        [](Placed *object) { object->notifyObjPropertyChanged(5, QStringLiteral("x")); },
    };
    for (const auto &change : changes) {
        const QPointer<Placed> object(new Placed);
        change(object);
        QVERIFY(object.isNull());
    }
    QCOMPARE(log.entries.last(), QStringLiteral("5:x"));
}

void TestFrameworkGeometry::theShapeIsTheRectangleOrNothing()
{
    Placed object;
    QVERIFY(object.shape().isEmpty());
    object.setHasShape(true);
    QVERIFY(object.shape().contains(QPointF(99, 49)));
    QVERIFY(!object.shape().contains(QPointF(101, 49)));
}

void TestFrameworkGeometry::boundsHoldTheHandles()
{
    Placed object;
    // Discs of radius 8 + 2 on the corners, and one more unit for smooth edges. The one for
    // rotation has its centre 16 above the top.
    QCOMPARE(object.boundingRect(), QRectF(-11, -27, 122, 88));
    // A shadow has one unit around it: from (199, 299) to (301, 351).
    object.setLayerShadow(Qt::black, QPointF(200, 300));
    QCOMPARE(object.boundingRect(), QRectF(-11, -27, 312, 378));
    object.setLayerShadow(Qt::black, QPointF(-200, -300));
    QCOMPARE(object.boundingRect(), QRectF(-201, -301, 312, 362));
    object.setLayerShadow(QColor(), QPointF(0, 0));
    QCOMPARE(object.boundingRect(), QRectF(-11, -27, 122, 88));
    CGDRootObject::SetHandleSize(4.0);
    QCOMPARE(object.boundingRect(), QRectF(-7, -15, 114, 72));
    CGDRootObject::SetHandleSize(8.0);
}

void TestFrameworkGeometry::theHandleSizeIsOneForTheWholeEditor()
{
    Placed first;
    Placed second;
    QCOMPARE(first.getHandleSize(), 8.0);
    CGDRootObject::SetHandleSize(4.0);
    QCOMPARE(first.getHandleSize(), 4.0);
    QCOMPARE(second.getHandleSize(), 4.0);
    CGDRootObject::SetHandleSize(notANumber);
    CGDRootObject::SetHandleSize(-1.0);
    QCOMPARE(first.getHandleSize(), 4.0);
    CGDRootObject::SetHandleSize(0.5);
    QCOMPARE(first.getHandleSize(), 0.5);
    CGDRootObject::SetHandleSize(0.0);
    QCOMPARE(first.getHandleSize(), 0.0);
    CGDRootObject::SetHandleSize(8.0);
}

void TestFrameworkGeometry::attributesOfTheModeAreTheBasesOwn()
{
    Placed object;
    QDataStream noInput{QByteArray()};
    QVERIFY(object.SetAttribute(AttributeId::EnterAlternateMode, noInput, false));
    QVERIFY(object.SetAttribute(AttributeId::LeaveAlternateMode, noInput, true));
    for (int id : {2702, 2704, 2705, 0, -1, 2803, 2806})
        QVERIFY(!object.SetAttribute(id, noInput, true));
}

void TestFrameworkGeometry::theBaseKnowsNoContent()
{
    Placed object;
    QDataStream noInput{QByteArray()};
    QString json;
    const QImage picture(2, 2, QImage::Format_RGB32);
    QVERIFY(!object.GetSpecialProperty(5012, noInput));
    QVERIFY(!object.SetSpecialProperty(5001, noInput, true));
    QVERIFY(!object.loadFromImage(&picture));
    QVERIFY(!object.loadFromFile(QStringLiteral("picture.gif")));
    QVERIFY(!object.loadFromFile(QStringLiteral("picture.gif"), nullptr));
    QVERIFY(!object.GetSettingJson(json));
    QVERIFY(!object.SetSettingJson(QStringLiteral("{\"settings\": []}"), true, true));
    QCOMPARE(object.getImageSize(), QSize(0, 0));
    QCOMPARE(object.generateCostumesCode(QStringLiteral("/tmp/x")), QJsonArray());
    QCOMPARE(object.getObjName(), QString());
    object.OnQPainterDraw(nullptr);
}

void TestFrameworkGeometry::theStatusIsWhatTheHostSet()
{
    Placed object;
    QCOMPARE(object.getStatus(), 0);
    object.setStatus(2);
    QCOMPARE(object.getStatus(), 2);
}

QTEST_MAIN(TestFrameworkGeometry)
#include "tst_framework_geometry.moc"
