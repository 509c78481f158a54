#include "movieframes.h"

#include <QtCore/QDir>

/// The project's own samples, compared with what Qt reads from them.
class TestGifFolders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSamplesAreReadAsQtReadsThem_data();
    void theSamplesAreReadAsQtReadsThem();
    void theSamplesHaveTheirFigures_data();
    void theSamplesHaveTheirFigures();
};

void TestGifFolders::theSamplesAreReadAsQtReadsThem_data()
{
    QTest::addColumn<QString>("file");
    const QDir samples(QStringLiteral(SAMPLES_FOLDER));
    const QFileInfoList found = samples.entryInfoList({QStringLiteral("*.gif")}, QDir::Files);
    for (const QFileInfo &info : found)
        QTest::newRow(qPrintable(info.fileName())) << info.filePath();
}

void TestGifFolders::theSamplesAreReadAsQtReadsThem()
{
    QFETCH(QString, file);
    int count = -1;
    MovieFrames::compare(file, count);
    QVERIFY(count > 0);
}

void TestGifFolders::theSamplesHaveTheirFigures_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("frames");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("loopCount");
    // As the samples' own table has them.
    const auto row = [](const char *name, int frames, QSize size, int interval, int loopCount) {
        QTest::newRow(name) << QString::fromLatin1(name) << frames << size << interval << loopCount;
    };
    row("walk", 12, {160, 160}, 100, -1);
    row("loop-forever", 8, {112, 140}, 80, -1);
    row("loop-three", 8, {112, 104}, 90, 2);
    row("uneven", 11, {128, 132}, 800, -1);
}

void TestGifFolders::theSamplesHaveTheirFigures()
{
    QFETCH(QString, name);
    QFETCH(QSize, size);
    Stage stage;
    stage->loadFromGifFile(QStringLiteral(SAMPLES_FOLDER "/%1.gif").arg(name));
    QTEST(stage.probe.frames().size(), "frames");
    QTEST(stage.probe.shiftInterval(), "interval");
    QTEST(stage.probe.loopCount(), "loopCount");
    for (int i = 0; i < stage.probe.frames().size(); ++i) {
        QCOMPARE(stage.probe.frame(i).image.size(), size);
        QCOMPARE(stage.probe.frame(i).size, QSizeF(size));
        QCOMPARE(stage.probe.frame(i).name, QStringLiteral("%1_%2").arg(name).arg(i + 1));
        // All have a transparent background.
        QCOMPARE(stage.probe.frame(i).image.pixelColor(0, 0).alpha(), 0);
    }
}

QTEST_MAIN(TestGifFolders)
#include "tst_gif_folders.moc"
