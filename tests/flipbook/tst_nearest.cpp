#include "flipbook/cli/nearest.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

#include <algorithm>

/// Which word a user meant who wrote another.
class TestNearest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void distancesOfKnownWords_data();
    void distancesOfKnownWords();
    void distancesAreThoseOfTheSlowWay();
    void theNearestWordIsProposed_data();
    void theNearestWordIsProposed();
};

namespace
{

/// The same by trying everything: the first letters are equal, or one is dropped, added, replaced,
/// or the first two are exchanged.
int slowDistance(const QString &one, const QString &two)
{
    if (one.isEmpty() || two.isEmpty())
        return one.size() + two.size();
    int least = slowDistance(one.mid(1), two.mid(1)) + (one.at(0) == two.at(0) ? 0 : 1);
    least = std::min(least, slowDistance(one.mid(1), two) + 1);
    least = std::min(least, slowDistance(one, two.mid(1)) + 1);
    if (one.size() > 1 && two.size() > 1 && one.at(0) == two.at(1) && one.at(1) == two.at(0))
        least = std::min(least, slowDistance(one.mid(2), two.mid(2)) + 1);
    return least;
}

QString randomWord(QRandomGenerator &random)
{
    QString word;
    const int length = random.bounded(7);
    for (int i = 0; i < length; ++i)
        word += QLatin1Char(char('a' + random.bounded(3)));
    return word;
}

} // namespace

void TestNearest::distancesOfKnownWords_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("two");
    QTest::addColumn<int>("distance");
    const auto row = [](const char *one, const char *two, int distance) {
        QTest::addRow("'%s' to '%s'", one, two)
            << QString::fromLatin1(one) << QString::fromLatin1(two) << distance;
    };
    row("", "", 0);
    row("sheet", "", 5);
    row("", "info", 4);
    row("sheet", "sheet", 0);
    row("shet", "sheet", 1);
    row("sheett", "sheet", 1);
    row("shaet", "sheet", 1);
    row("hseet", "sheet", 1);
    row("ca", "abc", 3);
    row("kitten", "sitting", 3);
}

void TestNearest::distancesOfKnownWords()
{
    QFETCH(QString, one);
    QFETCH(QString, two);
    QTEST(editDistance(one, two), "distance");
}

void TestNearest::distancesAreThoseOfTheSlowWay()
{
    QRandomGenerator random(7);
    for (int i = 0; i < 1000; ++i) {
        const QString one = randomWord(random);
        const QString two = randomWord(random);
        QVERIFY2(editDistance(one, two) == slowDistance(one, two),
                 qPrintable(one + QLatin1Char('/') + two));
    }
}

void TestNearest::theNearestWordIsProposed_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("meant");
    const auto row = [](const char *word, const char *meant) {
        QTest::newRow(word) << QString::fromUtf8(word) << QString::fromUtf8(meant);
    };
    row("shet", "sheet");
    row("SHEET", "sheet");
    row("framse", "frames");
    row("plai", "play");
    // Two of five letters are too many.
    row("shxxt", "");
    row("rec", "record");
    // Two commands begin so.
    row("re", "");
    row("", "");
    row("xyzzy", "");
    row("söл日", "");
    // The only one that begins so.
    row("w", "web");
}

void TestNearest::theNearestWordIsProposed()
{
    QFETCH(QString, word);
    const QStringList known = {QStringLiteral("sheet"),  QStringLiteral("play"),
                               QStringLiteral("frames"), QStringLiteral("render"),
                               QStringLiteral("record"), QStringLiteral("web")};
    QTEST(nearest(word, known), "meant");
    QCOMPARE(nearest(QString(100000, QLatin1Char('a')), known), QString());
}

QTEST_APPLESS_MAIN(TestNearest)
#include "tst_nearest.moc"
