#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

namespace
{

using Points = QList<QPair<double, double>>;

Points pointsOf(const QPainterPath &path)
{
    Points points;
    for (int i = 0; i < path.elementCount(); ++i)
        points.append({path.elementAt(i).x, path.elementAt(i).y});
    return points;
}

/// The points of ellipses in squares of this side, with these top left corners.
Points ellipses(double side, const QList<QPointF> &corners)
{
    QPainterPath path;
    for (const QPointF &corner : corners)
        path.addEllipse(QRectF(corner.x(), corner.y(), side, side));
    return pointsOf(path);
}

/// The handles of an object of 100 x 50 at a handle size of 4: discs of diameter 12.
QList<QPointF> handlesOf100x50()
{
    return {{-6.0, -6.0}, {44.0, -6.0}, {94.0, -6.0}, {-6.0, 19.0}, {94.0, 19.0}, //
            {-6.0, 44.0}, {44.0, 44.0}, {94.0, 44.0}, {44.0, -14.0}};
}

} // namespace

class TestShape : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whileEditedItIsTheFrameAndNineHandles();
    void whilePresentedItIsTheFrameAlone();
    void itFollowsTheFrameShown();
    void onlyOpaquePixelsAreHitWhilePresented();
    void handlesAreHitWhileEdited();
    void theRotationHandleStandsAboveTheRectangleInSinglePrecision();
    void aRectangleThatBeginsElsewhereMovesTheRotationHandleAlone();
    void withoutTheShapeFlagItIsEmpty();
    void theDocumentIsReadAsCached();
    void withoutAFrameThereAreTheHandlesOnly_data();
    void withoutAFrameThereAreTheHandlesOnly();
};

void TestShape::whileEditedItIsTheFrameAndNineHandles()
{
    Stage stage({Pictures::solid(100, 50, Qt::red)});
    stage.probe.handleSize() = 4.0;
    const Points frame{{0.0, 0.0}, {99.0, 0.0}, {99.0, 50.0}, {0.0, 50.0}, {0.0, 0.0}};
    QCOMPARE(pointsOf(stage->shape()), frame + ellipses(12.0, handlesOf100x50()));
    QCOMPARE(stage->shape().fillRule(), Qt::WindingFill);
}

void TestShape::whilePresentedItIsTheFrameAlone()
{
    Stage stage({Pictures::solid(100, 50, Qt::red)});
    stage.document.setAlternateMode(1);
    const Points frame{{0.0, 0.0}, {99.0, 0.0}, {99.0, 50.0}, {0.0, 50.0}, {0.0, 0.0}};
    QCOMPARE(pointsOf(stage->shape()), frame);
    // Every mode but that of editing is one of presenting.
    stage.document.setAlternateMode(2);
    QCOMPARE(pointsOf(stage->shape()), frame);
}

void TestShape::itFollowsTheFrameShown()
{
    Stage stage({Pictures::fromText({"#...", "...."}), Pictures::fromText({"....", ".#.."})});
    stage.document.setAlternateMode(1);
    QCOMPARE(stage->shape().boundingRect(), QRectF(0.0, 0.0, 1.0, 1.0));
    stage->setCurrentIndex(1);
    QCOMPARE(stage->shape().boundingRect(), QRectF(1.0, 1.0, 1.0, 1.0));
}

void TestShape::onlyOpaquePixelsAreHitWhilePresented()
{
    Stage stage({Pictures::fromText({"##..", //
                                     "....", //
                                     "..#."})});
    stage.document.setAlternateMode(1);
    QVERIFY(stage->contains(QPointF(0.5, 0.5)));
    QVERIFY(stage->contains(QPointF(1.5, 0.5)));
    QVERIFY(stage->contains(QPointF(2.5, 2.5)));
    QVERIFY(!stage->contains(QPointF(2.5, 0.5)));
    QVERIFY(!stage->contains(QPointF(0.5, 1.5)));
    QVERIFY(!stage->contains(QPointF(-3.0, -3.0)));
}

void TestShape::handlesAreHitWhileEdited()
{
    Stage stage({Pictures::transparent(100, 50)});
    stage.probe.handleSize() = 4.0;
    QVERIFY(stage->contains(QPointF(-5.0, 0.0)));
    QVERIFY(stage->contains(QPointF(105.0, 25.0)));
    QVERIFY(stage->contains(QPointF(50.0, -13.0)));
    QVERIFY(!stage->contains(QPointF(50.0, 25.0)));
    QVERIFY(!stage->contains(QPointF(50.0, -15.0)));
}

void TestShape::theRotationHandleStandsAboveTheRectangleInSinglePrecision()
{
    Stage stage;
    stage.probe.handleSize() = 0.1;
    stage.probe.rect() = QRectF(0.0, 0.0, 100.2, 50.0);
    // Half of 100.2 is 50.1, in single precision 50.0999984741210938; -0.2 is
    // -0.20000000298023224. The handles have a radius of 2.1.
    const Points all = pointsOf(stage->shape());
    const Points last =
        ellipses(2.0 * 2.1, {{50.0999984741210938 - 2.1, -0.20000000298023224 - 2.1}});
    QCOMPARE(all.size(), 9 * last.size());
    QCOMPARE(all.mid(8 * last.size()), last);
    // The handles around the object are not rounded so.
    QCOMPARE(all.mid(last.size(), last.size()), ellipses(2.0 * 2.1, {{100.2 * 0.5 - 2.1, -2.1}}));
}

void TestShape::aRectangleThatBeginsElsewhereMovesTheRotationHandleAlone()
{
    Stage stage;
    stage.probe.handleSize() = 4.0;
    stage.probe.rect() = QRectF(3.0, 7.0, 100.0, 50.0);
    QList<QPointF> corners = handlesOf100x50();
    corners.last() = QPointF(50.0 + 3.0 - 6.0, 7.0 - 8.0 - 6.0);
    QCOMPARE(pointsOf(stage->shape()), ellipses(12.0, corners));
}

void TestShape::withoutTheShapeFlagItIsEmpty()
{
    Stage stage({Pictures::solid(10, 10, Qt::red)});
    stage.probe.hasShape() = false;
    QCOMPARE(stage->shape().elementCount(), 0);
    stage.document.setAlternateMode(1);
    QCOMPARE(stage->shape().elementCount(), 0);
}

void TestShape::theDocumentIsReadAsCached()
{
    Stage stage({Pictures::solid(10, 10, Qt::red)});
    stage.document.setAlternateMode(1);
    stage.probe.belongDoc() = nullptr;
    QVERIFY(stage->shape().elementCount() > 5);
    QVERIFY(!stage.probe.belongDoc());
    stage.probe.refreshBelongDoc();
    QCOMPARE(stage->shape().elementCount(), 5);
}

void TestShape::withoutAFrameThereAreTheHandlesOnly_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("index");
    QTest::newRow("no frames") << 0 << 0;
    QTest::newRow("index before the list") << 2 << -1;
    QTest::newRow("index after the last") << 2 << 2;
    QTest::newRow("index far after the last") << 2 << 70000;
}

void TestShape::withoutAFrameThereAreTheHandlesOnly()
{
    QFETCH(int, frames);
    QFETCH(int, index);
    Stage stage;
    for (int i = 0; i < frames; ++i)
        stage.addFrame(QStringLiteral("f"), Pictures::solid(10, 10, Qt::red));
    stage.probe.rect() = QRectF(0.0, 0.0, 100.0, 50.0);
    stage.probe.handleSize() = 4.0;
    stage.probe.runningIndex() = index;
    QCOMPARE(pointsOf(stage->shape()), ellipses(12.0, handlesOf100x50()));
    stage.document.setAlternateMode(1);
    QCOMPARE(stage->shape().elementCount(), 0);
}

QTEST_MAIN(TestShape)
#include "tst_shape.moc"
