#include "framework/document.h"
#include "framework/framework.h"
#include "framework/page.h"
#include "host/attributeids.h"
#include "host/undoredo.h"
#include "tests/framework/changelog.h"
#include "tests/framework/paintedobject.h"

#include <QtCore/QPointer>
#include <QtTest/QTest>

namespace
{

const QRectF a4(0, 0, 210, 297);

QList<CGDRootObject *> one(CBaseObject *object)
{
    return {object};
}

/// Adds @p count new objects to @p page.
QList<CBaseObject *> fill(Page &page, int count)
{
    QList<CBaseObject *> objects;
    for (int i = 0; i < count; ++i) {
        objects.append(new PaintedObject);
        page.addObject(objects.last());
    }
    return objects;
}

CBaseObject *fillOne(Page &page)
{
    auto *object = new PaintedObject;
    page.addObject(object);
    return object;
}

void moveToBackground(Page &page, CBaseObject *object, bool undoable)
{
    page.applyObject(0, page.queryObject(object, 2), one(object), undoable, QString(), true);
}

/// Writes the attributes that it gets, and the mode in which it gets them, to a list.
class Attributed final : public PaintedObject
{
public:
    explicit Attributed(QStringList &log)
        : m_log(log)
    {
    }

    bool SetAttribute(int id, QDataStream &stream, bool flag) override
    {
        const int mode = GetPage()->document()->alternateMode();
        const QString flagged = flag ? QStringLiteral(", flagged") : QString();
        m_log.append(QStringLiteral("%1 in %2%3").arg(id).arg(mode).arg(flagged));
        const bool handled = PaintedObject::SetAttribute(id, stream, flag);
        notifyObjPropertyChanged(id, QString());
        return handled;
    }

private:
    QStringList &m_log;
};

} // namespace

class TestFrameworkPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aPageKnowsItsRectangleAndDocument();
    void anImpossiblePageRectangleIsIgnored();
    void anAddedObjectBelongsToThePage();
    void addingMovesAnObjectFromItsOldPage();
    void addingTwiceOrNothingIsIgnored();
    void aTakenObjectIsOnNoPage();
    void destroyingAnObjectDropsCommandsFirst();
    void aReleasedObjectLeavesItsPage();
    void commandsOfAReleasedObjectAreDropped();
    void anObjectThatLeftTheSceneIsForgottenWhenItDies();
    void layersHaveHandlesOfTheirOwn();
    void theBackgroundLiesBelowEverything();
    void anObjectIsMovedBackToTheNormalLayer();
    void movingIsUndoneToTheSamePlace();
    void anUndoneMoveNamesItself();
    void movingWithoutUndoLeavesNoCommand();
    void impossibleMovesAreLeftAlone();
    void aMoveOutlivesItsObject();
    void theDefaultPlaceIsTheLowest();
    void placesAreBounded();
    void theModeIsEnteredAfterTheAttributeAndLeftBeforeIt();
    void aModeIsEnteredOnce();
    void aChangeOfTheModeEndsTheSelection();
    void listenersMayReleaseObjectsWhenTheModeChanges();
    void removingAPageReleasesItsObjects();
    void aPageDeletedByOthersLeavesItsDocument();
    void aDyingDocumentDropsCommandsThenReleasesObjects();
    void aDocumentWithoutPagesLeavesCommandsAlone();
    void theDefaultDocumentIsAlwaysThere();
};

void TestFrameworkPages::init()
{
    Framework::instance().dropUndoCommands();
}

void TestFrameworkPages::aPageKnowsItsRectangleAndDocument()
{
    Document document;
    Page *page = document.addPage(a4);
    QCOMPARE(page->pageRect(), a4);
    QCOMPARE(page->sceneRect(), a4);
    QCOMPARE(page->document(), static_cast<IGdDocument *>(&document));
    QCOMPARE(document.pages(), QList<Page *>{page});
    QCOMPARE(page->itemIndexMethod(), QGraphicsScene::NoIndex);
    Page loose(a4);
    QVERIFY(!loose.document());
}

void TestFrameworkPages::anImpossiblePageRectangleIsIgnored()
{
    Page page(a4);
    page.setPageRect(QRectF(0, 0, -1, 10));
    page.setPageRect(QRectF(qQNaN(), 0, 1, 10));
    page.setPageRect(QRectF(0, 0, qInf(), 10));
    QCOMPARE(page.pageRect(), a4);
}

void TestFrameworkPages::anAddedObjectBelongsToThePage()
{
    Page page(a4);
    const auto objects = fill(page, 2);
    QCOMPARE(page.objects(), objects);
    QCOMPARE(objects[0]->GetPage(), static_cast<IGdPage *>(&page));
    QCOMPARE(objects[0]->scene(), &page);
    QVERIFY(objects[0]->zValue() < objects[1]->zValue());
    QVERIFY(page.holds(objects[1]));
}

void TestFrameworkPages::addingMovesAnObjectFromItsOldPage()
{
    Page first(a4);
    Page second(a4);
    CBaseObject *object = fillOne(first);
    second.addObject(object);
    QVERIFY(first.objects().isEmpty());
    QCOMPARE(second.objects(), QList<CBaseObject *>{object});
    QCOMPARE(object->GetPage(), static_cast<IGdPage *>(&second));

    PaintedObject parent;
    auto *child = new CBaseObject(2, true, &parent, nullptr);
    second.addObject(child);
    QVERIFY(!child->parentItem());
    QCOMPARE(child->scene(), &second);
}

void TestFrameworkPages::addingTwiceOrNothingIsIgnored()
{
    Page page(a4);
    const auto objects = fill(page, 2);
    page.addObject(objects[0]);
    page.addObject(nullptr);
    QCOMPARE(page.objects(), objects);
}

void TestFrameworkPages::aTakenObjectIsOnNoPage()
{
    Page page(a4);
    CBaseObject *object = fillOne(page);
    QCOMPARE(page.takeObject(object), object);
    QVERIFY(!object->GetPage());
    QVERIFY(!object->scene());
    QVERIFY(page.objects().isEmpty());
    QVERIFY(!page.takeObject(object));
    QVERIFY(!page.takeObject(nullptr));
    object->Release();
}

void TestFrameworkPages::destroyingAnObjectDropsCommandsFirst()
{
    Page page(a4);
    const QPointer<CBaseObject> object(fillOne(page));
    moveToBackground(page, object, true);
    QCOMPARE(Framework::instance().undoStack()->count(), 1);
    PaintedObject elsewhere;
    page.destroyObject(&elsewhere);
    page.destroyObject(nullptr);
    QCOMPARE(Framework::instance().undoStack()->count(), 1);
    page.destroyObject(object);
    QVERIFY(object.isNull());
    QVERIFY(page.objects().isEmpty());
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

void TestFrameworkPages::aReleasedObjectLeavesItsPage()
{
    Page page(a4);
    const auto objects = fill(page, 3);
    int heard = -1;
    connect(&page, &QGraphicsScene::selectionChanged, this, [&] { heard = page.objects().size(); });
    objects[1]->setSelected(true);
    QCOMPARE(heard, 3);
    objects[1]->Release();
    QCOMPARE(heard, 2);
    QCOMPARE(page.objects(), (QList<CBaseObject *>{objects[0], objects[2]}));
}

void TestFrameworkPages::commandsOfAReleasedObjectAreDropped()
{
    Page page(a4);
    CBaseObject *object = fillOne(page);
    moveToBackground(page, object, true);
    object->Release();
    QCoreApplication::processEvents();
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

void TestFrameworkPages::anObjectThatLeftTheSceneIsForgottenWhenItDies()
{
    Page page(a4);
    CBaseObject *object = fillOne(page);
    CUndoRedo::GetInstance()->push(new CNmUndoCmd);
    page.removeItem(object);
    object->Release();
    QVERIFY(page.objects().isEmpty());
    // Commands may know the object.
    QCoreApplication::processEvents();
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

void TestFrameworkPages::layersHaveHandlesOfTheirOwn()
{
    Page first(a4);
    Page second(a4);
    CBaseObject *object = fillOne(first);
    const QSet<qint64> handles{first.queryObject(object, 0), first.queryObject(object, 2),
                               second.queryObject(object, 0), second.queryObject(object, 2), 0};
    QCOMPARE(handles.size(), 5);
    for (int code : {-1, 1, 3, 100})
        QCOMPARE(first.queryObject(object, code), qint64(0));
}

void TestFrameworkPages::theBackgroundLiesBelowEverything()
{
    Page page(a4);
    const auto objects = fill(page, 3);
    moveToBackground(page, objects[2], false);
    moveToBackground(page, objects[1], false);
    QCOMPARE(page.objects(), (QList<CBaseObject *>{objects[2], objects[1], objects[0]}));
    // The background begins at the lowest value, the other layer at 0.
    QCOMPARE(objects[2]->zValue(), -2147483648.0);
    QCOMPARE(objects[1]->zValue(), -2147483647.0);
    QCOMPARE(objects[0]->zValue(), 0.0);
    fill(page, 1);
    QCOMPARE(page.objects().at(0), objects[2]);
    QCOMPARE(page.objects().at(3)->zValue(), 1.0);
}

void TestFrameworkPages::anObjectIsMovedBackToTheNormalLayer()
{
    Page page(a4);
    const auto objects = fill(page, 2);
    moveToBackground(page, objects[0], false);
    QCOMPARE(page.placeOf(objects[0]).layer, Page::Layer::Background);
    page.applyObject(0, page.queryObject(objects[0], 0), one(objects[0]), false, QString(), false);
    QCOMPARE(page.placeOf(objects[0]).layer, Page::Layer::Normal);
    QCOMPARE(page.objects(), (QList<CBaseObject *>{objects[1], objects[0]}));
}

void TestFrameworkPages::movingIsUndoneToTheSamePlace()
{
    Page page(a4);
    const auto objects = fill(page, 5);
    const QList<CGDRootObject *> moved{objects[1], objects[2], objects[4]};
    page.applyObject(0, page.queryObject(objects[1], 2), moved, true, QString(), true);
    const QList<CBaseObject *> after{objects[1], objects[2], objects[4], objects[0], objects[3]};
    QCOMPARE(page.objects(), after);
    Framework::instance().undoStack()->undo();
    QCOMPARE(page.objects(), objects);
    QCOMPARE(page.placeOf(objects[4]).layer, Page::Layer::Normal);
    Framework::instance().undoStack()->redo();
    QCOMPARE(page.objects(), after);
}

void TestFrameworkPages::anUndoneMoveNamesItself()
{
    Framework::instance().setLanguage(QLocale(QLocale::English));
    Page page(a4);
    const auto objects = fill(page, 1);
    moveToBackground(page, objects[0], true);
    QCOMPARE(Framework::instance().undoStack()->undoText(),
             QStringLiteral("Move to Another Layer"));
    page.applyObject(0, page.queryObject(objects[0], 0), one(objects[0]), true,
                     QStringLiteral("Bring forward"), true);
    QCOMPARE(Framework::instance().undoStack()->undoText(), QStringLiteral("Bring forward"));
}

void TestFrameworkPages::movingWithoutUndoLeavesNoCommand()
{
    Page page(a4);
    moveToBackground(page, fillOne(page), false);
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

void TestFrameworkPages::impossibleMovesAreLeftAlone()
{
    Page page(a4);
    Page other(a4);
    const auto objects = fill(page, 2);
    CBaseObject *foreign = fillOne(other);
    const qint64 background = page.queryObject(objects[0], 2);
    page.applyObject(1, background, one(objects[0]), true, QString(), true);
    page.applyObject(0, 0, one(objects[0]), true, QString(), true);
    page.applyObject(0, other.queryObject(foreign, 2), one(objects[0]), true, QString(), true);
    page.applyObject(0, background, {foreign, nullptr}, true, QString(), true);
    page.applyObject(0, background, {}, true, QString(), true);
    QCOMPARE(page.objects(), objects);
    QCOMPARE(page.placeOf(objects[0]).layer, Page::Layer::Normal);
    QCOMPARE(other.placeOf(foreign).layer, Page::Layer::Normal);
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

void TestFrameworkPages::aMoveOutlivesItsObject()
{
    Page page(a4);
    const auto objects = fill(page, 2);
    const QList<CGDRootObject *> moved{objects[0], objects[1]};
    page.applyObject(0, page.queryObject(objects[0], 2), moved, true, QString(), true);
    page.takeObject(objects[0])->Release();
    Framework::instance().undoStack()->undo();
    QCOMPARE(page.placeOf(objects[1]).layer, Page::Layer::Normal);
    Framework::instance().undoStack()->redo();
    QCOMPARE(page.placeOf(objects[1]).layer, Page::Layer::Background);
}

void TestFrameworkPages::theDefaultPlaceIsTheLowest()
{
    QCOMPARE(Page::Place().index, 0);
    Page page(a4);
    const auto objects = fill(page, 3);
    page.placeObject(objects[2], Page::Place());
    QCOMPARE(page.objects(), (QList<CBaseObject *>{objects[2], objects[0], objects[1]}));
}

void TestFrameworkPages::placesAreBounded()
{
    Page page(a4);
    const auto objects = fill(page, 3);
    page.placeObject(objects[0], {Page::Layer::Normal, 99});
    QCOMPARE(page.objects(), (QList<CBaseObject *>{objects[1], objects[2], objects[0]}));
    page.placeObject(objects[0], {Page::Layer::Normal, -1});
    QCOMPARE(page.objects(), objects);
    page.placeObject(nullptr, {});
    QCOMPARE(page.objects(), objects);
}

void TestFrameworkPages::theModeIsEnteredAfterTheAttributeAndLeftBeforeIt()
{
    Document document;
    QStringList log;
    document.addPage(a4)->addObject(new Attributed(log));
    document.addPage(a4)->addObject(new Attributed(log));
    document.enterAlternateMode();
    QCOMPARE(document.alternateMode(), 1);
    QCOMPARE(log, (QStringList{QStringLiteral("2804 in 0"), QStringLiteral("2804 in 0")}));
    log.clear();
    document.leaveAlternateMode();
    QCOMPARE(document.alternateMode(), 0);
    QCOMPARE(log, (QStringList{QStringLiteral("2805 in 0"), QStringLiteral("2805 in 0")}));
}

void TestFrameworkPages::aModeIsEnteredOnce()
{
    Document document;
    QStringList log;
    document.addPage(a4)->addObject(new Attributed(log));
    document.leaveAlternateMode();
    QCOMPARE(log, QStringList());
    document.enterAlternateMode();
    document.enterAlternateMode();
    QCOMPARE(log.size(), 1);
}

void TestFrameworkPages::aChangeOfTheModeEndsTheSelection()
{
    Document document;
    CBaseObject *object = fillOne(*document.addPage(a4));
    object->setSelected(true);
    QVERIFY(object->isSelected());
    document.enterAlternateMode();
    QVERIFY(!object->isSelected());
    object->setSelected(true);
    document.leaveAlternateMode();
    QVERIFY(!object->isSelected());
}

void TestFrameworkPages::listenersMayReleaseObjectsWhenTheModeChanges()
{
    Document document;
    Page *page = document.addPage(a4);
    QStringList log;
    for (int i = 0; i < 3; ++i)
        page->addObject(new Attributed(log));
    ChangeLog changes;
    // The first to speak takes everything with it.
    changes.whenHeard = [=](CBaseObject *) {
        const QList<CBaseObject *> objects = page->objects();
        for (CBaseObject *object : objects)
            object->Release();
    };
    document.enterAlternateMode();
    QCOMPARE(log.size(), 1);
    QVERIFY(page->objects().isEmpty());
    QCOMPARE(document.alternateMode(), 1);
}

void TestFrameworkPages::removingAPageReleasesItsObjects()
{
    Document document;
    Document other;
    Page *page = document.addPage(a4);
    const QPointer<CBaseObject> object(fillOne(*page));
    other.removePage(page);
    document.removePage(nullptr);
    QVERIFY(object);
    CUndoRedo::GetInstance()->push(new CNmUndoCmd);
    document.removePage(page);
    QVERIFY(object.isNull());
    QVERIFY(document.pages().isEmpty());
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

void TestFrameworkPages::aPageDeletedByOthersLeavesItsDocument()
{
    Document document;
    Page *page = document.addPage(a4);
    delete page;
    QVERIFY(document.pages().isEmpty());
}

void TestFrameworkPages::aDyingDocumentDropsCommandsThenReleasesObjects()
{
    // A command that notes whether its object was still there when it went.
    struct Witness final : CNmUndoCmd {
        Witness(const QPointer<CBaseObject> &object, bool &saw)
            : object(object)
            , saw(saw)
        {
        }
        ~Witness() override { saw = !object.isNull(); }
        QPointer<CBaseObject> object;
        bool &saw;
    };
    bool saw = false;
    QPointer<CBaseObject> object;
    {
        Document document;
        object = fillOne(*document.addPage(a4));
        CUndoRedo::GetInstance()->push(new Witness(object, saw));
    }
    QVERIFY(saw);
    QVERIFY(object.isNull());
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

void TestFrameworkPages::aDocumentWithoutPagesLeavesCommandsAlone()
{
    CUndoRedo::GetInstance()->push(new CNmUndoCmd);
    {
        Document clipboard;
    }
    QCOMPARE(Framework::instance().undoStack()->count(), 1);
}

void TestFrameworkPages::theDefaultDocumentIsAlwaysThere()
{
    IGdDocument *document = GetFramework()->defaultDocument();
    QVERIFY(document);
    QCOMPARE(document, GetFramework()->defaultDocument());
    QCOMPARE(document->alternateMode(), 0);
}

QTEST_MAIN(TestFrameworkPages)
#include "tst_framework_pages.moc"
