#include "framework/framework.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

namespace
{

const QString changed = QStringLiteral("changed 1002");
const QString moved = QStringLiteral("changed 104");
const QString postedFalse =
    QStringLiteral(R"(posted 100 0 {"settings":[{"id":"idImagePlay","value":"false"}]} -1)");
/// What a tick that shows another frame sends, in addition to the tick's own notification.
QStringList anotherFrame()
{
    return {moved, moved, changed};
}

constexpr int background = 1;

QList<QImage> threeFrames()
{
    return solidFrames({{10, 10}, {20, 10}, {10, 30}});
}

/// The frames that @p ticks ticks show.
QList<int> framesOfTicks(Stage &stage, int ticks)
{
    QList<int> frames;
    for (int i = 0; i < ticks; ++i) {
        stage.probe.tick();
        frames.append(stage.probe.runningIndex());
    }
    return frames;
}

} // namespace

class TestPlaybackTicks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStoppedObjectIgnoresTicks();
    void aSuspendedObjectIgnoresTicks();
    void aTickShowsTheNextFrameAndTellsTwice();
    void playedOnceItRestsOnTheLastFrame();
    void theLoopCountIsTheNumberOfRepetitions_data();
    void theLoopCountIsTheNumberOfRepetitions();
    void endlessPlaybackCountsItsPasses();
    void theLastTickStopsAndRestsInThisOrder();
    void theFirstFrameIsShownBeforeItRestsOnTheLast();
    void repeatingAFrameTellsOnce();
    void oneFramePlaysToItsEnd();
    void withoutFramesEveryTickCompletesAPass();
    void withoutFramesPlaybackEndsToo();
    void aBackgroundRedrawsItsTileInstead();
    void aBackgroundEndsOnItsLastFrame();
    void playbackAfterTheEndBeginsAnew();
};

void TestPlaybackTicks::aStoppedObjectIgnoresTicks()
{
    Stage stage(threeFrames());
    QCOMPARE(framesOfTicks(stage, 3), QList<int>({0, 0, 0}));
    QCOMPARE(stage.log.entries(), QStringList());
    QCOMPARE(stage.probe.loopsDone(), 0);
}

void TestPlaybackTicks::aSuspendedObjectIgnoresTicks()
{
    Stage stage(threeFrames());
    stage->playImage(true);
    stage.probe.playEnabled() = false;
    stage.log.clear();
    QCOMPARE(framesOfTicks(stage, 3), QList<int>({0, 0, 0}));
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPlaybackTicks::aTickShowsTheNextFrameAndTellsTwice()
{
    Stage stage(threeFrames());
    stage->playImage(true);
    stage.log.clear();
    stage.probe.tick();
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage->getSize(), QSizeF(20.0, 10.0));
    QCOMPARE(stage.log.entries(), anotherFrame() + QStringList({changed}));
}

void TestPlaybackTicks::playedOnceItRestsOnTheLastFrame()
{
    Stage stage(threeFrames());
    stage->setLoopCount(0);
    stage->playImage(true);
    stage.log.clear();
    QCOMPARE(framesOfTicks(stage, 2), QList<int>({1, 2}));
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.log.postedTexts(), QStringList());

    stage.probe.tick();
    QCOMPARE(stage.probe.runningIndex(), 2);
    QVERIFY(!stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.loopsDone(), 1);
    QCOMPARE(stage->getSize(), QSizeF(10.0, 30.0));
    QCOMPARE(
        stage.log.postedTexts(),
        QStringList({QStringLiteral(R"({"settings":[{"id":"idImagePlay","value":"false"}]})")}));

    stage.log.clear();
    stage.probe.tick();
    QCOMPARE(stage.probe.runningIndex(), 2);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPlaybackTicks::theLoopCountIsTheNumberOfRepetitions_data()
{
    QTest::addColumn<int>("loopCount");
    QTest::addColumn<QList<int>>("expected");
    // One tick more than the passes have frames: it stops, and the last frame stays.
    QTest::newRow("0") << 0 << QList<int>{1, 2, 2};
    QTest::newRow("1") << 1 << QList<int>{1, 2, 0, 1, 2, 2};
    QTest::newRow("2") << 2 << QList<int>{1, 2, 0, 1, 2, 0, 1, 2, 2};
}

void TestPlaybackTicks::theLoopCountIsTheNumberOfRepetitions()
{
    QFETCH(int, loopCount);
    QFETCH(QList<int>, expected);
    Stage stage(threeFrames());
    stage->setLoopCount(loopCount);
    stage->playImage(true);
    QCOMPARE(framesOfTicks(stage, expected.size() - 1), expected.mid(0, expected.size() - 1));
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.loopsDone(), loopCount);
    QCOMPARE(framesOfTicks(stage, 1), expected.mid(expected.size() - 1));
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.probe.loopsDone(), loopCount + 1);
}

void TestPlaybackTicks::endlessPlaybackCountsItsPasses()
{
    Stage stage(threeFrames());
    stage->playImage(true);
    stage.log.clear();
    for (int pass = 0; pass < 100; ++pass)
        QCOMPARE(framesOfTicks(stage, 3), QList<int>({1, 2, 0}));
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.loopsDone(), 100);
    QCOMPARE(stage.log.postedTexts(), QStringList());
}

void TestPlaybackTicks::theLastTickStopsAndRestsInThisOrder()
{
    Stage stage(threeFrames());
    stage->setLoopCount(0);
    stage->playImage(true);
    framesOfTicks(stage, 2);
    stage.log.clear();
    stage.probe.tick();
    const QStringList rewound = anotherFrame() + QStringList({changed, postedFalse});
    const QStringList rests = anotherFrame() + QStringList({changed});
    QCOMPARE(stage.log.entries(), rewound + rests);
}

void TestPlaybackTicks::theFirstFrameIsShownBeforeItRestsOnTheLast()
{
    Stage stage(threeFrames());
    stage->setLoopCount(0);
    stage->playImage(true);
    framesOfTicks(stage, 2);
    QList<int> shown;
    connect(Framework::instance().notifier(), &Notifier::propertyChanged, &stage.log,
            [&](CBaseObject *, int id) {
                if (id == 1002)
                    shown.append(stage.probe.runningIndex());
            });
    stage.probe.tick();
    QCOMPARE(shown, QList<int>({0, 0, 2, 2}));
}

void TestPlaybackTicks::repeatingAFrameTellsOnce()
{
    Stage stage(solidFrames({{10, 10}}));
    stage->playImage(true);
    stage.log.clear();
    stage.probe.tick();
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.log.entries(), QStringList({changed}));
    QCOMPARE(stage.probe.loopsDone(), 1);
}

void TestPlaybackTicks::oneFramePlaysToItsEnd()
{
    Stage stage(solidFrames({{10, 10}}));
    stage->setLoopCount(1);
    stage->playImage(true);
    stage.log.clear();
    stage.probe.tick();
    QVERIFY(stage.probe.isRunning());
    stage.probe.tick();
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.log.entries(), QStringList({changed, changed, postedFalse, changed}));
}

void TestPlaybackTicks::withoutFramesEveryTickCompletesAPass()
{
    Stage stage;
    stage->playImage(true);
    stage.log.clear();
    QCOMPARE(framesOfTicks(stage, 2), QList<int>({0, 0}));
    QCOMPARE(stage.probe.loopsDone(), 2);
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.log.entries(), QStringList({changed, changed}));
}

void TestPlaybackTicks::withoutFramesPlaybackEndsToo()
{
    Stage stage;
    stage->setLoopCount(0);
    stage->playImage(true);
    stage.log.clear();
    stage.probe.tick();
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.log.entries(), QStringList({changed, postedFalse, changed}));
}

void TestPlaybackTicks::aBackgroundRedrawsItsTileInstead()
{
    Stage stage(threeFrames());
    stage.probe.animatedType() = background;
    stage->playImage(true);
    stage.log.clear();
    stage.probe.tick();
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.log.entries(), QStringList({changed}));
    // The object keeps its size, and so does the tile: twice that of the object.
    QCOMPARE(stage->getSize(), QSizeF(10.0, 10.0));
    QCOMPARE(stage.probe.bgImage().size(), QSize(20, 20));
    QCOMPARE(stage.probe.bgImage().pixelColor(5, 5), QColor(Qt::green));
    stage.probe.tick();
    QCOMPARE(stage.probe.bgImage().pixelColor(5, 5), QColor(Qt::blue));
}

void TestPlaybackTicks::aBackgroundEndsOnItsLastFrame()
{
    Stage stage(threeFrames());
    stage.probe.animatedType() = background;
    stage->setLoopCount(0);
    stage->playImage(true);
    framesOfTicks(stage, 2);
    stage.log.clear();
    stage.probe.tick();
    QCOMPARE(stage.probe.runningIndex(), 2);
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.log.entries(), QStringList({moved, changed, postedFalse, changed}));
    QCOMPARE(stage.probe.bgImage().pixelColor(5, 5), QColor(Qt::blue));
}

void TestPlaybackTicks::playbackAfterTheEndBeginsAnew()
{
    Stage stage(threeFrames());
    stage->setLoopCount(0);
    stage->playImage(true);
    framesOfTicks(stage, 3);
    stage->playImage(true);
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.probe.loopsDone(), 0);
    QCOMPARE(framesOfTicks(stage, 3), QList<int>({1, 2, 2}));
}

QTEST_MAIN(TestPlaybackTicks)
#include "tst_playback_ticks.moc"
