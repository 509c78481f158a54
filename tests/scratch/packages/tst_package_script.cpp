#include "flipbook/scratch/playscript.h"

#include <QtCore/QJsonArray>
#include <QtTest/QTest>

using namespace Scratch;

class TestPackageScript : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutCostumesThereIsNoScript() { QVERIFY(playScript({}, {100, -1}).isEmpty()); }

    void playingForEverWaitsAndStepsInAnEndlessLoop()
    {
        const QJsonObject blocks = playScript(costumes(3), {120, -1});
        QCOMPARE(blocks.keys().join(QLatin1Char(' ')),
                 QStringLiteral("costume first flag loop show step wait"));
        QCOMPARE(chain(blocks),
                 QStringList({QStringLiteral("event_whenflagclicked"),
                              QStringLiteral("looks_switchcostumeto"),
                              QStringLiteral("control_wait"), QStringLiteral("control_forever")}));
        QCOMPARE(input(blocks, "loop", "SUBSTACK"), QJsonValue(QStringLiteral("step")));
        const QJsonValue interval(QJsonArray{5, QStringLiteral("0.12")});
        QCOMPARE(input(blocks, "first", "DURATION"), interval);
        QCOMPARE(input(blocks, "wait", "DURATION"), interval);
        QCOMPARE(block(blocks, "step").value(QLatin1String("opcode")),
                 QJsonValue(QStringLiteral("looks_nextcostume")));
        QCOMPARE(block(blocks, "step").value(QLatin1String("next")),
                 QJsonValue(QStringLiteral("wait")));
    }

    void theFlagShowsTheFirstCostume()
    {
        const QJsonObject blocks = playScript(costumes(2), {100, -1});
        QCOMPARE(block(blocks, "costume").value(QLatin1String("fields")),
                 QJsonValue(QJsonObject{
                     {QStringLiteral("COSTUME"), QJsonArray{QStringLiteral("c0"), QJsonValue()}}}));
    }

    void countedLoopsRestOnTheLastCostume_data()
    {
        QTest::addColumn<int>("costumeCount");
        QTest::addColumn<int>("loopCount");
        QTest::addColumn<QString>("steps");
        QTest::newRow("three costumes once") << 3 << 0 << QStringLiteral("2");
        QTest::newRow("three costumes twice") << 3 << 1 << QStringLiteral("5");
        QTest::newRow("a count that is none") << 3 << -2 << QStringLiteral("2");
        QTest::newRow("seven costumes four times") << 7 << 3 << QStringLiteral("27");
    }

    void countedLoopsRestOnTheLastCostume()
    {
        QFETCH(int, costumeCount);
        QFETCH(int, loopCount);
        QFETCH(QString, steps);
        const QJsonObject blocks = playScript(costumes(costumeCount), {100, loopCount});
        QCOMPARE(block(blocks, "loop").value(QLatin1String("opcode")),
                 QJsonValue(QStringLiteral("control_repeat")));
        QCOMPARE(input(blocks, "loop", "TIMES"), QJsonValue(QJsonArray{6, steps}));
    }

    void whatCannotMoveIsShownAndStandsStill_data()
    {
        QTest::addColumn<int>("costumeCount");
        QTest::addColumn<int>("intervalMs");
        QTest::newRow("a single costume") << 1 << 100;
        QTest::newRow("no interval") << 3 << 0;
        QTest::newRow("a negative interval") << 3 << -5;
    }

    void whatCannotMoveIsShownAndStandsStill()
    {
        QFETCH(int, costumeCount);
        QFETCH(int, intervalMs);
        const QJsonObject blocks = playScript(costumes(costumeCount), {intervalMs, -1});
        QCOMPARE(chain(blocks), QStringList({QStringLiteral("event_whenflagclicked"),
                                             QStringLiteral("looks_switchcostumeto")}));
    }

private:
    static QVector<Costume> costumes(int count)
    {
        QVector<Costume> list(count);
        for (int i = 0; i < count; ++i)
            list[i].name = QStringLiteral("c%1").arg(i);
        return list;
    }

    static QJsonObject block(const QJsonObject &blocks, const char *id)
    {
        return blocks.value(QLatin1String(id)).toObject();
    }

    /// What fills an input, without the code for how it does.
    static QJsonValue input(const QJsonObject &blocks, const char *id, const char *name)
    {
        const QJsonObject inputs = block(blocks, id).value(QLatin1String("inputs")).toObject();
        return inputs.value(QLatin1String(name)).toArray().at(1);
    }

    /// The opcodes from the flag downward.
    static QStringList chain(const QJsonObject &blocks)
    {
        QStringList opcodes;
        QString id = QStringLiteral("flag");
        while (!id.isEmpty()) {
            const QJsonObject json = blocks.value(id).toObject();
            opcodes.append(json.value(QLatin1String("opcode")).toString());
            id = json.value(QLatin1String("next")).toString();
        }
        return opcodes;
    }
};

QTEST_APPLESS_MAIN(TestPackageScript)
#include "tst_package_script.moc"
