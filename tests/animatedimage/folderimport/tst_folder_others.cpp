#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/stage.h"
#include "tests/support/texts.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

/// The other ways in: a path that is taken for a GIF, a path with a device, and a picture in
/// memory.
class TestFolderOthers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anyPathWithGifInItIsAGif_data();
    void anyPathWithGifInItIsAGif();
    void aFolderBelowAGifPathIsNotRead();
    void theTopLeftCornerStays();
    void whoIsToldOfTheSize();
    void aGifWithoutFramesKeepsTheSize();
    void aDeviceIsTakenForAGifOnly();
    void aPictureInMemoryBecomesTheOnlyFrame();
    void aPictureInMemoryIsCopiedInFull();
    void aPictureWithoutPixelsIsAFrameOfNoSize();
    void theReplacedFramesTakeNoNames();
    void aPictureIsNamedAfterItsObject_data();
    void aPictureIsNamedAfterItsObject();
    void aPictureThatIsNoneChangesNothing();

private:
    QString gif(const QString &name) const;

    QTemporaryDir m_folder;
};

/// A GIF of two frames of 6 x 5, shown for 120 ms each.
QString TestFolderOthers::gif(const QString &name) const
{
    const QString path = m_folder.filePath(name);
    QDir().mkpath(QFileInfo(path).path());
    GifBuilder(6, 5).loop(3).add(0, 12).add(1, 12).write(path);
    return path;
}

void TestFolderOthers::anyPathWithGifInItIsAGif_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("upper case") << QStringLiteral("FOO.GIF");
    QTest::newRow("in the middle") << QStringLiteral("a.gifs.dat");
    QTest::newRow("in a folder") << QStringLiteral("x.gifs/anim");
}

void TestFolderOthers::anyPathWithGifInItIsAGif()
{
    QFETCH(QString, path);
    Stage stage;
    QVERIFY(stage->loadFromFile(gif(path)));
    QCOMPARE(stage.probe.frames().size(), 2);
    QCOMPARE(stage->getSize(), QSizeF(6, 5));
    QCOMPARE(stage.probe.timer()->interval(), 120);
}

void TestFolderOthers::aFolderBelowAGifPathIsNotRead()
{
    const QString folder = m_folder.filePath(QStringLiteral("y.Gifs/anim"));
    QVERIFY(QDir().mkpath(folder));
    QFile config(folder + QStringLiteral("/config.json"));
    QVERIFY(config.open(QIODevice::WriteOnly));
    QVERIFY(
        config.write(R"({"ImageList":[{"filename":"a.png"}],"LoopCount":7,"LockScale":false})"));
    config.close();
    Stage stage(solidFrames({{7, 7}}));
    QVERIFY(stage->loadFromFile(folder));
    QVERIFY(stage.probe.frames().isEmpty());
    // What a film that cannot be read leaves.
    QCOMPARE(stage.probe.loopCount(), -1);
    QCOMPARE(stage.probe.timer()->interval(), stage.probe.shiftInterval());
    QVERIFY(stage.probe.keepRatio());
    QCOMPARE(stage->getSize(), QSizeF(7, 7));
}

void TestFolderOthers::theTopLeftCornerStays()
{
    Stage stage(solidFrames({{100, 100}}));
    stage->setPos(QPointF(50, 60), false);
    stage->loadFromFile(QStringLiteral(SAMPLES_FOLDER "/bounce"));
    QCOMPARE(stage->getPos(), QPointF(50, 60));
    stage->loadFromFile(gif(QStringLiteral("film.gif")));
    QCOMPARE(stage->getPos(), QPointF(50, 60));
    const QImage picture = Pictures::solid(2, 2, Qt::red);
    stage->loadFromImage(&picture);
    QCOMPARE(stage->getPos(), QPointF(50, 60));
    QCOMPARE(stage->getSize(), QSizeF(2, 2));
}

void TestFolderOthers::whoIsToldOfTheSize()
{
    Stage stage;
    // A folder sets the size without a word; a GIF and a picture say so.
    stage->loadFromFile(QStringLiteral(SAMPLES_FOLDER "/bounce"));
    QCOMPARE(stage->getSize(), QSizeF(128, 160));
    QCOMPARE(stage.log.entries(), QStringList());

    stage->loadFromFile(gif(QStringLiteral("film.gif")));
    QCOMPARE(stage.log.entries(), texts({"changed 104"}));
    stage.log.clear();
    const QImage picture = Pictures::solid(2, 2, Qt::red);
    stage->loadFromImage(&picture);
    QCOMPARE(stage.log.entries(), texts({"changed 104"}));
}

void TestFolderOthers::aGifWithoutFramesKeepsTheSize()
{
    Stage stage(solidFrames({{7, 7}}));
    QVERIFY(stage->loadFromFile(m_folder.filePath(QStringLiteral("none.gif"))));
    QVERIFY(stage.probe.frames().isEmpty());
    QCOMPARE(stage->getSize(), QSizeF(7, 7));
}

void TestFolderOthers::aDeviceIsTakenForAGifOnly()
{
    Stage stage(solidFrames({{7, 7}, {7, 7}}));
    stage.probe.runningIndex() = 1;
    QBuffer buffer;
    buffer.open(QIODevice::ReadOnly);
    QVERIFY(!stage->loadFromFile(QStringLiteral(SAMPLES_FOLDER "/bounce"), &buffer));
    QVERIFY(stage.probe.frames().isEmpty());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.log.entries(), QStringList());

    // Its frames come from the file, the device tells the interval.
    const QString film = gif(QStringLiteral("film.gif"));
    QByteArray bytes = GifBuilder(2, 2).add(0, 30).data();
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    QVERIFY(stage->loadFromFile(film, &device));
    QCOMPARE(stage.frameNames(), texts({"film_1", "film_2"}));
    QCOMPARE(stage->getSize(), QSizeF(6, 5));
    QCOMPARE(stage.probe.shiftInterval(), 300);
    QCOMPARE(stage.log.entries(), texts({"changed 104"}));

    QVERIFY(stage->loadFromFile(film, nullptr));
}

void TestFolderOthers::aPictureInMemoryBecomesTheOnlyFrame()
{
    Stage stage(solidFrames({{1, 1}, {1, 1}}));
    stage.probe.runningIndex() = 1;
    QImage picture = Pictures::solid(5, 3, Qt::red);
    QVERIFY(stage->loadFromImage(&picture));
    picture.fill(Qt::blue);
    QCOMPARE(stage.probe.frames().size(), 1);
    QCOMPARE(stage.probe.frame(0).image, Pictures::solid(5, 3, Qt::red));
    QCOMPARE(stage.probe.frame(0).size, QSizeF(5, 3));
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{QRect(0, 0, 4, 3)});
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage->getSize(), QSizeF(5, 3));
}

void TestFolderOthers::aPictureInMemoryIsCopiedInFull()
{
    // Pixels that belong to the caller, who uses their place again.
    QVector<QRgb> pixels(15, qRgba(255, 0, 0, 255));
    const QImage picture(reinterpret_cast<const uchar *>(pixels.constData()), 5, 3, 20,
                         QImage::Format_ARGB32);
    Stage stage;
    QVERIFY(stage->loadFromImage(&picture));
    for (QRgb &pixel : pixels)
        pixel = qRgba(0, 0, 255, 255);
    QCOMPARE(stage.probe.frame(0).image, Pictures::solid(5, 3, Qt::red));
}

void TestFolderOthers::aPictureWithoutPixelsIsAFrameOfNoSize()
{
    Stage stage(solidFrames({{7, 7}}));
    const QImage picture;
    QVERIFY(stage->loadFromImage(&picture));
    QCOMPARE(stage.probe.frames().size(), 1);
    QVERIFY(stage.probe.frame(0).image.isNull());
    QCOMPARE(stage.probe.frame(0).size, QSizeF(0, 0));
    QCOMPARE(stage->getSize(), QSizeF(0, 0));
}

void TestFolderOthers::theReplacedFramesTakeNoNames()
{
    Stage stage(solidFrames({{1, 1}, {1, 1}}));
    stage->setOtherParams(QStringLiteral("object_name"), QStringLiteral("cat_2"));
    stage.probe.frame(0).name = QStringLiteral("cat");
    stage.probe.frame(1).name = QStringLiteral("cat_1");
    const QImage picture = Pictures::solid(5, 3, Qt::red);
    stage->loadFromImage(&picture);
    QCOMPARE(stage.frameNames(), texts({"cat"}));
}

void TestFolderOthers::aPictureIsNamedAfterItsObject_data()
{
    QTest::addColumn<QString>("objectName");
    QTest::addColumn<QString>("frameName");
    QTest::newRow("numbered") << QStringLiteral("cat_2") << QStringLiteral("cat");
    QTest::newRow("two parts") << QStringLiteral("my_cat_2") << QStringLiteral("my_cat");
    QTest::newRow("none") << QString() << QString();
}

void TestFolderOthers::aPictureIsNamedAfterItsObject()
{
    QFETCH(QString, objectName);
    Stage stage;
    stage->setOtherParams(QStringLiteral("object_name"), objectName);
    const QImage picture = Pictures::solid(5, 3, Qt::red);
    stage->loadFromImage(&picture);
    QTEST(stage.probe.frame(0).name, "frameName");
}

void TestFolderOthers::aPictureThatIsNoneChangesNothing()
{
    Stage stage(solidFrames({{4, 4}}));
    QVERIFY(stage->loadFromImage(nullptr));
    QCOMPARE(stage.probe.frames().size(), 1);
}

QTEST_MAIN(TestFolderOthers)
#include "tst_folder_others.moc"
