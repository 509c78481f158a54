#include "framework/page.h"
#include "host/notificationcodes.h"
#include "tests/framework/changelog.h"
#include "tests/framework/paintedobject.h"

#include <QtCore/QDataStream>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsView>

/// When an object in a view is painted again.
class TestFrameworkRepainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangedPropertyRepaintsTheObject_data();
    void aChangedPropertyRepaintsTheObject();
    void manyChangesAreOneRepaint();
    void whatIsBelowAnObjectThatAListenerReleasesIsRepainted();
    void aRequestThatReachesTheBaseRepaintsTheObject();
    void readingRepaintsNothing();
};

namespace
{

/// A page with one object, and a view that shows it.
class Shown
{
public:
    Shown()
        : page(QRectF(0, 0, 200, 100))
        , object(new PaintedObject)
        , view(&page)
    {
        page.addObject(object);
        object->setSize(QSizeF(40, 30), false, false);
        view.resize(300, 200);
        view.show();
        settle();
        object->paintings = 0;
    }

    /// Handles all that is due: a repaint passes several queues.
    static void settle()
    {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }

    Page page;
    PaintedObject *object;
    QGraphicsView view;
};

} // namespace

void TestFrameworkRepainting::aChangedPropertyRepaintsTheObject_data()
{
    QTest::addColumn<int>("id");
    QTest::newRow("geometry") << 104;
    QTest::newRow("geometry restored") << 105;
    QTest::newRow("shown content") << 1002;
}

void TestFrameworkRepainting::aChangedPropertyRepaintsTheObject()
{
    QFETCH(int, id);
    Shown shown;
    shown.object->notifyObjPropertyChanged(id, QString());
    QCOMPARE(shown.object->paintings, 0);
    Shown::settle();
    QCOMPARE(shown.object->paintings, 1);
}

void TestFrameworkRepainting::manyChangesAreOneRepaint()
{
    Shown shown;
    for (int i = 0; i < 3; ++i)
        shown.object->notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
    Shown::settle();
    QCOMPARE(shown.object->paintings, 1);
}

void TestFrameworkRepainting::whatIsBelowAnObjectThatAListenerReleasesIsRepainted()
{
    Shown shown;
    auto *below = new PaintedObject;
    below->setSize(QSizeF(40, 30), false, false);
    shown.page.addObject(below, Page::Layer::Background);
    Shown::settle();
    below->paintings = 0;
    ChangeLog log;
    log.whenHeard = [](CBaseObject *object) { object->Release(); };
    shown.object->notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
    Shown::settle();
    QVERIFY(below->paintings > 0);
}

void TestFrameworkRepainting::aRequestThatReachesTheBaseRepaintsTheObject()
{
    Shown shown;
    QDataStream noInput{QByteArray()};
    QVERIFY(!shown.object->SetSpecialProperty(5015, noInput, true));
    Shown::settle();
    QCOMPARE(shown.object->paintings, 1);
}

void TestFrameworkRepainting::readingRepaintsNothing()
{
    Shown shown;
    QDataStream noInput{QByteArray()};
    shown.object->GetSpecialProperty(5012, noInput);
    shown.object->getPos();
    shown.object->boundingRect();
    shown.object->SetAttribute(2705, noInput, true);
    Shown::settle();
    QCOMPARE(shown.object->paintings, 0);
}

QTEST_MAIN(TestFrameworkRepainting)
#include "tst_framework_repainting.moc"
