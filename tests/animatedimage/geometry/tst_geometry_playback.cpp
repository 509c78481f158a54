#include "tests/animatedimage/geometry/attributes.h"

#include <QtTest/QTest>

#include <limits>

namespace
{

using Attributes::playByHost;
using Attributes::tick;
using Heard::changed;
using Heard::moved;

constexpr int forever = -1;
constexpr int normal = -1;
constexpr int background = 1;

/// A stage whose object has @p count frames of 4 x 4 and more, each wider than the one before.
QList<QImage> frames(int count)
{
    QList<QSize> sizes;
    for (int i = 0; i < count; ++i)
        sizes.append(QSize(4 + i, 4));
    return solidFrames(sizes);
}

/// Playback as a film projector would count it: millisecond by millisecond, frame by frame. It
/// knows neither divisions nor remainders.
class Projector
{
public:
    Projector(int interval, int loopCount, int frameCount)
        : m_interval(interval)
        , m_loopCount(loopCount)
        , m_frameCount(frameCount)
    {
    }

    void tick()
    {
        if (!m_isRunning)
            return;
        bool passEnded = false;
        for (int ms = 0; ms < 40; ++ms)
            passEnded |= endsPassAfterAMillisecond();
        if (!passEnded)
            m_shown = m_frame;
        else if (m_loopCount == forever || m_loopsDone <= m_loopCount)
            m_shown = 0; // even where the film has run on to a later frame
        else {
            m_shown = m_frameCount - 1;
            m_isRunning = false;
        }
    }

    int shown() const { return m_shown; }
    int loopsDone() const { return m_loopsDone; }
    int elapsedMs() const { return m_msOfPass; }
    bool isRunning() const { return m_isRunning; }

private:
    bool endsPassAfterAMillisecond()
    {
        ++m_msOfPass;
        if (++m_msOfFrame < m_interval)
            return false;
        m_msOfFrame = 0;
        if (++m_frame < m_frameCount)
            return false;
        m_frame = 0;
        m_msOfPass = 0;
        ++m_loopsDone;
        return true;
    }

    int m_interval;
    int m_loopCount;
    int m_frameCount;
    bool m_isRunning = true;
    int m_shown = 0;
    int m_frame = 0;
    int m_loopsDone = 0;
    int m_msOfFrame = 0;
    int m_msOfPass = 0;
};

} // namespace

/// Playback in steps of 40 ms of the host's clock.
class TestGeometryPlayback : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoHundredTicksShowWhatAProjectorShows_data();
    void twoHundredTicksShowWhatAProjectorShows();
    void theTicksShowTheseFrames_data();
    void theTicksShowTheseFrames();
    void playedOnceItEndsOnTheLastFrame();
    void endingSendsNoPlayStatus();
    void aTickThatShowsAnotherFrameTellsTwice();
    void aBackgroundRedrawsItsTileInstead();
    void aTickWithoutPlaybackChangesNothingAndTells();
    void anIntervalOfNothingLeavesTheFrameAndTells_data();
    void anIntervalOfNothingLeavesTheFrameAndTells();
    void withoutFramesATickTellsOnly();
    void aNewIntervalCountsFromTheNextTickOn();
    void framesRemovedMeanwhileEndThePass();
    void theTimersSuspensionDoesNotMatterToATick();

private:
    static void tickBoth(Stage &stage, Projector &projector, int number);
};

void TestGeometryPlayback::twoHundredTicksShowWhatAProjectorShows_data()
{
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("loopCount");
    QTest::addColumn<int>("frameCount");
    QTest::addColumn<int>("type");
    for (const int interval : {10, 40, 100, 130}) {
        for (const int loopCount : {-1, 0, 1, 3}) {
            for (const int frameCount : {1, 3, 7}) {
                for (const int type : {normal, background}) {
                    QTest::addRow("%d ms, %d loops, %d frames, type %d", interval, loopCount,
                                  frameCount, type)
                        << interval << loopCount << frameCount << type;
                }
            }
        }
    }
}

/// One tick, the @p number -th, of the object and of the projector.
void TestGeometryPlayback::tickBoth(Stage &stage, Projector &projector, int number)
{
    const int before = projector.shown();
    projector.tick();
    stage.log.clear();
    QVERIFY(tick(stage));

    const bool showsAnother = projector.shown() != before && stage.probe.animatedType() == normal;
    const QList<int> expected{number,
                              projector.shown(),
                              projector.isRunning(),
                              projector.loopsDone(),
                              projector.elapsedMs(),
                              showsAnother ? 2 : 1};
    const QList<int> actual{number,
                            stage.probe.runningIndex(),
                            stage.probe.isRunning(),
                            stage.probe.loopsDone(),
                            stage.probe.elapsedMs(),
                            stage.log.changes(1002)};
    QCOMPARE(actual, expected);
    QCOMPARE(stage.log.postedTexts(), QStringList());
}

void TestGeometryPlayback::twoHundredTicksShowWhatAProjectorShows()
{
    QFETCH(int, interval);
    QFETCH(int, loopCount);
    QFETCH(int, frameCount);
    QFETCH(int, type);
    Stage stage(frames(frameCount));
    stage.probe.animatedType() = type;
    stage->setShiftInterval(interval);
    stage->setLoopCount(loopCount);
    playByHost(stage);
    Projector projector(interval, loopCount, frameCount);

    for (int i = 1; i <= 200 && !QTest::currentTestFailed(); ++i)
        tickBoth(stage, projector, i);
}

void TestGeometryPlayback::theTicksShowTheseFrames_data()
{
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("loopCount");
    QTest::addColumn<int>("frameCount");
    QTest::addColumn<QList<int>>("shown");
    QTest::addColumn<int>("loopsDone");
    QTest::addColumn<int>("elapsed");

    // 40 80 | 120 160 | 200 240 280 | 320: one pass and 20 | 60 | 100 140 180 | 220 260 | 300
    QTest::newRow("100 ms, three frames, for ever")
        << 100 << forever << 3 << QList<int>{0, 0, 1, 1, 2, 2, 2, 0, 0, 1, 1, 1, 2, 2, 0} << 2 << 0;
    QTest::newRow("100 ms, three frames, once")
        << 100 << 0 << 3 << QList<int>{0, 0, 1, 1, 2, 2, 2, 2, 2, 2} << 1 << 20;
    // 160: one pass and 30; 70, 110, 150: a second pass and 20, where it stops.
    QTest::newRow("130 ms, one frame, one repetition")
        << 130 << 1 << 1 << QList<int>{0, 0, 0, 0, 0, 0, 0, 0, 0} << 2 << 20;
    QTest::newRow("40 ms, seven frames, one repetition")
        << 40 << 1 << 7 << QList<int>{1, 2, 3, 4, 5, 6, 0, 1, 2, 3, 4, 5, 6, 6, 6} << 2 << 0;
    // 40: one pass of 30 and 10, which would be frame 1; 50: one and 20; 60: two and 0; 40 again.
    QTest::newRow("10 ms, three frames, for ever")
        << 10 << forever << 3 << QList<int>{0, 0, 0, 0} << 5 << 10;
    QTest::newRow("10 ms, three frames, one repetition")
        << 10 << 1 << 3 << QList<int>{0, 2, 2} << 2 << 20;
    // Four passes at once are more than a loop count of 3 allows.
    QTest::newRow("10 ms, one frame, three repetitions")
        << 10 << 3 << 1 << QList<int>{0, 0} << 4 << 0;
    // 40 | 80: one and 10 | 50 | 90: two and 20 | 60 | 100: three and 30 | 70: four | 40
    QTest::newRow("10 ms, seven frames, for ever")
        << 10 << forever << 7 << QList<int>{4, 0, 5, 0, 6, 0, 0, 4} << 4 << 40;
    QTest::newRow("a loop count below for ever plays once")
        << 40 << -2 << 3 << QList<int>{1, 2, 2, 2} << 1 << 0;
}

void TestGeometryPlayback::theTicksShowTheseFrames()
{
    QFETCH(int, interval);
    QFETCH(int, loopCount);
    QFETCH(int, frameCount);
    QFETCH(QList<int>, shown);
    Stage stage(frames(frameCount));
    stage->setShiftInterval(interval);
    stage->setLoopCount(loopCount);
    playByHost(stage);
    QList<int> actual;
    for (int i = 0; i < shown.size(); ++i) {
        tick(stage);
        actual.append(stage.probe.runningIndex());
    }
    QCOMPARE(actual, shown);
    QTEST(stage.probe.loopsDone(), "loopsDone");
    QTEST(stage.probe.elapsedMs(), "elapsed");
}

void TestGeometryPlayback::playedOnceItEndsOnTheLastFrame()
{
    Stage stage(frames(3));
    stage->setShiftInterval(40);
    stage->setLoopCount(0);
    playByHost(stage);
    tick(stage);
    tick(stage);
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.loopsDone(), 0);
    tick(stage);
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.probe.loopsDone(), 1);
    QCOMPARE(stage.probe.runningIndex(), 2);
    QCOMPARE(stage->getSize(), QSizeF(6.0, 4.0));
}

void TestGeometryPlayback::endingSendsNoPlayStatus()
{
    Stage stage(frames(1));
    stage->setShiftInterval(40);
    stage->setLoopCount(0);
    playByHost(stage);
    stage.log.clear();
    tick(stage);
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.log.entries(), QStringList({changed}));
}

void TestGeometryPlayback::aTickThatShowsAnotherFrameTellsTwice()
{
    Stage stage(frames(3));
    stage->setShiftInterval(40);
    playByHost(stage);
    stage.log.clear();
    tick(stage);
    QCOMPARE(stage.log.entries(), QStringList({moved, moved, changed, changed}));
    QCOMPARE(stage->getSize(), QSizeF(5.0, 4.0));
}

void TestGeometryPlayback::aBackgroundRedrawsItsTileInstead()
{
    Stage stage(frames(3));
    stage.probe.animatedType() = background;
    stage->setShiftInterval(40);
    playByHost(stage);
    stage.log.clear();
    tick(stage);
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.log.entries(), QStringList({changed}));
    QCOMPARE(stage->getSize(), QSizeF(4.0, 4.0));
    QCOMPARE(stage.probe.bgImage().size(), QSize(8, 8));
    QCOMPARE(stage.probe.bgImage().pixelColor(1, 1), QColor(Qt::green));
    tick(stage);
    QCOMPARE(stage.probe.bgImage().pixelColor(1, 1), QColor(Qt::blue));
}

void TestGeometryPlayback::aTickWithoutPlaybackChangesNothingAndTells()
{
    Stage stage(frames(3));
    stage->setShiftInterval(10);
    stage->setCurrentIndex(1);
    stage.probe.elapsedMs() = 20;
    stage.log.clear();
    QVERIFY(tick(stage));
    QCOMPARE(stage.log.entries(), QStringList({changed}));
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.probe.elapsedMs(), 20);
    QCOMPARE(stage.probe.loopsDone(), 0);
    QVERIFY(!stage.probe.isRunning());
}

void TestGeometryPlayback::anIntervalOfNothingLeavesTheFrameAndTells_data()
{
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("type");
    for (const int interval : {0, -1, -40, std::numeric_limits<int>::min()}) {
        QTest::addRow("%d ms", interval) << interval << normal;
        QTest::addRow("%d ms, background", interval) << interval << background;
    }
}

void TestGeometryPlayback::anIntervalOfNothingLeavesTheFrameAndTells()
{
    QFETCH(int, interval);
    QFETCH(int, type);
    Stage stage(frames(3));
    stage.probe.animatedType() = type;
    stage->setShiftInterval(40);
    stage->setLoopCount(0);
    playByHost(stage);
    tick(stage);
    stage->setShiftInterval(interval);
    const qint64 tile = stage.probe.bgImage().cacheKey();
    stage.log.clear();
    for (int i = 1; i <= 10; ++i) {
        QVERIFY(tick(stage));
        QCOMPARE(stage.probe.runningIndex(), 1);
        QCOMPARE(stage.log.changes(1002), i);
    }
    QCOMPARE(stage.log.entries().size(), 10);
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.loopsDone(), 0);
    QCOMPARE(stage.probe.elapsedMs(), 40);
    QCOMPARE(stage.probe.bgImage().cacheKey(), tile);

    stage->setShiftInterval(40);
    tick(stage);
    QCOMPARE(stage.probe.runningIndex(), 2);
}

void TestGeometryPlayback::withoutFramesATickTellsOnly()
{
    for (const int type : {normal, background}) {
        Stage stage;
        stage.probe.animatedType() = type;
        stage->setLoopCount(0);
        playByHost(stage);
        stage.log.clear();
        QVERIFY(tick(stage));
        QCOMPARE(stage.log.entries(), QStringList({changed}));
        QCOMPARE(stage.probe.runningIndex(), 0);
        QVERIFY(stage.probe.isRunning());
        QCOMPARE(stage.probe.loopsDone(), 0);
    }
}

void TestGeometryPlayback::aNewIntervalCountsFromTheNextTickOn()
{
    Stage stage(frames(3));
    stage->setShiftInterval(100);
    playByHost(stage);
    for (int i = 0; i < 6; ++i)
        tick(stage);
    QCOMPARE(stage.probe.runningIndex(), 2); // 240 ms
    stage->setShiftInterval(200);
    tick(stage);
    QCOMPARE(stage.probe.runningIndex(), 1); // 280 ms
    stage->setShiftInterval(40);
    tick(stage); // 320 ms are two passes of 120 and 80
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.probe.loopsDone(), 2);
    QCOMPARE(stage.probe.elapsedMs(), 80);
}

void TestGeometryPlayback::framesRemovedMeanwhileEndThePass()
{
    Stage stage(frames(7));
    stage->setShiftInterval(40);
    stage->setLoopCount(0);
    playByHost(stage);
    for (int i = 0; i < 4; ++i)
        tick(stage);
    while (stage.probe.frames().size() > 2)
        stage.probe.frames().removeLast();
    tick(stage); // 200 ms are two passes of 80 and 40
    QCOMPARE(stage.probe.runningIndex(), 1);
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.probe.loopsDone(), 2);
    QCOMPARE(stage.probe.elapsedMs(), 40);
}

void TestGeometryPlayback::theTimersSuspensionDoesNotMatterToATick()
{
    Stage stage(frames(3));
    stage->setShiftInterval(40);
    stage->playImage(true);
    QVERIFY(stage.probe.playEnabled());
    tick(stage);
    QCOMPARE(stage.probe.runningIndex(), 1);
    Attributes::enableTimer(stage, false);
    tick(stage);
    QCOMPARE(stage.probe.runningIndex(), 2);
}

QTEST_MAIN(TestGeometryPlayback)
#include "tst_geometry_playback.moc"
