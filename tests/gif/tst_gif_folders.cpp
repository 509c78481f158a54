#include "movieframes.h"

#include <QtCore/QDir>

namespace
{

/// One row for each GIF of a folder. Without such a folder one row goes through the samples, so
/// that the test always compares something.
void addRows(const QString &folder)
{
    QTest::addColumn<QStringList>("files");
    const auto gifsOf = [](const QString &path) {
        QStringList files;
        for (const QFileInfo &info : QDir(path).entryInfoList({QStringLiteral("*.gif")}))
            files.append(info.filePath());
        return files;
    };
    const QStringList files = gifsOf(folder);
    for (const QString &file : files)
        QTest::newRow(qPrintable(QFileInfo(file).fileName())) << QStringList({file});
    if (files.isEmpty()) {
        QTest::newRow("no such folder: the samples instead")
            << gifsOf(QStringLiteral(SAMPLES_FOLDER));
    }
}

} // namespace

/// GIFs as they are found in the world, beside what Qt alone reads from them.
class TestGifFolders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSamplesAreReadAsQtReadsThem_data();
    void theSamplesAreReadAsQtReadsThem();
    void theSamplesHaveTheirFigures_data();
    void theSamplesHaveTheirFigures();
    void otherGifsAreReadAsQtReadsThem_data();
    void otherGifsAreReadAsQtReadsThem();
    void brokenGifsAreReadAsQtReadsThem_data();
    void brokenGifsAreReadAsQtReadsThem();
};

void TestGifFolders::theSamplesAreReadAsQtReadsThem_data()
{
    addRows(QStringLiteral(SAMPLES_FOLDER));
}

void TestGifFolders::theSamplesAreReadAsQtReadsThem()
{
    QFETCH(QStringList, files);
    QVERIFY(!files.isEmpty());
    for (const QString &file : files) {
        int count = -1;
        MovieFrames::compare(file, count);
        QVERIFY(count > 0);
    }
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

void TestGifFolders::otherGifsAreReadAsQtReadsThem_data()
{
    addRows(QStringLiteral(CORPUS_FOLDER "/gif"));
}

void TestGifFolders::otherGifsAreReadAsQtReadsThem()
{
    QFETCH(QStringList, files);
    for (const QString &file : files) {
        int count = -1;
        MovieFrames::compare(file, count);
        QVERIFY(count > 0);
    }
}

void TestGifFolders::brokenGifsAreReadAsQtReadsThem_data()
{
    addRows(QStringLiteral(CORPUS_FOLDER "/gif-hostile"));
}

void TestGifFolders::brokenGifsAreReadAsQtReadsThem()
{
    QFETCH(QStringList, files);
    for (const QString &file : files) {
        int count = -1;
        MovieFrames::compare(file, count);
        QVERIFY(count >= 0);
    }
}

QTEST_MAIN(TestGifFolders)
#include "tst_gif_folders.moc"
