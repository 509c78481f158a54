#include "tests/animatedimage/gifimport/movieframes.h"
#include "tests/flipbook/flipbookrun.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>

/// GIFs from elsewhere, sound ones and broken ones, through the plug-in and flipbook. They are not
/// part of the project: the variable CORPUS of the environment names the folder that holds them, in
/// gif/ and gif-hostile/. Without it there is nothing to test.
class TestCorpus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void framesAreThoseThatQtReads_data();
    void framesAreThoseThatQtReads();
    void infoAndSheetTakeSoundFiles_data();
    void infoAndSheetTakeSoundFiles();
    void brokenFilesHaveTheFramesThatQtReads_data();
    void brokenFilesHaveTheFramesThatQtReads();
    void brokenFilesEndInACleanMessage_data();
    void brokenFilesEndInACleanMessage();
    void knownFilesAreJudgedRightly_data();
    void knownFilesAreJudgedRightly();

private:
    void verifyMessages(const FlipbookRun &run, const QString &file) const;

    QTemporaryDir m_folder;
};

namespace
{

QString corpusFolder()
{
    return qEnvironmentVariable("CORPUS");
}

QDir corpus()
{
    return QDir(corpusFolder());
}

/// One row for each GIF of a folder.
void addRows(const QString &folder)
{
    QTest::addColumn<QString>("file");
    if (corpusFolder().isEmpty())
        return;
    const QDir files(corpus().filePath(folder));
    const QFileInfoList found = files.entryInfoList({QStringLiteral("*.gif")}, QDir::Files);
    for (const QFileInfo &info : found)
        QTest::newRow(qPrintable(info.fileName())) << info.filePath();
}

} // namespace

void TestCorpus::initTestCase()
{
    if (corpusFolder().isEmpty()) {
        QTest::qSkip("CORPUS names no folder", __FILE__, __LINE__);
        return;
    }
    QVERIFY2(corpus().exists(), "CORPUS names a folder that does not exist");
    QVERIFY(m_folder.isValid());
}

void TestCorpus::framesAreThoseThatQtReads_data()
{
    addRows(QStringLiteral("gif"));
}

void TestCorpus::framesAreThoseThatQtReads()
{
    QFETCH(QString, file);
    int count = -1;
    MovieFrames::compare(file, count);
    QVERIFY(count > 0);
}

void TestCorpus::infoAndSheetTakeSoundFiles_data()
{
    addRows(QStringLiteral("gif"));
}

void TestCorpus::infoAndSheetTakeSoundFiles()
{
    QFETCH(QString, file);
    const FlipbookRun info = flipbook({QStringLiteral("info"), QStringLiteral("--json"), file});
    QCOMPARE(info.err, QString());
    QCOMPARE(info.status, 0);
    // The figures of a sound file are known without decoding it.
    QJsonObject whole = flipbook({QStringLiteral("info"), QStringLiteral("--json"),
                                  QStringLiteral("--opaque"), file})
                            .json();
    whole.remove(QStringLiteral("opaqueShare"));
    QCOMPARE(info.json(), whole);
    const QMovie movie(file);
    const QSize size = QImageReader(file).read().size();
    QCOMPARE(info.json().value(QStringLiteral("frames")).toInt(), movie.frameCount());
    QCOMPARE(info.json().value(QStringLiteral("width")).toInt(), size.width());
    QCOMPARE(info.json().value(QStringLiteral("height")).toInt(), size.height());

    const QString output = m_folder.filePath(QStringLiteral("sheet.png"));
    QFile::remove(output);
    const FlipbookRun sheet =
        flipbook({QStringLiteral("sheet"), file, QStringLiteral("-o"), output});
    QCOMPARE(sheet.out + sheet.err, QString());
    QCOMPARE(sheet.status, 0);
    QVERIFY(!QImage(output).isNull());
}

void TestCorpus::brokenFilesHaveTheFramesThatQtReads_data()
{
    addRows(QStringLiteral("gif-hostile"));
}

void TestCorpus::brokenFilesHaveTheFramesThatQtReads()
{
    QFETCH(QString, file);
    int count = -1;
    MovieFrames::compare(file, count);
    QVERIFY(count >= 0);
}

void TestCorpus::brokenFilesEndInACleanMessage_data()
{
    addRows(QStringLiteral("gif-hostile"));
}

/// Nothing could be read, and one line says of which file and why; or something could, and all
/// lines are warnings.
void TestCorpus::verifyMessages(const FlipbookRun &run, const QString &file) const
{
    QVERIFY2(run.status == 0 || run.status == 1, qPrintable(run.err));
    const QString named = QStringLiteral("flipbook: %1: ").arg(file);
    const QStringList lines = run.err.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        QVERIFY2(line.startsWith(named) && line.size() > named.size() + 5, qPrintable(line));
        QCOMPARE(line.midRef(named.size()).startsWith(QStringLiteral("warning: ")),
                 run.status == 0);
    }
    if (run.status == 1) {
        QCOMPARE(lines.size(), 1);
        QCOMPARE(run.out, QString());
    }
}

void TestCorpus::brokenFilesEndInACleanMessage()
{
    QFETCH(QString, file);
    const FlipbookRun info = flipbook({QStringLiteral("info"), file});
    verifyMessages(info, file);
    QCOMPARE(info.status == 0, info.out.contains(QStringLiteral("\n  frames    ")));

    const QString output = m_folder.filePath(QStringLiteral("sheet.png"));
    QFile::remove(output);
    const FlipbookRun sheet =
        flipbook({QStringLiteral("sheet"), file, QStringLiteral("-o"), output});
    verifyMessages(sheet, file);
    QCOMPARE(sheet.err, info.err);
    QCOMPARE(sheet.status, info.status);
    QCOMPARE(sheet.status == 0, !QImage(output).isNull());
    QCOMPARE(sheet.status == 0, QFile::exists(output));
}

void TestCorpus::knownFilesAreJudgedRightly_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message"); // without "flipbook: FILE: "
    QTest::addColumn<int>("frames");      // 0 when nothing can be read
    const auto row = [](const char *name, const char *message, int frames) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(message) << frames;
    };
    row("issue-101-infinite-empty-loop",
        "1 frame of 6727 x 65351 pixels would need 3.3 GiB of memory, more than the 2.0 GiB that "
        "--max-memory allows",
        0);
    row("issue-117-out-of-range",
        "warning: damaged: no block starts at byte 541; 1 frame before it", 1);
    row("issue-96-small-codesize-2",
        "warning: truncated: its only frame could not be read completely", 1);
    row("issue-96-small-codesize", "damaged; nothing could be read: in frame 1, it has no size", 0);
    // Sound in spite of their names: a picture that is there whole, and an extension of a kind of
    // its own, which is passed over.
    row("issue-208-block-type", "", 1);
    row("issue-208-block-type-beta", "", 1);
    row("issue-209-extension-block-type", "", 1);
}

void TestCorpus::knownFilesAreJudgedRightly()
{
    QFETCH(QString, name);
    QFETCH(QString, message);
    QFETCH(int, frames);
    const QString file = corpus().filePath(QStringLiteral("gif-hostile/%1.gif").arg(name));
    if (!QFile::exists(file)) {
        QTest::qSkip("the corpus does not have it", __FILE__, __LINE__);
        return;
    }
    const FlipbookRun run = flipbook({QStringLiteral("info"), QStringLiteral("--json"), file});
    const QString first = run.err.section(QLatin1Char('\n'), 0, 0);
    QCOMPARE(first,
             message.isEmpty() ? QString() : QStringLiteral("flipbook: %1: %2").arg(file, message));
    QCOMPARE(run.status, frames == 0 ? 1 : 0);
    QCOMPARE(run.json().value(QStringLiteral("frames")).toInt(), frames);
}

QTEST_MAIN(TestCorpus)
#include "tst_corpus.moc"
