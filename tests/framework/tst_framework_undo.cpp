#include "framework/framework.h"
#include "framework/page.h"
#include "host/undoredo.h"

#include <QtTest/QTest>

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
    void macrosNest();
    void closingWithoutAnOpenMacroDoesNothing();
    void aMacroIsNamedInTheUsersLanguage();
    void droppingCommandsClosesMacros();
    void clearingTheStackItselfClosesMacros();
    void commandsDroppedLaterAreGoneWithTheNextTurn();
    void aCommandMayDropCommandsWhenItDies();
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

QTEST_MAIN(TestFrameworkUndo)
#include "tst_framework_undo.moc"
