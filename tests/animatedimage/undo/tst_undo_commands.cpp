#include "animatedimage/protocol/undocommands.h"
#include "framework/framework.h"

#include <QtCore/QDataStream>
#include <QtTest/QTest>

#include <memory>

namespace
{

using Closure = std::function<void(QDataStream &)>;

void nothing(QDataStream &) {}

UndoStack &stack()
{
    return *Framework::instance().undoStack();
}

/// A command whose closures note in @p calls what they are and which numbers they read.
CAnimatedUndoRedoCommand *notingCommand(QStringList &calls, const QList<qint32> &numbers,
                                        QUndoCommand *parent = nullptr)
{
    const auto noting = [&calls](const QString &name) {
        return [&calls, name](QDataStream &stream) {
            QString call = name;
            while (!stream.atEnd()) {
                qint32 number = 0;
                stream >> number;
                call += QStringLiteral(" %1").arg(number);
            }
            calls.append(call);
        };
    };
    Closure redo = noting(QStringLiteral("redo"));
    Closure undo = noting(QStringLiteral("undo"));
    auto *command = new CAnimatedUndoRedoCommand(redo, undo, parent);
    QDataStream data(command->data_ptr(), QIODevice::WriteOnly);
    for (const qint32 number : numbers)
        data << number;
    return command;
}

} // namespace

/// The command of two closures over one buffer.
class TestUndoCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theBufferBeginsEmptyAndIsTheCommandsOwn();
    void bothReadTheSameBytesFromTheirStart();
    void whatOneLeavesUnreadTheNextReadsAgain();
    void theStreamCannotBeWritten();
    void theClosuresAreCopied();
    void anEmptyClosureDoesNothing();
    void aPushRunsRedoOnceAndTakesTheCommand();
    void droppingACommandFreesItsClosures();
    void commandsNeverMerge();
    void aCommandHasNoTextAndNoPlaceOfItsOwn();
    void aParentRunsItAsItsOwnPart();
};

void TestUndoCommands::init()
{
    Framework::instance().dropUndoCommands();
}

void TestUndoCommands::cleanup()
{
    Framework::instance().dropUndoCommands();
}

void TestUndoCommands::theBufferBeginsEmptyAndIsTheCommandsOwn()
{
    Closure redo = nothing;
    Closure undo = nothing;
    CAnimatedUndoRedoCommand first(redo, undo);
    CAnimatedUndoRedoCommand second(redo, undo);
    QCOMPARE(*first.data_ptr(), QByteArray());
    first.data_ptr()->append("abc");
    QCOMPARE(*first.data_ptr(), QByteArray("abc"));
    QCOMPARE(*second.data_ptr(), QByteArray());
    QVERIFY(first.data_ptr() == first.data_ptr());
}

void TestUndoCommands::bothReadTheSameBytesFromTheirStart()
{
    QStringList calls;
    const std::unique_ptr<CAnimatedUndoRedoCommand> command(notingCommand(calls, {3, -4}));
    const QByteArray bytes = *command->data_ptr();
    QCOMPARE(bytes, QByteArray::fromHex("00000003fffffffc"));
    command->redo();
    command->undo();
    command->redo();
    command->redo();
    command->undo();
    QCOMPARE(calls, QStringList({QStringLiteral("redo 3 -4"), QStringLiteral("undo 3 -4"),
                                 QStringLiteral("redo 3 -4"), QStringLiteral("redo 3 -4"),
                                 QStringLiteral("undo 3 -4")}));
    QCOMPARE(*command->data_ptr(), bytes);
}

void TestUndoCommands::whatOneLeavesUnreadTheNextReadsAgain()
{
    QList<qint32> read;
    Closure half = [&read](QDataStream &stream) {
        qint32 number = 0;
        stream >> number;
        read.append(number);
    };
    CAnimatedUndoRedoCommand command(half, half);
    QDataStream(command.data_ptr(), QIODevice::WriteOnly) << qint32(7) << qint32(8);
    command.redo();
    command.redo();
    command.undo();
    QCOMPARE(read, QList<qint32>({7, 7, 7}));
}

void TestUndoCommands::theStreamCannotBeWritten()
{
    QList<int> modes;
    Closure asking = [&modes](QDataStream &stream) {
        modes.append(int(stream.device()->openMode() & QIODevice::ReadWrite));
    };
    CAnimatedUndoRedoCommand command(asking, asking);
    command.redo();
    command.undo();
    QCOMPARE(modes, QList<int>({QIODevice::ReadOnly, QIODevice::ReadOnly}));
}

void TestUndoCommands::theClosuresAreCopied()
{
    QStringList calls;
    Closure redo = [&calls](QDataStream &) { calls.append(QStringLiteral("first redo")); };
    Closure undo = [&calls](QDataStream &) { calls.append(QStringLiteral("first undo")); };
    CAnimatedUndoRedoCommand command(redo, undo);
    redo = nullptr;
    undo = [&calls](QDataStream &) { calls.append(QStringLiteral("other undo")); };
    command.redo();
    command.undo();
    QCOMPARE(calls, QStringList({QStringLiteral("first redo"), QStringLiteral("first undo")}));
}

void TestUndoCommands::anEmptyClosureDoesNothing()
{
    QStringList calls;
    Closure empty;
    Closure noting = [&calls](QDataStream &) { calls.append(QStringLiteral("run")); };
    CAnimatedUndoRedoCommand withoutRedo(empty, noting);
    withoutRedo.redo();
    QCOMPARE(calls, QStringList());
    withoutRedo.undo();
    QCOMPARE(calls.size(), 1);
    CAnimatedUndoRedoCommand withoutUndo(noting, empty);
    withoutUndo.undo();
    QCOMPARE(calls.size(), 1);
    withoutUndo.redo();
    QCOMPARE(calls.size(), 2);
}

void TestUndoCommands::aPushRunsRedoOnceAndTakesTheCommand()
{
    QStringList calls;
    CAnimatedUndoRedoCommand *command = notingCommand(calls, {1});
    QCOMPARE(calls, QStringList());
    CUndoRedo::GetInstance()->push(command);
    QCOMPARE(calls, QStringList({QStringLiteral("redo 1")}));
    QCOMPARE(stack().count(), 1);
    QCOMPARE(stack().command(0), static_cast<const QUndoCommand *>(command));
    stack().undo();
    stack().redo();
    QCOMPARE(calls, QStringList({QStringLiteral("redo 1"), QStringLiteral("undo 1"),
                                 QStringLiteral("redo 1")}));
}

void TestUndoCommands::droppingACommandFreesItsClosures()
{
    const auto held = std::make_shared<int>(5);
    {
        Closure redo = [held](QDataStream &) {};
        Closure undo = [held](QDataStream &) {};
        CUndoRedo::GetInstance()->push(new CAnimatedUndoRedoCommand(redo, undo));
    }
    QCOMPARE(held.use_count(), 3L);
    Framework::instance().dropUndoCommands();
    QCOMPARE(held.use_count(), 1L);
}

void TestUndoCommands::commandsNeverMerge()
{
    QStringList calls;
    CAnimatedUndoRedoCommand *first = notingCommand(calls, {1});
    CAnimatedUndoRedoCommand *second = notingCommand(calls, {1});
    QCOMPARE(first->id(), -1);
    QVERIFY(!first->mergeWith(second));
    CUndoRedo::GetInstance()->push(first);
    CUndoRedo::GetInstance()->push(second);
    QCOMPARE(stack().count(), 2);
    QCOMPARE(calls.size(), 2);
}

void TestUndoCommands::aCommandHasNoTextAndNoPlaceOfItsOwn()
{
    QStringList calls;
    const std::unique_ptr<CAnimatedUndoRedoCommand> command(notingCommand(calls, {}));
    QCOMPARE(command->text(), QString());
    QCOMPARE(command->getActionName(nullptr), QString());
    QCOMPARE(command->getIdxCmd(), -1);
    command->setIdxCmd(12);
    QCOMPARE(command->getIdxCmd(), 12);
    command->setText(QStringLiteral("Named by its maker"));
    QCOMPARE(command->getActionName(nullptr), QStringLiteral("Named by its maker"));
}

void TestUndoCommands::aParentRunsItAsItsOwnPart()
{
    QStringList calls;
    QUndoCommand parent;
    notingCommand(calls, {1}, &parent);
    notingCommand(calls, {2}, &parent);
    QCOMPARE(parent.childCount(), 2);
    parent.redo();
    parent.undo();
    QCOMPARE(calls, QStringList({QStringLiteral("redo 1"), QStringLiteral("redo 2"),
                                 QStringLiteral("undo 2"), QStringLiteral("undo 1")}));
}

QTEST_MAIN(TestUndoCommands)
#include "tst_undo_commands.moc"
