#include "flipbook/scratch/names.h"

#include <QtTest/QTest>

using namespace Scratch;

class TestPackageNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ordinaryNamesStayAsTheyAre_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("letters") << QStringLiteral("walk_1");
        QTest::newRow("quotes") << QStringLiteral("\"it's\"");
        QTest::newRow("emoji") << QString::fromUtf8("\xF0\x9F\x90\xB1 cat");
        QTest::newRow("newline") << QStringLiteral("two\nlines");
        QTest::newRow("control characters") << QStringLiteral("a\tb\x01");
        QTest::newRow("percent signs") << QStringLiteral("100%1 %2");
    }

    void ordinaryNamesStayAsTheyAre()
    {
        QFETCH(QString, name);
        QSet<QString> taken;
        QCOMPARE(Names::costume(name, taken), name);
        QCOMPARE(taken, QSet<QString>{name});
    }

    void backspacesAndHalfCharactersAreTakenOut()
    {
        QCOMPARE(Names::cleaned(QStringLiteral("a\bb")), QStringLiteral("ab"));
        const QString halves = QString(QChar(0xD83D)) + QLatin1Char('x') + QChar(0xDC31);
        QCOMPARE(Names::cleaned(halves), QStringLiteral("x"));
    }

    void emptyNamesAreFilledIn()
    {
        QSet<QString> taken;
        QCOMPARE(Names::costume(QString(), taken), QStringLiteral("costume"));
        QCOMPARE(Names::costume(QStringLiteral("\b"), taken), QStringLiteral("costume (2)"));
        taken.clear();
        QCOMPARE(Names::sprite(QString(), taken), QStringLiteral("sprite"));
    }

    void repeatedNamesAreNumberedPastThoseThatExist()
    {
        QSet<QString> taken;
        QCOMPARE(Names::costume(QStringLiteral("cat"), taken), QStringLiteral("cat"));
        QCOMPARE(Names::costume(QStringLiteral("cat (2)"), taken), QStringLiteral("cat (2)"));
        QCOMPARE(Names::costume(QStringLiteral("cat"), taken), QStringLiteral("cat (3)"));
    }

    void aNameWithPlaceMarksIsNumberedWhole()
    {
        QSet<QString> taken{QStringLiteral("%2")};
        QCOMPARE(Names::costume(QStringLiteral("%2"), taken), QStringLiteral("%2 (2)"));
    }

    void namesOfTheStageAreNotGivenToSprites()
    {
        QSet<QString> taken;
        QCOMPARE(Names::sprite(QStringLiteral("Stage"), taken), QStringLiteral("Stage sprite"));
        QCOMPARE(Names::sprite(QStringLiteral("stage"), taken), QStringLiteral("stage sprite"));
        QCOMPARE(Names::sprite(QStringLiteral("_stage_"), taken), QStringLiteral("_stage_ sprite"));
        QCOMPARE(Names::sprite(QStringLiteral("Backstage"), taken), QStringLiteral("Backstage"));
    }
};

QTEST_APPLESS_MAIN(TestPackageNames)
#include "tst_package_names.moc"
