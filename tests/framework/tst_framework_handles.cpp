#include "framework/objecthandles.h"
#include "host/baseobject.h"

#include <QtTest/QTest>

using ObjectHandles::Handle;

Q_DECLARE_METATYPE(ObjectHandles::Handle)
Q_DECLARE_METATYPE(ObjectHandles::Resizing)

namespace
{

/// An object whose setCenterPos() misses the size by a little.
struct Inexact : CBaseObject {
    Inexact()
        : CBaseObject(1, true, nullptr, nullptr)
    {
    }

    void setCenterPos(const QPointF &center, const QSizeF &size, double angle, bool update) override
    {
        CBaseObject::setCenterPos(center, size + QSizeF(0.5, 0.0), angle, update);
        isUpdated = update;
    }
    void setPos(QPointF pos, bool notify) override
    {
        CBaseObject::setPos(pos, notify);
        isNotified = notify;
    }

    bool isUpdated = false;
    bool isNotified = false;
};

/// From (10, 20) to (110, 70), around (60, 45).
ObjectGeometry geometry(double angle = 0.0)
{
    return {QPointF(10, 20), QSizeF(100, 50), angle};
}

constexpr ObjectHandles::Resizing freely{};
constexpr ObjectHandles::Resizing aboutCenter{false, true};
constexpr ObjectHandles::Resizing keepingRatio{true, false};

} // namespace

/// Where handles are, and what dragging them does.
class TestFrameworkHandles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyHandleIsOnItsEdge_data();
    void everyHandleIsOnItsEdge();
    void handlesTurnWithTheirObject();
    void geometriesDifferInEachOfTheirParts();
    void anObjectGetsExactlyItsGeometry();
    void aHandleMovesItsEdges_data();
    void aHandleMovesItsEdges();
    void aTurnedObjectIsResizedInItsOwnDirections();
    void anObjectWithoutExtentKeepsNoRatio();
    void theRotationHandleTurns_data();
    void theRotationHandleTurns();
    void aDragFromOrToTheCentreTurnsNothing();
};

void TestFrameworkHandles::everyHandleIsOnItsEdge_data()
{
    QTest::addColumn<Handle>("handle");
    QTest::addColumn<QPointF>("place");
    QTest::newRow("top left") << Handle::TopLeft << QPointF(10, 20);
    QTest::newRow("top") << Handle::Top << QPointF(60, 20);
    QTest::newRow("top right") << Handle::TopRight << QPointF(110, 20);
    QTest::newRow("left") << Handle::Left << QPointF(10, 45);
    QTest::newRow("right") << Handle::Right << QPointF(110, 45);
    QTest::newRow("bottom left") << Handle::BottomLeft << QPointF(10, 70);
    QTest::newRow("bottom") << Handle::Bottom << QPointF(60, 70);
    QTest::newRow("bottom right") << Handle::BottomRight << QPointF(110, 70);
    // Two handles of 8 units above the top edge.
    QTest::newRow("rotation") << Handle::Rotation << QPointF(60, 4);
}

void TestFrameworkHandles::everyHandleIsOnItsEdge()
{
    QFETCH(Handle, handle);
    QFETCH(QPointF, place);
    QCOMPARE(ObjectHandles::place(geometry(), handle, 8.0), place);
    QCOMPARE(ObjectHandles::all().size(), 9);
    QCOMPARE(ObjectHandles::all().count(handle), 1);
}

void TestFrameworkHandles::handlesTurnWithTheirObject()
{
    // A quarter clockwise around (60, 45): what was above is on the right.
    QCOMPARE(ObjectHandles::place(geometry(90), Handle::TopLeft, 8.0), QPointF(85, -5));
    QCOMPARE(ObjectHandles::place(geometry(90), Handle::Rotation, 8.0), QPointF(101, 45));
    QCOMPARE(geometry(90).toPage(QPointF(10, 20)), QPointF(85, -5));
    QCOMPARE(geometry(90).fromPage(QPointF(85, -5)), QPointF(10, 20));
}

void TestFrameworkHandles::geometriesDifferInEachOfTheirParts()
{
    QVERIFY(geometry() == geometry());
    ObjectGeometry other = geometry();
    other.pos.rx() += 1.0;
    QVERIFY(geometry() != other);
    other = geometry();
    other.size.rheight() += 1.0;
    QVERIFY(geometry() != other);
    QVERIFY(geometry() != geometry(0.001));
    QVERIFY(geometry() == geometry(1e-14));
}

void TestFrameworkHandles::anObjectGetsExactlyItsGeometry()
{
    Inexact object;
    ObjectHandles::setGeometry(object, geometry(30));
    QCOMPARE(object.getPos(), QPointF(10, 20));
    QCOMPARE(object.getSize(), QSizeF(100, 50));
    QCOMPARE(object.getRotate(), 30.0);
    QVERIFY(object.isUpdated);
    QVERIFY(object.isNotified);
    QVERIFY(ObjectHandles::geometryOf(object) == geometry(30));
}

void TestFrameworkHandles::aHandleMovesItsEdges_data()
{
    QTest::addColumn<Handle>("handle");
    QTest::addColumn<QPointF>("way");
    QTest::addColumn<ObjectHandles::Resizing>("resizing");
    QTest::addColumn<QRectF>("expected");
    const auto row = [](const char *name, Handle handle, const QPointF &way,
                        ObjectHandles::Resizing resizing, const QRectF &expected) {
        QTest::newRow(name) << handle << way << resizing << expected;
    };
    const QPointF way(10, 6);
    row("top left", Handle::TopLeft, way, freely, {20, 26, 90, 44});
    row("top", Handle::Top, way, freely, {10, 26, 100, 44});
    row("top right", Handle::TopRight, way, freely, {10, 26, 110, 44});
    row("left", Handle::Left, way, freely, {20, 20, 90, 50});
    row("right", Handle::Right, way, freely, {10, 20, 110, 50});
    row("bottom left", Handle::BottomLeft, way, freely, {20, 20, 90, 56});
    row("bottom", Handle::Bottom, way, freely, {10, 20, 100, 56});
    row("bottom right", Handle::BottomRight, way, freely, {10, 20, 110, 56});
    row("bottom right about the centre", Handle::BottomRight, way, aboutCenter, {0, 14, 120, 62});
    row("left about the centre", Handle::Left, way, aboutCenter, {20, 20, 80, 50});
    row("right with the ratio", Handle::Right, way, keepingRatio, {10, 17.5, 110, 55});
    row("bottom with the ratio", Handle::Bottom, {0, 10}, keepingRatio, {0, 20, 120, 60});
    row("a corner, more down", Handle::BottomRight, {10, 10}, keepingRatio, {10, 20, 120, 60});
    row("a corner, more across", Handle::BottomRight, {30, 5}, keepingRatio, {10, 20, 130, 65});
    row("a corner made smaller", Handle::TopLeft, {50, 0}, keepingRatio, {60, 45, 50, 25});
    row("no shorter than one unit", Handle::BottomRight, {-200, -200}, freely, {10, 20, 1, 1});
    // The shorter side becomes one unit.
    row("the smallest with the ratio", Handle::Right, {-200, 0}, keepingRatio, {10, 44.5, 2, 1});
}

void TestFrameworkHandles::aHandleMovesItsEdges()
{
    QFETCH(Handle, handle);
    QFETCH(QPointF, way);
    QFETCH(ObjectHandles::Resizing, resizing);
    QFETCH(QRectF, expected);
    const ObjectGeometry result = ObjectHandles::resized(geometry(), handle, way, resizing);
    QCOMPARE(QRectF(result.pos, result.size), expected);
    QCOMPARE(result.angle, 0.0);
}

void TestFrameworkHandles::aTurnedObjectIsResizedInItsOwnDirections()
{
    // The right edge is below, and the left one stays.
    const ObjectGeometry result =
        ObjectHandles::resized(geometry(90), Handle::Right, QPointF(0, 10), freely);
    QCOMPARE(QRectF(result.pos, result.size), QRectF(5, 25, 110, 50));
    QCOMPARE(result.angle, 90.0);
}

void TestFrameworkHandles::anObjectWithoutExtentKeepsNoRatio()
{
    const ObjectGeometry start{QPointF(10, 20), QSizeF(0, 0), 0.0};
    const ObjectGeometry result =
        ObjectHandles::resized(start, Handle::Right, QPointF(10, 0), keepingRatio);
    QCOMPARE(QRectF(result.pos, result.size), QRectF(10, 19.5, 10, 1));
}

void TestFrameworkHandles::theRotationHandleTurns_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<bool>("snaps");
    QTest::addColumn<double>("angle");
    const QPointF above(60, 0);
    const QPointF right(100, 45);
    const QPointF left(20, 45);
    QTest::newRow("nowhere") << 0.0 << above << false << 0.0;
    QTest::newRow("to the right") << 0.0 << right << false << 90.0;
    QTest::newRow("to the left") << 0.0 << left << false << 270.0;
    QTest::newRow("from an angle") << 10.0 << right << false << 100.0;
    QTest::newRow("beyond a whole turn") << 350.0 << right << false << 80.0;
    QTest::newRow("snapping up") << 10.0 << right << true << 105.0;
    QTest::newRow("snapping down") << 97.0 << above << true << 90.0;
    QTest::newRow("snapping to a whole turn") << 355.0 << above << true << 0.0;
}

void TestFrameworkHandles::theRotationHandleTurns()
{
    QFETCH(double, start);
    QFETCH(QPointF, to);
    QFETCH(bool, snaps);
    QFETCH(double, angle);
    const QPointF above(60, 0);
    const ObjectGeometry result = ObjectHandles::turned(geometry(start), above, to, snaps);
    QCOMPARE(result.angle, angle);
    QCOMPARE(QRectF(result.pos, result.size), QRectF(10, 20, 100, 50));
}

void TestFrameworkHandles::aDragFromOrToTheCentreTurnsNothing()
{
    const QPointF center(60, 45);
    const QPointF right(100, 45);
    QCOMPARE(ObjectHandles::turned(geometry(7), center, right, true).angle, 7.0);
    QCOMPARE(ObjectHandles::turned(geometry(7), right, center, true).angle, 7.0);
}

QTEST_MAIN(TestFrameworkHandles)
#include "tst_framework_handles.moc"
