#include "animatedimage/core/frameregions.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

/// The region that was asked for last is kept within a budget that objects share.
class TestRegionBudget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsKeptIsCounted();
    void whatDoesNotFitIsComputedEachTime();
    void handlesAreKeptWithThePath();
    void framesThatAreAddedLaterAreUpdated();
    void allObjectsShare64MiB();
};

namespace
{

// Two rectangles, of 16 bytes and five points of 24 bytes each.
const QImage corners = Pictures::fromText({"#...", "..#."});
constexpr qint64 bytesOfCorners = 2 * 16 + 2 * 5 * 24;
const FrameRegions::View view{QSizeF(8, 4), false, false};

QList<CAnimatedPortrait> filmOf(const QList<QImage> &pictures)
{
    QList<CAnimatedPortrait> frames;
    for (const QImage &picture : pictures)
        frames.append(CAnimatedPortrait(QString(), picture));
    return frames;
}

} // namespace

void TestRegionBudget::whatIsKeptIsCounted()
{
    CacheBudget budget(1000);
    auto frames = filmOf({corners, Pictures::fromText({"##..", "...."})});
    {
        FrameRegions regions(budget);
        regions.noteNewFrames();
        regions.updateAll(frames, view, true);
        QCOMPARE(budget.heldBytes(), 0);
        QCOMPARE(regions.pathOf(frames.at(0)).boundingRect(), QRectF(0, 0, 6, 4));
        QCOMPARE(regions.keptBytes(), bytesOfCorners);
        QCOMPARE(budget.heldBytes(), bytesOfCorners);
        QCOMPARE(regions.pathOf(frames.at(1)).boundingRect(), QRectF(0, 0, 4, 2));
        QCOMPARE(budget.heldBytes(), 16 + 5 * 24);
    }
    QCOMPARE(budget.heldBytes(), 0);
}

void TestRegionBudget::whatDoesNotFitIsComputedEachTime()
{
    CacheBudget budget(bytesOfCorners - 1);
    auto frames = filmOf({corners});
    FrameRegions regions(budget);
    regions.noteNewFrames();
    regions.updateAll(frames, view, true);
    for (int time = 0; time < 2; ++time) {
        QCOMPARE(regions.pathOf(frames.at(0)).elementCount(), 10);
        QCOMPARE(regions.keptBytes(), 0);
        QCOMPARE(budget.heldBytes(), 0);
    }
}

void TestRegionBudget::handlesAreKeptWithThePath()
{
    CacheBudget budget(100000);
    auto frames = filmOf({corners});
    FrameRegions regions(budget);
    regions.noteNewFrames();
    regions.updateAll(frames, view, true);
    const HitPath::Handles handles{QRectF(0, 0, 8, 4), 1.0};
    // Nine ellipses, each of a beginning and four curves of three points.
    QCOMPARE(regions.pathOf(frames.at(0), handles).elementCount(), 10 + 9 * 13);
    QCOMPARE(regions.keptBytes(), bytesOfCorners + qint64(9 * 13 * 24));
    QCOMPARE(regions.pathOf(frames.at(0)).elementCount(), 10);
    const HitPath::Handles larger{QRectF(0, 0, 8, 4), 5.0};
    // Those at the corners reach 7 beyond them, that for rotation 17 above the top.
    QCOMPARE(regions.pathOf(frames.at(0), larger).boundingRect(), QRectF(-7, -17, 22, 28));
    QCOMPARE(regions.pathOf(frames.at(0), handles).boundingRect(), QRectF(-3, -5, 14, 12));
}

void TestRegionBudget::framesThatAreAddedLaterAreUpdated()
{
    auto frames = filmOf({corners});
    CacheBudget budget(100000);
    FrameRegions regions(budget);
    regions.updateAll(frames, view, true);
    frames += filmOf({corners});
    QVERIFY(!FrameRegions::isUpdated(frames.at(1)));
    regions.noteNewFrames();
    regions.updateAll(frames, view, false);
    QVERIFY(FrameRegions::isUpdated(frames.at(1)));
    QCOMPARE(regions.pathOf(frames.at(1)).boundingRect(), QRectF(0, 0, 6, 4));
}

void TestRegionBudget::allObjectsShare64MiB()
{
    QVERIFY(!CacheBudget::shared().take(67108865));
    QVERIFY(CacheBudget::shared().take(67108864));
    CacheBudget::shared().giveBack(67108864);
    QCOMPARE(CacheBudget::shared().heldBytes(), 0);
}

QTEST_GUILESS_MAIN(TestRegionBudget)
#include "tst_region_budget.moc"
