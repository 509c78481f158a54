#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

/// An object as it is made, and a frame.
class TestObjectDefaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshObjectHasTheDefaultOfEveryField();
    void itsTimerIsItsChildRepeatsAndIsNotStarted();
    void itsBaseIsNamedAndMarked();
    void itsBaseIsMadeFromTheArguments_data();
    void itsBaseIsMadeFromTheArguments();
    void aParentItemOwnsIt();
    void makingOneTellsNothing();
    void theHandleSizeIsThatOfTheHostWhenItIsMade();

    void aFreshFrameIsEmpty();
    void aFrameOfAPictureHasItsSize();
    void aCopyOfAFrameHasEveryField();
    void aCopyOfAFrameIsItsOwn();
};

void TestObjectDefaults::aFreshObjectHasTheDefaultOfEveryField()
{
    CAnimatedImage image(1, true, nullptr);
    AnimatedImageProbe probe(image);
    QVERIFY(!probe.belongDoc());
    QVERIFY(probe.timer());
    QVERIFY(probe.frames().isEmpty());
    QCOMPARE(probe.isRunning(), false);
    QCOMPARE(probe.runningIndex(), 0);
    QCOMPARE(probe.loopsDone(), 0);
    QCOMPARE(probe.shiftInterval(), 200);
    QCOMPARE(probe.keepRatio(), true);
    QCOMPARE(probe.mirror(), false);
    QCOMPARE(probe.flip(), false);
    QCOMPARE(probe.loopCount(), -1);
    QCOMPARE(probe.playEnabled(), true);
    QCOMPARE(probe.wasRunning(), false);
    QCOMPARE(probe.elapsedMs(), 0);
    QCOMPARE(probe.animatedType(), -1);
    QCOMPARE(probe.bgRect(), QRectF(0.0, 0.0, 0.0, 0.0));
    QVERIFY(probe.bgImage().isNull());
    QCOMPARE(probe.bgPos(), QPointF(0.0, 0.0));
    QCOMPARE(probe.savedRunning(), false);
    QCOMPARE(probe.savedIndex(), 0);
    QCOMPARE(probe.handleSize(), image.getHandleSize());
    QVERIFY(probe.savedFrameSizes().isEmpty());
}

void TestObjectDefaults::itsTimerIsItsChildRepeatsAndIsNotStarted()
{
    CAnimatedImage image(1, true, nullptr);
    const QTimer *timer = AnimatedImageProbe(image).timer();
    QVERIFY(timer->parent() == &image);
    QCOMPARE(timer->interval(), 200);
    QVERIFY(!timer->isSingleShot());
    QVERIFY(!timer->isActive());
    QCOMPARE(image.findChildren<QTimer *>().size(), 1);
}

void TestObjectDefaults::itsBaseIsNamedAndMarked()
{
    CAnimatedImage image(1, true, nullptr);
    AnimatedImageProbe probe(image);
    QCOMPARE(probe.objName(), QStringLiteral("animated image"));
    QCOMPARE(image.getObjName(), QStringLiteral("animated image"));
    QVERIFY(probe.rectStale());
    QVERIFY(probe.hasShape());
    QVERIFY(!probe.isMirrored());
    QVERIFY(!probe.isFlipped());
    QVERIFY(probe.otherParams().isEmpty());
    QCOMPARE(image.type(), 76836);
    QCOMPARE(image.type(), 0x12c24);
    QCOMPARE(image.getImageSize(), QSize(0, 0));
    // The name is the base's: another one given there is answered.
    probe.objName() = QStringLiteral("other");
    QCOMPARE(image.getObjName(), QStringLiteral("other"));
}

void TestObjectDefaults::itsBaseIsMadeFromTheArguments_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("editable");
    QTest::newRow("3, true") << 3 << true;
    QTest::newRow("-8, false") << -8 << false;
}

void TestObjectDefaults::itsBaseIsMadeFromTheArguments()
{
    QFETCH(int, id);
    QFETCH(bool, editable);
    const CAnimatedImage image(id, editable, nullptr);
    QCOMPARE(image.objectId(), id);
    QCOMPARE(image.isEditable(), editable);
    QVERIFY(!image.GetPage());
    QVERIFY(!image.parentItem());
}

void TestObjectDefaults::aParentItemOwnsIt()
{
    QPointer<CAnimatedImage> image;
    {
        CBaseObject parent(1, true, nullptr, nullptr);
        image = new CAnimatedImage(2, true, &parent);
        QVERIFY(image->parentItem() == &parent);
    }
    QVERIFY(image.isNull());
}

void TestObjectDefaults::makingOneTellsNothing()
{
    const NotificationLog log;
    const CAnimatedImage image(1, true, nullptr);
    QCOMPARE(log.entries(), QStringList());
}

void TestObjectDefaults::theHandleSizeIsThatOfTheHostWhenItIsMade()
{
    CAnimatedImage earlier(1, true, nullptr);
    const double usual = earlier.getHandleSize();
    CGDRootObject::SetHandleSize(5.5);
    CAnimatedImage image(1, true, nullptr);
    CGDRootObject::SetHandleSize(usual);
    QCOMPARE(AnimatedImageProbe(image).handleSize(), 5.5);
    QCOMPARE(AnimatedImageProbe(earlier).handleSize(), usual);
}

void TestObjectDefaults::aFreshFrameIsEmpty()
{
    const CAnimatedPortrait frame;
    QVERIFY(frame.name.isEmpty());
    QVERIFY(frame.image.isNull());
    QVERIFY(frame.rects.isEmpty());
    QVERIFY(frame.path.isEmpty());
    QCOMPARE(frame.regionSize, QSize(-1, -1));
    QCOMPARE(frame.size, QSizeF(-1.0, -1.0));
}

void TestObjectDefaults::aFrameOfAPictureHasItsSize()
{
    const CAnimatedPortrait frame(QStringLiteral("f"), Pictures::solid(7, 3, Qt::red));
    QCOMPARE(frame.name, QStringLiteral("f"));
    QCOMPARE(frame.image.size(), QSize(7, 3));
    QCOMPARE(frame.size, QSizeF(7.0, 3.0));
    QVERIFY(frame.rects.isEmpty());
    QVERIFY(frame.path.isEmpty());
    QCOMPARE(frame.regionSize, QSize(-1, -1));
}

void TestObjectDefaults::aCopyOfAFrameHasEveryField()
{
    CAnimatedPortrait frame(QStringLiteral("f"), Pictures::solid(7, 3, Qt::red));
    frame.rects = {QRect(1, 2, 3, 4)};
    frame.path.addRect(QRectF(1.0, 2.0, 3.0, 4.0));
    frame.path.setFillRule(Qt::WindingFill);
    frame.regionSize = QSize(8, 9);
    frame.size = QSizeF(10.5, 11.5);
    const CAnimatedPortrait copy = frame;
    QCOMPARE(copy.name, QStringLiteral("f"));
    QCOMPARE(copy.image.cacheKey(), frame.image.cacheKey());
    QCOMPARE(copy.rects, QList<QRect>{QRect(1, 2, 3, 4)});
    QCOMPARE(copy.path.boundingRect(), QRectF(1.0, 2.0, 3.0, 4.0));
    QCOMPARE(copy.path.fillRule(), Qt::WindingFill);
    QCOMPARE(copy.regionSize, QSize(8, 9));
    QCOMPARE(copy.size, QSizeF(10.5, 11.5));
}

void TestObjectDefaults::aCopyOfAFrameIsItsOwn()
{
    const CAnimatedPortrait frame(QStringLiteral("f"), Pictures::solid(2, 2, Qt::red));
    CAnimatedPortrait copy = frame;
    copy.name = QStringLiteral("g");
    copy.image.fill(Qt::blue);
    copy.rects.append(QRect(0, 0, 1, 1));
    QCOMPARE(frame.name, QStringLiteral("f"));
    QCOMPARE(frame.image.pixelColor(0, 0), QColor(Qt::red));
    QVERIFY(frame.rects.isEmpty());
}

QTEST_MAIN(TestObjectDefaults)
#include "tst_object_defaults.moc"
