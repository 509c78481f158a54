#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtCore/QBuffer>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

/// Frames, names and timing of well-formed GIFs.
class TestGifImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesAreNamedAfterTheFile_data();
    void framesAreNamedAfterTheFile();
    void framesHaveTheirPicturesAndSizes();
    void aFrameIsShownOnTheWholeScreen();
    void transparentPixelsStayTransparent();
    void framesAreNotMeasured();
    void theIntervalIsThatAfterTheFirstFrame_data();
    void theIntervalIsThatAfterTheFirstFrame();
    void theLoopCountIsOneLess_data();
    void theLoopCountIsOneLess();
    void theTimerIsNeitherStartedNorStopped_data();
    void theTimerIsNeitherStartedNorStopped();
    void anUnreadableFileStopsATimerThatTicks_data();
    void anUnreadableFileStopsATimerThatTicks();
    void nothingElseIsTouched();
    void importingTwiceAppends();

    void theDeviceGivesTheIntervalAlone();
    void theDeviceMovesOnAndIsNotClosed();
    void anUnreadableDeviceLeavesTheIntervalToTheFile();
    void aDeviceBesideAMissingFileGivesTheIntervalAlone();
    void withoutNameOrDeviceNothingChanges_data();
    void withoutNameOrDeviceNothingChanges();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

namespace
{

QStringList namesOf(Stage &stage)
{
    QStringList names;
    for (const CAnimatedPortrait &frame : qAsConst(stage.probe.frames()))
        names.append(frame.name);
    return names;
}

/// Red, green and blue, 50, 70 and 90 hundredths of a second long.
GifBuilder threeFrames()
{
    return GifBuilder(6, 4).add(0, 50).add(1, 70).add(2, 90);
}

} // namespace

void TestGifImport::framesAreNamedAfterTheFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *file, const QStringList &expected) {
        QTest::newRow(file) << QString::fromUtf8(file) << expected;
    };
    row("anim.gif", {QStringLiteral("anim_1"), QStringLiteral("anim_2"), QStringLiteral("anim_3")});
    row("a.b.gif", {QStringLiteral("a_1"), QStringLiteral("a_2"), QStringLiteral("a_3")});
    row("cat.anim.gif",
        {QStringLiteral("cat_1"), QStringLiteral("cat_2"), QStringLiteral("cat_3")});
    row(".gif", {QStringLiteral("_1"), QStringLiteral("_2"), QStringLiteral("_3")});
    row("no extension", {QStringLiteral("no extension_1"), QStringLiteral("no extension_2"),
                         QStringLiteral("no extension_3")});
    row("50%1 %2.gif",
        {QStringLiteral("50%1 %2_1"), QStringLiteral("50%1 %2_2"), QStringLiteral("50%1 %2_3")});
    row("\xE7\x8C\xAB.gif",
        {QStringLiteral("\u732B_1"), QStringLiteral("\u732B_2"), QStringLiteral("\u732B_3")});
}

void TestGifImport::framesAreNamedAfterTheFile()
{
    QFETCH(QString, file);
    threeFrames().write(path(file));
    Stage stage;
    stage->loadFromGifFile(path(file));
    QTEST(namesOf(stage), "expected");
}

void TestGifImport::framesHaveTheirPicturesAndSizes()
{
    threeFrames().write(path(QStringLiteral("anim.gif")));
    Stage stage;
    stage->loadFromGifFile(path(QStringLiteral("anim.gif")));
    QCOMPARE(stage.probe.frames().size(), 3);
    const QList<QColor> colors{Qt::red, Qt::green, Qt::blue};
    for (int i = 0; i < 3; ++i) {
        const CAnimatedPortrait &frame = stage.probe.frame(i);
        QCOMPARE(frame.size, QSizeF(6.0, 4.0));
        QCOMPARE(frame.image.size(), QSize(6, 4));
        QCOMPARE(frame.image.convertToFormat(QImage::Format_ARGB32),
                 Pictures::solid(6, 4, colors.at(i)));
    }
}

void TestGifImport::aFrameIsShownOnTheWholeScreen()
{
    GifBuilder::Frame patch;
    patch.rect = QRect(1, 1, 2, 1);
    patch.colorIndex = 2;
    patch.disposal = GifBuilder::Keep;
    GifBuilder(4, 3).add(0, 10).add(patch).write(path(QStringLiteral("patch.gif")));
    Stage stage;
    stage->loadFromGifFile(path(QStringLiteral("patch.gif")));
    QCOMPARE(stage.probe.frames().size(), 2);

    QImage expected = Pictures::solid(4, 3, Qt::red);
    expected.setPixelColor(1, 1, Qt::blue);
    expected.setPixelColor(2, 1, Qt::blue);
    QCOMPARE(stage.probe.frame(1).image.convertToFormat(QImage::Format_ARGB32), expected);
    QCOMPARE(stage.probe.frame(1).size, QSizeF(4.0, 3.0));
}

void TestGifImport::transparentPixelsStayTransparent()
{
    // A red patch on a screen that shows nothing elsewhere.
    GifBuilder::Frame patch;
    patch.rect = QRect(2, 1, 1, 1);
    patch.colorIndex = 0;
    patch.transparentIndex = 3;
    GifBuilder(4, 3).add(patch).write(path(QStringLiteral("hole.gif")));
    Stage stage;
    stage->loadFromGifFile(path(QStringLiteral("hole.gif")));
    QCOMPARE(stage.probe.frames().size(), 1);
    const QImage image = stage.probe.frame(0).image;
    QCOMPARE(image.size(), QSize(4, 3));
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 4; ++x)
            QCOMPARE(image.pixelColor(x, y).alpha(), x == 2 && y == 1 ? 255 : 0);
    }
    QCOMPARE(image.pixelColor(2, 1), QColor(Qt::red));
}

void TestGifImport::framesAreNotMeasured()
{
    threeFrames().write(path(QStringLiteral("anim.gif")));
    Stage stage;
    stage->loadFromGifFile(path(QStringLiteral("anim.gif")));
    for (const CAnimatedPortrait &frame : qAsConst(stage.probe.frames())) {
        QVERIFY(frame.rects.isEmpty());
        QVERIFY(frame.path.isEmpty());
        QCOMPARE(frame.regionSize, QSize(-1, -1));
    }
}

void TestGifImport::theIntervalIsThatAfterTheFirstFrame_data()
{
    QTest::addColumn<QList<int>>("delaysCs");
    QTest::addColumn<int>("expected");
    QTest::newRow("one frame") << QList<int>{25} << 250;
    QTest::newRow("the first is the shortest") << QList<int>{7, 70, 90} << 70;
    QTest::newRow("the first is the longest") << QList<int>{500, 10, 10} << 5000;
    QTest::newRow("the greatest") << QList<int>{65535, 10} << 655350;
}

void TestGifImport::theIntervalIsThatAfterTheFirstFrame()
{
    QFETCH(QList<int>, delaysCs);
    QFETCH(int, expected);
    GifBuilder builder(3, 3);
    for (int i = 0; i < delaysCs.size(); ++i)
        builder.add(i, delaysCs.at(i));
    builder.write(path(QStringLiteral("delay.gif")));
    Stage stage;
    stage->loadFromGifFile(path(QStringLiteral("delay.gif")));
    QCOMPARE(stage.probe.shiftInterval(), expected);
    QCOMPARE(stage.probe.timer()->interval(), expected);
}

void TestGifImport::theLoopCountIsOneLess_data()
{
    QTest::addColumn<int>("inFile");
    QTest::addColumn<int>("expected");
    QTest::newRow("no loop extension") << -1 << -1;
    QTest::newRow("endless") << 0 << -1;
    QTest::newRow("1") << 1 << 0;
    QTest::newRow("2") << 2 << 1;
    QTest::newRow("3") << 3 << 2;
    QTest::newRow("the greatest") << 65535 << 65534;
}

void TestGifImport::theLoopCountIsOneLess()
{
    QFETCH(int, inFile);
    GifBuilder builder = threeFrames();
    if (inFile >= 0)
        builder.loop(inFile);
    builder.write(path(QStringLiteral("loop.gif")));
    Stage stage;
    stage->setLoopCount(77);
    stage->loadFromGifFile(path(QStringLiteral("loop.gif")));
    QTEST(stage.probe.loopCount(), "expected");
}

void TestGifImport::theTimerIsNeitherStartedNorStopped_data()
{
    QTest::addColumn<bool>("ticking");
    QTest::newRow("still") << false;
    QTest::newRow("ticking") << true;
}

void TestGifImport::theTimerIsNeitherStartedNorStopped()
{
    QFETCH(bool, ticking);
    threeFrames().write(path(QStringLiteral("anim.gif")));
    Stage stage;
    if (ticking)
        stage->setShiftInterval(30);
    stage->loadFromGifFile(path(QStringLiteral("anim.gif")));
    QCOMPARE(stage.probe.timer()->isActive(), ticking);
    QCOMPARE(stage.probe.timer()->interval(), 500);
}

void TestGifImport::anUnreadableFileStopsATimerThatTicks_data()
{
    QTest::addColumn<bool>("withDevice");
    QTest::newRow("by path") << false;
    QTest::newRow("with a device") << true;
}

void TestGifImport::anUnreadableFileStopsATimerThatTicks()
{
    QFETCH(bool, withDevice);
    Stage stage(solidFrames({{5, 5}, {7, 7}}));
    stage->playImage(true);
    QVERIFY(stage.probe.timer()->isActive());
    QBuffer empty;
    QVERIFY(empty.open(QIODevice::ReadOnly));

    const QString missing = path(QStringLiteral("missing.gif"));
    QVERIFY(withDevice ? stage->loadFromFile(missing, &empty) : stage->loadFromFile(missing));

    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.timer()->interval(), 0);
    QCOMPARE(stage.probe.shiftInterval(), 0);
    QVERIFY(stage.probe.isRunning());
    stage.log.clear();
    QCoreApplication::processEvents();
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestGifImport::nothingElseIsTouched()
{
    threeFrames().write(path(QStringLiteral("anim.gif")));
    Stage stage(solidFrames({{5, 5}, {7, 7}}));
    stage->setPos(QPointF(30.0, 40.0), false);
    stage->playImage(true);
    stage.probe.tick();
    stage.probe.loopsDone() = 4;
    const QSizeF size = stage->getSize();
    stage.log.clear();

    stage->loadFromGifFile(path(QStringLiteral("anim.gif")));

    QCOMPARE(stage.log.entries(), QStringList());
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.probe.loopsDone(), 4);
    QCOMPARE(stage->getSize(), size);
    QCOMPARE(stage->getPos(), QPointF(30.0 - 1.0, 40.0 - 1.0)); // where the tick put it
    QCOMPARE(stage.probe.frame(0).size, QSizeF(5.0, 5.0));
    QVERIFY(stage.probe.otherParams().isEmpty());
}

void TestGifImport::importingTwiceAppends()
{
    threeFrames().loop(3).write(path(QStringLiteral("one.gif")));
    GifBuilder(2, 2).loop(9).add(3, 20).write(path(QStringLiteral("two.gif")));
    Stage stage;
    stage->loadFromGifFile(path(QStringLiteral("one.gif")));
    stage->loadFromGifFile(path(QStringLiteral("two.gif")));
    stage->loadFromGifFile(path(QStringLiteral("two.gif")));
    QCOMPARE(namesOf(stage),
             QStringList({QStringLiteral("one_1"), QStringLiteral("one_2"), QStringLiteral("one_3"),
                          QStringLiteral("two_1"), QStringLiteral("two_1")}));
    QCOMPARE(stage.probe.shiftInterval(), 200);
    QCOMPARE(stage.probe.loopCount(), 8);
}

void TestGifImport::theDeviceGivesTheIntervalAlone()
{
    threeFrames().loop(3).write(path(QStringLiteral("anim.gif")));
    QBuffer device;
    device.setData(GifBuilder(50, 50).loop(8).add(3, 11).add(3, 12).data());
    QVERIFY(device.open(QIODevice::ReadOnly));
    Stage stage;
    stage->loadFromGifFile(path(QStringLiteral("anim.gif")), &device);
    QCOMPARE(stage.probe.frames().size(), 3);
    QCOMPARE(stage.probe.frame(0).size, QSizeF(6.0, 4.0));
    QCOMPARE(stage.probe.frame(2).name, QStringLiteral("anim_3"));
    QCOMPARE(stage.probe.shiftInterval(), 110);
    QCOMPARE(stage.probe.timer()->interval(), 110);
    QCOMPARE(stage.probe.loopCount(), 2);
}

void TestGifImport::theDeviceMovesOnAndIsNotClosed()
{
    threeFrames().write(path(QStringLiteral("anim.gif")));
    QBuffer device;
    device.setData(threeFrames().data());
    QVERIFY(device.open(QIODevice::ReadOnly));
    Stage stage;
    stage->loadFromGifFile(path(QStringLiteral("anim.gif")), &device);
    QVERIFY(device.isOpen());
    QVERIFY(device.pos() > 0);
}

void TestGifImport::anUnreadableDeviceLeavesTheIntervalToTheFile()
{
    // One frame: the delay after it is also the movie's last.
    GifBuilder(6, 4).add(0, 33).write(path(QStringLiteral("anim.gif")));
    QBuffer device;
    device.setData(QByteArray("no picture"));
    QVERIFY(device.open(QIODevice::ReadOnly));
    Stage stage;
    stage->loadFromGifFile(path(QStringLiteral("anim.gif")), &device);
    QCOMPARE(stage.probe.frames().size(), 1);
    QCOMPARE(stage.probe.shiftInterval(), 330);
    QCOMPARE(stage.probe.timer()->interval(), 330);
}

void TestGifImport::aDeviceBesideAMissingFileGivesTheIntervalAlone()
{
    QBuffer device;
    device.setData(threeFrames().loop(5).data());
    QVERIFY(device.open(QIODevice::ReadOnly));
    Stage stage;
    stage->loadFromGifFile(path(QStringLiteral("missing.gif")), &device);
    QVERIFY(stage.probe.frames().isEmpty());
    QCOMPARE(stage.probe.shiftInterval(), 500);
    QCOMPARE(stage.probe.timer()->interval(), 500);
    QCOMPARE(stage.probe.loopCount(), -1);
}

void TestGifImport::withoutNameOrDeviceNothingChanges_data()
{
    QTest::addColumn<bool>("hasName");
    QTest::addColumn<bool>("hasDevice");
    QTest::newRow("no name") << false << true;
    QTest::newRow("no device") << true << false;
    QTest::newRow("neither") << false << false;
}

void TestGifImport::withoutNameOrDeviceNothingChanges()
{
    QFETCH(bool, hasName);
    QFETCH(bool, hasDevice);
    threeFrames().loop(3).write(path(QStringLiteral("anim.gif")));
    QBuffer device;
    device.setData(threeFrames().data());
    QVERIFY(device.open(QIODevice::ReadOnly));
    Stage stage(solidFrames({{5, 5}}));
    stage->setLoopCount(77);
    stage->loadFromGifFile(hasName ? path(QStringLiteral("anim.gif")) : QString(),
                           hasDevice ? &device : nullptr);
    QCOMPARE(stage.probe.frames().size(), 1);
    QCOMPARE(stage.probe.shiftInterval(), 200);
    QCOMPARE(stage.probe.timer()->interval(), 200);
    QCOMPARE(stage.probe.loopCount(), 77);
    QCOMPARE(device.pos(), 0);
}

QTEST_MAIN(TestGifImport)
#include "tst_gif_import.moc"
