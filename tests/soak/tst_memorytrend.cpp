#include "tests/soak/memorytrend.h"

#include <QtTest/QTest>

/// The slope that the long run judges.
class TestMemoryTrend : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flatMemoryHasNoSlope();
    void memoryThatGrowsHasItsSlopePerHour();
    void pointsBesideTheLineCountByTheirSquares();
    void oneMomentHasNoSlope();
    void residentMemoryIsThatOfAProgram();
};

void TestMemoryTrend::flatMemoryHasNoSlope()
{
    MemoryTrend trend;
    for (const double seconds : {0.0, 10.0, 20.0})
        trend.add(seconds, 50);
    QCOMPARE(trend.slope(), 0.0);
    QCOMPARE(trend.count(), 3);
}

void TestMemoryTrend::memoryThatGrowsHasItsSlopePerHour()
{
    MemoryTrend trend;
    trend.add(100, 50);
    trend.add(1000, 50.5);
    trend.add(1900, 51);
    QCOMPARE(trend.slope(), 2.0);
    QCOMPARE(trend.first(), 50.0);
    QCOMPARE(trend.last(), 51.0);
}

void TestMemoryTrend::pointsBesideTheLineCountByTheirSquares()
{
    // Means 1 and 1; products (-1)(-1) + 0 * 2 + 1 * (-1) = 0.
    MemoryTrend trend;
    trend.add(0, 0);
    trend.add(1, 3);
    trend.add(2, 0);
    QCOMPARE(trend.slope(), 0.0);
    // Means 1.5 and 1.75; products 2.625 + 0.375 - 0.375 + 1.875 = 4.5; squares 5.
    trend.add(3, 4);
    QCOMPARE(trend.slope(), 0.9 * 3600);
}

void TestMemoryTrend::oneMomentHasNoSlope()
{
    MemoryTrend trend;
    QCOMPARE(trend.slope(), 0.0);
    trend.add(5, 1);
    trend.add(5, 2);
    QCOMPARE(trend.slope(), 0.0);
}

void TestMemoryTrend::residentMemoryIsThatOfAProgram()
{
    const double before = MemoryTrend::residentMb();
    QVERIFY(before > 1);
    const QByteArray filled(32 << 20, 'x');
    QVERIFY(MemoryTrend::residentMb() - before > 30);
    QCOMPARE(filled.at(1), 'x');
}

QTEST_GUILESS_MAIN(TestMemoryTrend)
#include "tst_memorytrend.moc"
