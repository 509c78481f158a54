#include "framework/framework.h"

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

class TestFrameworkTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void idsHaveTextsInBothLanguages_data();
    void idsHaveTextsInBothLanguages();
    void otherLanguagesFallBackToEnglish();
    void anUnknownIdGivesTheFallback();
    void messagesBecomeSignals();
};

void TestFrameworkTexts::idsHaveTextsInBothLanguages_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("chinese");
    QTest::newRow("play") << QStringLiteral("IDS_MULTIPAGE_PLAY") << QStringLiteral("Play")
                          << QStringLiteral("播放");
    QTest::newRow("interval") << QStringLiteral("IDS_ANIMATEDIMAGE_SHIFT_INTERVAL")
                              << QStringLiteral("Frame interval (ms)")
                              << QStringLiteral("帧间隔（毫秒）");
    QTest::newRow("loop") << QStringLiteral("IDS_ANIMATEDIMAGE_IF_LOOP")
                          << QStringLiteral("Loop forever") << QStringLiteral("循环播放");
    QTest::newRow("replace") << QStringLiteral("IDS_KT_PORTRAIT_REPLACE")
                             << QStringLiteral("Replace Portrait") << QStringLiteral("替换造型");
    QTest::newRow("type") << QStringLiteral("IDS_KT_UNDOREDO_NAME_ANNIMATED_TYPE")
                          << QStringLiteral("Change Animation Type")
                          << QStringLiteral("更改动画类型");
}

void TestFrameworkTexts::idsHaveTextsInBothLanguages()
{
    QFETCH(QString, id);
    QFETCH(QString, english);
    QFETCH(QString, chinese);
    Framework::instance().setLanguage(QLocale(QLocale::English, QLocale::UnitedKingdom));
    QCOMPARE(GetFramework()->translated(id, QStringLiteral("fallback")), english);
    Framework::instance().setLanguage(QLocale(QLocale::Chinese, QLocale::China));
    QCOMPARE(GetFramework()->translated(id, QStringLiteral("fallback")), chinese);
    const ILocalize &texts = Framework::instance();
    QCOMPARE(texts.translated(id, QStringLiteral("fallback")), chinese);
}

void TestFrameworkTexts::otherLanguagesFallBackToEnglish()
{
    for (const QLocale &locale :
         {QLocale(QLocale::German), QLocale(QLocale::Chinese, QLocale::Taiwan), QLocale::c()}) {
        Framework::instance().setLanguage(QLocale(QLocale::Chinese, QLocale::China));
        Framework::instance().setLanguage(locale);
        QCOMPARE(GetFramework()->translated(QStringLiteral("IDS_MULTIPAGE_PLAY"), QString()),
                 QStringLiteral("Play"));
    }
}

void TestFrameworkTexts::anUnknownIdGivesTheFallback()
{
    for (const char *id : {"IDS_NOBODY_KNOWS", "", "Play"})
        QCOMPARE(GetFramework()->translated(QString::fromLatin1(id), QStringLiteral("as it is")),
                 QStringLiteral("as it is"));
}

void TestFrameworkTexts::messagesBecomeSignals()
{
    Notifier *notifier = Framework::instance().notifier();
    QCOMPARE(static_cast<INotifier *>(notifier), GetFramework()->notifier());
    QSignalSpy posted(notifier, &Notifier::posted);
    QSignalSpy notified(notifier, &Notifier::notified);
    QSignalSpy changed(notifier, &Notifier::propertyChanged);
    GetFramework()->notifier()->post(100, 7, QStringLiteral("text"), -1);
    GetFramework()->notifier()->notify(309, 1, 2, -1);
    CBaseObject object(1, true, nullptr, nullptr);
    object.notifyObjPropertyChanged(1002, QString());
    QCOMPARE(posted, (QList<QVariantList>{{100, 7, QStringLiteral("text"), -1}}));
    QCOMPARE(notified, (QList<QVariantList>{{309, 1, 2, -1}}));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed[0][0].value<CBaseObject *>(), &object);
    QCOMPARE(changed[0][1].toInt(), 1002);
    QCOMPARE(changed[0][2].toString(), QString());
}

QTEST_MAIN(TestFrameworkTexts)
#include "tst_framework_texts.moc"
