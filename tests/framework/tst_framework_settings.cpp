#include "framework/framework.h"
#include "host/baseobject.h"

#include <QtCore/QJsonDocument>
#include <QtTest/QTest>

class TestFrameworkSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void aSwitchIsDescribed();
    void anInputIsDescribed();
    void anEmptyTextIsLeftOut();
    void labelsFollowTheLanguage();
    void answersAreRead();
    void numbersBecomeDecimalTexts_data();
    void numbersBecomeDecimalTexts();
    void anotherTextIsNoAnswer_data();
    void anotherTextIsNoAnswer();
};

void TestFrameworkSettings::initTestCase()
{
    Framework::instance().setLanguage(QLocale(QLocale::English));
}

void TestFrameworkSettings::aSwitchIsDescribed()
{
    CBaseObject object(1, true, nullptr, nullptr);
    QString id = QStringLiteral("idImagePlay");
    QString nameId = QStringLiteral("IDS_MULTIPAGE_PLAY");
    const QJsonObject expected{{QStringLiteral("id"), QStringLiteral("idImagePlay")},
                               {QStringLiteral("nameId"), QStringLiteral("IDS_MULTIPAGE_PLAY")},
                               {QStringLiteral("label"), QStringLiteral("Play")},
                               {QStringLiteral("kind"), QStringLiteral("switch")},
                               {QStringLiteral("value"), true}};
    QCOMPARE(object.GetSettingJsonSwitch(id, nameId, true), expected);
}

void TestFrameworkSettings::anInputIsDescribed()
{
    CBaseObject object(1, true, nullptr, nullptr);
    QString id = QStringLiteral("idSpeed");
    QString nameId = QStringLiteral("IDS_UNKNOWN");
    QString value = QStringLiteral("-5");
    QString type = QStringLiteral("int");
    QString minimum = QStringLiteral("-10");
    QString maximum = QStringLiteral("10");
    QString unit = QStringLiteral("m/s");
    const QByteArray expected =
        "{\"id\":\"idSpeed\",\"kind\":\"input\",\"label\":\"IDS_UNKNOWN\",\"maximum\":\"10\","
        "\"minimum\":\"-10\",\"nameId\":\"IDS_UNKNOWN\",\"type\":\"int\",\"unit\":\"m/s\","
        "\"value\":\"-5\"}";
    const QJsonDocument json(
        object.GetSettingJsonInput(id, nameId, value, type, minimum, maximum, unit));
    QCOMPARE(json.toJson(QJsonDocument::Compact), expected);
}

void TestFrameworkSettings::anEmptyTextIsLeftOut()
{
    CBaseObject object(1, true, nullptr, nullptr);
    QString id = QStringLiteral("idShiftInterval");
    QString nameId = QStringLiteral("IDS_ANIMATEDIMAGE_SHIFT_INTERVAL");
    QString value = QStringLiteral("200");
    QString type = QStringLiteral("int");
    QString minimum = QStringLiteral("0");
    QString none;
    const QJsonObject json =
        object.GetSettingJsonInput(id, nameId, value, type, minimum, none, none);
    QCOMPARE(json.keys(),
             (QStringList{QStringLiteral("id"), QStringLiteral("kind"), QStringLiteral("label"),
                          QStringLiteral("minimum"), QStringLiteral("nameId"),
                          QStringLiteral("type"), QStringLiteral("value")}));
    QCOMPARE(json.value(QStringLiteral("minimum")), QJsonValue(QStringLiteral("0")));
}

void TestFrameworkSettings::labelsFollowTheLanguage()
{
    CBaseObject object(1, true, nullptr, nullptr);
    QString id = QStringLiteral("idImagePlay");
    QString nameId = QStringLiteral("IDS_MULTIPAGE_PLAY");
    Framework::instance().setLanguage(QLocale(QLocale::Chinese, QLocale::China));
    const QJsonObject json = object.GetSettingJsonSwitch(id, nameId, true);
    Framework::instance().setLanguage(QLocale(QLocale::English));
    QCOMPARE(json.value(QStringLiteral("label")).toString(), QStringLiteral("播放"));
}

void TestFrameworkSettings::answersAreRead()
{
    CBaseObject object(1, true, nullptr, nullptr);
    QMap<QString, QString> values{{QStringLiteral("old"), QStringLiteral("1")}};
    QVERIFY(object.ParseSettingJson(
        QStringLiteral("{\"settings\":[{\"id\":\"a\",\"value\":\"text\"},"
                       "{\"id\":\"b\",\"value\":true,\"more\":null},"
                       "{\"id\":\"c\",\"value\":false},{\"id\":\"d\",\"value\":300},"
                       "{\"id\":\"a\",\"value\":\"last\"}],\"more\":1}"),
        values));
    const QMap<QString, QString> expected{{QStringLiteral("a"), QStringLiteral("last")},
                                          {QStringLiteral("b"), QStringLiteral("true")},
                                          {QStringLiteral("c"), QStringLiteral("false")},
                                          {QStringLiteral("d"), QStringLiteral("300")}};
    QCOMPARE(values, expected);
    QVERIFY(object.ParseSettingJson(QStringLiteral("{\"settings\":[]}"), values));
    QVERIFY(values.isEmpty());
}

void TestFrameworkSettings::numbersBecomeDecimalTexts_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << QStringLiteral("0") << QStringLiteral("0");
    QTest::newRow("negative") << QStringLiteral("-40") << QStringLiteral("-40");
    QTest::newRow("whole") << QStringLiteral("250.0") << QStringLiteral("250");
    QTest::newRow("fraction") << QStringLiteral("0.1") << QStringLiteral("0.1");
    QTest::newRow("exponent") << QStringLiteral("1e6") << QStringLiteral("1000000");
    QTest::newRow("small") << QStringLiteral("1e-7") << QStringLiteral("0.0000001");
    QTest::newRow("large") << QStringLiteral("1e21") << QStringLiteral("1000000000000000000000");
}

void TestFrameworkSettings::numbersBecomeDecimalTexts()
{
    QFETCH(QString, number);
    QFETCH(QString, text);
    CBaseObject object(1, true, nullptr, nullptr);
    QMap<QString, QString> values;
    QVERIFY(object.ParseSettingJson(
        QStringLiteral("{\"settings\":[{\"id\":\"a\",\"value\":%1}]}").arg(number), values));
    QCOMPARE(values.value(QStringLiteral("a")), text);
}

void TestFrameworkSettings::anotherTextIsNoAnswer_data()
{
    QTest::addColumn<QString>("json");
    for (const char *json :
         {"", "nonsense", "[]", "{}", "{\"settings\":", "{\"settings\":{}}", "{\"settings\":null}",
          "{\"settings\":[1]}", "{\"settings\":[{}]}", "{\"settings\":[{\"value\":\"1\"}]}",
          "{\"settings\":[{\"id\":1,\"value\":\"1\"}]}", "{\"settings\":[{\"id\":\"a\"}]}",
          "{\"settings\":[{\"id\":\"a\",\"value\":null}]}",
          "{\"settings\":[{\"id\":\"a\",\"value\":[]}]}",
          "{\"settings\":[{\"id\":\"a\",\"value\":1},{\"value\":2}]}",
          "{\"Settings\":[{\"id\":\"a\",\"value\":1}]}"})
        QTest::newRow(*json ? json : "nothing") << QString::fromLatin1(json);
}

void TestFrameworkSettings::anotherTextIsNoAnswer()
{
    QFETCH(QString, json);
    CBaseObject object(1, true, nullptr, nullptr);
    const QMap<QString, QString> before{{QStringLiteral("old"), QStringLiteral("1")}};
    QMap<QString, QString> values = before;
    QVERIFY(!object.ParseSettingJson(json, values));
    QCOMPARE(values, before);
}

QTEST_MAIN(TestFrameworkSettings)
#include "tst_framework_settings.moc"
