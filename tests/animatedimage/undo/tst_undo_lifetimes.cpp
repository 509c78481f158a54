#include "animatedimage/protocol/undocommands.h"
#include "framework/framework.h"
#include "framework/page.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QPointer>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <array>
#include <memory>
#include <new>

namespace
{

using Closure = std::function<void(QDataStream &)>;

UndoStack &stack()
{
    return *Framework::instance().undoStack();
}

/// A document with one page and an animated image on it, which writes down the order in which
/// commands and object end.
struct Scene {
    Scene()
        : document(std::make_unique<Document>())
        , page(document->addPage(QRectF(0.0, 0.0, 800.0, 600.0)))
        , image(new CAnimatedImage(1, true, nullptr))
    {
        page->addObject(image);
        AnimatedImageProbe(*image).frames().append(
            {QStringLiteral("first"), Pictures::solid(4, 4, Qt::red)});
        QObject::connect(image, &QObject::destroyed, &listener,
                         [this] { ended.append(objectEnds); });
    }

    /// Pushes a command that holds the object. Its closures say when they are run, and when they
    /// are gone, whether the object was there.
    void push()
    {
        const auto witness =
            std::shared_ptr<void>(nullptr, [this, alive = QPointer<CAnimatedImage>(image)](void *) {
                ended.append(alive ? commandEnds : commandEndsLate);
            });
        Closure redo = [this, witness](QDataStream &) { ended.append(commandRuns); };
        Closure undo = [this, witness](QDataStream &) { ended.append(commandRuns); };
        CUndoRedo::GetInstance()->push(new CAnimatedUndoRedoCommand(redo, undo));
        ended.removeAll(commandRuns);
    }

    const QString objectEnds = QStringLiteral("object");
    const QString commandEnds = QStringLiteral("command");
    const QString commandEndsLate = QStringLiteral("command after its object");
    const QString commandRuns = QStringLiteral("run");

    QStringList ended;
    QObject listener;
    std::unique_ptr<Document> document;
    Page *page;
    CAnimatedImage *image;
};

} // namespace

/// Commands go before the objects that they know, where they can.
class TestUndoLifetimes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aDocumentDropsCommandsBeforeObjects();
    void aDocumentDropsWhatWasUndoneToo();
    void aDocumentDropsWhatIsInsideAnOpenMacro();
    void aRemovedPageDropsCommandsBeforeObjects();
    void aDestroyedObjectIsOutlivedByNoCommand();
    void anObjectThatEndsByItselfTakesTheCommandsAlong();
    void theRealCommandsGoWithTheirDocument();
    void commandsForNoObjectMayStay();
    void afterTheEndOfItsObjectACommandDoesNothing();
    void aChangeDoesNotReachAnotherObjectAtTheSameAddress();
    void anObjectMayEndWhileItsCommandRuns_data();
    void anObjectMayEndWhileItsCommandRuns();
    void anObjectMayEndWhileItsMacroIsOpened();
    void aPageThatTheObjectHasLeftIsNotAskedToMoveIt();
};

void TestUndoLifetimes::init()
{
    Framework::instance().dropUndoCommands();
}

void TestUndoLifetimes::aDocumentDropsCommandsBeforeObjects()
{
    Scene scene;
    scene.push();
    scene.push();
    QCOMPARE(stack().count(), 2);
    scene.document.reset();
    QCOMPARE(scene.ended, QStringList({scene.commandEnds, scene.commandEnds, scene.objectEnds}));
    QCOMPARE(stack().count(), 0);
}

void TestUndoLifetimes::aDocumentDropsWhatWasUndoneToo()
{
    Scene scene;
    scene.push();
    scene.push();
    stack().undo();
    stack().undo();
    scene.ended.clear();
    scene.document.reset();
    QCOMPARE(scene.ended, QStringList({scene.commandEnds, scene.commandEnds, scene.objectEnds}));
    QVERIFY(!stack().canRedo());
}

void TestUndoLifetimes::aDocumentDropsWhatIsInsideAnOpenMacro()
{
    Scene scene;
    GetFramework()->openUndoMacro(QStringLiteral("Never closed"));
    scene.push();
    scene.document.reset();
    QCOMPARE(scene.ended, QStringList({scene.commandEnds, scene.objectEnds}));
    QVERIFY(!GetFramework()->isUndoMacroOpen());
}

void TestUndoLifetimes::aRemovedPageDropsCommandsBeforeObjects()
{
    Scene scene;
    scene.push();
    scene.document->removePage(scene.page);
    QCOMPARE(scene.ended, QStringList({scene.commandEnds, scene.objectEnds}));
    QCOMPARE(stack().count(), 0);
}

void TestUndoLifetimes::aDestroyedObjectIsOutlivedByNoCommand()
{
    Scene scene;
    scene.push();
    scene.page->destroyObject(scene.image);
    QCOMPARE(scene.ended, QStringList({scene.commandEnds, scene.objectEnds}));
    QCOMPARE(stack().count(), 0);
}

void TestUndoLifetimes::anObjectThatEndsByItselfTakesTheCommandsAlong()
{
    Scene scene;
    scene.push();
    scene.image->Release();
    // A command may be what has just released it, so they go with the next turn. None is run.
    QCoreApplication::processEvents();
    QCOMPARE(scene.ended, QStringList({scene.objectEnds, scene.commandEndsLate}));
    QCOMPARE(stack().count(), 0);
}

void TestUndoLifetimes::theRealCommandsGoWithTheirDocument()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("walk.png"));
    QVERIFY(Pictures::solid(4, 2, Qt::cyan).save(path));
    Scene scene;
    Request replaceAll(Request::packed(path));
    QVERIFY(replaceAll.get(scene.image, 5020));
    Request setType(Request::packed(qint32(1), true));
    QVERIFY(setType.set(scene.image, 5008));
    auto *change = new CAnimatedImageChangeCommand(scene.image, CHANGE_LOOP_COUNT);
    change->setIntValue(-1, 3);
    CUndoRedo::GetInstance()->push(change);
    QCOMPARE(stack().count(), 3);
    stack().undo();

    scene.document.reset();

    QCOMPARE(scene.ended, QStringList({scene.objectEnds}));
    QVERIFY(!stack().canUndo() && !stack().canRedo());
    stack().undo();
    stack().redo();
}

void TestUndoLifetimes::commandsForNoObjectMayStay()
{
    Scene scene;
    scene.push();
    // A document without pages, such as one for the clipboard, is known to no command.
    std::make_unique<Document>().reset();
    QCOMPARE(stack().count(), 1);
    QCOMPARE(scene.ended, QStringList());
}

void TestUndoLifetimes::afterTheEndOfItsObjectACommandDoesNothing()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("walk.png"));
    QVERIFY(Pictures::solid(4, 2, Qt::cyan).save(path));
    Scene scene;
    Request replaceAll(Request::packed(path));
    QVERIFY(replaceAll.get(scene.image, 5020));
    Request setType(Request::packed(qint32(5), true));
    QVERIFY(setType.set(scene.image, 5008));
    auto *change = new CAnimatedImageChangeCommand(scene.image, CHANGE_SHIFT_INTERVAL);
    change->setIntValue(200, 300);
    CUndoRedo::GetInstance()->push(change);

    // An object on no page ends without a word to the stack.
    scene.page->takeObject(scene.image)->Release();
    QCOMPARE(scene.ended, QStringList({scene.objectEnds}));
    QCOMPARE(stack().count(), 3);
    const NotificationLog log;
    for (int round = 0; round < 2; ++round) {
        stack().setIndex(0);
        stack().setIndex(3);
    }
    QCOMPARE(log.entries(), QStringList());
}

void TestUndoLifetimes::aChangeDoesNotReachAnotherObjectAtTheSameAddress()
{
    alignas(CAnimatedImage) std::array<unsigned char, sizeof(CAnimatedImage)> place;
    auto *first = new (place.data()) CAnimatedImage(1, true, nullptr);
    auto *change = new CAnimatedImageChangeCommand(first, CHANGE_SHIFT_INTERVAL);
    change->setIntValue(70, 300);
    CUndoRedo::GetInstance()->push(change);
    QCOMPARE(AnimatedImageProbe(*first).shiftInterval(), 300);
    first->~CAnimatedImage();

    auto *second = new (place.data()) CAnimatedImage(2, true, nullptr);
    stack().undo();
    QCOMPARE(AnimatedImageProbe(*second).shiftInterval(), 200);
    stack().redo();
    QCOMPARE(AnimatedImageProbe(*second).shiftInterval(), 200);
    second->~CAnimatedImage();
}

void TestUndoLifetimes::anObjectMayEndWhileItsCommandRuns_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("direction");
    for (const int id : {5008, 5020}) {
        for (const char *direction : {"push", "undo", "redo"})
            QTest::addRow("%d, %s", id, direction) << id << QString::fromLatin1(direction);
    }
}

void TestUndoLifetimes::anObjectMayEndWhileItsCommandRuns()
{
    QFETCH(int, id);
    QFETCH(QString, direction);
    Stage stage(solidFrames({{4, 3}, {5, 6}}));
    const auto push = [&stage, id] {
        Request request(id == 5008 ? Request::packed(qint32(5), true)
                                   : Request::packed(QStringLiteral("missing.png")));
        QVERIFY(id == 5008 ? request.set(stage.image, id) : request.get(stage.image, id));
    };
    // A listener that releases the object and lets the event loop turn.
    bool releases = false;
    const auto release = [&stage, &releases] {
        if (!releases)
            return;
        releases = false;
        stage.release();
        QCoreApplication::processEvents();
    };
    QObject listener;
    const Notifier *notifier = Framework::instance().notifier();
    QObject::connect(notifier, &Notifier::propertyChanged, &listener, release);
    QObject::connect(notifier, &Notifier::posted, &listener, release);

    releases = direction == QLatin1String("push");
    push();
    if (direction == QLatin1String("redo"))
        stack().undo();
    releases = direction != QLatin1String("push");
    if (direction == QLatin1String("undo"))
        stack().undo();
    if (direction == QLatin1String("redo"))
        stack().redo();

    QVERIFY(stage.isReleased());
    QCOMPARE(stack().count(), 0);
    QVERIFY(!GetFramework()->isUndoMacroOpen());
    stack().undo();
    stack().redo();
}

void TestUndoLifetimes::anObjectMayEndWhileItsMacroIsOpened()
{
    for (const bool closesPage : {false, true}) {
        Stage stage(solidFrames({{4, 3}, {5, 6}}));
        Request replaceAll(Request::packed(QStringLiteral("missing.png")));
        QVERIFY(replaceAll.get(stage.image, 5020));
        QObject listener;
        QObject::connect(&stack(), &QUndoStack::canUndoChanged, &listener, [&stage, closesPage] {
            if (stage.isReleased())
                return;
            if (closesPage)
                stage.document.removePage(stage.page);
            else
                stage.release();
        });

        Request setType(Request::packed(qint32(1), true));
        QVERIFY(setType.set(stage.image, 5008));

        QVERIFY(stage.isReleased());
        QVERIFY(!GetFramework()->isUndoMacroOpen());
        QCoreApplication::processEvents();
        QCOMPARE(stack().count(), 0);
    }
}

void TestUndoLifetimes::aPageThatTheObjectHasLeftIsNotAskedToMoveIt()
{
    Scene scene;
    Page *other = scene.document->addPage(QRectF(0.0, 0.0, 50.0, 50.0));
    QMetaObject::Connection moving;
    // Heard when the macro begins.
    moving = connect(&stack(), &QUndoStack::canUndoChanged, other, [&] {
        disconnect(moving);
        other->addObject(scene.image);
    });
    Request(Request::packed(qint32(CAnimatedImage::BackgroundType), true)).set(scene.image, 5008);
    QVERIFY(other->holds(scene.image));
    QCOMPARE(AnimatedImageProbe(*scene.image).animatedType(), CAnimatedImage::BackgroundType);
    QVERIFY(other->placeOf(scene.image).layer == Page::Layer::Normal);
}

QTEST_MAIN(TestUndoLifetimes)
#include "tst_undo_lifetimes.moc"
