#include "tests/animatedimage/geometry/attributes.h"

#include <QtTest/QTest>

namespace
{

using Heard::changed;
using Heard::moved;

constexpr int normal = -1;
constexpr int background = 1;

const QPointF place(30.0, 40.0);
const QPointF pattern(7.5, -8.5);

/// The position of the object itself, independent of getPos().
QPointF ownPlace(Stage &stage)
{
    return stage.image->CGDRootObject::getPos();
}

/// An object at place, whose pattern is at pattern.
void prepare(Stage &stage, int type, int mode)
{
    stage->setPos(place, false);
    stage.probe.animatedType() = type;
    stage.probe.bgPos() = pattern;
    stage.document.setAlternateMode(mode);
    stage.log.clear();
}

} // namespace

/// The position, which is that of the pattern while a background is presented.
class TestGeometryPosition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePositionShown_data();
    void thePositionShown();
    void thePositionSet_data();
    void thePositionSet();
    void aPatternIsMovedWithoutBeingAskedToTell();
    void aMovedPatternComesBack();
    void aDocumentThatIsNotKnownYetIsNotAskedFor();
    void nothingButThePlaceMoves();
};

void TestGeometryPosition::thePositionShown_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QPointF>("shown");
    QTest::newRow("a background, presented") << background << 1 << pattern;
    QTest::newRow("a background, in another mode") << background << 2 << pattern;
    QTest::newRow("a background, in a negative mode") << background << -1 << pattern;
    QTest::newRow("a background, edited") << background << 0 << place;
    QTest::newRow("normal, presented") << normal << 1 << place;
    QTest::newRow("normal, edited") << normal << 0 << place;
    QTest::newRow("type 0, presented") << 0 << 1 << place;
    QTest::newRow("type 2, presented") << 2 << 1 << place;
}

void TestGeometryPosition::thePositionShown()
{
    QFETCH(int, type);
    QFETCH(int, mode);
    Stage stage(solidFrames({{10, 10}}));
    prepare(stage, type, mode);
    QTEST(stage->getPos(), "shown");
    // A hand that moves the object makes no difference here.
    stage->setStatus(2);
    QTEST(stage->getPos(), "shown");
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestGeometryPosition::thePositionSet_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("movesPattern");
    QTest::newRow("a background, presented") << background << 1 << 0 << true;
    QTest::newRow("a background, in another mode") << background << 2 << 0 << true;
    QTest::newRow("a background, status 1") << background << 1 << 1 << true;
    QTest::newRow("a background, status 3") << background << 1 << 3 << true;
    QTest::newRow("a background, moved by hand") << background << 1 << 2 << false;
    QTest::newRow("a background, edited") << background << 0 << 0 << false;
    QTest::newRow("normal, presented") << normal << 1 << 0 << false;
    QTest::newRow("type 0, presented") << 0 << 1 << 0 << false;
    QTest::newRow("normal, edited") << normal << 0 << 0 << false;
}

void TestGeometryPosition::thePositionSet()
{
    QFETCH(int, type);
    QFETCH(int, mode);
    QFETCH(int, status);
    QFETCH(bool, movesPattern);
    const QPointF target(100.5, -200.5);
    for (const bool notify : {false, true}) {
        Stage stage(solidFrames({{10, 10}}));
        prepare(stage, type, mode);
        stage->setStatus(status);
        stage->setPos(target, notify);
        QCOMPARE(stage.probe.bgPos(), movesPattern ? target : pattern);
        QCOMPARE(ownPlace(stage), movesPattern ? place : target);
        if (movesPattern)
            QCOMPARE(stage.log.entries(), QStringList({changed}));
        else
            QCOMPARE(stage.log.entries(), notify ? QStringList({moved}) : QStringList());
    }
}

void TestGeometryPosition::aPatternIsMovedWithoutBeingAskedToTell()
{
    Stage stage(solidFrames({{10, 10}}));
    prepare(stage, background, 1);
    stage->setPos(pattern, false); // where it is already
    QCOMPARE(stage.log.entries(), QStringList({changed}));
}

void TestGeometryPosition::aMovedPatternComesBack()
{
    Stage stage(solidFrames({{10, 10}}));
    prepare(stage, background, 1);
    stage->setPos(QPointF(1.0, 2.0), true);
    QCOMPARE(stage->getPos(), QPointF(1.0, 2.0));
    stage.document.setAlternateMode(0);
    QCOMPARE(stage->getPos(), place);
    stage.document.setAlternateMode(1);
    QCOMPARE(stage->getPos(), QPointF(1.0, 2.0));
}

void TestGeometryPosition::aDocumentThatIsNotKnownYetIsNotAskedFor()
{
    Stage stage(solidFrames({{10, 10}}));
    prepare(stage, background, 1);
    stage.probe.belongDoc() = nullptr;
    QCOMPARE(stage->getPos(), place);
    stage->setPos(QPointF(1.0, 2.0), true);
    QCOMPARE(ownPlace(stage), QPointF(1.0, 2.0));
    QCOMPARE(stage.probe.bgPos(), pattern);
    QCOMPARE(stage.log.entries(), QStringList({moved}));
    QVERIFY(!stage.probe.belongDoc());
}

void TestGeometryPosition::nothingButThePlaceMoves()
{
    for (const int mode : {0, 1}) {
        Stage stage(solidFrames({{10, 10}}));
        prepare(stage, background, mode);
        stage->regenBGImage();
        const qint64 tile = stage.probe.bgImage().cacheKey();
        const QRectF visible = stage.probe.bgRect();
        stage.probe.frame(0).rects = {QRect(1, 2, 3, 4)};
        stage.probe.frame(0).size = QSizeF(5.0, 6.0);
        stage->setPos(QPointF(-4.0, -4.0), true);
        QCOMPARE(stage.probe.bgImage().cacheKey(), tile);
        QCOMPARE(stage.probe.bgRect(), visible);
        QCOMPARE(stage.probe.frame(0).rects, QList<QRect>({QRect(1, 2, 3, 4)}));
        QCOMPARE(stage.probe.frame(0).path.boundingRect(), QRectF(0.0, 0.0, 9.0, 10.0));
        QCOMPARE(stage.probe.frame(0).size, QSizeF(5.0, 6.0));
    }
}

QTEST_MAIN(TestGeometryPosition)
#include "tst_geometry_position.moc"
