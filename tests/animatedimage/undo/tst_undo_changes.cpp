#include "animatedimage/protocol/undocommands.h"
#include "framework/framework.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

#include <limits>

namespace
{

UndoStack &stack()
{
    return *Framework::instance().undoStack();
}

/// The three settings of an object, as one value to compare.
QList<int> settings(Stage &stage)
{
    return {stage.probe.shiftInterval(), stage.probe.keepRatio() ? 1 : 0, stage.probe.loopCount()};
}

} // namespace

/// The command for one setting of an animated image, which a host makes.
class TestUndoChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theNumbersOfTheSettingsAreFixed();
    void aPushAppliesTheNewValueAndUndoTheOld_data();
    void aPushAppliesTheNewValueAndUndoTheOld();
    void valuesThatWereNotGivenAreFalseAndZero();
    void redoTwiceIsRedoOnce_data();
    void redoTwiceIsRedoOnce();
    void anUnknownSettingChangesNothing_data();
    void anUnknownSettingChangesNothing();
    void anIntervalReachesTheTimer();
    void anIntervalOfNothingStopsTheTimer();
    void changesTellNothing();
    void changesOfOneSettingDoNotMerge();
    void theHostNamesIt();
    void anObjectThatIsBeingDestroyedIsLeftAlone();
};

void TestUndoChanges::init()
{
    Framework::instance().dropUndoCommands();
}

void TestUndoChanges::cleanup()
{
    Framework::instance().dropUndoCommands();
}

void TestUndoChanges::theNumbersOfTheSettingsAreFixed()
{
    QCOMPARE(int(CHANGE_SHIFT_INTERVAL), 0);
    QCOMPARE(int(CHANGE_KEEP_RATIO), 1);
    QCOMPARE(int(CHANGE_LOOP_COUNT), 2);
    QCOMPARE(sizeof(ANIMATEDIMAGE_CHANGE_TYPE), size_t(4));
}

void TestUndoChanges::aPushAppliesTheNewValueAndUndoTheOld_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QList<int>>("done");
    QTest::addColumn<QList<int>>("undone");
    // Every command gets both pairs, and uses one: 70 and 90, false and true. An object begins
    // with 200 ms, kept proportions and endless repetition.
    QTest::newRow("interval") << 0 << QList<int>{90, 1, -1} << QList<int>{70, 1, -1};
    QTest::newRow("proportions") << 1 << QList<int>{200, 1, -1} << QList<int>{200, 0, -1};
    QTest::newRow("repetitions") << 2 << QList<int>{200, 1, 90} << QList<int>{200, 1, 70};
}

void TestUndoChanges::aPushAppliesTheNewValueAndUndoTheOld()
{
    QFETCH(int, type);
    QFETCH(QList<int>, done);
    QFETCH(QList<int>, undone);
    Stage stage(solidFrames({{4, 4}}));
    auto *command =
        new CAnimatedImageChangeCommand(stage.image, static_cast<ANIMATEDIMAGE_CHANGE_TYPE>(type));
    command->setBoolValue(false, true);
    command->setIntValue(70, 90);
    QCOMPARE(settings(stage), QList<int>({200, 1, -1}));
    CUndoRedo::GetInstance()->push(command);
    QCOMPARE(settings(stage), done);
    stack().undo();
    QCOMPARE(settings(stage), undone);
    stack().redo();
    QCOMPARE(settings(stage), done);
    stack().undo();
    QCOMPARE(settings(stage), undone);
}

void TestUndoChanges::valuesThatWereNotGivenAreFalseAndZero()
{
    Stage stage;
    const QList<int> given{70, 1, 5};
    const auto give = [&stage] {
        stage.probe.shiftInterval() = 70;
        stage.probe.keepRatio() = true;
        stage.probe.loopCount() = 5;
    };
    const QList<QPair<ANIMATEDIMAGE_CHANGE_TYPE, QList<int>>> expected{
        {CHANGE_SHIFT_INTERVAL, {0, 1, 5}},
        {CHANGE_KEEP_RATIO, {70, 0, 5}},
        {CHANGE_LOOP_COUNT, {70, 1, 0}},
    };
    for (const auto &[type, values] : expected) {
        CAnimatedImageChangeCommand command(stage.image, type);
        give();
        QCOMPARE(settings(stage), given);
        command.redo();
        QCOMPARE(settings(stage), values);
        give();
        command.undo();
        QCOMPARE(settings(stage), values);
    }
}

void TestUndoChanges::redoTwiceIsRedoOnce_data()
{
    aPushAppliesTheNewValueAndUndoTheOld_data();
}

void TestUndoChanges::redoTwiceIsRedoOnce()
{
    QFETCH(int, type);
    QFETCH(QList<int>, done);
    QFETCH(QList<int>, undone);
    Stage stage(solidFrames({{4, 4}}));
    CAnimatedImageChangeCommand command(stage.image, static_cast<ANIMATEDIMAGE_CHANGE_TYPE>(type));
    command.setIntValue(70, 90);
    command.setBoolValue(false, true);
    command.redo();
    command.redo();
    QCOMPARE(settings(stage), done);
    command.undo();
    command.undo();
    QCOMPARE(settings(stage), undone);
}

void TestUndoChanges::anUnknownSettingChangesNothing_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {-1, 3, 100, std::numeric_limits<int>::max()})
        QTest::addRow("%d", type) << type;
}

void TestUndoChanges::anUnknownSettingChangesNothing()
{
    QFETCH(int, type);
    Stage stage(solidFrames({{4, 4}}));
    CAnimatedImageChangeCommand command(stage.image, static_cast<ANIMATEDIMAGE_CHANGE_TYPE>(type));
    command.setIntValue(70, 90);
    command.setBoolValue(false, false);
    command.redo();
    command.undo();
    QCOMPARE(settings(stage), QList<int>({200, 1, -1}));
    QVERIFY(!stage.probe.timer()->isActive());
}

void TestUndoChanges::anIntervalReachesTheTimer()
{
    Stage stage(solidFrames({{4, 4}}));
    auto *command = new CAnimatedImageChangeCommand(stage.image, CHANGE_SHIFT_INTERVAL);
    command->setIntValue(200, 120);
    CUndoRedo::GetInstance()->push(command);
    QVERIFY(stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.timer()->interval(), 120);
    stack().undo();
    QCOMPARE(stage.probe.timer()->interval(), 200);
}

void TestUndoChanges::anIntervalOfNothingStopsTheTimer()
{
    Stage stage(solidFrames({{4, 4}}));
    auto *command = new CAnimatedImageChangeCommand(stage.image, CHANGE_SHIFT_INTERVAL);
    command->setIntValue(120, 0);
    stage->playImage(true);
    CUndoRedo::GetInstance()->push(command);
    QVERIFY(!stage.probe.timer()->isActive());
    QVERIFY(stage.probe.isRunning());
    stack().undo();
    QVERIFY(stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.timer()->interval(), 120);
}

void TestUndoChanges::changesTellNothing()
{
    Stage stage(solidFrames({{4, 4}}));
    for (const auto type : {CHANGE_SHIFT_INTERVAL, CHANGE_KEEP_RATIO, CHANGE_LOOP_COUNT}) {
        auto *command = new CAnimatedImageChangeCommand(stage.image, type);
        command->setIntValue(70, 90);
        command->setBoolValue(false, true);
        CUndoRedo::GetInstance()->push(command);
    }
    while (stack().canUndo())
        stack().undo();
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestUndoChanges::changesOfOneSettingDoNotMerge()
{
    Stage stage(solidFrames({{4, 4}}));
    auto *first = new CAnimatedImageChangeCommand(stage.image, CHANGE_LOOP_COUNT);
    auto *second = new CAnimatedImageChangeCommand(stage.image, CHANGE_LOOP_COUNT);
    first->setIntValue(-1, 3);
    second->setIntValue(3, 5);
    QCOMPARE(first->id(), -1);
    QVERIFY(!first->mergeWith(second));
    CUndoRedo::GetInstance()->push(first);
    CUndoRedo::GetInstance()->push(second);
    QCOMPARE(stack().count(), 2);
    stack().undo();
    QCOMPARE(stage.probe.loopCount(), 3);
    stack().undo();
    QCOMPARE(stage.probe.loopCount(), -1);
}

void TestUndoChanges::theHostNamesIt()
{
    Stage stage(solidFrames({{4, 4}}));
    auto *command = new CAnimatedImageChangeCommand(stage.image, CHANGE_KEEP_RATIO);
    command->setBoolValue(true, false);
    QCOMPARE(command->text(), QString());
    QCOMPARE(command->getIdxCmd(), -1);
    command->setText(QStringLiteral("Keep Proportions"));
    CUndoRedo::GetInstance()->push(command);
    QCOMPARE(stack().undoText(), QStringLiteral("Keep Proportions"));
    QCOMPARE(command->getActionName(nullptr), QStringLiteral("Keep Proportions"));

    QUndoCommand parent;
    auto *child = new CAnimatedImageChangeCommand(stage.image, CHANGE_KEEP_RATIO, &parent);
    child->setBoolValue(false, true);
    QCOMPARE(parent.childCount(), 1);
    parent.redo();
    QVERIFY(stage.probe.keepRatio());
}

void TestUndoChanges::anObjectThatIsBeingDestroyedIsLeftAlone()
{
    auto *image = new CAnimatedImage(1, true, nullptr);
    AnimatedImageProbe probe(*image);
    CAnimatedImageChangeCommand command(image, CHANGE_SHIFT_INTERVAL);
    command.setIntValue(200, 50);
    int interval = 0;
    // The timer is destroyed with its object.
    connect(probe.timer(), &QObject::destroyed, this, [&command, &probe, &interval] {
        command.redo();
        interval = probe.shiftInterval();
    });
    image->Release();
    QCOMPARE(interval, 200);
}

QTEST_MAIN(TestUndoChanges)
#include "tst_undo_changes.moc"
