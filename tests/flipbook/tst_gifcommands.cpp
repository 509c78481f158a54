#include "tests/flipbook/flipbookrun.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QTest>

#include <sys/stat.h>
#include <unistd.h>

class TestGifCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void infoTellsTheFigures();
    void infoTellsThemInWords();
    void infoIsTheSameWithoutDecoding_data();
    void infoIsTheSameWithoutDecoding();
    void opaquePixelsAreCountedOnRequest();
    void infoSaysWhenDelaysDiffer();
    void loopsAreToldInWordsAndNumbers_data();
    void loopsAreToldInWordsAndNumbers();
    void aSheetShowsEachFrameOnACheckerboard();
    void aSheetNeverReplacesItsInput();
    void aSheetThatCannotBeWrittenLeavesNothing();
    void playShowsEachFrameOnceAndStops();
    void aLoopCountOfTheFileIsPlayed();
    void aSingleFrameIsShownOnce_data();
    void aSingleFrameIsShownOnce();
    void loopsMeanTheSameInEveryCommand();
    void filesThatCannotBeReadAreNamed_data();
    void filesThatCannotBeReadAreNamed();
    void aPipeIsNotWaitedFor();
    void aFilmBeyondTheBudgetIsRefusedUndecoded();
    void aCutFileTellsWhatCouldBeRead_data();
    void aCutFileTellsWhatCouldBeRead();
    void aCutFileOfDamagedFramesSaysThatNoneIsComplete();
    void aDamagedFrameIsNamed();
    void unusualCodeSizesAreReadWithAWarning();
    void aFileOfWhichNothingIsReadSaysWhy_data();
    void aFileOfWhichNothingIsReadSaysWhy();
    void hostileFilesEndInACleanMessage_data();
    void hostileFilesEndInACleanMessage();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString write(const QString &name, const QByteArray &bytes) const;
    FlipbookRun info(const QString &file) const;
    FlipbookRun infoJson(const QString &file) const;

    QTemporaryDir m_folder;
};

QString TestGifCommands::write(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
    return file.fileName();
}

FlipbookRun TestGifCommands::info(const QString &file) const
{
    return flipbook({QStringLiteral("info"), file});
}

FlipbookRun TestGifCommands::infoJson(const QString &file) const
{
    return flipbook({QStringLiteral("info"), QStringLiteral("--json"), file});
}

void TestGifCommands::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

void TestGifCommands::infoTellsTheFigures()
{
    GifBuilder builder(4, 3);
    builder.loop(3);
    for (int colour = 0; colour < 2; ++colour)
        builder.add({QRect(0, 0, 4, 3), colour, 15, GifBuilder::RestoreBackground});
    const QString film = path(QStringLiteral("cat.anim.gif"));
    builder.write(film);
    const FlipbookRun run = infoJson(film);
    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QString());
    // Decoded: two frames of 4 x 3 pixels of 4 bytes.
    const QByteArray wanted = R"({"format": "GIF", "frames": 2, "width": 4, "height": 3,
        "intervalMs": 150, "loopCount": 2, "names": ["cat_1", "cat_2"], "decodedBytes": 96,
        "shortestDelayMs": 150, "longestDelayMs": 150, "warnings": []})";
    QCOMPARE(run.json(), QJsonDocument::fromJson(wanted).object());
}

void TestGifCommands::infoTellsThemInWords()
{
    // The lower half of the screen is not covered by the frame.
    GifBuilder builder(8, 8);
    builder.add({QRect(0, 0, 8, 4), 0, 10, GifBuilder::Unspecified, 3});
    const QString film = path(QStringLiteral("half.gif"));
    builder.write(film);
    const FlipbookRun run = flipbook({QStringLiteral("info"), QStringLiteral("--opaque"), film});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out, film + QStringLiteral("\n"
                                            "  format    GIF\n"
                                            "  frames    1, named half_1\n"
                                            "  size      8 x 8 pixels\n"
                                            "  interval  100 ms\n"
                                            "  loops     forever (loop count -1)\n"
                                            "  opaque    50.0 % of the pixels\n"
                                            "  memory    256 bytes decoded\n"));
}

void TestGifCommands::infoIsTheSameWithoutDecoding_data()
{
    QTest::addColumn<QString>("film");
    const auto row = [this](const char *name, const GifBuilder &builder) {
        const QString film = path(QStringLiteral("%1.b.gif").arg(QLatin1String(name)));
        builder.write(film);
        QTest::newRow(name) << film;
    };
    row("plain", GifBuilder(4, 4).add(0, 10).add(1, 10));
    row("uneven", GifBuilder(4, 4).add(0, 50).add(1, 4));
    row("quick", GifBuilder(4, 4).add(0, 0).add(1, 1).add(2, 2));
    GifBuilder looping(5, 3);
    looping.loop(7);
    row("looping", looping.add(0, 10).add(1, 10));
    GifBuilder endless(5, 3);
    endless.loop(0);
    row("endless", endless.add(0, 10).add(1, 10));
    row("clearing", GifBuilder(6, 6)
                        .add({QRect(0, 0, 6, 6), 0, 10, GifBuilder::RestoreBackground})
                        .add({QRect(1, 2, 3, 2), 1, 30, GifBuilder::RestoreBackground}));
    row("partly", GifBuilder(8, 8).add({QRect(0, 0, 8, 4), 0, 10, GifBuilder::Unspecified, 3}));
}

void TestGifCommands::infoIsTheSameWithoutDecoding()
{
    QFETCH(QString, film);
    const FlipbookRun quick = infoJson(film);
    const FlipbookRun whole = flipbook(
        {QStringLiteral("info"), QStringLiteral("--json"), QStringLiteral("--opaque"), film});
    QCOMPARE(quick.err, QString());
    QCOMPARE(quick.status, 0);
    QVERIFY(!quick.json().contains(QStringLiteral("opaqueShare")));
    QJsonObject expected = whole.json();
    QVERIFY(expected.contains(QStringLiteral("opaqueShare")));
    expected.remove(QStringLiteral("opaqueShare"));
    QCOMPARE(quick.json(), expected);
}

void TestGifCommands::opaquePixelsAreCountedOnRequest()
{
    // Of two frames of 16 pixels, the second covers 4.
    const QString film = path(QStringLiteral("counted.gif"));
    GifBuilder(4, 4)
        .add({QRect(0, 0, 4, 4), 0, 10, GifBuilder::RestoreBackground, 3})
        .add({QRect(0, 0, 2, 2), 1, 10, GifBuilder::RestoreBackground, 3})
        .write(film);
    const FlipbookRun run = flipbook(
        {QStringLiteral("info"), QStringLiteral("--json"), QStringLiteral("--opaque"), film});
    QCOMPARE(run.json().value(QStringLiteral("opaqueShare")).toDouble(), 20.0 / 32.0);
}

void TestGifCommands::infoSaysWhenDelaysDiffer()
{
    const QString film = path(QStringLiteral("uneven.gif"));
    GifBuilder(4, 4).add(0, 50).add(1, 4).write(film);
    const FlipbookRun run = info(film);
    QVERIFY2(run.out.contains(QStringLiteral("  interval  500 ms (1 s for all frames); the "
                                             "delays in the file differ, from 40 to 500 ms")),
             qPrintable(run.out));
}

void TestGifCommands::loopsAreToldInWordsAndNumbers_data()
{
    QTest::addColumn<int>("loop"); // of the file's extension; -1 without one
    QTest::addColumn<QString>("text");
    QTest::newRow("forever") << 0 << QStringLiteral("forever (loop count -1)\n");
    QTest::newRow("one") << 1 << QStringLiteral("once (loop count 0)\n");
    QTest::newRow("three") << 3 << QStringLiteral("3 times (loop count 2)\n");
    QTest::newRow("none") << -1
                          << QStringLiteral(
                                 "forever (loop count -1); the file itself has no loop count\n");
}

void TestGifCommands::loopsAreToldInWordsAndNumbers()
{
    QFETCH(int, loop);
    QFETCH(QString, text);
    const QString film = path(QStringLiteral("loops.gif"));
    GifBuilder(4, 4).loop(loop).add(0, 10).add(1, 10).write(film);
    const FlipbookRun run = info(film);
    QVERIFY2(run.out.contains(QStringLiteral("  loops     ") + text), qPrintable(run.out));
}

void TestGifCommands::aSheetShowsEachFrameOnACheckerboard()
{
    // A green frame, then one that covers only the left half, over nothing.
    GifBuilder builder(80, 40);
    builder.add({QRect(0, 0, 80, 40), 1, 10, GifBuilder::RestoreBackground, 3});
    builder.add({QRect(0, 0, 40, 40), 0, 10, GifBuilder::RestoreBackground, 3});
    const QString film = path(QStringLiteral("two.gif"));
    const QString sheetFile = path(QStringLiteral("two.png"));
    builder.write(film);
    const FlipbookRun run =
        flipbook({QStringLiteral("sheet"), film, QStringLiteral("-o"), sheetFile});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out + run.err, QString());

    const QImage sheet = QImage(sheetFile).convertToFormat(QImage::Format_RGB32);
    QCOMPARE(sheet.width(), 208); // 16 + 80 + 16 + 80 + 16
    const QRgb paper = 0xfff4f4f4;
    const QRgb light = 0xffffffff;
    const QRgb dark = 0xffdcdcdc;
    QCOMPARE(sheet.pixel(15, 15), paper);
    for (int y = 16; y < 56; ++y) {
        for (int x = 16; x < 192; ++x) {
            const QRgb square = ((x - 112) / 8 + (y - 16) / 8) % 2 == 0 ? light : dark;
            const QRgb wanted = x < 96    ? 0xff00ff00
                                : x < 112 ? paper
                                : x < 152 ? 0xffff0000
                                          : square;
            QCOMPARE(sheet.pixel(x, y), wanted);
        }
    }
    // Something is written below each frame, and it differs.
    const QImage label = sheet.copy(16, 62, 80, 20);
    QVERIFY(label != sheet.copy(16, 58, 80, 1).scaled(80, 20));
    QVERIFY(label != sheet.copy(112, 62, 80, 20));
}

void TestGifCommands::aSheetNeverReplacesItsInput()
{
    const QString film = path(QStringLiteral("precious.gif"));
    GifBuilder(4, 4).add(0, 10).write(film);
    QFile before(film);
    QVERIFY(before.open(QIODevice::ReadOnly));
    const QByteArray bytes = before.readAll();

    const QString byLink = path(QStringLiteral("link.png"));
    const QString byHardLink = path(QStringLiteral("hard.png"));
    QVERIFY(QFile::link(film, byLink));
    QCOMPARE(::link(qPrintable(film), qPrintable(byHardLink)), 0);
    for (const QString &output : {byLink, byHardLink}) {
        const FlipbookRun run =
            flipbook({QStringLiteral("sheet"), film, QStringLiteral("-o"), output});
        QCOMPARE(run.status, 1);
        QCOMPARE(run.err,
                 QStringLiteral("flipbook: %1: is an input; it is not overwritten\n").arg(output));
    }
    QFile after(film);
    QVERIFY(after.open(QIODevice::ReadOnly));
    QCOMPARE(after.readAll(), bytes);
}

void TestGifCommands::aSheetThatCannotBeWrittenLeavesNothing()
{
    const QString film = path(QStringLiteral("film.gif"));
    GifBuilder(4, 4).add(0, 10).write(film);
    const QString nowhere = path(QStringLiteral("no/such/folder/sheet.png"));
    const FlipbookRun missing =
        flipbook({QStringLiteral("sheet"), film, QStringLiteral("-o"), nowhere});
    QCOMPARE(missing.status, 1);
    QCOMPARE(missing.err, QStringLiteral("flipbook: %1: its folder does not exist\n").arg(nowhere));

    const QString device = path(QStringLiteral("device.png"));
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), device));
    const FlipbookRun special =
        flipbook({QStringLiteral("sheet"), film, QStringLiteral("-o"), device});
    QCOMPARE(special.status, 1);
    QCOMPARE(special.err, QStringLiteral("flipbook: %1: is not a regular file\n").arg(device));
}

void TestGifCommands::playShowsEachFrameOnceAndStops()
{
    const QString film = path(QStringLiteral("short.gif"));
    GifBuilder(4, 4).loop(0).add(0, 2).add(1, 2).add(2, 2).write(film);
    const FlipbookRun run =
        flipbook({QStringLiteral("play"), film, QStringLiteral("--loops"), QStringLiteral("2")});
    QCOMPARE(run.status, 0);
    QStringList shown;
    int lastTime = 0;
    const QStringList lines = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const int time = line.section(QStringLiteral(" ms"), 0, 0).trimmed().toInt();
        QVERIFY(time >= lastTime);
        lastTime = time;
        shown << line.section(QStringLiteral(" ms  "), 1);
    }
    const QStringList pass = {QStringLiteral("frame 1 of 3  short_1"),
                              QStringLiteral("frame 2 of 3  short_2"),
                              QStringLiteral("frame 3 of 3  short_3")};
    QCOMPARE(shown, pass + pass + QStringList(QStringLiteral("stopped after playing 2 times")));
    QVERIFY(lastTime >= 100); // six frames of 20 ms, less the coarseness of timers
}

void TestGifCommands::aLoopCountOfTheFileIsPlayed()
{
    const QString film = path(QStringLiteral("once.gif"));
    GifBuilder(4, 4).loop(1).add(0, 2).add(1, 2).write(film);
    const FlipbookRun run = flipbook({QStringLiteral("play"), film});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out.count(QStringLiteral("frame 1 of 2  once_1")), 1);
    QCOMPARE(run.out.count(QStringLiteral("frame 2 of 2  once_2")), 1);
    QVERIFY(run.out.endsWith(QStringLiteral("stopped after playing once\n")));
}

void TestGifCommands::aSingleFrameIsShownOnce_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("options");
    const QStringList twice = {QStringLiteral("--loops"), QStringLiteral("2")};
    QTest::newRow("a picture") << QStringLiteral("still.png") << QStringList();
    QTest::newRow("a picture, twice") << QStringLiteral("still.png") << twice;
    QTest::newRow("a GIF") << QStringLiteral("still.gif") << QStringList();
}

void TestGifCommands::aSingleFrameIsShownOnce()
{
    QFETCH(QString, name);
    QFETCH(QStringList, options);
    const QString file = path(name);
    if (name.endsWith(QLatin1String(".gif")))
        GifBuilder(4, 4).loop(0).add(0, 10).write(file);
    else
        QVERIFY(Pictures::solid(4, 4, Qt::red).save(file));
    const FlipbookRun run = flipbook(QStringList{QStringLiteral("play"), file} + options);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    const QString frame =
        name.endsWith(QLatin1String(".gif")) ? QStringLiteral("still_1") : QStringLiteral("still");
    QCOMPARE(run.out, QStringLiteral("      0 ms  frame 1 of 1  %1\n"
                                     "      0 ms  stopped: there is only one frame\n")
                          .arg(frame));
}

void TestGifCommands::loopsMeanTheSameInEveryCommand()
{
    const QString film = path(QStringLiteral("some.gif"));
    GifBuilder(4, 4).loop(0).add(0, 2).add(1, 2).write(film);
    const QString document = path(QStringLiteral("some.flipbook"));
    flipbook({QStringLiteral("new"), document, QStringLiteral("--add"), film});
    for (const auto &[loops, text] :
         {std::pair("1", "once (loop count 0)"), std::pair("3", "3 times (loop count 2)")}) {
        const QStringList option = {QStringLiteral("--loops"), QString::fromLatin1(loops)};
        QCOMPARE(flipbook(QStringList{QStringLiteral("edit"), document} + option).status, 0);
        const QString told = info(document).out;
        QVERIFY2(told.contains(QString::fromLatin1(text)), qPrintable(told));
        const QString played = flipbook(QStringList{QStringLiteral("play"), film} + option).out;
        QCOMPARE(played.count(QStringLiteral("frame 1 of 2")), option.last().toInt());
    }
}

void TestGifCommands::filesThatCannotBeReadAreNamed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes"); // null: not written at all
    QTest::addColumn<QString>("reason");
    const QByteArray film = GifBuilder(4, 4).add(0, 10).data();
    QTest::newRow("missing") << QStringLiteral("missing.gif") << QByteArray()
                             << QStringLiteral("not found");
    QTest::newRow("empty") << QStringLiteral("empty.gif") << QByteArray("")
                           << QStringLiteral("the file is empty");
    QTest::newRow("text") << QStringLiteral("text.gif") << QByteArray("just a few words\n")
                          << QStringLiteral("not a GIF");
    QTest::newRow("no frames") << QStringLiteral("none.gif") << GifBuilder(4, 4).data()
                               << QStringLiteral("a GIF without frames");
    QTest::newRow("cut in the screen")
        << QStringLiteral("head.gif") << film.left(9)
        << QStringLiteral("truncated within its first 9 bytes; nothing could be read");
    QTest::newRow("cut before a picture")
        << QStringLiteral("cut.gif") << film.left(30)
        << QStringLiteral("truncated after 30 bytes, before any picture");
    QTest::newRow("under another name")
        << QStringLiteral("film.dat") << film
        << QStringLiteral("a GIF without \".gif\" in its name; rename it");
}

void TestGifCommands::filesThatCannotBeReadAreNamed()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    const QString file = bytes.isNull() ? path(name) : write(name, bytes);
    const QString output = path(QStringLiteral("never.png"));
    const QString message = QStringLiteral("flipbook: %1: %2\n").arg(file, reason);
    const QList<QStringList> runs = {{QStringLiteral("info"), file},
                                     {QStringLiteral("play"), file},
                                     {QStringLiteral("sheet"), file, QStringLiteral("-o"), output}};
    for (const QStringList &arguments : runs) {
        const FlipbookRun run = flipbook(arguments);
        QCOMPARE(run.err, message);
        QCOMPARE(run.out, QString());
        QCOMPARE(run.status, 1);
    }
    QVERIFY(!QFile::exists(output));
}

void TestGifCommands::aPipeIsNotWaitedFor()
{
    const QString pipe = path(QStringLiteral("pipe.gif"));
    QCOMPARE(::mkfifo(qPrintable(pipe), 0600), 0);
    const FlipbookRun run = info(pipe);
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: is a pipe, not a file\n").arg(pipe));
    QCOMPARE(info(QStringLiteral("/dev/zero")).err,
             QStringLiteral("flipbook: /dev/zero: is a device, not a file\n"));
}

void TestGifCommands::aFilmBeyondTheBudgetIsRefusedUndecoded()
{
    // One pixel on a screen of 16383 x 16383: 1,073,610,756 bytes decoded, twice while decoding.
    GifBuilder builder(16383, 16383);
    builder.add({QRect(0, 0, 1, 1), 0});
    const QString film = path(QStringLiteral("vast.gif"));
    builder.write(film);
    const FlipbookRun run = flipbook(
        {QStringLiteral("info"), film, QStringLiteral("--max-memory"), QStringLiteral("64M")});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: 1 frame of 16383 x 16383 pixels would need 2.0 "
                                     "GiB of memory, more than the 64.0 MiB that --max-memory "
                                     "allows\n")
                          .arg(film));
}

void TestGifCommands::aCutFileTellsWhatCouldBeRead_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("message");
    // 25 bytes, then 18 of control and descriptor, 1 of code size, 4 of data for each frame.
    const auto row = [](int length, int status, const char *message) {
        QTest::newRow(qPrintable(QString::number(length)))
            << length << status << QString::fromLatin1(message);
    };
    row(1, 1, "not a picture");
    row(12, 1, "truncated within its first 12 bytes; nothing could be read");
    row(13, 1, "truncated after 13 bytes, before any picture");
    row(33, 1, "truncated after 33 bytes, before any picture");
    row(44, 1, "truncated after 44 bytes, before any picture");
    // The first of its two bytes of data holds two codes: clear, and a pixel.
    row(45, 1, "truncated after 45 bytes, before any picture");
    row(46, 0, "warning: truncated: its only frame could not be read completely");
    row(47, 0, "warning: truncated: its only frame could not be read completely");
    row(48, 0, "warning: truncated: its end is missing; its 1 frame is complete");
    row(56, 0, "warning: truncated: its end is missing; its 1 frame is complete");
    row(57, 0, "warning: truncated: 1 of 2 frames could be read completely");
    row(70, 0, "warning: truncated: 1 of 2 frames could be read completely");
    row(71, 0, "warning: truncated: its end is missing; its 2 frames are complete");
    row(72, 0, "");
}

void TestGifCommands::aCutFileTellsWhatCouldBeRead()
{
    QFETCH(int, length);
    QFETCH(int, status);
    QFETCH(QString, message);
    const QByteArray whole = GifBuilder(2, 1).add(0, 10).add(1, 10).data();
    QCOMPARE(whole.size(), 72);
    const QString file = write(QStringLiteral("cut.gif"), whole.left(length));
    if (length < 6)
        message = QStringLiteral("not a GIF");
    const FlipbookRun run = info(file);
    QCOMPARE(run.err, message.isEmpty() ? QString()
                                        : QStringLiteral("flipbook: %1: %2\n").arg(file, message));
    QCOMPARE(run.status, status);
}

void TestGifCommands::aCutFileOfDamagedFramesSaysThatNoneIsComplete()
{
    // Each descriptor claims a width of three pixels, and the data end after two.
    QByteArray bytes = GifBuilder(2, 1).add(0, 10).add(1, 10).data().left(71);
    bytes[38] = 3;
    bytes[61] = 3;
    const FlipbookRun run = info(write(QStringLiteral("none.gif"), bytes));
    const QString expected =
        QStringLiteral("warning: truncated: none of 2 frames could be read completely\n");
    QVERIFY2(run.err.contains(expected), qPrintable(run.err));
    QCOMPARE(run.status, 0);
}

void TestGifCommands::aDamagedFrameIsNamed()
{
    QByteArray bytes = GifBuilder(2, 1).add(0, 10).add(1, 10).data();
    // The code size of the second frame.
    bytes[25 + 23 + 18] = 13;
    const FlipbookRun run = info(write(QStringLiteral("damaged.gif"), bytes));
    QCOMPARE(run.status, 0);
    QVERIFY2(run.err.contains(QStringLiteral(
                 "damaged.gif: warning: frame 2 is damaged: its code size 13 is out of range\n")),
             qPrintable(run.err));
    QVERIFY(run.out.contains(QStringLiteral("named damaged_1")));
}

void TestGifCommands::unusualCodeSizesAreReadWithAWarning()
{
    // A frame of 2 x 1 white pixels with codes of 10 bits.
    const QString file = write(QStringLiteral("nine.gif"),
                               QByteArray::fromHex("47494638396102000100800000000000ffffff"
                                                   "2c00000000020001000009"
                                                   "050006104080003b"));
    const FlipbookRun run = infoJson(file);
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: warning: frame 1 is unusual: its code size 9 is "
                            "out of range, and other programs may not read it\n")
                 .arg(file));
    QCOMPARE(run.status, 0);
    QCOMPARE(run.json().value(QStringLiteral("frames")).toInt(), 1);
    const QString output = path(QStringLiteral("nine"));
    QCOMPARE(flipbook({QStringLiteral("frames"), file, QStringLiteral("-o"), output}).status, 0);
    const QImage frame(output + QStringLiteral("/1-nine_1.png"));
    QCOMPARE(frame.size(), QSize(2, 1));
    QCOMPARE(frame.pixel(0, 0), 0xffffffff);
    QCOMPARE(frame.pixel(1, 0), 0xffffffff);
}

void TestGifCommands::aFileOfWhichNothingIsReadSaysWhy_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    // The screen and a palette of two colours: 19 bytes. A frame of 8 x 8: 10 bytes.
    const QByteArray head = QByteArray::fromHex("47494638396108000800800000000000ffffff");
    const QByteArray frame = QByteArray::fromHex("2c000000000800080000");
    const auto row = [](const char *name, const QByteArray &bytes, const char *reason) {
        QTest::newRow(name) << bytes << QString::fromLatin1(reason);
    };
    row("a code size that none reads", head + frame + "\x0d\x01" + QByteArray(2, '\0') + ';',
        "damaged; nothing could be read: in frame 1, its code size 13 is out of range");
    row("a picture without data", head + frame + QByteArray::fromHex("0200") + ';',
        "damaged; nothing could be read: in frame 1, its picture ends early");
    // Clear and twice a code that nothing has defined, where decoders give up; then a long comment
    // that is truncated.
    row("a picture at which decoders give up, cut short",
        head + frame + QByteArray::fromHex("0202fc0100") + "!\xfe" + QByteArray(40000, '\x7f'),
        "damaged; nothing could be read: in frame 1, its picture data are invalid");
    row("an unknown block first", head + "?hello",
        "damaged: no block starts at byte 19; nothing could be read");
}

void TestGifCommands::aFileOfWhichNothingIsReadSaysWhy()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    const QString file = write(QStringLiteral("nothing.gif"), bytes);
    const FlipbookRun run = info(file);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: %2\n").arg(file, reason));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 1);
}

void TestGifCommands::hostileFilesEndInACleanMessage_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray head = QByteArray::fromHex("474946383961"
                                                "0800"
                                                "0800"
                                                "800000"
                                                "000000ffffff");
    const QByteArray frame = QByteArray::fromHex("2c0000000008000800"
                                                 "00");
    QTest::newRow("endless empty blocks") << head + "!\xfe" + QByteArray(100000, '\0');
    QTest::newRow("a code size of zero, then empty blocks")
        << head + frame + QByteArray(100000, '\0');
    QTest::newRow("the largest code size") << head + frame + "\xff" + QByteArray(100, '\x7f');
    QTest::newRow("an unknown block") << head + "?\x05hello" + QByteArray(1000, 'x');
    QTest::newRow("an extension without end") << head + "!\xff" + QByteArray(5000, '\xff');
    QTest::newRow("a frame outside the screen")
        << head + QByteArray::fromHex("2cffffffffffffffff00") + "\x02\x01\x4c";
    QTest::newRow("undefined codes") << head + frame + "\x02\x10" + QByteArray(16, '\xff');
}

void TestGifCommands::hostileFilesEndInACleanMessage()
{
    QFETCH(QByteArray, bytes);
    const QString file = write(QStringLiteral("hostile.gif"), bytes);
    const FlipbookRun run = info(file);
    QVERIFY2(run.status == 0 || run.status == 1, qPrintable(run.err));
    QVERIFY2(run.err.startsWith(QStringLiteral("flipbook: %1: ").arg(file)), qPrintable(run.err));
    QCOMPARE(run.status == 0, run.out.contains(QStringLiteral("frames")));
}

QTEST_GUILESS_MAIN(TestGifCommands)
#include "tst_gifcommands.moc"
