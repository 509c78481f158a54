#include "framework/framework.h"
#include "tests/support/stage.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QTest>

namespace
{

const char newObject[] = R"json({
    "settings": [
        {
            "id": "idImagePlay",
            "kind": "switch",
            "label": "Play",
            "nameId": "IDS_MULTIPAGE_PLAY",
            "value": false
        },
        {
            "id": "idShiftInterval",
            "kind": "input",
            "label": "Frame interval (ms)",
            "minimum": "0",
            "nameId": "IDS_ANIMATEDIMAGE_SHIFT_INTERVAL",
            "type": "int",
            "value": "200"
        },
        {
            "id": "idLoopCount",
            "kind": "switch",
            "label": "Loop forever",
            "nameId": "IDS_ANIMATEDIMAGE_IF_LOOP",
            "value": true
        }
    ]
}
)json";

QString described(Stage &stage)
{
    QString json = QStringLiteral("before");
    stage->GetSettingJson(json);
    return json;
}

/// What the panel would show of the setting at @p index.
QJsonObject shown(Stage &stage, int index)
{
    const QJsonObject root = QJsonDocument::fromJson(described(stage).toUtf8()).object();
    return root.value(QLatin1String("settings")).toArray().at(index).toObject();
}

QString change(const char *id, const QString &value)
{
    return QStringLiteral(R"({"settings":[{"id":"%1","value":"%2"}]})")
        .arg(QLatin1String(id), value);
}

} // namespace

/// What the settings panel receives, and what it may change.
class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void threeSettingsAreDescribedInOrder();
    void labelsSpeakTheUsersLanguage();
    void theIntervalIsTextInBaseTen_data();
    void theIntervalIsTextInBaseTen();
    void theLoopSwitchIsOnForEndlessLoopsOnly_data();
    void theLoopSwitchIsOnForEndlessLoopsOnly();
    void playingShowsInItsSwitch();
    void aTextThatIsNotUnderstoodChangesNothing_data();
    void aTextThatIsNotUnderstoodChangesNothing();
    void theLoopSwitchAloneSetsTheLoopCount_data();
    void theLoopSwitchAloneSetsTheLoopCount();
    void thePlaySwitchStartsAndStops_data();
    void thePlaySwitchStartsAndStops();
    void anIntervalThatIsNoNumberBecomesNone();
    void intervalsAreReadInBaseTen_data();
    void intervalsAreReadInBaseTen();
    void theSameIntervalRestartsNothing();
    void theSameIntervalWhilePlayingLeavesTheTimerAlone();
    void aNewIntervalWhilePlayingGoesOnWithIt();
    void aNewIntervalStartsTheTimerOfAStoppedObject();
    void settingsAreTakenInAFixedOrder();
    void unknownSettingsArePassedOver();
    void anObjectReleasedByItsFirstChangeDoesNotCrash();
};

void TestSettings::cleanup()
{
    Framework::instance().setLanguage(QLocale::c());
}

void TestSettings::threeSettingsAreDescribedInOrder()
{
    Stage stage;
    QCOMPARE(described(stage), QString::fromUtf8(newObject));
    QString json;
    QVERIFY(stage->GetSettingJson(json));
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestSettings::labelsSpeakTheUsersLanguage()
{
    Stage stage;
    const auto label = [&stage](int index) {
        return shown(stage, index).value(QLatin1String("label")).toString();
    };
    Framework::instance().setLanguage(QLocale(QLocale::Chinese, QLocale::China));
    QCOMPARE(label(0), QString::fromUtf8("播放"));
    QCOMPARE(label(1), QString::fromUtf8("帧间隔（毫秒）"));
    QCOMPARE(label(2), QString::fromUtf8("循环播放"));
    Framework::instance().setLanguage(QLocale(QLocale::French));
    QCOMPARE(label(0), QStringLiteral("Play"));
}

void TestSettings::theIntervalIsTextInBaseTen_data()
{
    QTest::addColumn<int>("interval");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0 << QStringLiteral("0");
    QTest::newRow("long") << 100000 << QStringLiteral("100000");
    QTest::newRow("negative") << -40 << QStringLiteral("-40");
}

void TestSettings::theIntervalIsTextInBaseTen()
{
    QFETCH(int, interval);
    Stage stage;
    stage.probe.shiftInterval() = interval;
    QTEST(shown(stage, 1).value(QLatin1String("value")).toString(), "text");
}

void TestSettings::theLoopSwitchIsOnForEndlessLoopsOnly_data()
{
    QTest::addColumn<int>("loopCount");
    QTest::addColumn<bool>("on");
    QTest::newRow("forever") << -1 << true;
    QTest::newRow("three repetitions") << 3 << false;
    QTest::newRow("once") << 0 << false;
    QTest::newRow("below forever") << -2 << false;
}

void TestSettings::theLoopSwitchIsOnForEndlessLoopsOnly()
{
    QFETCH(int, loopCount);
    QFETCH(bool, on);
    Stage stage;
    stage.probe.loopCount() = loopCount;
    QCOMPARE(shown(stage, 2).value(QLatin1String("value")), QJsonValue(on));
}

void TestSettings::playingShowsInItsSwitch()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage->playImage(true);
    QCOMPARE(shown(stage, 0).value(QLatin1String("value")), QJsonValue(true));
}

void TestSettings::aTextThatIsNotUnderstoodChangesNothing_data()
{
    QTest::addColumn<QString>("json");
    QTest::newRow("empty") << QString();
    QTest::newRow("no JSON") << QStringLiteral("settings");
    QTest::newRow("no settings") << QStringLiteral("{}");
    QTest::newRow("a setting without id")
        << QStringLiteral(R"({"settings":[{"id":"idLoopCount","value":"0"},{"value":"1"}]})");
}

void TestSettings::aTextThatIsNotUnderstoodChangesNothing()
{
    QFETCH(QString, json);
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    QVERIFY(!stage->SetSettingJson(json, true, true));
    QCOMPARE(stage.probe.loopCount(), -1);
    QCOMPARE(stage.probe.shiftInterval(), 200);
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestSettings::theLoopSwitchAloneSetsTheLoopCount_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("loopCount");
    QTest::newRow("true") << QStringLiteral("true") << -1;
    QTest::newRow("1") << QStringLiteral("1") << -1;
    QTest::newRow("false") << QStringLiteral("false") << 0;
    QTest::newRow("0") << QStringLiteral("0") << 0;
    QTest::newRow("True") << QStringLiteral("True") << 0;
    QTest::newRow("a number") << QStringLiteral("7") << 0;
}

void TestSettings::theLoopSwitchAloneSetsTheLoopCount()
{
    QFETCH(QString, value);
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage.probe.loopCount() = 5;
    QVERIFY(stage->SetSettingJson(change("idLoopCount", value), true, true));
    QTEST(stage.probe.loopCount(), "loopCount");
    QCOMPARE(stage.probe.shiftInterval(), 200);
    QVERIFY(!stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestSettings::thePlaySwitchStartsAndStops_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("plays");
    QTest::newRow("1") << QStringLiteral("1") << true;
    QTest::newRow("true") << QStringLiteral("true") << true;
    QTest::newRow("True") << QStringLiteral("True") << false;
    QTest::newRow("yes") << QStringLiteral("yes") << false;
    QTest::newRow("nothing") << QString() << false;
}

void TestSettings::thePlaySwitchStartsAndStops()
{
    QFETCH(QString, value);
    QFETCH(bool, plays);
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage->playImage(!plays);
    QVERIFY(stage->SetSettingJson(change("idImagePlay", value), false, false));
    QCOMPARE(stage.probe.isRunning(), plays);
    QCOMPARE(stage.probe.timer()->isActive(), plays);
}

void TestSettings::anIntervalThatIsNoNumberBecomesNone()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage->playImage(true);
    QVERIFY(stage->SetSettingJson(change("idShiftInterval", QStringLiteral("soon")), true, true));
    QCOMPARE(stage.probe.shiftInterval(), 0);
    QVERIFY(stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
}

void TestSettings::intervalsAreReadInBaseTen_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("interval");
    QTest::addColumn<bool>("ticks");
    QTest::newRow("a leading zero") << QStringLiteral("010") << 10 << true;
    QTest::newRow("hexadecimal") << QStringLiteral("0x10") << 0 << false;
    QTest::newRow("a fraction") << QStringLiteral("75.5") << 0 << false;
    QTest::newRow("negative") << QStringLiteral("-40") << -40 << false;
    QTest::newRow("the largest") << QStringLiteral("2147483647") << 2147483647 << true;
    QTest::newRow("more than that") << QStringLiteral("2147483648") << 0 << false;
    QTest::newRow("nothing") << QString() << 0 << false;
}

void TestSettings::intervalsAreReadInBaseTen()
{
    QFETCH(QString, value);
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage->playImage(true);
    QVERIFY(stage->SetSettingJson(change("idShiftInterval", value), true, true));
    QTEST(stage.probe.shiftInterval(), "interval");
    QTEST(stage.probe.timer()->isActive(), "ticks");
    QVERIFY(stage.probe.isRunning());
}

void TestSettings::theSameIntervalRestartsNothing()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    QVERIFY(stage->SetSettingJson(change("idShiftInterval", QStringLiteral("200")), true, true));
    QVERIFY(!stage.probe.timer()->isActive());
    // Text that reads as the interval it has: none.
    stage.probe.shiftInterval() = 0;
    stage.probe.timer()->start();
    stage->SetSettingJson(change("idShiftInterval", QStringLiteral("soon")), true, true);
    QVERIFY(stage.probe.timer()->isActive());
}

void TestSettings::theSameIntervalWhilePlayingLeavesTheTimerAlone()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage->playImage(true);
    stage.log.clear();
    // An interval of its own, which the timer would lose if it were started again.
    stage.probe.timer()->setInterval(999);
    QVERIFY(stage->SetSettingJson(change("idShiftInterval", QStringLiteral("200")), true, true));
    QCOMPARE(stage.probe.timer()->interval(), 999);
    QVERIFY(stage.probe.timer()->isActive());
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestSettings::aNewIntervalWhilePlayingGoesOnWithIt()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage->playImage(true);
    stage.log.clear();
    QVERIFY(stage->SetSettingJson(change("idShiftInterval", QStringLiteral("75")), true, true));
    QCOMPARE(stage.probe.shiftInterval(), 75);
    QCOMPARE(stage.probe.timer()->interval(), 75);
    QVERIFY(stage.probe.timer()->isActive());
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestSettings::aNewIntervalStartsTheTimerOfAStoppedObject()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage->SetSettingJson(change("idShiftInterval", QStringLiteral("75")), true, true);
    QVERIFY(stage.probe.timer()->isActive());
    QVERIFY(!stage.probe.isRunning());
}

void TestSettings::settingsAreTakenInAFixedOrder()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    // Playback starts with the old interval, and continues with the new one.
    const QString json = QStringLiteral(R"({"settings":[{"id":"idLoopCount","value":"0"},)"
                                        R"({"id":"idShiftInterval","value":"0"},)"
                                        R"({"id":"idImagePlay","value":"1"}]})");
    QVERIFY(stage->SetSettingJson(json, true, true));
    QVERIFY(stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.timer()->interval(), 200);
    QCOMPARE(stage.probe.shiftInterval(), 0);
    QCOMPARE(stage.probe.loopCount(), 0);
}

void TestSettings::unknownSettingsArePassedOver()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    QVERIFY(stage->SetSettingJson(change("idloopcount", QStringLiteral("0")), true, true));
    QCOMPARE(stage.probe.loopCount(), -1);
    QVERIFY(stage->SetSettingJson(QStringLiteral(R"({"settings":[]})"), true, true));
}

void TestSettings::anObjectReleasedByItsFirstChangeDoesNotCrash()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    const auto release = connect(Framework::instance().notifier(), &Notifier::propertyChanged,
                                 [&stage] { stage.release(); });
    const QString json = QStringLiteral(R"({"settings":[{"id":"idImagePlay","value":"1"},)"
                                        R"({"id":"idShiftInterval","value":"40"}]})");
    QVERIFY(stage->SetSettingJson(json, true, true));
    disconnect(release);
    QVERIFY(stage.isReleased());
}

QTEST_MAIN(TestSettings)
#include "tst_settings.moc"
