#include "movieframes.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/quiet.h"

#include <QtCore/QBuffer>
#include <QtCore/QTemporaryDir>

namespace
{

/// Three frames of different sizes and disposals, and a loop extension.
GifBuilder film()
{
    GifBuilder::Frame patch;
    patch.rect = QRect(2, 1, 5, 4);
    patch.colorIndex = 1;
    patch.delayCs = 20;
    patch.disposal = GifBuilder::RestoreBackground;
    GifBuilder::Frame corner;
    corner.rect = QRect(0, 0, 3, 3);
    corner.colorIndex = 2;
    corner.disposal = GifBuilder::RestorePrevious;
    corner.transparentIndex = 3;
    return GifBuilder(12, 8).loop(2).add(0, 30).add(patch).add(corner);
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

} // namespace

/// What is not a GIF, or not a whole one: the frames are those that Qt gives, and nothing crashes.
class TestGifDamaged : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNoGifGivesNoFrames_data();
    void whatIsNoGifGivesNoFrames();
    void aPngNamedGifIsReadAsQtReadsIt();
    void aFileCutAnywhereGivesWhatQtGives();
    void aDeviceCutAnywhereNeverCrashes();
    void aByteChangedAnywhereGivesWhatQtGives();
    void aLaterFrameDamagedGivesWhatQtGives_data();
    void aLaterFrameDamagedGivesWhatQtGives();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

void TestGifDamaged::whatIsNoGifGivesNoFrames_data()
{
    QTest::addColumn<QString>("file");
    writeFile(path(QStringLiteral("empty.gif")), {});
    writeFile(path(QStringLiteral("text.gif")), "This is not a picture.\n");
    writeFile(path(QStringLiteral("signature.gif")), "GIF89a");
    writeFile(path(QStringLiteral("zeros.gif")), QByteArray(1000, '\0'));
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("folder.gif")));
    QTest::newRow("missing") << path(QStringLiteral("missing.gif"));
    QTest::newRow("empty") << path(QStringLiteral("empty.gif"));
    QTest::newRow("text") << path(QStringLiteral("text.gif"));
    QTest::newRow("the signature alone") << path(QStringLiteral("signature.gif"));
    QTest::newRow("zeros") << path(QStringLiteral("zeros.gif"));
    QTest::newRow("a folder") << path(QStringLiteral("folder.gif"));
    QTest::newRow("no name") << QString();
}

void TestGifDamaged::whatIsNoGifGivesNoFrames()
{
    const Quiet quiet; // Qt warns of the empty path, once for each reader
    QFETCH(QString, file);
    Stage stage(solidFrames({{5, 5}}));
    stage->setLoopCount(77);
    stage->loadFromGifFile(file);
    QCOMPARE(stage.probe.frames().size(), 1); // the one that was there
    QCOMPARE(stage.probe.loopCount(), -1);
    QCOMPARE(stage.log.entries(), QStringList());
    // A reader of the path, or where that cannot read, the movie: both say what Qt says.
    QCOMPARE(stage.probe.timer()->interval(), stage.probe.shiftInterval());
    int count = -1;
    MovieFrames::compare(file, count);
    QCOMPARE(count, 0);
}

void TestGifDamaged::aPngNamedGifIsReadAsQtReadsIt()
{
    QVERIFY(Pictures::solid(5, 4, Qt::green).save(path(QStringLiteral("png.gif")), "PNG"));
    int count = -1;
    MovieFrames::compare(path(QStringLiteral("png.gif")), count);
}

void TestGifDamaged::aFileCutAnywhereGivesWhatQtGives()
{
    const QByteArray whole = film().data();
    const QString file = path(QStringLiteral("cut.gif"));
    int count = -1;
    for (int length = 0; length <= whole.size(); ++length) {
        writeFile(file, whole.left(length));
        MovieFrames::compare(file, count);
        QVERIFY2(!QTest::currentTestFailed(),
                 qPrintable(QStringLiteral("cut after %1 bytes").arg(length)));
    }
    QCOMPARE(count, 3); // the whole file was the last
}

void TestGifDamaged::aDeviceCutAnywhereNeverCrashes()
{
    const QString file = path(QStringLiteral("whole.gif"));
    film().write(file);
    const QByteArray whole = film().data();
    for (int length = 0; length <= whole.size(); ++length) {
        QBuffer device;
        device.setData(whole.left(length));
        QVERIFY(device.open(QIODevice::ReadOnly));
        Stage stage;
        stage->loadFromGifFile(file, &device);
        QCOMPARE(stage.probe.frames().size(), 3);
        QCOMPARE(stage.probe.timer()->interval(), stage.probe.shiftInterval());
    }
}

void TestGifDamaged::aByteChangedAnywhereGivesWhatQtGives()
{
    const QByteArray whole = film().data();
    const QString file = path(QStringLiteral("changed.gif"));
    // Not the screen's size in bytes 6 to 9: it would only cost memory.
    for (int at = 10; at < whole.size(); ++at) {
        for (const int mask : {0x01, 0x80, 0xff}) {
            QByteArray changed = whole;
            changed[at] = char(changed.at(at) ^ mask);
            writeFile(file, changed);
            int count = -1;
            MovieFrames::compare(file, count);
            QVERIFY2(!QTest::currentTestFailed(),
                     qPrintable(QStringLiteral("byte %1 changed by %2").arg(at).arg(mask)));
        }
    }
}

void TestGifDamaged::aLaterFrameDamagedGivesWhatQtGives_data()
{
    // The last frame takes 34 bytes with its descriptors; its pixels come last.
    QTest::addColumn<int>("fromEnd");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("its code size") << 8 << QByteArray(1, '\x0f');
    QTest::newRow("its pixels") << 6 << QByteArray(4, '\xff');
    QTest::newRow("the block after it") << 1 << QByteArray(1, '\x99');
    QTest::newRow("its descriptor") << 18 << QByteArray(4, '\xff');
}

void TestGifDamaged::aLaterFrameDamagedGivesWhatQtGives()
{
    QFETCH(int, fromEnd);
    QFETCH(QByteArray, bytes);
    QByteArray damaged = film().data();
    damaged.replace(damaged.size() - fromEnd, bytes.size(), bytes);
    const QString file = path(QStringLiteral("damaged.gif"));
    writeFile(file, damaged);
    int count = -1;
    MovieFrames::compare(file, count);
    QVERIFY(count >= 2);

    // It plays and paints whatever it has.
    Stage stage;
    stage->loadFromGifFile(file);
    stage->updateRegion(true);
    stage->playImage(true);
    for (int tick = 0; tick < 5; ++tick) {
        stage.probe.tick();
        stage.page->rendered();
    }
}

QTEST_MAIN(TestGifDamaged)
#include "tst_gif_damaged.moc"
