#include "framework/framework.h"
#include "framework/page.h"
#include "host/undoredo.h"
#include "tests/framework/paintedobject.h"

#include <QtTest/QTest>

#include <functional>

namespace
{

/// Writes down what it does, and does something else in the middle of it.
class Noting final : public CNmUndoCmd
{
public:
    Noting(QString &notes, QChar name, std::function<void()> work = {})
        : m_notes(notes)
        , m_name(name)
        , m_work(std::move(work))
    {
        setText(QString(name));
    }

    void redo() override
    {
        m_notes += m_name;
        doWork();
    }
    void undo() override
    {
        m_notes += m_name.toUpper();
        doWork();
    }

private:
    void doWork()
    {
        if (!m_work)
            return;
        const std::function<void()> work = m_work;
        m_work = nullptr;
        work();
    }

    QString &m_notes;
    QChar m_name;
    std::function<void()> m_work;
};

UndoStack &stack()
{
    return *Framework::instance().undoStack();
}

QStringList texts()
{
    QStringList texts;
    for (int i = 0; i < stack().count(); ++i)
        texts.append(stack().text(i));
    return texts;
}

} // namespace

/// Who is told something while a command runs, or while a macro is opened, uses the stack itself.
class TestFrameworkUndoNested : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanupTestCase();

    void noCommandIsUndoneWhileAnotherRuns();
    void afterADropARunningCommandIsNotUndoneAgain();
    void aCommandPushedDuringAPushComesAfterIt();
    void aCommandPushedDuringAnUndoComesAfterIt();
    void aCommandPushedDuringARedoComesAfterIt();
    void aMacroOpenedDuringARedoComesAfterIt();
    void aMacroMayBeClosedAfterTheCommandThatOpenedIt();
    void whatIsPushedDuringACommandIsDroppedWithIt();
    void commandsMayBeDroppedWhileAMacroIsOpened();
    void aPageMayBeClosedWhileAnObjectChangesItsLayer();

private:
    void push(QChar name, const std::function<void()> &work = {});

    QString m_notes;
};

void TestFrameworkUndoNested::init()
{
    Framework::instance().dropUndoCommands();
    m_notes.clear();
}

void TestFrameworkUndoNested::cleanupTestCase()
{
    Framework::instance().dropUndoCommands();
}

void TestFrameworkUndoNested::push(QChar name, const std::function<void()> &work)
{
    CUndoRedo::GetInstance()->push(new Noting(m_notes, name, work));
}

void TestFrameworkUndoNested::noCommandIsUndoneWhileAnotherRuns()
{
    push(QLatin1Char('a'));
    push(QLatin1Char('b'), [] {
        stack().undo();
        stack().redo();
        stack().setIndex(0);
    });
    QCOMPARE(m_notes, QStringLiteral("ab"));
    QCOMPARE(stack().index(), 2);
    stack().undo();
    QCOMPARE(m_notes, QStringLiteral("abB"));
}

void TestFrameworkUndoNested::afterADropARunningCommandIsNotUndoneAgain()
{
    push(QLatin1Char('a'));
    bool drops = false;
    push(QLatin1Char('b'));
    auto *dropping = new Noting(m_notes, QLatin1Char('c'));
    stack().push(dropping);
    const auto connection = connect(&stack(), &QUndoStack::indexChanged, this, [&drops] {
        if (!drops)
            return;
        drops = false;
        Framework::instance().dropUndoCommands();
        stack().undo();
        stack().redo();
    });
    drops = true;
    stack().undo();
    disconnect(connection);
    QCOMPARE(m_notes, QStringLiteral("abcC"));
    QCOMPARE(stack().count(), 0);
}

void TestFrameworkUndoNested::aCommandPushedDuringAPushComesAfterIt()
{
    push(QLatin1Char('a'), [this] { push(QLatin1Char('b')); });
    QCOMPARE(m_notes, QStringLiteral("ab"));
    QCOMPARE(texts(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    stack().setIndex(0);
    stack().setIndex(2);
    QCOMPARE(m_notes, QStringLiteral("abBAab"));
}

void TestFrameworkUndoNested::aCommandPushedDuringAnUndoComesAfterIt()
{
    push(QLatin1Char('a'));
    auto *second = new Noting(m_notes, QLatin1Char('b'));
    CUndoRedo::GetInstance()->push(second);
    bool pushes = false;
    push(QLatin1Char('c'));
    stack().undo();
    m_notes.clear();
    const auto connection = connect(&stack(), &QUndoStack::indexChanged, this, [this, &pushes] {
        if (pushes) {
            pushes = false;
            push(QLatin1Char('d'));
        }
    });
    pushes = true;
    stack().undo();
    disconnect(connection);
    // What could be redone cannot be any more, as after any push.
    QCOMPARE(m_notes, QStringLiteral("Bd"));
    QCOMPARE(texts(), (QStringList{QStringLiteral("a"), QStringLiteral("d")}));
    QCOMPARE(stack().index(), 2);
    stack().setIndex(0);
    QCOMPARE(m_notes, QStringLiteral("BdDA"));
}

void TestFrameworkUndoNested::aCommandPushedDuringARedoComesAfterIt()
{
    bool pushes = false;
    const std::function<void()> work = [this, &pushes] {
        if (pushes)
            push(QLatin1Char('d'));
    };
    // Its work is done in the redo alone: the push and the undo come before.
    struct Pushing final : CNmUndoCmd {
        explicit Pushing(std::function<void()> work)
            : m_work(std::move(work))
        {
            setText(QStringLiteral("pushing"));
        }
        void redo() override { m_work(); }
        std::function<void()> m_work;
    };
    CUndoRedo::GetInstance()->push(new Pushing(work));
    push(QLatin1Char('b'));
    stack().setIndex(0);
    m_notes.clear();
    pushes = true;
    stack().redo();
    pushes = false;
    QCOMPARE(m_notes, QStringLiteral("d"));
    QCOMPARE(texts(), (QStringList{QStringLiteral("pushing"), QStringLiteral("d")}));
    QCOMPARE(stack().index(), 2);
    stack().undo();
    stack().redo();
    QCOMPARE(m_notes, QStringLiteral("dDd"));
}

void TestFrameworkUndoNested::aMacroOpenedDuringARedoComesAfterIt()
{
    push(QLatin1Char('a'), [this] {
        GetFramework()->openUndoMacro(QStringLiteral("m"));
        QVERIFY(GetFramework()->isUndoMacroOpen());
        push(QLatin1Char('b'));
        push(QLatin1Char('c'));
        GetFramework()->closeUndoMacro();
        QVERIFY(!GetFramework()->isUndoMacroOpen());
    });
    QCOMPARE(m_notes, QStringLiteral("abc"));
    QCOMPARE(texts(), (QStringList{QStringLiteral("a"), QStringLiteral("m")}));
    stack().undo();
    QCOMPARE(m_notes, QStringLiteral("abcCB"));
}

void TestFrameworkUndoNested::aMacroMayBeClosedAfterTheCommandThatOpenedIt()
{
    push(QLatin1Char('a'), [] { GetFramework()->openUndoMacro(QStringLiteral("m")); });
    QVERIFY(GetFramework()->isUndoMacroOpen());
    push(QLatin1Char('b'));
    GetFramework()->closeUndoMacro();
    QVERIFY(!GetFramework()->isUndoMacroOpen());
    QCOMPARE(texts(), (QStringList{QStringLiteral("a"), QStringLiteral("m")}));
}

void TestFrameworkUndoNested::whatIsPushedDuringACommandIsDroppedWithIt()
{
    push(QLatin1Char('a'), [this] {
        push(QLatin1Char('b'));
        Framework::instance().dropUndoCommands();
        push(QLatin1Char('c'));
    });
    QCOMPARE(m_notes, QStringLiteral("abc"));
    QCOMPARE(stack().count(), 0);
    push(QLatin1Char('d'));
    QCOMPARE(texts(), QStringList{QStringLiteral("d")});
}

void TestFrameworkUndoNested::commandsMayBeDroppedWhileAMacroIsOpened()
{
    push(QLatin1Char('a'));
    const auto connection = connect(&stack(), &QUndoStack::canUndoChanged, this,
                                    [] { Framework::instance().dropUndoCommands(); });
    GetFramework()->openUndoMacro(QStringLiteral("m"));
    disconnect(connection);
    QVERIFY(!GetFramework()->isUndoMacroOpen());
    // Qt would warn of a macro that was never begun.
    GetFramework()->closeUndoMacro();
    push(QLatin1Char('b'));
    QCOMPARE(texts(), QStringList{QStringLiteral("b")});
}

void TestFrameworkUndoNested::aPageMayBeClosedWhileAnObjectChangesItsLayer()
{
    Document document;
    Page *page = document.addPage(QRectF(0.0, 0.0, 100.0, 100.0));
    auto *object = new PaintedObject;
    page->addObject(object);
    const auto connection = connect(&stack(), &QUndoStack::indexChanged, this, [&document, page] {
        if (!document.pages().isEmpty())
            document.removePage(page);
    });
    constexpr int backgroundLayer = 2;
    page->applyObject(0, page->queryObject(object, backgroundLayer), {object}, true, QString(),
                      true);
    disconnect(connection);
    QCOMPARE(document.pages().size(), 0);
    QCOMPARE(stack().count(), 0);
}

QTEST_MAIN(TestFrameworkUndoNested)
#include "tst_framework_undo_nested.moc"
