#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/import/gifdescriptors.h"

#include <QtCore/QtNumeric>
#include <QtTest/QTest>

#include <limits>

namespace
{

qint64 neededFor(const GifDescriptors &gif, qint64 frames)
{
    return MemoryBudget::neededForFilm(gif.screen, frames, gif.workingPictures());
}

} // namespace

class TestMemoryBudget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void amountsAreReadStrictly_data();
    void amountsAreReadStrictly();
    void amountsAreWrittenForPeople_data();
    void amountsAreWrittenForPeople();
    void aFilmNeedsItsFramesAndTheDecodersOwn();
    void needsSaturate();
    void aTextOfJsonNeedsMoreThanItsBytes();
    void aTileIsFourPictures();
    void whatIsTakenLeavesLess();
};

void TestMemoryBudget::amountsAreReadStrictly_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("bytes"); // 0: refused
    QTest::newRow("bytes") << QStringLiteral("100") << qint64(100);
    QTest::newRow("kibibytes") << QStringLiteral("3k") << qint64(3072);
    QTest::newRow("mebibytes") << QStringLiteral("64M") << qint64(67108864);
    QTest::newRow("gibibytes") << QStringLiteral("2G") << qint64(2147483648);
    QTest::newRow("the most") << QStringLiteral("8589934591G") << qint64(9223372035781033984);
    QTest::newRow("too much") << QStringLiteral("8589934592G") << qint64(0);
    for (const char *wrong : {"", "0", "0M", "-1", "+1", "1.5G", "M", "1MM", "1T", " 1", "1 M",
                              "0x10", "9223372036854775808"})
        QTest::newRow(qPrintable(QStringLiteral("'%1'").arg(QLatin1String(wrong))))
            << QString::fromLatin1(wrong) << qint64(0);
}

void TestMemoryBudget::amountsAreReadStrictly()
{
    QFETCH(QString, text);
    QFETCH(qint64, bytes);
    QCOMPARE(MemoryBudget::parse(text).value_or(0), bytes);
}

void TestMemoryBudget::amountsAreWrittenForPeople_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << qint64(0) << QStringLiteral("0 bytes");
    QTest::newRow("one") << qint64(1) << QStringLiteral("1 byte");
    QTest::newRow("below a unit") << qint64(1023) << QStringLiteral("1023 bytes");
    QTest::newRow("a unit") << qint64(1024) << QStringLiteral("1.0 KiB");
    QTest::newRow("almost the next unit") << qint64(1048524) << QStringLiteral("1023.9 KiB");
    QTest::newRow("with a half") << qint64(1610612736) << QStringLiteral("1.5 GiB");
}

void TestMemoryBudget::amountsAreWrittenForPeople()
{
    QFETCH(qint64, bytes);
    QFETCH(QString, text);
    QCOMPARE(MemoryBudget::text(bytes), text);
}

void TestMemoryBudget::aFilmNeedsItsFramesAndTheDecodersOwn()
{
    GifDescriptors gif;
    gif.screen = QSize(100, 50); // 20,000 bytes a picture
    QCOMPARE(neededFor(gif, 10), 11 * 20000 + 10 * 1024);
    gif.hasTransparency = true;
    QCOMPARE(neededFor(gif, 10), 12 * 20000 + 10 * 1024);
    gif.restoresPrevious = true;
    QCOMPARE(neededFor(gif, 10), 14 * 20000 + 10 * 1024);
}

void TestMemoryBudget::needsSaturate()
{
    GifDescriptors gif;
    gif.screen = QSize(65535, 65535);
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    QCOMPARE(neededFor(gif, qint64(1) << 40), most);
    QCOMPARE(MemoryBudget::neededForFilm(QSize(0x61616161, 0x61616161), 1, 0), most);
    QCOMPARE(MemoryBudget::keptForTile(QSizeF(1e12, 1e12)), most);
    QCOMPARE(MemoryBudget::keptForTile(QSizeF(qQNaN(), 1)), most);
    MemoryAccount account(100);
    account.take(most);
    account.take(most);
    QVERIFY(!account.hasRoomFor(0));
}

void TestMemoryBudget::aTextOfJsonNeedsMoreThanItsBytes()
{
    // Five bytes, two of them a list, with one comma between its values.
    QCOMPARE(MemoryBudget::neededForJson("[0,0]"), qint64(5 * 6 + 128 + 64));
    QCOMPARE(MemoryBudget::neededForJson(R"({"a":[]})"), qint64(8 * 6 + 2 * 128 + 64));
    QCOMPARE(MemoryBudget::leastForJson(100), qint64(600));
}

void TestMemoryBudget::aTileIsFourPictures()
{
    QCOMPARE(MemoryBudget::keptForTile(QSizeF(10, 20)), qint64(4 * 10 * 20 * 4));
    QCOMPARE(MemoryBudget::forTileAtWork(QSizeF(10, 20)), qint64(6 * 10 * 20 * 4));
}

void TestMemoryBudget::whatIsTakenLeavesLess()
{
    MemoryAccount account(qint64(1) << 20);
    QCOMPARE(account.refusal(qint64(1) << 20, QStringLiteral("all of it")), QString());
    account.take(qint64(256) << 10);
    QCOMPARE(account.room(), qint64(768) << 10);
    QCOMPARE(account.refusal(qint64(1) << 20, QStringLiteral("all of it")),
             QStringLiteral("all of it would need 1.0 MiB of memory in addition to the 256.0 KiB "
                            "already in use, more than the 1.0 MiB that --max-memory allows"));
    account.giveBack(qint64(256) << 10);
    QVERIFY(account.hasRoomFor(qint64(1) << 20));
}

QTEST_GUILESS_MAIN(TestMemoryBudget)
#include "tst_memorybudget.moc"
