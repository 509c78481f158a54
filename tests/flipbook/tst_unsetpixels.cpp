#include "flipbook/document/documentarchive.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QBuffer>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QTest>

/// Pictures of which the decoder leaves pixels as they come from the memory of the process. None of
/// that is seen in any output.
class TestUnsetPixels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void whatNoFrameOfAGifCoversIsTransparent();
    void framesOfAnUnsetScreenKeepNamesAndTiming();
    void everyOutputIsTheSameWhateverMemoryHolds_data();
    void everyOutputIsTheSameWhateverMemoryHolds();
    void aDamagedGifSaysWhatIsTransparent();
    void aGifThatADocumentRefersToIsReadThatWay();
    void aGifWithoutAFullFirstFrameKeepsItsBackgroundColour();
    void picturesOfAFolderAreReadThatWay();
    void insertedPicturesAreReadThatWay_data();
    void insertedPicturesAreReadThatWay();

private:
    QString path(const QString &name) const { return m_fixture->path(name); }
    QImage exportedFrame(const QString &input, int number);

    std::unique_ptr<DocumentFixture> m_fixture;
    int m_exports = 0;
};

namespace
{

constexpr QRgb nothing = 0;
constexpr QRgb yellow = 0xffffff00;
constexpr QRgb cyan = 0xff00ffff;

/// Variables that fill the memory that a process is given with bytes made from @p value.
QStringList filledMemory(int value)
{
    return {QStringLiteral("MALLOC_PERTURB_=%1").arg(value),
            QStringLiteral("GLIBC_TUNABLES=glibc.malloc.tcache_count=0")};
}

/// Two frames on a screen of 10 x 8 that do not cover it; the first has its own palette.
GifBuilder uncovered()
{
    GifBuilder builder(10, 8);
    builder.loop(3);
    builder.add({QRect(1, 2, 4, 3), 0, 15, GifBuilder::Keep, -1, true});
    builder.add({QRect(3, 4, 5, 3), 1, 15, GifBuilder::Keep, -1, true});
    return builder;
}

QRgb expectedOfUncovered(int frame, const QPoint &point)
{
    if (frame == 2 && QRect(3, 4, 5, 3).contains(point))
        return cyan;
    return QRect(1, 2, 4, 3).contains(point) ? yellow : nothing;
}

/// A bitmap of 5 x 4 red pixels of 32 bits, whose file ends after one row: the lowest.
QByteArray cutBitmap()
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Pictures::solid(5, 4, Qt::red, QImage::Format_RGB32).save(&buffer, "BMP");
    constexpr int headBytes = 54;
    constexpr int rowBytes = 5 * 4;
    return buffer.data().left(headBytes + rowBytes);
}

void compareUncovered(const QImage &picture, int frame)
{
    QCOMPARE(picture.size(), QSize(10, 8));
    const QImage pixels = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 10; ++x)
            QCOMPARE(pixels.pixel(x, y), expectedOfUncovered(frame, {x, y}));
    }
}

void compareCutBitmap(const QImage &picture)
{
    QCOMPARE(picture.size(), QSize(5, 4));
    for (int x = 0; x < 5; ++x) {
        QCOMPARE(picture.pixel(x, 3), 0xffff0000);
        for (int y = 0; y < 3; ++y)
            QCOMPARE(picture.pixel(x, y), 0xff000000);
    }
}

} // namespace

/// A frame of @p input, counted from 1, as "flipbook frames" writes it.
QImage TestUnsetPixels::exportedFrame(const QString &input, int number)
{
    const QString folder = path(QStringLiteral("frames-%1").arg(++m_exports));
    const FlipbookRun run =
        flipbook({QStringLiteral("frames"), input, QStringLiteral("-o"), folder}, filledMemory(90));
    // They are numbered in front.
    const QStringList files = QDir(folder).entryList({QStringLiteral("*.png")}, QDir::Files);
    return run.status == 0 ? QImage(folder + QLatin1Char('/') + files.value(number - 1)) : QImage();
}

void TestUnsetPixels::initTestCase()
{
    m_fixture = std::make_unique<DocumentFixture>();
    uncovered().write(path(QStringLiteral("film.gif")));
    writeBytes(path(QStringLiteral("cut.bmp")), cutBitmap());
    QVERIFY(QDir().mkdir(path(QStringLiteral("folder"))));
    writeBytes(path(QStringLiteral("folder/cut.bmp")), cutBitmap());
    uncovered().write(path(QStringLiteral("folder/film.GIF")));
    QVERIFY(Pictures::solid(3, 3, Qt::blue).save(path(QStringLiteral("folder/blue.png"))));
    writeBytes(path(QStringLiteral("folder/config.json")),
               R"({"ImageList": [{"filename": "blue.png"}, {"other": 1}, {"filename": "cut.bmp"},
                                 {"filename": "film.GIF"}, {"filename": "blue.png"}]})");
}

void TestUnsetPixels::whatNoFrameOfAGifCoversIsTransparent()
{
    const QString film = path(QStringLiteral("film.gif"));
    compareUncovered(exportedFrame(film, 1), 1);
    compareUncovered(exportedFrame(film, 2), 2);
    // 12 and then 12 + 15 - 2 of twice 80 pixels.
    const FlipbookRun info = flipbook(
        {QStringLiteral("info"), QStringLiteral("--json"), QStringLiteral("--opaque"), film});
    QCOMPARE(info.err, QString());
    QCOMPARE(info.json().value(QStringLiteral("opaqueShare")).toDouble(), 37.0 / 160.0);
}

void TestUnsetPixels::framesOfAnUnsetScreenKeepNamesAndTiming()
{
    const QJsonObject info =
        flipbook({QStringLiteral("info"), QStringLiteral("--json"), QStringLiteral("--opaque"),
                  path(QStringLiteral("film.gif"))})
            .json();
    const QByteArray wanted =
        R"({"format": "GIF", "frames": 2, "width": 10, "height": 8,
        "intervalMs": 150, "loopCount": 2, "names": ["film_1", "film_2"], "decodedBytes": 640, "opaqueShare": 0.23125,
        "shortestDelayMs": 150, "longestDelayMs": 150, "warnings": []})";
    QCOMPARE(info, QJsonDocument::fromJson(wanted).object());
}

void TestUnsetPixels::everyOutputIsTheSameWhateverMemoryHolds_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("output");
    for (const char *input : {"film.gif", "cut.bmp", "folder"}) {
        const auto row = [input](const char *command, const char *output) {
            QTest::addRow("%s of %s", command, input)
                << QString::fromLatin1(command) << QString::fromLatin1(input)
                << QString::fromLatin1(output);
        };
        row("sheet", "sheet.png");
        row("sprite", "out.sprite3");
        row("project", "out.sb3");
        row("new", "out.flipbook");
    }
}

void TestUnsetPixels::everyOutputIsTheSameWhateverMemoryHolds()
{
    QFETCH(QString, command);
    QFETCH(QString, input);
    QFETCH(QString, output);
    const QString file = path(output);
    QStringList arguments = {command, path(input), QStringLiteral("-o"), file};
    if (command == QLatin1String("new"))
        arguments = QStringList{command, file, QStringLiteral("--force"), QStringLiteral("--add"),
                                path(input)};
    QList<QByteArray> written;
    for (const int value : {1, 200}) {
        QCOMPARE(flipbook(arguments, filledMemory(value)).status, 0);
        written << bytesOf(file);
    }
    QVERIFY(!written.at(0).isEmpty());
    QCOMPARE(written.at(1), written.at(0));
}

void TestUnsetPixels::aDamagedGifSaysWhatIsTransparent()
{
    const QByteArray whole = uncovered().data();
    const QString file = path(QStringLiteral("damaged.gif"));
    writeBytes(file, whole.left(whole.size() - 1));
    const FlipbookRun run = flipbook({QStringLiteral("info"), file});
    QCOMPARE(run.err,
             QStringLiteral(
                 "flipbook: %1: warning: truncated: its end is missing; its 2 frames are "
                 "complete\nflipbook: %1: warning: pixels that no frame covers are transparent\n")
                 .arg(file));
    QCOMPARE(run.status, 0);
    // Cut in the data of the first frame, of which the first row is there.
    writeBytes(file, whole.left(25 + 19 + 18 + 12 + 2 + 2));
    const QImage frame = exportedFrame(file, 1);
    QCOMPARE(frame.size(), QSize(10, 8));
    QCOMPARE(frame.pixel(1, 2), yellow);
    QCOMPARE(qAlpha(frame.pixel(0, 0)), 0);
    QCOMPARE(qAlpha(frame.pixel(4, 4)), 0);
    QCOMPARE(qAlpha(frame.pixel(9, 7)), 0);
}

void TestUnsetPixels::aGifThatADocumentRefersToIsReadThatWay()
{
    const QString document = path(QStringLiteral("referring.flipbook"));
    DocumentArchive::write(document, R"({"format": "flipbook document", "version": 1, "pages": [
        {"rect": [0, 0, 20, 20], "objects": [{"kind": "animated image", "layer": "normal",
         "state": {"IsGif": true, "GifFileName": "film.gif"}}]}]})",
                           {});
    compareUncovered(exportedFrame(document, 1), 1);
    compareUncovered(exportedFrame(document, 2), 2);
}

void TestUnsetPixels::aGifWithoutAFullFirstFrameKeepsItsBackgroundColour()
{
    // Colour 0 of the global palette, red, around a green frame.
    GifBuilder builder(10, 8);
    builder.add({QRect(1, 2, 4, 3), 1});
    const QString file = path(QStringLiteral("red.gif"));
    builder.write(file);
    const QImage frame = exportedFrame(file, 1);
    QCOMPARE(frame.pixel(0, 0), 0xffff0000);
    QCOMPARE(frame.pixel(1, 2), 0xff00ff00);
}

void TestUnsetPixels::picturesOfAFolderAreReadThatWay()
{
    const QString folder = path(QStringLiteral("folder"));
    QCOMPARE(exportedFrame(folder, 1).pixel(0, 0), 0xff0000ff);
    compareCutBitmap(exportedFrame(folder, 2));
    compareUncovered(exportedFrame(folder, 3), 1);
    QCOMPARE(exportedFrame(folder, 4).pixel(0, 0), 0xff0000ff);
}

void TestUnsetPixels::insertedPicturesAreReadThatWay_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("frame");
    QTest::newRow("insert") << QStringLiteral("--insert=1=%1") << 1;
    QTest::newRow("replace") << QStringLiteral("--replace=2=%1") << 2;
    QTest::newRow("replace all") << QStringLiteral("--replace-all=%1") << 1;
}

void TestUnsetPixels::insertedPicturesAreReadThatWay()
{
    QFETCH(QString, operation);
    QFETCH(int, frame);
    const QString document = path(QStringLiteral("edited.flipbook"));
    for (const char *name : {"film.gif", "cut.bmp"}) {
        const QString file = path(QString::fromLatin1(name));
        QCOMPARE(flipbook({QStringLiteral("new"), document, QStringLiteral("--force"),
                           QStringLiteral("--add"), path(QStringLiteral("film.gif"))})
                     .status,
                 0);
        const FlipbookRun edit =
            flipbook({QStringLiteral("edit"), document, operation.arg(file)}, filledMemory(90));
        QCOMPARE(edit.err, QString());
        const QImage picture = exportedFrame(document, frame);
        if (file.endsWith(QLatin1String(".gif")))
            compareUncovered(picture, 1);
        else
            compareCutBitmap(picture);
    }
    // The frame is named after the file that the user named.
    if (frame == 1) {
        const FlipbookRun info = flipbook({QStringLiteral("info"), document});
        QVERIFY2(info.out.contains(QStringLiteral("named cut")), qPrintable(info.out));
    }
}

QTEST_GUILESS_MAIN(TestUnsetPixels)
#include "tst_unsetpixels.moc"
