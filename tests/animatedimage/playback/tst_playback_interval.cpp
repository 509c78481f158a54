#include "tests/support/stage.h"

#include <QtTest/QTest>

/// The interval and two other settings.
class TestPlaybackInterval : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPositiveIntervalStartsTheTimer_data();
    void aPositiveIntervalStartsTheTimer();
    void anyOtherStopsItAndLeavesItsOldInterval_data();
    void anyOtherStopsItAndLeavesItsOldInterval();
    void ticksWhileStoppedDoNothing();
    void withoutIntervalItRunsOnWithoutTicksUntilThereIsOne();
    void theKeepRatioIsStoredAlone();
    void theLoopCountIsStoredAlone();
    void theTimerDrivesTheFrames();
};

void TestPlaybackInterval::aPositiveIntervalStartsTheTimer_data()
{
    QTest::addColumn<bool>("running");
    QTest::newRow("stopped") << false;
    QTest::newRow("running") << true;
}

void TestPlaybackInterval::aPositiveIntervalStartsTheTimer()
{
    QFETCH(bool, running);
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    if (running)
        stage->playImage(true);
    stage.log.clear();
    stage->setShiftInterval(90);
    QCOMPARE(stage.probe.shiftInterval(), 90);
    QCOMPARE(stage.probe.timer()->interval(), 90);
    QVERIFY(stage.probe.timer()->isActive());
    QVERIFY(!stage.probe.timer()->isSingleShot());
    QCOMPARE(stage.probe.isRunning(), running);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPlaybackInterval::anyOtherStopsItAndLeavesItsOldInterval_data()
{
    QTest::addColumn<int>("interval");
    QTest::newRow("0") << 0;
    QTest::newRow("-1") << -1;
    QTest::newRow("the least") << std::numeric_limits<int>::min();
}

void TestPlaybackInterval::anyOtherStopsItAndLeavesItsOldInterval()
{
    QFETCH(int, interval);
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage->setShiftInterval(90);
    stage->setShiftInterval(interval);
    QCOMPARE(stage.probe.shiftInterval(), interval);
    QCOMPARE(stage.probe.timer()->interval(), 90);
    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPlaybackInterval::ticksWhileStoppedDoNothing()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage->setShiftInterval(90);
    stage.probe.tick();
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPlaybackInterval::withoutIntervalItRunsOnWithoutTicksUntilThereIsOne()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage->playImage(true);
    stage->setShiftInterval(0);
    QVERIFY(stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
    stage->setShiftInterval(100);
    QVERIFY(stage.probe.isRunning());
    QVERIFY(stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.timer()->interval(), 100);
}

void TestPlaybackInterval::theKeepRatioIsStoredAlone()
{
    Stage stage(solidFrames({{4, 8}}));
    stage->setKeepRatio(false);
    QVERIFY(!stage.probe.keepRatio());
    QCOMPARE(stage->getSize(), QSizeF(4.0, 8.0));
    stage->setKeepRatio(true);
    QVERIFY(stage.probe.keepRatio());
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPlaybackInterval::theLoopCountIsStoredAlone()
{
    Stage stage(solidFrames({{4, 4}}));
    for (const int count : {0, 5, -1, -7, std::numeric_limits<int>::max()}) {
        stage->setLoopCount(count);
        QCOMPARE(stage.probe.loopCount(), count);
    }
    QCOMPARE(stage.probe.loopsDone(), 0);
    QCOMPARE(stage.log.entries(), QStringList());
}

/// The one test here that waits for the clock.
void TestPlaybackInterval::theTimerDrivesTheFrames()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}, {4, 4}}));
    stage->setLoopCount(0);
    stage->setShiftInterval(1);
    stage->playImage(true);
    QTRY_VERIFY_WITH_TIMEOUT(!stage.probe.isRunning(), 10000);
    QCOMPARE(stage.probe.runningIndex(), 2);
    QCOMPARE(stage.probe.loopsDone(), 1);
    QCOMPARE(stage.log.postedTexts().size(), 2);
}

QTEST_MAIN(TestPlaybackInterval)
#include "tst_playback_interval.moc"
