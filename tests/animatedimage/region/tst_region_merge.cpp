#include "animatedimage/object/animatedimage.h"

#include <QtTest/QTest>

namespace
{

QRect box(int left, int top, int right, int bottom)
{
    return {QPoint(left, top), QPoint(right, bottom)};
}

} // namespace

/// How one row of runs is folded into the rectangles that still grow downward.
class TestRegionMerge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRowIsFolded_data();
    void aRowIsFolded();
};

void TestRegionMerge::aRowIsFolded_data()
{
    QTest::addColumn<QList<QRect>>("open");
    QTest::addColumn<QList<QRect>>("row");
    QTest::addColumn<QList<QRect>>("expectedDone");
    QTest::addColumn<QList<QRect>>("expectedOpen");
    using Rects = QList<QRect>;
    const QRect earlier = box(40, 40, 41, 41); // is in the list before each row

    QTest::newRow("exactly below: it grows") << Rects{box(0, 0, 3, 1)} << Rects{box(0, 2, 3, 2)}
                                             << Rects{earlier} << Rects{box(0, 0, 3, 2)};
    QTest::newRow("all pairs fit: all grow")
        << Rects{box(0, 0, 1, 4), box(5, 2, 6, 4)} << Rects{box(0, 5, 1, 5), box(5, 5, 6, 5)}
        << Rects{earlier} << Rects{box(0, 0, 1, 5), box(5, 2, 6, 5)};
    QTest::newRow("fewer runs: all close")
        << Rects{box(0, 0, 1, 0), box(3, 0, 4, 0)} << Rects{box(0, 1, 1, 1)}
        << Rects{earlier, box(0, 0, 1, 0), box(3, 0, 4, 0)} << Rects{box(0, 1, 1, 1)};
    QTest::newRow("more runs: all close")
        << Rects{box(0, 0, 1, 0)} << Rects{box(0, 1, 1, 1), box(3, 1, 4, 1)}
        << Rects{earlier, box(0, 0, 1, 0)} << Rects{box(0, 1, 1, 1), box(3, 1, 4, 1)};
    QTest::newRow("the first pair does not fit: the second closes with it")
        << Rects{box(0, 0, 1, 0), box(5, 0, 6, 0)} << Rects{box(0, 1, 2, 1), box(5, 1, 6, 1)}
        << Rects{earlier, box(0, 0, 1, 0), box(5, 0, 6, 0)}
        << Rects{box(0, 1, 2, 1), box(5, 1, 6, 1)};
    QTest::newRow("the last pair does not fit: the first is not left grown")
        << Rects{box(0, 0, 1, 0), box(5, 0, 6, 0)} << Rects{box(0, 1, 1, 1), box(5, 1, 7, 1)}
        << Rects{earlier, box(0, 0, 1, 0), box(5, 0, 6, 0)}
        << Rects{box(0, 1, 1, 1), box(5, 1, 7, 1)};
    QTest::newRow("a gap: it closes") << Rects{box(0, 0, 3, 0)} << Rects{box(0, 2, 3, 2)}
                                      << Rects{earlier, box(0, 0, 3, 0)} << Rects{box(0, 2, 3, 2)};
    QTest::newRow("an overlap: it closes")
        << Rects{box(0, 0, 3, 2)} << Rects{box(0, 2, 3, 2)} << Rects{earlier, box(0, 0, 3, 2)}
        << Rects{box(0, 2, 3, 2)};
    QTest::newRow("side by side has the area too: it is joined")
        << Rects{box(0, 0, 1, 0)} << Rects{box(2, 0, 3, 0)} << Rects{earlier}
        << Rects{box(0, 0, 3, 0)};
    QTest::newRow("two of no width, far apart: joined")
        << Rects{box(3, 0, 2, 0)} << Rects{box(3, 7, 2, 7)} << Rects{earlier}
        << Rects{box(3, 0, 2, 7)};
    QTest::newRow("no runs under no rectangles") << Rects{} << Rects{} << Rects{earlier} << Rects{};
}

void TestRegionMerge::aRowIsFolded()
{
    QFETCH(QList<QRect>, open);
    QFETCH(QList<QRect>, row);
    QList<QRect> done{box(40, 40, 41, 41)};

    CAnimatedImage::mergeRects(done, open, row);

    QTEST(done, "expectedDone");
    QTEST(open, "expectedOpen");
}

QTEST_MAIN(TestRegionMerge)
#include "tst_region_merge.moc"
