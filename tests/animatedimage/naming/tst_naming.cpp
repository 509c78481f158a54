#include "tests/support/stage.h"
#include "tests/support/texts.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

namespace
{

void name(Stage &stage, const QStringList &names)
{
    stage.probe.frames().clear();
    for (const QString &name : names)
        stage.probe.frames().append(CAnimatedPortrait(name, QImage()));
}

/// The rule read slowly: candidates one after the other, each held against every frame.
QString slowName(const QString &base, bool stemAllowed, const QStringList &taken)
{
    QString stem = base;
    for (int i = 0; i < base.size(); ++i) {
        if (base.at(i) == QLatin1Char('_'))
            stem = base.mid(0, i);
    }
    for (int counter = stemAllowed ? 0 : 1;; ++counter) {
        QString candidate = stem;
        if (counter > 0) {
            candidate += QLatin1Char('_');
            candidate += QString::number(counter);
        }
        bool isFree = true;
        for (const QString &name : taken)
            isFree = isFree && name != candidate;
        if (isFree)
            return candidate;
    }
}

} // namespace

/// The next free name of a frame.
class TestNaming : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstFreeNameIsTaken_data()
    {
        QTest::addColumn<QStringList>("taken");
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("withStem");
        QTest::addColumn<QString>("withoutStem");
        const auto row = [](const char *what, const QStringList &taken, const char *base,
                            const char *withStem, const char *withoutStem) {
            QTest::newRow(what) << taken << QString::fromUtf8(base) << QString::fromUtf8(withStem)
                                << QString::fromUtf8(withoutStem);
        };
        row("two are taken", texts({"cat", "cat_1"}), "cat", "cat_2", "cat_2");
        row("only numbers are taken", texts({"cat_1", "cat_2"}), "cat", "cat", "cat_3");
        row("only the stem is taken", texts({"cat"}), "cat", "cat_1", "cat_1");
        row("no frames", {}, "cat_7", "cat", "cat_1");
        row("no frames, no underscore", {}, "cat", "cat", "cat_1");
        row("only the last part is cut", {}, "my_cat_3", "my_cat", "my_cat_1");
        row("what is cut need not be a number", {}, "my_cat", "my", "my_1");
        row("an underscore at the end", {}, "cat_", "cat", "cat_1");
        row("an underscore at the start", {}, "_3", "", "_1");
        row("nothing", {}, "", "", "_1");
        row("nothing, when it is taken", texts({"", "_1"}), "", "_2", "_2");
        row("a gap is used again", texts({"cat", "cat_1", "cat_3"}), "cat", "cat_2", "cat_2");
        row("case matters", texts({"Cat", "CAT_1"}), "cat", "cat", "cat_1");
        row("numbers are not padded", texts({"cat_01"}), "cat", "cat", "cat_1");
        row("a percent sign stays", texts({"%2"}), "%2", "%2_1", "%2_1");
    }

    void theFirstFreeNameIsTaken()
    {
        QFETCH(QStringList, taken);
        QFETCH(QString, base);
        Stage stage;
        name(stage, taken);
        QTEST(stage->generatePortraitName(base, true), "withStem");
        QTEST(stage->generatePortraitName(base, false), "withoutStem");
        QCOMPARE(stage.probe.frames().size(), taken.size());
        QCOMPARE(stage.log.entries(), QStringList());
    }

    void randomNamesAreThoseOfTheSlowReading()
    {
        constexpr quint32 seed = 77;
        QRandomGenerator random(seed);
        const QStringList parts = texts({"a", "b", "_", "_1", "_2", "_3"});
        const auto text = [&random, &parts] {
            QString made;
            for (int i = random.bounded(4); i > 0; --i)
                made += parts.at(random.bounded(parts.size()));
            return made;
        };
        for (int round = 0; round < 2000; ++round) {
            QStringList taken;
            for (int i = random.bounded(8); i > 0; --i)
                taken.append(text());
            Stage stage;
            name(stage, taken);
            const QString base = text();
            for (const bool stemAllowed : {true, false})
                QCOMPARE(stage->generatePortraitName(base, stemAllowed),
                         slowName(base, stemAllowed, taken));
        }
    }
};

QTEST_MAIN(TestNaming)
#include "tst_naming.moc"
