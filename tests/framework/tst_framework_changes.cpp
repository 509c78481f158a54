#include "host/baseobject.h"

#include <QtCore/QDataStream>
#include <QtTest/QTest>

#include <functional>

namespace
{

using Change = std::function<void(CBaseObject &)>;

/// What changes of an object together.
struct State {
    int id;
    QPointF pos;
    QSizeF size;
    double degrees;
    int rotateType;
    bool isMirrored;
    bool isFlipped;

    bool operator==(const State &other) const
    {
        return id == other.id && pos == other.pos && size == other.size &&
               degrees == other.degrees && rotateType == other.rotateType &&
               isMirrored == other.isMirrored && isFlipped == other.isFlipped;
    }
};

State stateOf(CBaseObject &object)
{
    return {object.objectId(),          object.CGDRootObject::getPos(), object.getSize(),
            object.getKTRotateDegree(), object.getKTRotateType(),       object.isMirrored(),
            object.isFlipped()};
}

/// An object at (10, 20) of 100 x 50, turned by 30 degrees, that remembers its state whenever it is
/// told that its geometry is about to change, and that it has changed.
struct Told : CBaseObject {
    Told()
        : CBaseObject(7, true, nullptr, nullptr)
    {
        setSize(QSizeF(100, 50), false, false);
        CBaseObject::setPos(QPointF(10, 20), false);
        setRotate(30, false);
        before.clear();
        after.clear();
    }

    QVector<State> before;
    QVector<State> after;

protected:
    void geometryAboutToChange() override
    {
        before.append(stateOf(*this));
        CBaseObject::geometryAboutToChange();
    }
    void geometryChanged(bool notify) override
    {
        after.append(stateOf(*this));
        CBaseObject::geometryChanged(notify);
    }
};

QByteArray otherState()
{
    CBaseObject other(8, true, nullptr, nullptr);
    other.setSize(QSizeF(40, 30), false, false);
    other.CGDRootObject::setPos(QPointF(1, 2), false);
    other.setRotate(45, false);
    other.setKTRotateType(1);
    other.setMirror(true, false);
    other.setFlip(true, false);
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    other.save(stream);
    return bytes;
}

} // namespace

Q_DECLARE_METATYPE(Change)

/// An object is told of each change of its geometry, before and after it.
class TestFrameworkChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangeIsToldBeforeAndAfterIt_data();
    void aChangeIsToldBeforeAndAfterIt();
    void theSamePlaceIsNoChange();
};

void TestFrameworkChanges::aChangeIsToldBeforeAndAfterIt_data()
{
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, const Change &change) { QTest::newRow(name) << change; };
    row("position", [](CBaseObject &object) { object.CGDRootObject::setPos({5, 6}, false); });
    row("size", [](CBaseObject &object) { object.setSize({60, 70}, true, false); });
    row("centre", [](CBaseObject &object) { object.setCenterPos({5, 6}, {7, 8}, 9, false); });
    row("centre alone", [](CBaseObject &object) {
        object.setCenterPos({5, 6}, {100, 50}, 30, false);
    });
    row("size from the corner", [](CBaseObject &object) {
        object.setCenterPos({40, 40}, {60, 40}, 30, false);
    });
    row("mirror", [](CBaseObject &object) { object.setMirror(true, false); });
    row("flip", [](CBaseObject &object) { object.setFlip(true, false); });
    row("angle", [](CBaseObject &object) { object.setRotate(60, false); });
    row("way of turning", [](CBaseObject &object) { object.setKTRotateType(1); });
    row("all of it", [](CBaseObject &object) {
        QDataStream stream(otherState());
        object.load(stream);
    });
}

void TestFrameworkChanges::aChangeIsToldBeforeAndAfterIt()
{
    QFETCH(Change, change);
    Told object;
    const State old = stateOf(object);
    change(object);
    const State now = stateOf(object);
    QVERIFY(!(now == old));
    QVERIFY(!object.before.isEmpty());
    QVERIFY(object.before.first() == old);
    QVERIFY(!object.after.isEmpty());
    QVERIFY(object.after.last() == now);
}

void TestFrameworkChanges::theSamePlaceIsNoChange()
{
    Told object;
    object.setCenterPos({60, 45}, {100, 50}, 30, false);
    QVERIFY(object.before.isEmpty());
}

QTEST_MAIN(TestFrameworkChanges)
#include "tst_framework_changes.moc"
