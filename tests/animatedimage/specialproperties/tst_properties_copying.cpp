#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtGui/QPainter>
#include <QtTest/QTest>

#include <limits>

/// The request that copies another animated image, which names it by an address.
class TestPropertiesCopying : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBaseStateIsTakenOver();
    void framesAreAppendedToThoseThatAreThere();
    void picturesGetPixelsOfTheirOwn();
    void ownFramesKeepTheRegionsMeasuredBefore();
    void settingsAreTakenOverAndNothingElse();
    void savedMirrorAndFlipAreTakenOverEachByItself();
    void theHostIsToldOfTheGeometryOnce();
    void theBackgroundTypeDrawsTheTileOfTheIndexTakenOver();
    void theBackgroundTypeWithoutFramesDrawsNoTile();
    void playbackRestartsOnTheOwnTimer();
    void aStoppedObjectStopsNoTimer();
    void theHandleIsReadWhereTheStreamStands();
    void anObjectCopiesItselfOnce();
    void anObjectCopiesItselfWhilePlaying();
    void anAddressOfNoAnimatedImageGoesToTheBase_data();
    void anAddressOfNoAnimatedImageGoesToTheBase();
    void anAddressOfADeadObjectGoesToTheBase();
    void anAddressOfAnotherClassGoesToTheBase();
};

namespace
{

constexpr int copyFrom = 5016;

const QString geometry = QStringLiteral("changed 104");
const QString shown = QStringLiteral("changed 1002");
const QString playing =
    QStringLiteral("posted 100 0 {\"settings\":[{\"id\":\"idImagePlay\",\"value\":\"true\"}]} -1");

qint64 handleOf(CGDRootObject *object)
{
    return reinterpret_cast<qint64>(object);
}

qint64 addressOf(const void *memory)
{
    return reinterpret_cast<qint64>(memory);
}

QByteArray request(CGDRootObject *object)
{
    return Request::packed(handleOf(object));
}

} // namespace

void TestPropertiesCopying::theBaseStateIsTakenOver()
{
    Stage other(solidFrames({{8, 6}}));
    other.image->setPos(QPointF(30.0, 40.0), false);
    other.image->setSize(QSizeF(80.0, 60.0), false, false);
    other.image->setRotate(15.0, false);
    other.image->setMirror(true, false);
    other.image->setOtherParams(QStringLiteral("note"), QStringLiteral("hello"));
    Stage stage(solidFrames({{4, 4}}));
    Request copy(request(other.image));

    QVERIFY(!copy.set(stage.image, copyFrom));

    QCOMPARE(stage.image->getPos(), QPointF(30.0, 40.0));
    QCOMPARE(stage.image->getSize(), QSizeF(80.0, 60.0));
    QCOMPARE(stage.image->getRotate(), 15.0);
    QVERIFY(stage.image->isMirrored());
    QCOMPARE(stage.image->getOtherParams(QStringLiteral("note")).toString(),
             QStringLiteral("hello"));
    QCOMPARE(copy.position(), qint64(8));
    QCOMPARE(copy.bytes(), request(other.image));
}

void TestPropertiesCopying::framesAreAppendedToThoseThatAreThere()
{
    Stage other(solidFrames({{8, 6}, {2, 5}}));
    other.image->setSize(QSizeF(16.0, 12.0), false, false);
    other.probe.frame(1).size = QSizeF(3.5, 7.25);
    Stage stage(solidFrames({{4, 4}}));
    Request copy(request(other.image));

    QVERIFY(!copy.set(stage.image, copyFrom));

    // Names are not made unique.
    QCOMPARE(stage.frameNames(),
             (QStringList{QStringLiteral("f_1"), QStringLiteral("f_1"), QStringLiteral("f_2")}));
    QCOMPARE(stage.probe.frame(0).image, Pictures::solid(4, 4, Qt::red));
    QCOMPARE(stage.probe.frame(1).image, Pictures::solid(8, 6, Qt::red));
    QCOMPARE(stage.probe.frame(2).image, Pictures::solid(2, 5, Qt::green));
    QCOMPARE(stage.probe.frame(2).size, QSizeF(3.5, 7.25));
    QCOMPARE(stage.probe.frame(1).regionSize, QSize(8, 6));
    QCOMPARE(stage.probe.frame(1).rects, QList<QRect>{QRect(0, 0, 7, 6)});
    QCOMPARE(stage.probe.frame(1).path, other.probe.frame(0).path);
    // Two units to a pixel: 7 columns of 8, all 6 rows.
    QCOMPARE(stage.probe.frame(1).path.boundingRect(), QRectF(0.0, 0.0, 14.0, 12.0));
    QCOMPARE(other.probe.frames().size(), 2);
}

void TestPropertiesCopying::picturesGetPixelsOfTheirOwn()
{
    Stage other(solidFrames({{8, 6}}));
    Stage stage;
    Request copy(request(other.image));

    QVERIFY(!copy.set(stage.image, copyFrom));

    QVERIFY(stage.probe.frames().at(0).image.constBits() !=
            other.probe.frames().at(0).image.constBits());
    other.release();
    QCOMPARE(stage.probe.frame(0).image, Pictures::solid(8, 6, Qt::red));
}

void TestPropertiesCopying::ownFramesKeepTheRegionsMeasuredBefore()
{
    // Mirrored, and a hundred units to a pixel.
    Stage other(solidFrames({{10, 4}}));
    other.image->setMirror(true, false);
    other.image->setSize(QSizeF(1000.0, 400.0), false, false);
    // Opaque on the left alone.
    QImage half(10, 4, QImage::Format_ARGB32);
    half.fill(Qt::transparent);
    QPainter(&half).fillRect(0, 0, 5, 4, Qt::red);
    Stage stage({half, half.copy()});
    Request copy(request(other.image));

    QVERIFY(!copy.set(stage.image, copyFrom));
    QVERIFY(stage.image->isMirrored());
    stage->setCurrentIndex(1);

    QCOMPARE(stage.image->getSize(), QSizeF(1000.0, 400.0));
    QVERIFY(stage->shape().contains(QPointF(250.0, 100.0)));
    QVERIFY(!stage->shape().contains(QPointF(750.0, 100.0)));
    // A change of the mirror measures it again.
    stage->setMirror(true, false);
    QVERIFY(!stage->shape().contains(QPointF(250.0, 100.0)));
    QVERIFY(stage->shape().contains(QPointF(750.0, 100.0)));
}

void TestPropertiesCopying::settingsAreTakenOverAndNothingElse()
{
    Stage other(solidFrames({{8, 6}, {8, 6}, {8, 6}}));
    other.probe.bgRect() = QRectF(1.0, 2.0, 3.0, 4.0);
    other.probe.shiftInterval() = 123;
    other.probe.animatedType() = 5;
    other.probe.runningIndex() = 2;
    other.probe.keepRatio() = false;
    other.probe.mirror() = true;
    other.probe.flip() = true;
    other.probe.loopCount() = 9;
    other.probe.loopsDone() = 3;
    other.probe.playEnabled() = false;
    other.probe.bgPos() = QPointF(7.0, 8.0);
    other.probe.savedIndex() = 1;
    Stage stage;
    Request copy(request(other.image));

    QVERIFY(!copy.set(stage.image, copyFrom));

    QCOMPARE(stage.probe.bgRect(), QRectF(1.0, 2.0, 3.0, 4.0));
    QCOMPARE(stage.probe.shiftInterval(), 123);
    QCOMPARE(stage.probe.animatedType(), 5);
    QCOMPARE(stage.probe.runningIndex(), 2);
    QVERIFY(!stage.probe.keepRatio());
    QVERIFY(stage.probe.mirror());
    QVERIFY(stage.probe.flip());
    QCOMPARE(stage.probe.loopCount(), 9);
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.probe.loopsDone(), 0);
    QVERIFY(stage.probe.playEnabled());
    QCOMPARE(stage.probe.bgPos(), QPointF(0.0, 0.0));
    QCOMPARE(stage.probe.savedIndex(), 0);
    // The field alone: the timer follows with the next start.
    QCOMPARE(stage.probe.timer()->interval(), 200);
    QVERIFY(stage.probe.bgImage().isNull());
}

void TestPropertiesCopying::savedMirrorAndFlipAreTakenOverEachByItself()
{
    for (const bool mirror : {false, true}) {
        Stage other(solidFrames({{8, 6}}));
        other.probe.mirror() = mirror;
        other.probe.flip() = !mirror;
        Stage stage;
        Request copy(request(other.image));

        QVERIFY(!copy.set(stage.image, copyFrom));

        QCOMPARE(stage.probe.mirror(), mirror);
        QCOMPARE(stage.probe.flip(), !mirror);
    }
}

void TestPropertiesCopying::theHostIsToldOfTheGeometryOnce()
{
    Stage other(solidFrames({{8, 6}}));
    Stage stage(solidFrames({{4, 4}}));
    stage.log.clear();
    Request copy(request(other.image));

    QVERIFY(!copy.set(stage.image, copyFrom));

    QCOMPARE(stage.log.entries(), QStringList{geometry});
    QVERIFY(!stage.probe.rectStale());
}

void TestPropertiesCopying::theBackgroundTypeDrawsTheTileOfTheIndexTakenOver()
{
    Stage other(solidFrames({{8, 6}, {8, 6}}));
    other.image->setSize(QSizeF(10.0, 5.0), false, false);
    other.probe.animatedType() = 1;
    other.probe.runningIndex() = 1;
    // The list of the copy begins with its own frame, so index 1 is the other's first.
    Stage stage({Pictures::solid(4, 4, Qt::blue)});
    Request copy(request(other.image));

    QVERIFY(!copy.set(stage.image, copyFrom));

    QCOMPARE(stage.probe.bgImage(), Pictures::solid(20, 10, Qt::red));
}

void TestPropertiesCopying::theBackgroundTypeWithoutFramesDrawsNoTile()
{
    Stage other;
    other.probe.animatedType() = 1;
    Stage stage;
    stage.probe.bgImage() = Pictures::solid(3, 3, Qt::blue);
    Request copy(request(other.image));

    QVERIFY(!copy.set(stage.image, copyFrom));

    QCOMPARE(stage.probe.animatedType(), 1);
    QCOMPARE(stage.probe.bgImage(), Pictures::solid(3, 3, Qt::blue));
}

void TestPropertiesCopying::playbackRestartsOnTheOwnTimer()
{
    Stage other(solidFrames({{8, 6}, {8, 6}}));
    other.image->setShiftInterval(70);
    other.image->playImage(true);
    other.probe.tick();
    Stage stage;
    stage.probe.loopsDone() = 4;
    Request copy(request(other.image));

    QVERIFY(!copy.set(stage.image, copyFrom));

    QVERIFY(stage.probe.isRunning());
    QVERIFY(stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.timer()->interval(), 70);
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.probe.loopsDone(), 0);
    QCOMPARE(other.probe.runningIndex(), 1);
    QVERIFY(other.probe.isRunning());
    // The geometry taken over; then frame 0 in the place of frame 1, and the start.
    QCOMPARE(stage.log.entries(),
             (QStringList{geometry, geometry, geometry, shown, shown, playing}));
}

void TestPropertiesCopying::aStoppedObjectStopsNoTimer()
{
    // The play state is taken over as it is: it is not stopped, and nothing is notified.
    Stage other(solidFrames({{8, 6}}));
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage.image->playImage(true);
    stage.log.clear();
    Request copy(request(other.image));

    QVERIFY(!copy.set(stage.image, copyFrom));

    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.log.entries(), QStringList{geometry});
}

void TestPropertiesCopying::theHandleIsReadWhereTheStreamStands()
{
    Stage other(solidFrames({{8, 6}}));
    Stage stage;
    Request copy(QByteArray(8, '\1') + request(other.image));
    copy.from(8);

    QVERIFY(!copy.set(stage.image, copyFrom));

    QCOMPARE(stage.probe.frames().size(), 1);
    QCOMPARE(copy.position(), qint64(16));
}

void TestPropertiesCopying::anObjectCopiesItselfOnce()
{
    Stage stage(solidFrames({{4, 3}, {5, 6}}));
    stage.probe.runningIndex() = 1;
    stage.probe.shiftInterval() = 77;
    Request copy(request(stage.image));

    QVERIFY(!copy.set(stage.image, copyFrom));

    QCOMPARE(stage.frameNames(), (QStringList{QStringLiteral("f_1"), QStringLiteral("f_2"),
                                              QStringLiteral("f_1"), QStringLiteral("f_2")}));
    QCOMPARE(stage.probe.frame(3).image, Pictures::solid(5, 6, Qt::green));
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.probe.shiftInterval(), 77);
    QCOMPARE(stage.image->getSize(), QSizeF(4.0, 3.0));
    QCOMPARE(stage.log.entries(), QStringList{geometry});
}

void TestPropertiesCopying::anObjectCopiesItselfWhilePlaying()
{
    Stage stage(solidFrames({{4, 3}, {4, 3}}));
    stage.image->playImage(true);
    stage.probe.tick();
    Request copy(request(stage.image));

    QVERIFY(!copy.set(stage.image, copyFrom));

    QCOMPARE(stage.probe.frames().size(), 4);
    QVERIFY(stage.probe.isRunning());
    QVERIFY(stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.runningIndex(), 0);
}

void TestPropertiesCopying::anAddressOfNoAnimatedImageGoesToTheBase_data()
{
    QTest::addColumn<qint64>("address");
    QTest::addRow("zero") << qint64(0);
    QTest::addRow("one") << qint64(1);
    QTest::addRow("minus one") << qint64(-1);
    QTest::addRow("greatest") << std::numeric_limits<qint64>::max();
    QTest::addRow("least") << std::numeric_limits<qint64>::min();
    QTest::addRow("some number") << qint64(0x00005f3759df1a2cLL);
    QTest::addRow("a text of the program") << addressOf("text");
    QTest::addRow("this test") << addressOf(this);
}

void TestPropertiesCopying::anAddressOfNoAnimatedImageGoesToTheBase()
{
    QFETCH(qint64, address);
    Stage stage(solidFrames({{4, 3}}));
    Request copy(Request::packed(address));

    QVERIFY(!copy.set(stage.image, copyFrom));

    QCOMPARE(stage.probe.frames().size(), 1);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPropertiesCopying::anAddressOfADeadObjectGoesToTheBase()
{
    Stage stage(solidFrames({{4, 3}}));
    auto *dead = new CAnimatedImage(3, true, nullptr);
    Request copy(request(dead));
    dead->Release();

    QVERIFY(!copy.set(stage.image, copyFrom));

    QCOMPARE(stage.probe.frames().size(), 1);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPropertiesCopying::anAddressOfAnotherClassGoesToTheBase()
{
    Stage other(solidFrames({{8, 6}}));
    Stage stage(solidFrames({{4, 3}}));
    CBaseObject plain(3, true, nullptr, nullptr);
    QVERIFY(addressOf(other.image) != handleOf(other.image));
    const QList<qint64> addresses{
        handleOf(&plain),
        addressOf(static_cast<QObject *>(&plain)),
        // Other parts of an animated image than the one that the handle means.
        addressOf(other.image),
        addressOf(static_cast<QGraphicsItem *>(other.image)),
        handleOf(other.image) + 1,
        handleOf(other.image) - 8,
        addressOf(other.page),
        addressOf(&other.document),
    };
    for (qint64 address : addresses) {
        Request copy(Request::packed(address));
        QVERIFY(!copy.set(stage.image, copyFrom));
        QCOMPARE(stage.probe.frames().size(), 1);
    }
    QCOMPARE(stage.log.entries(), QStringList());
}

QTEST_MAIN(TestPropertiesCopying)
#include "tst_properties_copying.moc"
