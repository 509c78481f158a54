#include "tests/animatedimage/memory/failingallocations.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

/// What is left where memory ends while a hit path is computed.
class TestPathWithoutMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePathOfTheSizeBeforeIsComputedAgain();
};

void TestPathWithoutMemory::thePathOfTheSizeBeforeIsComputedAgain()
{
    if (!FailingAllocations::isPossible())
        QSKIP("the sanitizers have allocators of their own");
    Stage stage(solidFrames({{8, 6}}));
    stage.document.setAlternateMode(1);
    // The last column of an opaque picture does not count.
    QCOMPARE(stage->shape().boundingRect(), QRectF(0, 0, 7, 6));

    stage->setSize(QSizeF(16, 12), false, true);
    FailingAllocations::failAt(1);
    const QPainterPath without = stage->shape();
    QVERIFY(FailingAllocations::stop());
    QVERIFY(without.isEmpty());

    stage->setSize(QSizeF(8, 6), false, true);
    QCOMPARE(stage->shape().boundingRect(), QRectF(0, 0, 7, 6));
}

QTEST_MAIN(TestPathWithoutMemory)
#include "tst_path_without_memory.moc"
