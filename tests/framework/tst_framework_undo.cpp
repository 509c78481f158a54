#include "framework/framework.h"
#include "framework/page.h"
#include "host/undoredo.h"
#include "tests/framework/paintedobject.h"

#include <QtTest/QTest>

#include <functional>

namespace
{

class CountingCommand final : public CNmUndoCmd
{
public:
    CountingCommand(int &value, int step)
        : m_value(value)
        , m_step(step)
    {
    }

    void redo() override { m_value += m_step; }
    void undo() override { m_value -= m_step; }

private:
    int &m_value;
    int m_step;
};

/// Does the same in both directions.
class Doing final : public CNmUndoCmd
{
public:
    explicit Doing(std::function<void()> work)
        : m_work(std::move(work))
    {
        ++alive;
    }
    ~Doing() override { --alive; }

    void redo() override { m_work(); }
    void undo() override { m_work(); }

    inline static int alive = 0;

private:
    std::function<void()> m_work;
};

/// The ways in which commands are run.
enum class Way { Push, Undo, Redo, SetIndex };

void addWays()
{
    QTest::addColumn<Way>("way");
    QTest::newRow("push") << Way::Push;
    QTest::newRow("undo") << Way::Undo;
    QTest::newRow("redo") << Way::Redo;
    QTest::newRow("set index") << Way::SetIndex;
}

/// Runs @p work as a command, in one way alone.
void runAsCommand(Way way, const std::function<void()> &work)
{
    UndoStack &stack = *Framework::instance().undoStack();
    bool isTried = way == Way::Push;
    CUndoRedo::GetInstance()->push(new Doing([&isTried, &work] {
        if (isTried)
            work();
    }));
    if (way == Way::Redo)
        stack.undo();
    isTried = true;
    if (way == Way::Undo)
        stack.undo();
    if (way == Way::Redo)
        stack.redo();
    if (way == Way::SetIndex)
        stack.setIndex(0);
}

/// A localisation that knows one id.
class OneText final : public ILocalize
{
public:
    QString translated(const QString &id, const QString &fallback) const override
    {
        return id == QLatin1String("IDS_KNOWN") ? QStringLiteral("Known text") : fallback;
    }
};

} // namespace

Q_DECLARE_METATYPE(Way)

class TestFrameworkUndo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanupTestCase();

    void thereIsOneStack();
    void aPushRunsRedoOnce();
    void aNullCommandIsIgnored();
    void aCommandKnowsItsPlaceOncePushed();
    void anActionNameIsLookedUpAsAnId();
    void aMacroIsUndoneAsOne();
    void aMacroIsOpenOnceTheStackHasBegunIt();
    void macrosNest();
    void closingWithoutAnOpenMacroDoesNothing();
    void aMacroIsNamedInTheUsersLanguage();
    void droppingCommandsClosesMacros();
    void clearingTheStackItselfClosesMacros();
    void commandsDroppedLaterAreGoneWithTheNextTurn();
    void aCommandMayDropCommandsWhenItDies();
    void aRunningCommandMayDropCommands_data();
    void aRunningCommandMayDropCommands();
    void noOtherCommandRunsOnceCommandsAreDropped();
    void anIndexIsReachedByTheCommandsOnTheWay();
    void aRunningCommandMayRemoveItsPage_data();
    void aRunningCommandMayRemoveItsPage();
};

void TestFrameworkUndo::init()
{
    Framework::instance().dropUndoCommands();
    Framework::instance().setLanguage(QLocale(QLocale::English));
}

void TestFrameworkUndo::cleanupTestCase()
{
    Framework::instance().dropUndoCommands();
}

void TestFrameworkUndo::thereIsOneStack()
{
    QCOMPARE(CUndoRedo::GetInstance(), CUndoRedo::GetInstance());
    QCOMPARE(static_cast<IFramework *>(&Framework::instance()), GetFramework());
}

void TestFrameworkUndo::aPushRunsRedoOnce()
{
    int value = 10;
    CUndoRedo::GetInstance()->push(new CountingCommand(value, 3));
    QCOMPARE(value, 13);
    QCOMPARE(Framework::instance().undoStack()->count(), 1);
    Framework::instance().undoStack()->undo();
    QCOMPARE(value, 10);
    Framework::instance().undoStack()->redo();
    QCOMPARE(value, 13);
}

void TestFrameworkUndo::aNullCommandIsIgnored()
{
    CUndoRedo::GetInstance()->push(nullptr);
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

void TestFrameworkUndo::aCommandKnowsItsPlaceOncePushed()
{
    int value = 0;
    auto *first = new CountingCommand(value, 1);
    auto *second = new CountingCommand(value, 1);
    QCOMPARE(second->getIdxCmd(), -1);
    CUndoRedo::GetInstance()->push(first);
    CUndoRedo::GetInstance()->push(second);
    QCOMPARE(first->getIdxCmd(), 0);
    QCOMPARE(second->getIdxCmd(), 1);
    second->setIdxCmd(7);
    QCOMPARE(second->getIdxCmd(), 7);
}

void TestFrameworkUndo::anActionNameIsLookedUpAsAnId()
{
    int value = 0;
    CountingCommand command(value, 1);
    OneText texts;
    command.setText(QStringLiteral("IDS_KNOWN"));
    QCOMPARE(command.getActionName(&texts), QStringLiteral("Known text"));
    command.setText(QStringLiteral("Plain"));
    QCOMPARE(command.getActionName(&texts), QStringLiteral("Plain"));
    QCOMPARE(command.getActionName(nullptr), QStringLiteral("Plain"));
}

void TestFrameworkUndo::aMacroIsOpenOnceTheStackHasBegunIt()
{
    QVector<bool> heard;
    const auto connection =
        connect(Framework::instance().undoStack(), &QUndoStack::canUndoChanged, this,
                [&heard] { heard.append(GetFramework()->isUndoMacroOpen()); });
    GetFramework()->openUndoMacro(QStringLiteral("Two steps"));
    disconnect(connection);
    GetFramework()->closeUndoMacro();
    QCOMPARE(heard, QVector<bool>{false});
}

void TestFrameworkUndo::aMacroIsUndoneAsOne()
{
    int value = 0;
    QVERIFY(!GetFramework()->isUndoMacroOpen());
    GetFramework()->openUndoMacro(QStringLiteral("Two steps"));
    QVERIFY(GetFramework()->isUndoMacroOpen());
    CUndoRedo::GetInstance()->push(new CountingCommand(value, 1));
    CUndoRedo::GetInstance()->push(new CountingCommand(value, 10));
    GetFramework()->closeUndoMacro();
    QVERIFY(!GetFramework()->isUndoMacroOpen());
    QCOMPARE(value, 11);
    QCOMPARE(Framework::instance().undoStack()->count(), 1);
    Framework::instance().undoStack()->undo();
    QCOMPARE(value, 0);
}

void TestFrameworkUndo::macrosNest()
{
    int value = 0;
    GetFramework()->openUndoMacro(QStringLiteral("Outer"));
    GetFramework()->openUndoMacro(QStringLiteral("Inner"));
    CUndoRedo::GetInstance()->push(new CountingCommand(value, 1));
    GetFramework()->closeUndoMacro();
    QVERIFY(GetFramework()->isUndoMacroOpen());
    CUndoRedo::GetInstance()->push(new CountingCommand(value, 1));
    GetFramework()->closeUndoMacro();
    QVERIFY(!GetFramework()->isUndoMacroOpen());
    QCOMPARE(Framework::instance().undoStack()->count(), 1);
    QCOMPARE(Framework::instance().undoStack()->text(0), QStringLiteral("Outer"));
    Framework::instance().undoStack()->undo();
    QCOMPARE(value, 0);
}

void TestFrameworkUndo::closingWithoutAnOpenMacroDoesNothing()
{
    GetFramework()->closeUndoMacro();
    QVERIFY(!GetFramework()->isUndoMacroOpen());
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

void TestFrameworkUndo::aMacroIsNamedInTheUsersLanguage()
{
    Framework::instance().setLanguage(QLocale(QLocale::Chinese, QLocale::China));
    GetFramework()->openUndoMacro(QStringLiteral("IDS_KT_UNDOREDO_NAME_ANNIMATED_TYPE"));
    GetFramework()->closeUndoMacro();
    QCOMPARE(Framework::instance().undoStack()->text(0), QStringLiteral("更改动画类型"));
}

void TestFrameworkUndo::droppingCommandsClosesMacros()
{
    int value = 0;
    GetFramework()->openUndoMacro(QStringLiteral("Never closed"));
    CUndoRedo::GetInstance()->push(new CountingCommand(value, 1));
    Framework::instance().dropUndoCommands();
    QVERIFY(!GetFramework()->isUndoMacroOpen());
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
    QCOMPARE(value, 1);
}

void TestFrameworkUndo::clearingTheStackItselfClosesMacros()
{
    GetFramework()->openUndoMacro(QStringLiteral("Never closed"));
    Framework::instance().undoStack()->clear();
    QVERIFY(!GetFramework()->isUndoMacroOpen());
}

void TestFrameworkUndo::commandsDroppedLaterAreGoneWithTheNextTurn()
{
    int value = 0;
    CUndoRedo::GetInstance()->push(new CountingCommand(value, 1));
    Framework::instance().dropUndoCommandsLater();
    QCOMPARE(Framework::instance().undoStack()->count(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

void TestFrameworkUndo::aCommandMayDropCommandsWhenItDies()
{
    struct Dropping final : CNmUndoCmd {
        ~Dropping() override { Framework::instance().dropUndoCommands(); }
    };
    CUndoRedo::GetInstance()->push(new Dropping);
    CUndoRedo::GetInstance()->push(new Dropping);
    Framework::instance().dropUndoCommands();
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

void TestFrameworkUndo::aRunningCommandMayDropCommands_data()
{
    addWays();
}

void TestFrameworkUndo::aRunningCommandMayDropCommands()
{
    QFETCH(Way, way);
    const UndoStack &stack = *Framework::instance().undoStack();
    int value = 0;
    CUndoRedo::GetInstance()->push(new CountingCommand(value, 1));
    int aliveWhileRunning = 0;
    runAsCommand(way, [&aliveWhileRunning] {
        Framework::instance().dropUndoCommands();
        Framework::instance().dropUndoCommandsLater();
        QCoreApplication::processEvents();
        aliveWhileRunning = Doing::alive;
    });
    QCOMPARE(aliveWhileRunning, 1);
    QCOMPARE(Doing::alive, 0);
    QCOMPARE(stack.count(), 0);
    QVERIFY(!stack.canUndo() && !stack.canRedo());
    QCOMPARE(value, 1);

    CUndoRedo::GetInstance()->push(new CountingCommand(value, 1));
    QCOMPARE(stack.count(), 1);
}

void TestFrameworkUndo::noOtherCommandRunsOnceCommandsAreDropped()
{
    int value = 0;
    UndoStack &stack = *Framework::instance().undoStack();
    CUndoRedo::GetInstance()->push(new CountingCommand(value, 1));
    bool drops = false;
    CUndoRedo::GetInstance()->push(new Doing([&drops] {
        if (drops)
            Framework::instance().dropUndoCommands();
    }));
    drops = true;
    stack.setIndex(0);
    QCOMPARE(value, 1);
    QCOMPARE(stack.count(), 0);
}

void TestFrameworkUndo::anIndexIsReachedByTheCommandsOnTheWay()
{
    UndoStack &stack = *Framework::instance().undoStack();
    stack.clear();
    QString runs;
    for (const QChar name : {QLatin1Char('a'), QLatin1Char('b'), QLatin1Char('c')})
        CUndoRedo::GetInstance()->push(new Doing([&runs, name] { runs += name; }));
    QCOMPARE(runs, QStringLiteral("abc"));
    stack.setIndex(1);
    QCOMPARE(runs, QStringLiteral("abccb"));
    QCOMPARE(stack.index(), 1);
    stack.setIndex(3);
    QCOMPARE(runs, QStringLiteral("abccbbc"));
    QCOMPARE(stack.index(), 3);
    stack.clear();
}

void TestFrameworkUndo::aRunningCommandMayRemoveItsPage_data()
{
    addWays();
}

void TestFrameworkUndo::aRunningCommandMayRemoveItsPage()
{
    QFETCH(Way, way);
    Document document;
    Page *page = document.addPage(QRectF(0.0, 0.0, 100.0, 100.0));
    auto *object = new PaintedObject;
    page->addObject(object);
    runAsCommand(way, [&document, page, object] {
        page->destroyObject(object);
        document.removePage(page);
    });
    QCOMPARE(document.pages().size(), 0);
    QCOMPARE(Framework::instance().undoStack()->count(), 0);
}

QTEST_MAIN(TestFrameworkUndo)
#include "tst_framework_undo.moc"
