#include "flipbook/scratch/playscript.h"

#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtTest/QTest>

using namespace Scratch;

class TestPackageScript : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutCostumesThereIsNoScript()
    {
        const PlayScript script = playScript(sprite(0, {100, -1, {}}));
        QVERIFY(script.blocks.isEmpty());
        QVERIFY(script.variables.isEmpty());
    }

    void playingForEverShowsTheCostumeOfTheTime()
    {
        const PlayScript script = playScript(sprite(3, {120, -1, {}}));
        QCOMPARE(text(script), QStringLiteral("when flag clicked\n"
                                              "switch costume to c0\n"
                                              "set changes to 0\n"
                                              "set start to ((days * 86400) - 0.016)\n"
                                              "forever\n"
                                              "  set changes to floor((((days * 86400) - start) / "
                                              "0.12))\n"
                                              "  switch costume to (changes + 1)\n"));
        QCOMPARE(script.variables,
                 (QJsonObject{
                     {QStringLiteral("changes of film"), QJsonArray{QStringLiteral("changes"), 0}},
                     {QStringLiteral("start of film"), QJsonArray{QStringLiteral("start"), 0}}}));
        QVERIFY(script.lists.isEmpty());
    }

    void countedLoopsRestOnTheLastCostume_data()
    {
        QTest::addColumn<int>("costumeCount");
        QTest::addColumn<int>("loopCount");
        QTest::addColumn<QString>("last");
        QTest::newRow("three costumes once") << 3 << 0 << QStringLiteral("2");
        QTest::newRow("three costumes twice") << 3 << 1 << QStringLiteral("5");
        QTest::newRow("a count that is none") << 3 << -2 << QStringLiteral("2");
        QTest::newRow("seven costumes four times") << 7 << 3 << QStringLiteral("27");
        QTest::newRow("as often as a count can say")
            << 2 << 2147483647 << QStringLiteral("4294967295");
    }

    void countedLoopsRestOnTheLastCostume()
    {
        QFETCH(int, costumeCount);
        QFETCH(int, loopCount);
        QFETCH(QString, last);
        const QString expected =
            QStringLiteral("until (changes = %1)\n"
                           "  set changes to floor((((days * 86400) - start) / 0.1))\n"
                           "  if (changes > %1)\n"
                           "    set changes to %1\n"
                           "  switch costume to (changes + 1)\n")
                .arg(last);
        const QString found = text(playScript(sprite(costumeCount, {100, loopCount, {}})));
        QVERIFY2(found.endsWith(expected), qPrintable(found));
    }

    void differentTimesAreTakenFromAList()
    {
        const PlayScript script = playScript(sprite(3, {100, -1, {100, 20, 1500}}));
        QCOMPARE(text(script),
                 QStringLiteral("when flag clicked\n"
                                "switch costume to c0\n"
                                "set changes to 0\n"
                                "set next change to ((days * 86400) - 0.016)\n"
                                "change next change by seconds[((changes mod length) + 1)]\n"
                                "forever\n"
                                "  catch up\n"
                                "  switch costume to (changes + 1)\n"
                                "define catch up\n"
                                "until (next change > (days * 86400))\n"
                                "  change changes by 1\n"
                                "  change next change by seconds[((changes mod length) + 1)]\n"));
        QCOMPARE(script.lists,
                 (QJsonObject{{QStringLiteral("seconds of film"),
                               QJsonArray{QStringLiteral("seconds"),
                                          QJsonArray{QStringLiteral("0.1"), QStringLiteral("0.02"),
                                                     QStringLiteral("1.5")}}}}));
    }

    void differentTimesEndOnTheLastCostume()
    {
        const QString found = text(playScript(sprite(3, {100, 1, {100, 20, 1500}})));
        QVERIFY2(found.contains(QStringLiteral("until (changes = 5)\n  catch up\n")),
                 qPrintable(found));
        QVERIFY2(found.contains(QStringLiteral(
                     "until ((next change > (days * 86400)) or (changes = 5))\n  change changes")),
                 qPrintable(found));
    }

    void aTimeOfNothingIsAMillisecond()
    {
        const PlayScript script = playScript(sprite(2, {100, -1, {0, 100}}));
        QCOMPARE(script.lists.begin().value().toArray().at(1),
                 QJsonValue(QJsonArray{QStringLiteral("0.001"), QStringLiteral("0.1")}));
    }

    void variablesOfTwoSpritesHaveDifferentIds()
    {
        Sprite other = sprite(2, {100, -1, {}});
        other.name = QStringLiteral("other");
        const QStringList ids = playScript(other).variables.keys();
        const QStringList own = playScript(sprite(2, {100, -1, {}})).variables.keys();
        for (const QString &id : own)
            QVERIFY2(!ids.contains(id), qPrintable(id));
    }

    void blocksKnowTheirNeighbours()
    {
        const QJsonObject blocks = playScript(sprite(3, {100, 1, {100, 20, 1500}})).blocks;
        int tops = 0;
        for (auto it = blocks.begin(); it != blocks.end(); ++it) {
            const QJsonObject block = it.value().toObject();
            const QString next = block.value(QLatin1String("next")).toString();
            if (!next.isEmpty())
                QCOMPARE(blocks.value(next).toObject().value(QLatin1String("parent")),
                         QJsonValue(it.key()));
            const bool isTop = block.value(QLatin1String("topLevel")).toBool();
            QCOMPARE(block.value(QLatin1String("parent")).isNull(), isTop);
            QCOMPARE(block.contains(QLatin1String("x")), isTop);
            tops += isTop ? 1 : 0;
        }
        QCOMPARE(tops, 2);
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
        const PlayScript script = playScript(sprite(costumeCount, {intervalMs, -1, {}}));
        QCOMPARE(text(script), QStringLiteral("when flag clicked\nswitch costume to c0\n"));
        QVERIFY(script.variables.isEmpty());
    }

private:
    static Sprite sprite(int costumes, const Playback &playback)
    {
        Sprite sprite;
        sprite.name = QStringLiteral("film");
        sprite.costumes.resize(costumes);
        for (int i = 0; i < costumes; ++i)
            sprite.costumes[i].name = QStringLiteral("c%1").arg(i);
        sprite.playback = playback;
        return sprite;
    }

    /// The script as one would read it aloud.
    static QString text(const PlayScript &script)
    {
        QString event;
        QString definition;
        for (auto it = script.blocks.begin(); it != script.blocks.end(); ++it) {
            const QJsonObject block = it.value().toObject();
            if (!block.value(QLatin1String("topLevel")).toBool())
                continue;
            const bool isEvent =
                block.value(QLatin1String("opcode")) == QLatin1String("event_whenflagclicked");
            (isEvent ? event : definition) = stack(script.blocks, it.key(), QString());
        }
        return event + definition;
    }

    static QString stack(const QJsonObject &blocks, const QString &first, const QString &indent)
    {
        QString text;
        QString id = first;
        while (!id.isEmpty()) {
            const QJsonObject block = blocks.value(id).toObject();
            text += indent + sentence(blocks, block) + QLatin1Char('\n');
            const QString inside = filling(block, "SUBSTACK").toString();
            if (!inside.isEmpty())
                text += stack(blocks, inside, indent + QStringLiteral("  "));
            id = block.value(QLatin1String("next")).toString();
        }
        return text;
    }

    /// What fills an input, without the code for how it does.
    static QJsonValue filling(const QJsonObject &block, const QString &name)
    {
        const QJsonObject inputs = block.value(QLatin1String("inputs")).toObject();
        return inputs.value(name).toArray().at(1);
    }
    static QJsonValue filling(const QJsonObject &block, const char *name)
    {
        return filling(block, QString::fromLatin1(name));
    }

    static QString field(const QJsonObject &block)
    {
        const QJsonObject fields = block.value(QLatin1String("fields")).toObject();
        return fields.isEmpty() ? QString() : fields.begin().value().toArray().at(0).toString();
    }

    static QString value(const QJsonObject &blocks, const QJsonObject &block, const QString &name)
    {
        const QJsonValue filled = filling(block, name);
        if (filled.isArray())
            return filled.toArray().at(1).toString();
        return sentence(blocks, blocks.value(filled.toString()).toObject());
    }

    /// One block: in a pattern, %f is its field and %NAME the input of that name.
    static QString sentence(const QJsonObject &blocks, const QJsonObject &block)
    {
        static const QHash<QString, QString> patterns{
            {QStringLiteral("event_whenflagclicked"), QStringLiteral("when flag clicked")},
            {QStringLiteral("looks_switchcostumeto"), QStringLiteral("switch costume to %COSTUME")},
            {QStringLiteral("looks_costume"), QStringLiteral("%f")},
            {QStringLiteral("data_setvariableto"), QStringLiteral("set %f to %VALUE")},
            {QStringLiteral("data_changevariableby"), QStringLiteral("change %f by %VALUE")},
            {QStringLiteral("data_itemoflist"), QStringLiteral("%f[%INDEX]")},
            {QStringLiteral("data_lengthoflist"), QStringLiteral("length")},
            {QStringLiteral("sensing_dayssince2000"), QStringLiteral("days")},
            {QStringLiteral("operator_add"), QStringLiteral("(%NUM1 + %NUM2)")},
            {QStringLiteral("operator_subtract"), QStringLiteral("(%NUM1 - %NUM2)")},
            {QStringLiteral("operator_multiply"), QStringLiteral("(%NUM1 * %NUM2)")},
            {QStringLiteral("operator_divide"), QStringLiteral("(%NUM1 / %NUM2)")},
            {QStringLiteral("operator_mod"), QStringLiteral("(%NUM1 mod %NUM2)")},
            {QStringLiteral("operator_equals"), QStringLiteral("(%OPERAND1 = %OPERAND2)")},
            {QStringLiteral("operator_gt"), QStringLiteral("(%OPERAND1 > %OPERAND2)")},
            {QStringLiteral("operator_or"), QStringLiteral("(%OPERAND1 or %OPERAND2)")},
            {QStringLiteral("operator_mathop"), QStringLiteral("%f(%NUM)")},
            {QStringLiteral("control_forever"), QStringLiteral("forever")},
            {QStringLiteral("control_repeat_until"), QStringLiteral("until %CONDITION")},
            {QStringLiteral("control_if"), QStringLiteral("if %CONDITION")},
            {QStringLiteral("procedures_call"), QStringLiteral("catch up")},
            {QStringLiteral("procedures_definition"), QStringLiteral("define catch up")}};
        const QString opcode = block.value(QLatin1String("opcode")).toString();
        QString text = patterns.value(opcode, opcode);
        text.replace(QStringLiteral("%f"), field(block));
        const QStringList inputs = block.value(QLatin1String("inputs")).toObject().keys();
        for (const QString &name : inputs) {
            if (text.contains(QLatin1Char('%') + name))
                text.replace(QLatin1Char('%') + name, value(blocks, block, name));
        }
        return text;
    }
};

QTEST_APPLESS_MAIN(TestPackageScript)
#include "tst_package_script.moc"
