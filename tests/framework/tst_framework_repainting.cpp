#include "framework/document.h"
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
    void aChangeOfTheModeRepaintsThePage();
    void aMoveToAnotherLayerRepaintsThePageWhenAsked();
    void whatAnObjectCoveredBeforeHasChanged();
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

void TestFrameworkRepainting::aChangeOfTheModeRepaintsThePage()
{
    Document document;
    Page *page = document.addPage(QRectF(0, 0, 200, 100));
    auto *object = new PaintedObject;
    object->setSize(QSizeF(40, 30), false, false);
    page->addObject(object);
    QGraphicsView view(page);
    view.resize(300, 200);
    view.show();
    Shown::settle();
    object->paintings = 0;
    document.enterAlternateMode();
    Shown::settle();
    QCOMPARE(object->paintings, 1);
    document.leaveAlternateMode();
    Shown::settle();
    QCOMPARE(object->paintings, 2);
}

void TestFrameworkRepainting::aMoveToAnotherLayerRepaintsThePageWhenAsked()
{
    Shown shown;
    auto *elsewhere = new PaintedObject;
    elsewhere->setSize(QSizeF(10, 10), false, false);
    elsewhere->setPos(QPointF(150, 80), false);
    shown.page.addObject(elsewhere, Page::Layer::Background);
    for (const bool refresh : {false, true}) {
        Shown::settle();
        elsewhere->paintings = 0;
        const qint64 layer = shown.page.queryObject(shown.object, refresh ? 0 : 2);
        shown.page.applyObject(0, layer, {shown.object}, false, QString(), refresh);
        Shown::settle();
        QCOMPARE(elsewhere->paintings, refresh ? 1 : 0);
    }
}

void TestFrameworkRepainting::whatAnObjectCoveredBeforeHasChanged()
{
    Page page(QRectF(0, 0, 200, 100));
    auto *object = new PaintedObject;
    object->setSize(QSizeF(100, 50), false, false);
    page.addObject(object);
    QRectF changed;
    connect(&page, &QGraphicsScene::changed, this, [&](const QList<QRectF> &rects) {
        for (const QRectF &rect : rects)
            changed |= rect;
    });
    QCoreApplication::processEvents();
    changed = QRectF();
    object->setCenterPos(QPointF(10, 10), QSizeF(4, 4), 0.0, true);
    QCoreApplication::processEvents();
    QVERIFY(changed.contains(QRectF(0, 0, 100, 50)));
}

QTEST_MAIN(TestFrameworkRepainting)
#include "tst_framework_repainting.moc"
