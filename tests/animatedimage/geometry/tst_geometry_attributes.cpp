#include "tests/animatedimage/geometry/attributes.h"

#include <QtCore/QTimer>
#include <QtTest/QTest>

namespace
{

using Attributes::enableTimer;
using Attributes::playTo;
using Attributes::send;
using Heard::changed;
using Heard::postedFalse;
using Heard::started;
using Heard::stopped;

QList<QImage> threeFrames()
{
    return solidFrames({{10, 10}, {20, 10}, {10, 30}});
}

} // namespace

/// The attributes of playback that the host steps itself.
class TestGeometryAttributes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theOwnAttributesAreHandled_data();
    void theOwnAttributesAreHandled();
    void otherAttributesAreLeftToTheHost_data();
    void otherAttributesAreLeftToTheHost();
    void aCutInputChangesNothing_data();
    void aCutInputChangesNothing();
    void theInputIsReadWhereTheStreamStands();

    void suspendingRemembersWhetherItPlayed_data();
    void suspendingRemembersWhetherItPlayed();
    void suspendingLeavesTheTimerTickingIdly();
    void theTimersReturnBeginsAnewWhatPlayed();
    void theTimersReturnStartsWhatWasStoppedMeanwhile();
    void theTimersReturnLeavesWhatDidNotPlay_data();
    void theTimersReturnLeavesWhatDidNotPlay();
    void theTimersReturnForgetsNothing();
    void suspendingTwiceRemembersTheSecondState();
};

void TestGeometryAttributes::theOwnAttributesAreHandled_data()
{
    QTest::addColumn<int>("id");
    for (const int id : {2702, 2704, 2705, 2804, 2805})
        QTest::addRow("%d", id) << id;
}

void TestGeometryAttributes::theOwnAttributesAreHandled()
{
    QFETCH(int, id);
    for (const bool flag : {false, true}) {
        Stage stage(threeFrames());
        QVERIFY(send(stage, id, Request::packed(false, false), flag));
        Stage empty;
        QVERIFY(send(empty, id, Request::packed(false, false), flag));
    }
}

void TestGeometryAttributes::otherAttributesAreLeftToTheHost_data()
{
    QTest::addColumn<int>("id");
    for (const int id : {0, -1, 2701, 2703, 2706, 2803, 2806, 5001, 2147483647})
        QTest::addRow("%d", id) << id;
}

void TestGeometryAttributes::otherAttributesAreLeftToTheHost()
{
    QFETCH(int, id);
    Stage stage(threeFrames());
    playTo(stage, 2);
    Request request(Request::packed(true, true));
    QVERIFY(!stage->SetAttribute(id, request.stream(), true));
    QCOMPARE(request.position(), qint64(0));
    QCOMPARE(stage.log.entries(), QStringList());
    QCOMPARE(stage.probe.runningIndex(), 2);
    QVERIFY(stage.probe.isRunning());
}

void TestGeometryAttributes::aCutInputChangesNothing_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QByteArray>("input");
    QTest::newRow("start, nothing") << 2702 << QByteArray();
    QTest::newRow("start, one flag") << 2702 << QByteArray(1, '\0');
    QTest::newRow("enable, nothing") << 2704 << QByteArray();
}

void TestGeometryAttributes::aCutInputChangesNothing()
{
    QFETCH(int, id);
    QFETCH(QByteArray, input);
    Stage stage(threeFrames());
    playTo(stage, 2);
    QVERIFY(send(stage, id, input));
    QCOMPARE(stage.log.entries(), QStringList());
    QVERIFY(stage.probe.playEnabled());
    QVERIFY(!stage.probe.wasRunning());
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 2);

    QDataStream noDevice;
    QVERIFY(stage->SetAttribute(id, noDevice, false));
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestGeometryAttributes::theInputIsReadWhereTheStreamStands()
{
    Stage stage(threeFrames());
    Request request(QByteArray::fromHex("0100ff"));
    request.from(1);
    QVERIFY(stage->SetAttribute(2704, request.stream(), false));
    QVERIFY(!stage.probe.playEnabled());
    QCOMPARE(request.position(), qint64(2));
    QCOMPARE(request.bytes(), QByteArray::fromHex("0100ff"));
}

void TestGeometryAttributes::suspendingRemembersWhetherItPlayed_data()
{
    QTest::addColumn<bool>("plays");
    QTest::newRow("playing") << true;
    QTest::newRow("stopped") << false;
}

void TestGeometryAttributes::suspendingRemembersWhetherItPlayed()
{
    QFETCH(bool, plays);
    Stage stage(threeFrames());
    if (plays)
        playTo(stage, 1);
    stage.probe.wasRunning() = !plays;
    enableTimer(stage, false);
    QVERIFY(!stage.probe.playEnabled());
    QCOMPARE(stage.probe.wasRunning(), plays);
    QCOMPARE(stage.probe.isRunning(), plays);
    QCOMPARE(stage.probe.runningIndex(), plays ? 1 : 0);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestGeometryAttributes::suspendingLeavesTheTimerTickingIdly()
{
    Stage stage(threeFrames());
    playTo(stage, 1);
    enableTimer(stage, false);
    QVERIFY(stage.probe.timer()->isActive());
    stage.probe.tick();
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestGeometryAttributes::theTimersReturnBeginsAnewWhatPlayed()
{
    Stage stage(threeFrames());
    playTo(stage, 2);
    enableTimer(stage, false);
    stage.probe.loopsDone() = 5;
    stage.probe.shiftInterval() = 70;
    enableTimer(stage, true);
    QVERIFY(stage.probe.playEnabled());
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.probe.loopsDone(), 0);
    QVERIFY(stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.timer()->interval(), 70);
    QCOMPARE(stage.log.entries(), stopped + started);
}

void TestGeometryAttributes::theTimersReturnStartsWhatWasStoppedMeanwhile()
{
    Stage stage(threeFrames());
    playTo(stage, 2);
    enableTimer(stage, false);
    stage->playImage(false);
    stage.log.clear();
    enableTimer(stage, true);
    QVERIFY(stage.probe.isRunning());
    QVERIFY(stage.probe.timer()->isActive());
    QCOMPARE(stage.log.entries(), QStringList({postedFalse}) + started);
}

void TestGeometryAttributes::theTimersReturnLeavesWhatDidNotPlay_data()
{
    QTest::addColumn<bool>("startedMeanwhile");
    QTest::newRow("stopped all the time") << false;
    QTest::newRow("started meanwhile") << true;
}

void TestGeometryAttributes::theTimersReturnLeavesWhatDidNotPlay()
{
    QFETCH(bool, startedMeanwhile);
    Stage stage(threeFrames());
    enableTimer(stage, false);
    if (startedMeanwhile)
        stage->playImage(true);
    stage->setCurrentIndex(1);
    stage.log.clear();
    enableTimer(stage, true);
    QVERIFY(stage.probe.playEnabled());
    QCOMPARE(stage.probe.isRunning(), startedMeanwhile);
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestGeometryAttributes::theTimersReturnForgetsNothing()
{
    Stage stage(threeFrames());
    playTo(stage, 1);
    enableTimer(stage, false);
    enableTimer(stage, true);
    QVERIFY(stage.probe.wasRunning());
    stage.log.clear();
    enableTimer(stage, true); // so this starts again
    QCOMPARE(stage.log.entries(), QStringList({changed, postedFalse}) + started);
}

void TestGeometryAttributes::suspendingTwiceRemembersTheSecondState()
{
    Stage stage(threeFrames());
    playTo(stage, 1);
    enableTimer(stage, false);
    stage->playImage(false);
    enableTimer(stage, false);
    QVERIFY(!stage.probe.wasRunning());
    stage.log.clear();
    enableTimer(stage, true);
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.log.entries(), QStringList());
}

QTEST_MAIN(TestGeometryAttributes)
#include "tst_geometry_attributes.moc"
