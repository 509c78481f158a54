#include "animatedimage/core/playbacksteps.h"

#include <QtTest/QTest>

#include <limits>

namespace
{

constexpr int forever = -1;
constexpr int greatest = std::numeric_limits<int>::max();

} // namespace

/// The arithmetic of a tick, of the frame timer and of the host's clock.
class TestPlaybackSteps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTickLeadsTo_data();
    void aTickLeadsTo();
    void aHostTickLeadsTo_data();
    void aHostTickLeadsTo();
};

void TestPlaybackSteps::aTickLeadsTo_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("frameCount");
    QTest::addColumn<int>("loopsDone");
    QTest::addColumn<int>("loopCount");
    QTest::addColumn<int>("nextIndex");
    QTest::addColumn<int>("nextLoopsDone");
    QTest::addColumn<bool>("finished");

    QTest::newRow("the next frame") << 0 << 3 << 0 << 0 << 1 << 0 << false;
    QTest::newRow("the last frame") << 1 << 3 << 0 << 0 << 2 << 0 << false;
    QTest::newRow("no loops: the end") << 2 << 3 << 0 << 0 << 2 << 1 << true;
    QTest::newRow("one loop: again") << 2 << 3 << 0 << 1 << 0 << 1 << false;
    QTest::newRow("one loop, done: the end") << 2 << 3 << 1 << 1 << 2 << 2 << true;
    QTest::newRow("seven loops: again") << 2 << 3 << 6 << 7 << 0 << 7 << false;
    QTest::newRow("seven loops, done: the end") << 2 << 3 << 7 << 7 << 2 << 8 << true;
    QTest::newRow("forever") << 2 << 3 << 1000 << forever << 0 << 1001 << false;
    QTest::newRow("forever does not overflow")
        << 2 << 3 << greatest << forever << 0 << greatest << false;
    QTest::newRow("a count below forever ends at once") << 2 << 3 << 0 << -2 << 2 << 1 << true;
    QTest::newRow("one frame completes a pass each time") << 0 << 1 << 0 << 1 << 0 << 1 << false;
    QTest::newRow("one frame: the end") << 0 << 1 << 1 << 1 << 0 << 2 << true;
    QTest::newRow("no frames complete a pass each time")
        << 0 << 0 << 4 << forever << 0 << 5 << false;
    QTest::newRow("no frames: the end") << 0 << 0 << 0 << 0 << -1 << 1 << true;
    QTest::newRow("an index before the list") << -1 << 3 << 0 << 0 << 0 << 0 << false;
    QTest::newRow("an index after the last") << 7 << 3 << 0 << 0 << 2 << 1 << true;
    QTest::newRow("the greatest index") << greatest << 3 << 0 << forever << 0 << 1 << false;
}

void TestPlaybackSteps::aTickLeadsTo()
{
    QFETCH(int, index);
    QFETCH(int, frameCount);
    QFETCH(int, loopsDone);
    QFETCH(int, loopCount);
    // Interval and time are the host's clock's.
    const PlaybackSteps::Step step =
        PlaybackSteps::afterTick(index, {loopsDone, 123}, {frameCount, loopCount, 0});
    QTEST(step.index, "nextIndex");
    QTEST(step.progress.loopsDone, "nextLoopsDone");
    QCOMPARE(step.progress.elapsedMs, 123);
    QTEST(step.finished, "finished");
}

void TestPlaybackSteps::aHostTickLeadsTo_data()
{
    QTest::addColumn<int>("elapsedMs");
    QTest::addColumn<int>("intervalMs");
    QTest::addColumn<int>("frameCount");
    QTest::addColumn<int>("loopsDone");
    QTest::addColumn<int>("loopCount");
    QTest::addColumn<int>("nextIndex");
    QTest::addColumn<int>("nextElapsedMs");
    QTest::addColumn<int>("nextLoopsDone");
    QTest::addColumn<bool>("finished");

    QTest::newRow("within the first frame")
        << 0 << 100 << 3 << 0 << forever << 0 << 40 << 0 << false;
    QTest::newRow("still within it") << 40 << 100 << 3 << 0 << forever << 0 << 80 << 0 << false;
    QTest::newRow("into the next") << 80 << 100 << 3 << 0 << forever << 1 << 120 << 0 << false;
    QTest::newRow("exactly into the next")
        << 60 << 100 << 3 << 0 << forever << 1 << 100 << 0 << false;
    QTest::newRow("the last frame") << 200 << 100 << 3 << 0 << 0 << 2 << 240 << 0 << false;
    // 320 ms of a pass of 300: one pass, and 20 ms of the next.
    QTest::newRow("over the end, forever")
        << 280 << 100 << 3 << 0 << forever << 0 << 20 << 1 << false;
    QTest::newRow("over the end, no loops") << 280 << 100 << 3 << 0 << 0 << 2 << 20 << 1 << true;
    QTest::newRow("over the end, a loop left")
        << 280 << 100 << 3 << 0 << 1 << 0 << 20 << 1 << false;
    QTest::newRow("over the end, loops done") << 280 << 100 << 3 << 1 << 1 << 2 << 20 << 2 << true;
    // 40 ms of a pass of 25: one pass, and 15 ms, which would be frame 3; frame 0 is shown.
    QTest::newRow("the rest does not choose the frame")
        << 0 << 5 << 5 << 0 << forever << 0 << 15 << 1 << false;
    // 40 ms of a pass of 9: four passes, and 4 ms.
    QTest::newRow("several passes at once, loops left")
        << 0 << 3 << 3 << 0 << 4 << 0 << 4 << 4 << false;
    QTest::newRow("several passes at once, too many")
        << 0 << 3 << 3 << 0 << 3 << 2 << 4 << 4 << true;
    QTest::newRow("one frame for each tick") << 40 << 40 << 3 << 0 << 0 << 2 << 80 << 0 << false;
    QTest::newRow("an interval beyond all ticks")
        << 0 << greatest << 3 << 0 << 0 << 0 << 40 << 0 << false;
    QTest::newRow("forever does not overflow")
        << 280 << 100 << 3 << greatest << forever << 0 << 20 << greatest << false;
    // The greatest time and 40 ms are 2147483687: frame 21474836 of a pass of 300, 7158278 passes
    // and 287 ms.
    QTest::newRow("the greatest time")
        << greatest << 100 << 3 << 0 << forever << 0 << 287 << 7158278 << false;
}

void TestPlaybackSteps::aHostTickLeadsTo()
{
    QFETCH(int, elapsedMs);
    QFETCH(int, intervalMs);
    QFETCH(int, frameCount);
    QFETCH(int, loopsDone);
    QFETCH(int, loopCount);
    const PlaybackSteps::Step step =
        PlaybackSteps::afterHostTick({loopsDone, elapsedMs}, {frameCount, loopCount, intervalMs});
    QTEST(step.index, "nextIndex");
    QTEST(step.progress.elapsedMs, "nextElapsedMs");
    QTEST(step.progress.loopsDone, "nextLoopsDone");
    QTEST(step.finished, "finished");
}

QTEST_GUILESS_MAIN(TestPlaybackSteps)
#include "tst_playback_steps.moc"
