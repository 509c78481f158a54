#include "framework/framework.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

namespace
{

const QString changed = QStringLiteral("changed 1002");
const QString moved = QStringLiteral("changed 104");
const QString postedTrue =
    QStringLiteral(R"(posted 100 0 {"settings":[{"id":"idImagePlay","value":"true"}]} -1)");
const QString postedFalse =
    QStringLiteral(R"(posted 100 0 {"settings":[{"id":"idImagePlay","value":"false"}]} -1)");

constexpr int background = 1;

QList<QImage> threeFrames()
{
    return solidFrames({{10, 10}, {20, 10}, {10, 30}});
}

} // namespace

class TestPlaybackStartStop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startingAtTheFirstFrameTellsTwice();
    void startingElsewhereShowsTheFirstFrame();
    void startingTwiceOnlyPostsAgain();
    void startingForgetsTheLoopsDone();
    void startingRunsTheTimerAtTheInterval();
    void startingTakesUpAnIntervalSetInTheFieldAlone();
    void startingWithoutAnIntervalRunsWithoutTicks_data();
    void startingWithoutAnIntervalRunsWithoutTicks();
    void startingWithoutFramesRuns();
    void theFirstFrameIsShownBeforeItCountsAsRunning();

    void stoppingRewinds();
    void stoppingAtTheFirstFrameTellsTwice();
    void stoppingTheStoppedOnlyPostsAgain();
    void stoppingTheStoppedLeavesATickingTimer();
    void stoppingWithoutFrames();
    void theFirstFrameIsShownWhileItStillCountsAsRunning();

    void theBackgroundTypeTellsOfItsPlaceAlone();
    void thePlayStateIsLoggedAndPosted_data();
    void thePlayStateIsLoggedAndPosted();
    void theTypeIsPostedAsANumber_data();
    void theTypeIsPostedAsANumber();
};

void TestPlaybackStartStop::startingAtTheFirstFrameTellsTwice()
{
    Stage stage(threeFrames());
    stage->playImage(true);
    QCOMPARE(stage.log.entries(), QStringList({changed, postedTrue}));
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 0);
}

void TestPlaybackStartStop::startingElsewhereShowsTheFirstFrame()
{
    Stage stage(threeFrames());
    stage->setCurrentIndex(2);
    stage.log.clear();
    stage->playImage(true);
    QCOMPARE(stage.log.entries(), QStringList({moved, moved, changed, changed, postedTrue}));
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage->getSize(), QSizeF(10.0, 10.0));
}

void TestPlaybackStartStop::startingTwiceOnlyPostsAgain()
{
    Stage stage(threeFrames());
    stage->playImage(true);
    stage.probe.tick();
    stage.probe.loopsDone() = 5;
    stage.log.clear();
    stage->playImage(true);
    QCOMPARE(stage.log.entries(), QStringList({postedTrue}));
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.probe.loopsDone(), 5);
}

void TestPlaybackStartStop::startingForgetsTheLoopsDone()
{
    Stage stage(threeFrames());
    stage.probe.loopsDone() = 9;
    stage->playImage(true);
    QCOMPARE(stage.probe.loopsDone(), 0);
    stage.probe.loopsDone() = 9;
    stage->playImage(false);
    QCOMPARE(stage.probe.loopsDone(), 9);
}

void TestPlaybackStartStop::startingRunsTheTimerAtTheInterval()
{
    Stage stage(threeFrames());
    QVERIFY(!stage.probe.timer()->isActive());
    stage->playImage(true);
    QVERIFY(stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.timer()->interval(), 200);
    stage->playImage(false);
    QVERIFY(!stage.probe.timer()->isActive());
}

void TestPlaybackStartStop::startingTakesUpAnIntervalSetInTheFieldAlone()
{
    Stage stage(threeFrames());
    stage.probe.shiftInterval() = 70;
    QCOMPARE(stage.probe.timer()->interval(), 200);
    stage->playImage(true);
    QCOMPARE(stage.probe.timer()->interval(), 70);
}

void TestPlaybackStartStop::startingWithoutAnIntervalRunsWithoutTicks_data()
{
    QTest::addColumn<int>("interval");
    QTest::addColumn<bool>("wasTicking");
    QTest::newRow("none") << 0 << false;
    QTest::newRow("less than none") << -40 << false;
    QTest::newRow("none, and the timer ticked while stopped") << 0 << true;
}

void TestPlaybackStartStop::startingWithoutAnIntervalRunsWithoutTicks()
{
    QFETCH(int, interval);
    QFETCH(bool, wasTicking);
    Stage stage(threeFrames());
    if (wasTicking)
        stage->setShiftInterval(90);
    QCOMPARE(stage.probe.timer()->isActive(), wasTicking);
    stage.probe.shiftInterval() = interval;
    stage->playImage(true);
    QVERIFY(stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.log.entries(), QStringList({changed, postedTrue}));
}

void TestPlaybackStartStop::startingWithoutFramesRuns()
{
    Stage stage;
    stage->playImage(true);
    QVERIFY(stage.probe.isRunning());
    QVERIFY(stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.log.entries(), QStringList({changed, postedTrue}));
}

void TestPlaybackStartStop::theFirstFrameIsShownBeforeItCountsAsRunning()
{
    Stage stage(threeFrames());
    stage->setCurrentIndex(2);
    QList<bool> running;
    connect(Framework::instance().notifier(), &Notifier::propertyChanged, &stage.log,
            [&](CBaseObject *, int id) {
                if (id == 1002)
                    running.append(stage.probe.isRunning());
            });
    stage->playImage(true);
    QCOMPARE(running, QList<bool>({false, true}));
}

void TestPlaybackStartStop::stoppingRewinds()
{
    Stage stage(threeFrames());
    stage->playImage(true);
    stage->setCurrentIndex(2);
    stage.log.clear();
    stage->playImage(false);
    QCOMPARE(stage.log.entries(), QStringList({moved, moved, changed, changed, postedFalse}));
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QVERIFY(!stage.probe.timer()->isActive());
}

void TestPlaybackStartStop::stoppingAtTheFirstFrameTellsTwice()
{
    Stage stage(threeFrames());
    stage->playImage(true);
    stage.log.clear();
    stage->playImage(false);
    QCOMPARE(stage.log.entries(), QStringList({changed, postedFalse}));
}

void TestPlaybackStartStop::stoppingTheStoppedOnlyPostsAgain()
{
    Stage stage(threeFrames());
    stage->setCurrentIndex(1);
    stage.log.clear();
    stage->playImage(false);
    QCOMPARE(stage.log.entries(), QStringList({postedFalse}));
    QCOMPARE(stage.probe.runningIndex(), 1);
}

void TestPlaybackStartStop::stoppingTheStoppedLeavesATickingTimer()
{
    Stage stage(threeFrames());
    stage->setShiftInterval(100);
    stage->playImage(false);
    QVERIFY(stage.probe.timer()->isActive());
}

void TestPlaybackStartStop::stoppingWithoutFrames()
{
    Stage stage;
    stage->playImage(true);
    stage.log.clear();
    stage->playImage(false);
    QCOMPARE(stage.log.entries(), QStringList({changed, postedFalse}));
    QCOMPARE(stage.probe.runningIndex(), 0);
    QVERIFY(!stage.probe.timer()->isActive());
}

void TestPlaybackStartStop::theFirstFrameIsShownWhileItStillCountsAsRunning()
{
    Stage stage(threeFrames());
    stage->playImage(true);
    stage->setCurrentIndex(2);
    QStringList states;
    connect(Framework::instance().notifier(), &Notifier::propertyChanged, &stage.log,
            [&](CBaseObject *, int id) {
                if (id == 1002) {
                    states.append(QStringLiteral("frame %1 %2")
                                      .arg(QString::number(stage.probe.runningIndex()),
                                           stage.probe.isRunning() ? QStringLiteral("running")
                                                                   : QStringLiteral("stopped")));
                }
            });
    stage->playImage(false);
    QCOMPARE(states,
             QStringList({QStringLiteral("frame 0 running"), QStringLiteral("frame 0 stopped")}));
}

void TestPlaybackStartStop::theBackgroundTypeTellsOfItsPlaceAlone()
{
    Stage stage(threeFrames());
    stage.probe.animatedType() = background;
    stage.probe.runningIndex() = 2;
    stage->playImage(true);
    QCOMPARE(stage.log.entries(), QStringList({moved, changed, postedTrue}));
    QCOMPARE(stage.probe.runningIndex(), 0);

    // It does so also when the first frame is shown already.
    stage.log.clear();
    stage->playImage(false);
    QCOMPARE(stage.log.entries(), QStringList({moved, changed, postedFalse}));
}

void TestPlaybackStartStop::thePlayStateIsLoggedAndPosted_data()
{
    QTest::addColumn<bool>("running");
    QTest::addColumn<QString>("expected");
    QTest::newRow("running") << true << QStringLiteral("true");
    QTest::newRow("stopped") << false << QStringLiteral("false");
}

void TestPlaybackStartStop::thePlayStateIsLoggedAndPosted()
{
    QFETCH(bool, running);
    QFETCH(QString, expected);
    Stage stage;
    stage.probe.isRunning() = running;
    QString posted;
    QList<int> numbers;
    connect(Framework::instance().notifier(), &Notifier::posted, &stage.log,
            [&](int id, int first, const QString &text, int last) {
                posted = text;
                numbers = {id, first, last};
            });
    QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("notifyPlayStatus = ") + expected));
    stage->notifyPlayStatus();
    QCOMPARE(numbers, QList<int>({100, 0, -1}));
    QCOMPARE(posted, QStringLiteral("{\n"
                                    "    \"settings\": [\n"
                                    "        {\n"
                                    "            \"id\": \"idImagePlay\",\n"
                                    "            \"value\": \"%1\"\n"
                                    "        }\n"
                                    "    ]\n"
                                    "}\n")
                         .arg(expected));
    QCOMPARE(stage.log.entries().size(), 1);
}

void TestPlaybackStartStop::theTypeIsPostedAsANumber_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("normal") << -1;
    QTest::newRow("background") << 1;
    QTest::newRow("zero") << 0;
    QTest::newRow("of another host") << 2147483647;
}

void TestPlaybackStartStop::theTypeIsPostedAsANumber()
{
    QFETCH(int, type);
    Stage stage;
    stage.probe.animatedType() = type;
    QString posted;
    connect(Framework::instance().notifier(), &Notifier::posted, &stage.log,
            [&](int, int, const QString &text) { posted = text; });
    stage->notifyAnimatedType();
    QCOMPARE(posted, QStringLiteral("{\n"
                                    "    \"settings\": [\n"
                                    "        {\n"
                                    "            \"id\": \"idAnimatedType\",\n"
                                    "            \"value\": %1\n"
                                    "        }\n"
                                    "    ]\n"
                                    "}\n")
                         .arg(type));
    QCOMPARE(stage.log.entries(),
             QStringList({QStringLiteral("posted 100 0 {\"settings\":[{\"id\":\"idAnimatedType\","
                                         "\"value\":%1}]} -1")
                              .arg(type)}));
}

QTEST_MAIN(TestPlaybackStartStop)
#include "tst_playback_start_stop.moc"
