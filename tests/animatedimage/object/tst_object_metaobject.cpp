#include "tests/support/probe.h"

#include <QtTest/QTest>

/// What Qt knows of the class at run time.
class TestObjectMetaObject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itIsNamedAndDerivesFromTheBase();
    void itsOnlyOwnMethodIsTheSlotOfTheTimer();
    void itHasNoPropertiesNorOtherMetaData();
    void itCastsToItselfAndItsBases();
    void theSlotCanBeInvokedByName();
    void theTimerIsConnectedToTheSlot();
};

void TestObjectMetaObject::itIsNamedAndDerivesFromTheBase()
{
    const QMetaObject &meta = CAnimatedImage::staticMetaObject;
    QCOMPARE(QByteArray(meta.className()), QByteArray("CAnimatedImage"));
    QVERIFY(meta.superClass() == &CBaseObject::staticMetaObject);
    CAnimatedImage image(1, true, nullptr);
    QVERIFY(image.metaObject() == &meta);
}

void TestObjectMetaObject::itsOnlyOwnMethodIsTheSlotOfTheTimer()
{
    const QMetaObject &meta = CAnimatedImage::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod method = meta.method(meta.methodOffset());
    QCOMPARE(method.methodSignature(), QByteArray("onShiftTimeout()"));
    QCOMPARE(method.methodType(), QMetaMethod::Slot);
    QCOMPARE(method.returnType(), int(QMetaType::Void));
}

void TestObjectMetaObject::itHasNoPropertiesNorOtherMetaData()
{
    const QMetaObject &meta = CAnimatedImage::staticMetaObject;
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
    QCOMPARE(meta.constructorCount(), 0);
}

void TestObjectMetaObject::itCastsToItselfAndItsBases()
{
    CAnimatedImage image(1, true, nullptr);
    QVERIFY(image.qt_metacast("CAnimatedImage") == &image);
    QVERIFY(image.qt_metacast("CBaseObject") == static_cast<CBaseObject *>(&image));
    QVERIFY(image.qt_metacast("QGraphicsObject") == static_cast<QGraphicsObject *>(&image));
    QVERIFY(!image.qt_metacast("CAnimatedPortrait"));
    QVERIFY(!image.qt_metacast(nullptr));
}

void TestObjectMetaObject::theSlotCanBeInvokedByName()
{
    CAnimatedImage image(1, true, nullptr);
    AnimatedImageProbe probe(image);
    probe.isRunning() = true;
    QVERIFY(QMetaObject::invokeMethod(&image, "onShiftTimeout"));
    QCOMPARE(probe.loopsDone(), 1); // without frames every tick is a pass

    const int index = image.metaObject()->indexOfSlot("onShiftTimeout()");
    // What is left of an index that is not its own is handed on to the next class.
    QCOMPARE(image.qt_metacall(QMetaObject::InvokeMetaMethod, index, nullptr), -1);
    QCOMPARE(probe.loopsDone(), 2);
}

void TestObjectMetaObject::theTimerIsConnectedToTheSlot()
{
    CAnimatedImage image(1, true, nullptr);
    AnimatedImageProbe probe(image);
    QVERIFY(QObject::disconnect(probe.timer(), SIGNAL(timeout()), &image, SLOT(onShiftTimeout())));
    // Once, and to nothing else.
    QVERIFY(!QObject::disconnect(probe.timer(), SIGNAL(timeout()), nullptr, nullptr));
}

QTEST_MAIN(TestObjectMetaObject)
#include "tst_object_metaobject.moc"
