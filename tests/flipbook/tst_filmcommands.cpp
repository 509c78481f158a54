#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/gifbuilder.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtGui/QImageReader>
#include <QtTest/QTest>

#include <unistd.h>

/// The commands that write films, as programs.
class TestFilmCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void whatIsWrittenIsTold_data();
    void whatIsWrittenIsTold();
    void delaysOfAGifAreKept();
    void optionsSelectFrames_data();
    void optionsSelectFrames();
    void framesAreSelectedForAFolder();
    void theIntervalIsThatOfTheSelectedFrames();
    void framesAreSelectedForASheet();
    void framesAreSelectedForASprite();
    void anAtlasIsReadByItsDescription();
    void wrongOptionsAreRefused_data();
    void wrongOptionsAreRefused();
    void inputsAreNeverOverwritten_data();
    void inputsAreNeverOverwritten();
    void tooLittleMemoryIsToldBeforeWork_data();
    void tooLittleMemoryIsToldBeforeWork();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    FlipbookRun run(const QString &arguments) const;
    QStringList colours(const QString &gif) const;

    QTemporaryDir m_folder;
};

/// Runs flipbook in the folder of this test, with arguments that have no spaces.
FlipbookRun TestFilmCommands::run(const QString &arguments) const
{
    return flipbookIn(m_folder.path(), arguments.split(QLatin1Char(' ')));
}

/// The frames of a GIF of solid frames by their colours, with their delays in ms: "#ff0000 100".
QStringList TestFilmCommands::colours(const QString &gif) const
{
    QImageReader reader(path(gif), "gif");
    QStringList result;
    for (QImage frame = reader.read(); !frame.isNull(); frame = reader.read())
        result << QStringLiteral("%1 %2")
                      .arg(frame.pixelColor(0, 0).name())
                      .arg(reader.nextImageDelay());
    return result;
}

void TestFilmCommands::initTestCase()
{
    QVERIFY(m_folder.isValid());
    // Red, green, blue and white.
    GifBuilder(8, 6).loop(3).add(0, 10).add(1, 20).add(2, 30).add(3, 40).write(
        path(QStringLiteral("film.gif")));
    QCOMPARE(run(QStringLiteral("new doc.flipbook --add film.gif")).status, 0);
}

void TestFilmCommands::whatIsWrittenIsTold_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("text"); // up to the size
    QTest::newRow("gif") << QStringLiteral("gif film.gif -o told.gif")
                         << QStringLiteral("told.gif: 4 frames of 8 x 6 pixels, 1 s, ");
    QTest::newRow("webp") << QStringLiteral("webp film.gif -o told.webp")
                          << QStringLiteral("told.webp: 4 frames of 8 x 6 pixels, 1 s, ");
    QTest::newRow("webp, lossy") << QStringLiteral("webp film.gif -o lossy.webp --quality 50")
                                 << QStringLiteral("lossy.webp: 4 frames of 8 x 6 pixels, 1 s, ");
    QTest::newRow("apng") << QStringLiteral("apng film.gif -o told.png")
                          << QStringLiteral("told.png: 4 frames of 8 x 6 pixels, 1 s, ");
    QTest::newRow("atlas") << QStringLiteral("atlas film.gif -o a.png --json a.json")
                           << QStringLiteral("a.png: 4 frames of 8 x 6 pixels, 1 s, ");
    QTest::newRow("one frame") << QStringLiteral("gif film.gif -o one.gif --frames 2 --dither")
                               << QStringLiteral("one.gif: 1 frame of 8 x 6 pixels, ");
}

void TestFilmCommands::whatIsWrittenIsTold()
{
    QFETCH(QString, arguments);
    QFETCH(QString, text);
    const FlipbookRun told = run(arguments);
    QCOMPARE(told.err, QString());
    QCOMPARE(told.status, 0);
    QVERIFY2(told.out.startsWith(text), qPrintable(told.out));
}

void TestFilmCommands::delaysOfAGifAreKept()
{
    QCOMPARE(run(QStringLiteral("gif film.gif -o kept.gif")).status, 0);
    QCOMPARE(colours(QStringLiteral("kept.gif")),
             QStringList({QStringLiteral("#ff0000 100"), QStringLiteral("#00ff00 200"),
                          QStringLiteral("#0000ff 300"), QStringLiteral("#ffffff 400")}));
    const QJsonObject info = run(QStringLiteral("info --json kept.gif")).json();
    QCOMPARE(info.value(QStringLiteral("loopCount")).toInt(), 2);
}

void TestFilmCommands::optionsSelectFrames_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QStringList>("frames");
    const QString red = QStringLiteral("#ff0000 ");
    const QString green = QStringLiteral("#00ff00 ");
    const QString blue = QStringLiteral("#0000ff ");
    const QString white = QStringLiteral("#ffffff ");
    QTest::newRow("some") << QStringLiteral("--frames 2-3")
                          << QStringList(
                                 {green + QStringLiteral("200"), blue + QStringLiteral("300")});
    QTest::newRow("every second") << QStringLiteral("--every 2")
                                  << QStringList({red + QStringLiteral("300"),
                                                  blue + QStringLiteral("700")});
    QTest::newRow("backwards") << QStringLiteral("--reverse --frames 3-4")
                               << QStringList({white + QStringLiteral("400"),
                                               blue + QStringLiteral("300")});
}

void TestFilmCommands::optionsSelectFrames()
{
    QFETCH(QString, options);
    QFETCH(QStringList, frames);
    const FlipbookRun selected = run(QStringLiteral("gif film.gif -o some.gif ") + options);
    QCOMPARE(selected.err, QString());
    QCOMPARE(colours(QStringLiteral("some.gif")), frames);
}

void TestFilmCommands::framesAreSelectedForAFolder()
{
    const FlipbookRun written =
        run(QStringLiteral("frames film.gif -o folder --frames 1-4 --every 2 --reverse --scale 2"));
    QCOMPARE(written.err, QString());
    QCOMPARE(written.status, 0);
    const QJsonObject info = run(QStringLiteral("info --json folder")).json();
    QCOMPARE(info.value(QStringLiteral("names")).toArray(),
             QJsonArray({QStringLiteral("film_3"), QStringLiteral("film_1")}));
    QCOMPARE(info.value(QStringLiteral("width")).toInt(), 16);
    QCOMPARE(info.value(QStringLiteral("height")).toInt(), 12);
    // 300 and 700 ms in one interval.
    QCOMPARE(info.value(QStringLiteral("intervalMs")).toInt(), 500);
}

void TestFilmCommands::theIntervalIsThatOfTheSelectedFrames()
{
    GifBuilder(8, 6).add(0, 10).add(1, 20).add(2, 20).write(path(QStringLiteral("late.gif")));
    QCOMPARE(run(QStringLiteral("frames late.gif -o late --frames 2-3")).status, 0);
    const QJsonObject info = run(QStringLiteral("info --json late")).json();
    QCOMPARE(info.value(QStringLiteral("intervalMs")).toInt(), 200);
}

void TestFilmCommands::framesAreSelectedForASheet()
{
    const auto sheet = [this](const QString &options) {
        const FlipbookRun written = run(QStringLiteral("sheet doc.flipbook -o s.png") + options);
        return written.status == 0 ? QImage(path(QStringLiteral("s.png"))) : QImage();
    };
    const QImage whole = sheet(QString());
    const QImage one = sheet(QStringLiteral(" --frames 3"));
    QVERIFY(!whole.isNull() && !one.isNull());
    QVERIFY(one.width() < whole.width());
    QVERIFY(sheet(QStringLiteral(" --reverse")) != whole);
}

void TestFilmCommands::framesAreSelectedForASprite()
{
    for (const char *film : {"film.gif", "doc.flipbook"}) {
        const FlipbookRun written =
            run(QStringLiteral("sprite %1 -o s.sprite3 --every 2 --scale 0.5")
                    .arg(QLatin1String(film)));
        QCOMPARE(written.err, QString());
        QCOMPARE(written.status, 0);
        const QByteArray package = bytesOf(path(QStringLiteral("s.sprite3")));
        // Two costumes and their description.
        QCOMPARE(package.count(QByteArray("PK\x01\x02")), 3);
    }
}

void TestFilmCommands::anAtlasIsReadByItsDescription()
{
    const FlipbookRun packed =
        run(QStringLiteral("atlas film.gif -o sheet.png --json sheet.json --trim"));
    QCOMPARE(packed.err, QString());
    const QJsonObject json =
        QJsonDocument::fromJson(bytesOf(path(QStringLiteral("sheet.json")))).object();
    QCOMPARE(json.value(QStringLiteral("meta")).toObject().value(QStringLiteral("image")),
             QJsonValue(QStringLiteral("sheet.png")));
    const QImage sheet(path(QStringLiteral("sheet.png")));
    QStringList found;
    const QJsonArray frames = json.value(QStringLiteral("frames")).toArray();
    for (const QJsonValue &value : frames) {
        const QJsonObject frame = value.toObject();
        const QJsonObject place = frame.value(QStringLiteral("frame")).toObject();
        found << QStringLiteral("%1 %2 %3")
                     .arg(frame.value(QStringLiteral("filename")).toString(),
                          sheet
                              .pixelColor(place.value(QStringLiteral("x")).toInt(),
                                          place.value(QStringLiteral("y")).toInt())
                              .name())
                     .arg(frame.value(QStringLiteral("duration")).toInt());
    }
    QCOMPARE(
        found,
        QStringList({QStringLiteral("film_1 #ff0000 100"), QStringLiteral("film_2 #00ff00 200"),
                     QStringLiteral("film_3 #0000ff 300"), QStringLiteral("film_4 #ffffff 400")}));
}

void TestFilmCommands::wrongOptionsAreRefused_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *arguments, int status, const char *message) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << status
                                 << QString::fromLatin1(message);
    };
    row("gif film.gif -o x.gif --frames 0-2", 2, "--frames takes two numbers such as 3-7");
    row("gif film.gif -o x.gif --frames 3-2", 2, "--frames takes two numbers such as 3-7");
    row("gif film.gif -o x.gif --frames two", 2, "--frames takes two numbers such as 3-7");
    row("gif film.gif -o x.gif --frames 3-5", 1, "film.gif: it has 4 frames, so no frame 5");
    row("frames film.gif -o x --frames 7", 1, "film.gif: it has 4 frames, so no frame 7");
    row("sprite film.gif -o x.sprite3 --frames 7", 1, "film.gif: it has 4 frames, so no frame 7");
    row("project film.gif -o x.sb3 --frames 7", 1, "film.gif: it has 4 frames, so no frame 7");
    row("web film.gif -o x.html --frames 7", 1, "film.gif: it has 4 frames, so no frame 7");
    row("project film.gif -o x.sb3 --every 0", 2, "--every takes a whole number from 1");
    row("web film.gif -o x.html --scale 0", 2, "--scale takes a number above 0");
    row("sheet film.gif -o x.png --frames 7", 1, "film.gif: it has 4 frames, so no frame 7");
    row("webp film.gif -o x.webp --every 0", 2, "--every takes a whole number from 1");
    row("webp film.gif -o x.webp --scale 0", 2, "--scale takes a number above 0");
    row("webp film.gif -o x.webp --quality 101", 2, "--quality takes a number from 0 to 100");
    row("webp film.gif -o x.gif", 2, "'x.gif' does not end in .webp");
    row("apng film.gif -o x.gif", 2, "'x.gif' does not end in .png");
    row("atlas film.gif -o x.png", 2, "--json is missing");
    row("atlas film.gif -o x.png --json x.png", 2, "'x.png' does not end in .json");
    row("gif missing.gif -o x.gif", 1, "missing.gif: ");
    row("gif film.gif -o nowhere/x.gif", 1, "nowhere/x.gif: its folder does not exist");
}

void TestFilmCommands::wrongOptionsAreRefused()
{
    QFETCH(QString, arguments);
    QFETCH(int, status);
    QFETCH(QString, message);
    const FlipbookRun refused = run(arguments);
    QCOMPARE(refused.status, status);
    QVERIFY2(refused.err.contains(message), qPrintable(refused.err));
    QCOMPARE(refused.out, QString());
    QVERIFY(QDir(m_folder.path()).entryList({QStringLiteral("x*")}).isEmpty());
}

void TestFilmCommands::inputsAreNeverOverwritten_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("output");
    for (const char *name : {"gif", "webp", "apng", "atlas"})
        QTest::newRow(name) << QString::fromLatin1(name)
                            << (name == QByteArray("apng") || name == QByteArray("atlas")
                                    ? QStringLiteral("png")
                                    : QString::fromLatin1(name));
}

void TestFilmCommands::inputsAreNeverOverwritten()
{
    QFETCH(QString, command);
    QFETCH(QString, output);
    const QByteArray before = bytesOf(path(QStringLiteral("film.gif")));
    const QString link = QStringLiteral("%1-link.%2").arg(command, output);
    const QString hardLink = QStringLiteral("%1-hard.%2").arg(command, output);
    QVERIFY(QFile::link(path(QStringLiteral("film.gif")), path(link)));
    QCOMPARE(::link(qPrintable(path(QStringLiteral("film.gif"))), qPrintable(path(hardLink))), 0);
    for (const QString &name : {link, hardLink}) {
        QString arguments = QStringLiteral("%1 film.gif -o %2").arg(command, name);
        if (command == QLatin1String("atlas"))
            arguments += QStringLiteral(" --json never.json");
        const FlipbookRun refused = run(arguments);
        QCOMPARE(refused.status, 1);
        QVERIFY2(refused.err.contains(QStringLiteral("is an input; it is not overwritten")),
                 qPrintable(refused.err));
        QCOMPARE(bytesOf(path(QStringLiteral("film.gif"))), before);
    }
    QVERIFY(!QFile::exists(path(QStringLiteral("never.json"))));
}

void TestFilmCommands::tooLittleMemoryIsToldBeforeWork_data()
{
    QTest::addColumn<QString>("arguments");
    for (const char *arguments :
         {"gif film.gif -o much.gif", "webp film.gif -o much.webp", "apng film.gif -o much.png",
          "atlas film.gif -o much.png --json much.json"})
        QTest::newRow(arguments) << QString::fromLatin1(arguments);
}

void TestFilmCommands::tooLittleMemoryIsToldBeforeWork()
{
    QFETCH(QString, arguments);
    const FlipbookRun refused = run(arguments + QStringLiteral(" --scale 100 --max-memory 1M"));
    QCOMPARE(refused.status, 1);
    QVERIFY2(refused.err.contains(QStringLiteral("--max-memory allows")), qPrintable(refused.err));
    QVERIFY(QDir(m_folder.path()).entryList({QStringLiteral("much*")}).isEmpty());
}

QTEST_GUILESS_MAIN(TestFilmCommands)
#include "tst_filmcommands.moc"
