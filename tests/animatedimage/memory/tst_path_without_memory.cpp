#include "tests/animatedimage/memory/failingallocations.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

/// What is left where memory ends while the shape of a picture is computed.
class TestPathWithoutMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void thePathOfTheSizeBeforeIsComputedAgain();
    void aShapeThatIsAskedForAgainTakesNone();
    void aPictureIsNotReduced();
};

void TestPathWithoutMemory::init()
{
    if (!FailingAllocations::isPossible())
        QSKIP("the sanitizers have allocators of their own");
}

void TestPathWithoutMemory::thePathOfTheSizeBeforeIsComputedAgain()
{
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

void TestPathWithoutMemory::aShapeThatIsAskedForAgainTakesNone()
{
    Stage stage(solidFrames({{8, 6}}));
    // While it is presented, and while it is edited, with handles.
    for (const int mode : {1, 0}) {
        stage.document.setAlternateMode(mode);
        const QPainterPath first = stage->shape();
        FailingAllocations::failAt(1);
        const QPainterPath again = stage->shape();
        QVERIFY(!FailingAllocations::stop());
        QVERIFY(!again.isEmpty());
        QCOMPARE(again, first);
    }
}

void TestPathWithoutMemory::aPictureIsNotReduced()
{
    Stage stage;
    QImage source(40, 40, QImage::Format_ARGB32_Premultiplied);
    source.fill(Qt::black);
    QImage reduced;
    FailingAllocations::failAt(1);
    const bool isReduced = stage->getImageForPath(source, reduced, 10);
    QVERIFY(FailingAllocations::stop());
    QVERIFY(!isReduced);
    QVERIFY(stage->getImageForPath(source, reduced, 10));
    QCOMPARE(reduced.size(), QSize(10, 10));
}

QTEST_MAIN(TestPathWithoutMemory)
#include "tst_path_without_memory.moc"
