#include "tests/animatedimage/walks/walk.h"

#include <QtTest/QTest>

namespace
{

constexpr quint32 walksOfARow = 1000;

quint32 numberFrom(const char *variable, quint32 otherwise)
{
    bool isNumber = false;
    const quint32 number = qEnvironmentVariable(variable).toUInt(&isNumber);
    return isNumber ? number : otherwise;
}

} // namespace

/// Random walks, each with its own seed, compared with a model in plain values. WALK_SEED is the
/// first seed and WALK_COUNT the number of walks.
class TestWalks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyStepDoesWhatTheModelSays_data();
    void everyStepDoesWhatTheModelSays();

private:
    Actor m_actor;
};

void TestWalks::everyStepDoesWhatTheModelSays_data()
{
    QTest::addColumn<quint32>("first");
    QTest::addColumn<quint32>("count");
    const quint32 begin = numberFrom("WALK_SEED", 1);
    const quint32 end = begin + numberFrom("WALK_COUNT", DEFAULT_WALK_COUNT);
    for (quint32 first = begin; first < end; first += walksOfARow) {
        const quint32 count = qMin(walksOfARow, end - first);
        QTest::addRow("seeds %u to %u", first, first + count - 1) << first << count;
    }
}

void TestWalks::everyStepDoesWhatTheModelSays()
{
    QFETCH(quint32, first);
    QFETCH(quint32, count);
    for (quint32 seed = first; seed < first + count; ++seed) {
        const Walks::Failure failure = Walks::walk(m_actor, seed);
        if (failure.isEmpty())
            continue;
        const Walks::Failure fewer = Walks::shortened(m_actor, failure);
        fprintf(stderr, "The walk of seed %u:\n%s\nWith fewer steps:\n%s\n", seed,
                qPrintable(failure.words()), qPrintable(fewer.words()));
        QFAIL(qPrintable(QStringLiteral("repeat it with WALK_SEED=%1 WALK_COUNT=1").arg(seed)));
    }
}

QTEST_MAIN(TestWalks)
#include "tst_walks.moc"
