#include "tests/animatedimage/geometry/attributes.h"

#include <QtCore/QTimer>
#include <QtTest/QTest>

namespace
{

using Attributes::enableTimer;
using Attributes::playTo;
using Attributes::startStepped;
using Heard::anotherFrame;
using Heard::changed;
using Heard::moved;
using Heard::started;
using Heard::stopped;

constexpr int background = 1;

QList<QImage> threeFrames()
{
    return solidFrames({{10, 10}, {20, 10}, {10, 30}});
}

} // namespace

/// Starting and resuming playback that the host steps itself.
class TestGeometryStepping : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resumingWithoutMemoryDoesNothing_data();
    void resumingWithoutMemoryDoesNothing();
    void resumingStopsAndPlaysWithoutTheTimer();
    void resumingWhatIsStoppedTellsNothing();
    void startingWithTheTimerBeginsAnew();
    void startingWithTheTimerLeavesAStoppedObject();
    void startingWithoutTheTimerRewindsWhatPlays();
    void startingWithoutTheTimerPlaysAStoppedObject();
    void startingABackgroundShowsItsFirstFrame();
    void startingKeepsTheCountOfPasses_data();
    void startingKeepsTheCountOfPasses();
    void theFirstFlagOfAStartMeansNothing_data();
    void theFirstFlagOfAStartMeansNothing();
    void aRecordingEndsWithTheTimerBack();
};

void TestGeometryStepping::resumingWithoutMemoryDoesNothing_data()
{
    QTest::addColumn<bool>("plays");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("playing on the timer") << true << true;
    QTest::newRow("stopped") << false << true;
    QTest::newRow("playing without the timer") << true << false;
    QTest::newRow("stopped without the timer") << false << false;
}

void TestGeometryStepping::resumingWithoutMemoryDoesNothing()
{
    QFETCH(bool, plays);
    QFETCH(bool, enabled);
    Stage stage(threeFrames());
    if (plays)
        playTo(stage, 1);
    stage.probe.playEnabled() = enabled;
    stage.probe.elapsedMs() = 80;
    QVERIFY(startStepped(stage, true));
    QCOMPARE(stage.probe.isRunning(), plays);
    QCOMPARE(stage.probe.runningIndex(), plays ? 1 : 0);
    QCOMPARE(stage.probe.elapsedMs(), 80);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestGeometryStepping::resumingStopsAndPlaysWithoutTheTimer()
{
    Stage stage(threeFrames());
    playTo(stage, 2);
    enableTimer(stage, false);
    stage.probe.elapsedMs() = 80;
    QVERIFY(startStepped(stage, true));
    QVERIFY(stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.probe.elapsedMs(), 80);
    QVERIFY(stage.probe.wasRunning());
    // The panel hears of the stop, and of nothing else.
    QCOMPARE(stage.log.entries(), stopped);
}

void TestGeometryStepping::resumingWhatIsStoppedTellsNothing()
{
    Stage stage(threeFrames());
    playTo(stage, 1);
    enableTimer(stage, false);
    stage->playImage(false);
    stage->setCurrentIndex(2);
    stage.log.clear();
    QVERIFY(startStepped(stage, true));
    QVERIFY(stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.runningIndex(), 2);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestGeometryStepping::startingWithTheTimerBeginsAnew()
{
    Stage stage(threeFrames());
    playTo(stage, 2);
    stage.probe.loopsDone() = 5;
    stage.probe.elapsedMs() = 80;
    QVERIFY(startStepped(stage));
    QVERIFY(stage.probe.isRunning());
    QVERIFY(stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.probe.loopsDone(), 0);
    QCOMPARE(stage.probe.elapsedMs(), 80);
    QCOMPARE(stage.log.entries(), stopped + started);
}

void TestGeometryStepping::startingWithTheTimerLeavesAStoppedObject()
{
    Stage stage(threeFrames());
    stage->setCurrentIndex(2);
    stage.probe.wasRunning() = true;
    stage.log.clear();
    QVERIFY(startStepped(stage));
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 2);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestGeometryStepping::startingWithoutTheTimerRewindsWhatPlays()
{
    Stage stage(threeFrames());
    playTo(stage, 2);
    enableTimer(stage, false);
    stage.probe.elapsedMs() = 80;
    QVERIFY(startStepped(stage));
    QVERIFY(stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.probe.elapsedMs(), 0);
    QCOMPARE(stage.log.entries(), stopped + QStringList({changed}));
}

void TestGeometryStepping::startingWithoutTheTimerPlaysAStoppedObject()
{
    Stage stage(threeFrames());
    enableTimer(stage, false);
    stage->setCurrentIndex(2);
    stage.probe.elapsedMs() = 80;
    stage.log.clear();
    QVERIFY(startStepped(stage));
    QVERIFY(stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.probe.elapsedMs(), 0);
    QCOMPARE(stage.log.entries(), anotherFrame + QStringList({changed}));
}

void TestGeometryStepping::startingABackgroundShowsItsFirstFrame()
{
    Stage stage(threeFrames());
    stage.probe.animatedType() = background;
    stage->setCurrentIndex(2);
    stage->generateBGImage(2);
    const qint64 tile = stage.probe.bgImage().cacheKey();
    enableTimer(stage, false);
    stage.log.clear();
    QVERIFY(startStepped(stage));
    QCOMPARE(stage.probe.runningIndex(), 0);
    // The frame is shown as every type shows it, which leaves the tile to the first tick.
    QCOMPARE(stage.probe.bgImage().cacheKey(), tile);
    QCOMPARE(stage.log.entries(), QStringList({moved, changed}));
}

void TestGeometryStepping::startingKeepsTheCountOfPasses_data()
{
    QTest::addColumn<bool>("plays");
    QTest::newRow("playing") << true;
    QTest::newRow("stopped") << false;
}

void TestGeometryStepping::startingKeepsTheCountOfPasses()
{
    QFETCH(bool, plays);
    Stage stage(threeFrames());
    if (plays)
        playTo(stage, 1);
    enableTimer(stage, false);
    stage.probe.loopsDone() = 5;
    startStepped(stage);
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.loopsDone(), 5);
}

void TestGeometryStepping::theFirstFlagOfAStartMeansNothing_data()
{
    QTest::addColumn<bool>("resume");
    QTest::newRow("start") << false;
    QTest::newRow("resume") << true;
}

void TestGeometryStepping::theFirstFlagOfAStartMeansNothing()
{
    QFETCH(bool, resume);
    for (const bool unused : {false, true}) {
        Stage stage(threeFrames());
        playTo(stage, 2);
        enableTimer(stage, false);
        startStepped(stage, resume, unused);
        QCOMPARE(stage.log.entries(), resume ? stopped : stopped + QStringList({changed}));
    }
}

void TestGeometryStepping::aRecordingEndsWithTheTimerBack()
{
    Stage stage(threeFrames());
    stage->setShiftInterval(40);
    playTo(stage, 1);
    Attributes::playByHost(stage);
    QList<int> recorded;
    for (int i = 0; i < 4; ++i) {
        Attributes::tick(stage);
        recorded.append(stage.probe.runningIndex());
        stage.probe.tick(); // the object's own timer has no effect
    }
    QCOMPARE(recorded, QList<int>({1, 2, 0, 1}));
    enableTimer(stage, true);
    QCOMPARE(stage.probe.runningIndex(), 0);
    stage.probe.tick();
    QCOMPARE(stage.probe.runningIndex(), 1);
    QVERIFY(stage.probe.timer()->isActive());
}

QTEST_MAIN(TestGeometryStepping)
#include "tst_geometry_stepping.moc"
