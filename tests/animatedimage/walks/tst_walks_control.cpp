#include "tests/animatedimage/walks/walk.h"

#include <QtTest/QTest>

Q_DECLARE_METATYPE(Mistake)

/// The control of the walks: a model that is wrong in one point must differ from the objects.
class TestWalksControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMistakeOfTheModelIsNoticed_data();
    void aMistakeOfTheModelIsNoticed();
    void theFewerStepsLeadToADifferenceThemselves();
    void aSeedGivesTheSameStepsAgain();

private:
    Walks::Failure firstFailure(Mistake mistake);

    Actor m_actor;
};

/// Of the first walk that notices the mistake; empty when none of many does.
Walks::Failure TestWalksControl::firstFailure(Mistake mistake)
{
    constexpr quint32 mostWalks = 1000;
    for (quint32 seed = 1; seed <= mostWalks; ++seed) {
        const Walks::Failure failure = Walks::walk(m_actor, seed, mistake);
        if (!failure.isEmpty())
            return failure;
    }
    return {};
}

void TestWalksControl::aMistakeOfTheModelIsNoticed_data()
{
    QTest::addColumn<Mistake>("mistake");
    QTest::addColumn<QString>("difference");
    const auto add = [](const char *name, Mistake mistake, const char *difference) {
        QTest::newRow(name) << mistake << QString::fromLatin1(difference);
    };
    add("stopping keeps the frame", Mistake::StopKeepsTheFrame, "");
    add("a tick tells nothing", Mistake::TickTellsNothing, "changed 1002, not: (nothing more)");
    add("the last pass ends on the first frame", Mistake::LastPassEndsOnTheFirstFrame, "");
    add("the crop forgets the top", Mistake::CropForgetsTheTop, "m_bgRect");
    add("flipping moves sideways", Mistake::FlipMovesSideways, "the same rectangles");
    add("scaling takes the old width for the height", Mistake::ScaleForgetsTheOldHeight, "");
    add("undo keeps the index", Mistake::UndoKeepsTheIndex, "m_runningIndex");
    add("names begin at 2", Mistake::NamesBeginAtTwo, "");
    add("loading keeps it running", Mistake::LoadingKeepsItRunning, "m_isRunning");
    add("an answer lacks the index", Mistake::AnswerLacksTheIndex, "the answer is not");
    add("saved sizes are forgotten", Mistake::SavedSizesAreForgotten, "the size");
    add("the tile is one unit wide", Mistake::TileIsOneUnitWide, "the size of m_bgImage");
}

void TestWalksControl::aMistakeOfTheModelIsNoticed()
{
    QFETCH(Mistake, mistake);
    QFETCH(QString, difference);
    const Walks::Failure failure = firstFailure(mistake);
    QVERIFY(!failure.isEmpty());
    QVERIFY2(failure.difference.contains(difference), qPrintable(failure.words()));
}

void TestWalksControl::theFewerStepsLeadToADifferenceThemselves()
{
    const Walks::Failure failure = firstFailure(Mistake::UndoKeepsTheIndex);
    const Walks::Failure fewer = Walks::shortened(m_actor, failure, Mistake::UndoKeepsTheIndex);
    QVERIFY(!fewer.isEmpty());
    // Frames, one of them shown that is not the first, and all replaced.
    QVERIFY2(fewer.steps.size() <= 6, qPrintable(fewer.words()));
    QVERIFY(fewer.steps.size() < failure.steps.size());
}

void TestWalksControl::aSeedGivesTheSameStepsAgain()
{
    const Walks::Failure one = firstFailure(Mistake::TickTellsNothing);
    const Walks::Failure again = firstFailure(Mistake::TickTellsNothing);
    QVERIFY(one.words().contains(QStringLiteral("a tick of the timer")));
    QCOMPARE(again.words(), one.words());
}

QTEST_MAIN(TestWalksControl)
#include "tst_walks_control.moc"
