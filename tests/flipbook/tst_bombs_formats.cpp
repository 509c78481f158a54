#include "tests/flipbook/bombcheck.h"
#include "tests/flipbook/bombs.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmbuilder.h"
#include "tests/support/gifbuilder.h"

#include <QtCore/QJsonArray>
#include <QtCore/QtEndian>
#include <QtTest/QTest>

/// Small files whose headers claim much, or whose few bytes describe much, one of each kind for
/// every format that flipbook reads.
class TestBombsFormats : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void bombs_data();
    void bombs();

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    void write(const char *name, const QByteArray &bytes) const { writeBytes(path(name), bytes); }
    void writeGifs() const;
    void writePngs() const;
    void writeWebFilms() const;
    void writePictures() const;
    void writeTexts() const;
    void writeDocuments() const;

    QTemporaryDir m_folder;
};

namespace
{

template<typename Number>
QByteArray little(Number number)
{
    QByteArray bytes(sizeof number, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray big(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

/// A PNG file with this header and these bytes as its pixels, deflated.
QByteArray pngOf(quint32 width, quint32 height, const char *format, const QByteArray &pixels)
{
    return "\x89PNG\r\n\x1a\n" +
           Bombs::pngChunk("IHDR", big(width) + big(height) + QByteArray::fromHex(format)) +
           Bombs::pngChunk("IDAT", qCompress(pixels, 1).mid(4)) + Bombs::pngChunk("IEND", {});
}

QByteArray compressedInternationalText(int length)
{
    return Bombs::pngChunk("iTXt", QByteArray("c\0\1\0\0\0", 6) +
                                       qCompress(QByteArray(length, 'a'), 9).mid(4));
}

/// A BMP file of @p bits for each pixel, with this compression and these bytes as its pixels.
QByteArray bmpOf(quint32 side, quint16 bits, quint32 compression, const QByteArray &pixels)
{
    const QByteArray palette = bits <= 8 ? QByteArray(4 << bits, '\0') : QByteArray();
    return "BM" + QByteArray(8, '\0') + little(quint32(54 + palette.size())) + little(quint32(40)) +
           little(side) + little(side) + little(quint16(1)) + little(bits) + little(compression) +
           QByteArray(20, '\0') + palette + pixels;
}

QByteArray chunk(const char *name, const QByteArray &bytes)
{
    return name + little(quint32(bytes.size())) + bytes;
}

QByteArray riff(const QByteArray &chunks)
{
    return "RIFF" + little(quint32(4 + chunks.size())) + "WEBP" + chunks;
}

QByteArray document(const QByteArray &pages)
{
    return R"({"format":"flipbook document","version":1,"pages":[)" + pages + "]}";
}

QByteArray page(const QByteArray &state)
{
    return R"({"rect":[0,0,9,9],"objects":[{"kind":"animated image","layer":"normal","state":)" +
           state + "}]}";
}

} // namespace

void TestBombsFormats::initTestCase()
{
    writeGifs();
    writePngs();
    writeWebFilms();
    writePictures();
    writeTexts();
    writeDocuments();
}

void TestBombsFormats::writeGifs() const
{
    GifBuilder(65535, 65535).add({QRect(0, 0, 1, 1), 0}).write(path("screen.gif"));
    GifBuilder(1, 1).add({QRect(65535, 65535, 1, 1), 0}).add(1, 5).write(path("offset.gif"));
    // Sides of 0 are taken from the first frame, which claims the largest, and has no pixels.
    QByteArray claims = GifBuilder(1, 1).add({QRect(0, 0, 1, 1), 0}).data();
    claims.replace(6, 4, QByteArray(4, '\0'));
    const int descriptor = claims.indexOf(QByteArray("\x2c\0\0\0\0\1\0\1\0", 9));
    claims.replace(descriptor + 5, 4, QByteArray(4, '\xff'));
    write("frame.gif", claims);
    GifBuilder screens(1000, 1000);
    for (int i = 0; i < 1000; ++i)
        screens.add({QRect(0, 0, 1, 1), i % 4});
    screens.write(path("screens.gif"));
    GifBuilder rows(65535, 1);
    for (int i = 0; i < 2000; ++i)
        rows.add({QRect(0, 0, 1, 1), i % 4});
    rows.write(path("rows.gif"));
}

void TestBombsFormats::writePngs() const
{
    constexpr const char *colours = "0806000000";
    write("claims.png", pngOf(0x7fffffff, 0x7fffffff, colours, "x"));
    write("mono.png", pngOf(60000, 60000, "0100000000", QByteArray(1000, '\0')));
    write("palette.png", pngOf(30000, 30000, "0803000000", QByteArray(1000, '\0')));
    write("deep.png", pngOf(4000, 4000, "1006000000", QByteArray(1000, '\0')));
    write("interlaced.png", pngOf(30000, 30000, "0806000001", QByteArray(1000, '\0')));
    QByteArray endless = Bombs::png({1, 1});
    endless.replace(endless.indexOf("IDAT") - 4, 4, QByteArray::fromHex("7fffffff"));
    write("endless.png", endless);
    write("notes.png",
          Bombs::png({1, 1}, QVector<QByteArray>(30, compressedInternationalText(7900000))));
    write("chunks.png", Bombs::png({1, 1}, QVector<QByteArray>(300000, Bombs::text(0, 'a'))));
    write("dot.png", Bombs::png({1, 1}));
}

void TestBombsFormats::writeWebFilms() const
{
    const FilmFrame dot{pixelRow({0xffff0000}), {0, 0}};
    write("count.png", ApngBuilder(QSize(1, 1), 0).add(dot).announce(0x7fffffff).data());
    ApngBuilder canvases(QSize(1000, 1000), 0);
    canvases.still(dot.picture);
    for (int i = 0; i < 1000; ++i)
        canvases.add(dot);
    write("canvases.png", canvases.data());
    const FilmFrame outside{dot.picture, QPoint(0x7ffffff0, 0x7ffffff0)};
    write("outside.png", ApngBuilder(QSize(1, 1), 0).add(dot).add(outside).data());
    write("canvases.webp", webpFilm(QSize(1000, 1000), 0, QVector<FilmFrame>(1000, dot)));
    // An animation whose canvas has 16,777,216 pixels on each side.
    write("canvas.webp", riff(chunk("VP8X", QByteArray::fromHex("02000000ffffffffffff")) +
                              chunk("ANIM", QByteArray(6, '\0'))));
    // A picture without loss of 16,384 x 16,384.
    write("still.webp",
          riff(chunk("VP8L", QByteArray::fromHex("2fffffff0f") + QByteArray(20, '\0'))));
    write("riff.webp", "RIFF" + little(0xfffffff0U) + "WEBPVP8X" + little(0xfffffff0U) +
                           QByteArray::fromHex("02000000ffffffffffff"));
}

void TestBombsFormats::writePictures() const
{
    write("mono.bmp", bmpOf(60000, 1, 0, QByteArray(64, '\0')));
    // Runs of 255 pixels, two bytes each.
    write("runs.bmp", bmpOf(30000, 8, 1, QByteArray("\xff\0", 2).repeated(100000)));
    write("claims.pgm", "P2 60000 60000 255\n1 2 3\n");
    write("claims.pbm", "P4 200000 200000\n");
    // A baseline picture of 65,500 x 65,500.
    write("claims.jpg", QByteArray::fromHex("ffd8ffc0001108ffdcffdc03012200021101031101"
                                            "ffda000c03010002110311003f00"));
}

void TestBombsFormats::writeTexts() const
{
    const QByteArray head = R"({"meta":{"image":"dot.png"},"frames":[)";
    const QByteArray place = R"("frame":{"x":0,"y":0,"w":1,"h":1})";
    const QByteArray vast = R"({)" + place +
                            R"(,"trimmed":true,"spriteSourceSize":{"x":0,"y":0,"w":1,"h":1},)"
                            R"("sourceSize":{"w":1000000,"h":1000000}})";
    write("vast.json", head + vast + "]}");
    QByteArray many = (QByteArray(vast).replace("1000000", "1000") + ',').repeated(1000);
    many.chop(1);
    write("sizes.json", head + many + "]}");
    write("outside.json",
          head + QByteArray("{" + place + "}").replace("\"x\":0", "\"x\":2147483000") + "]}");
    write("nested.json", head + QByteArray(500000, '[') + "]}");
    const auto folder = [this](const char *name, const QByteArray &config) {
        QDir(m_folder.path()).mkdir(QLatin1String(name));
        writeBytes(path(name) + QStringLiteral("/config.json"), config);
        writeBytes(path(name) + QStringLiteral("/a.png"), Bombs::png({1, 1}));
    };
    folder("nulls", R"({"ImageList":[)" + QByteArray("null,").repeated(5000000) + "null]}");
    folder("spaces", R"({"ImageList":[)" + QByteArray(70000000, ' ') + "]}");
    folder("nested", R"({"ImageList":)" + QByteArray(500000, '[') + "}");
    folder("name", R"({"ImageList":[{"filename":")" + QByteArray(20000000, 'a') + R"("}]})");
}

void TestBombsFormats::writeDocuments() const
{
    using namespace Bombs;
    const QByteArray dot = png({1, 1});
    writeDocument(path("dot.flipbook"), {stateWith({dot})}, {dot});
    writeDocument(path("pages.flipbook"),
                  document(QByteArray(R"({"rect":[0,0,1,1],"objects":[]},)").repeated(500000) +
                           R"({"rect":[0,0,1,1],"objects":[]})"));
    writeDocument(path("page.flipbook"), document(R"({"rect":[0,0,1e6,1e6],"objects":[]})"));
    writeDocument(path("base64.flipbook"), document(page(R"({"ImageList":[{"png":")" +
                                                         QByteArray(60000000, 'A') + R"("}]})")));
    writeDocument(path("names.flipbook"),
                  document(page(R"({"ImageList":[],"OtherParams":{"FrameNames":{"strings":[)" +
                                QByteArray(R"("a",)").repeated(5000000) + R"("a"]}}})")));
    writeDocument(
        path("size.flipbook"),
        document(page(R"({"ImageList":[],"Size":[1e300,1e300],"Position":[1e308,-1e308]})")));
    writeDocument(path("text.flipbook"), document(QByteArray(300000000, ' ')));
    // Pictures that the archive deflates, besides what deflates them already.
    QVector<QByteArray> zeros;
    for (char letter = 'a'; letter < 'e'; ++letter)
        zeros.append(png({1, 1}, {text(40000000, letter)}));
    writeDocument(path("zeros.flipbook"), {stateWith(zeros)}, zeros);
}

void TestBombsFormats::bombs_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("message"); // a part of it
    QTest::addColumn<int>("status");
    const auto row = [](const char *arguments, const char *message, int status) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(message)
                                 << status;
    };
    const char *limit = "--max-memory allows";
    for (const char *command : {"info screen.gif",
                                "info frame.gif",
                                "sheet screens.gif -o o.png",
                                "new n.flipbook --add rows.gif",
                                "info claims.png",
                                "info mono.png",
                                "info palette.png",
                                "info deep.png",
                                "info interlaced.png",
                                "info notes.png",
                                "info chunks.png",
                                "frames canvases.png -o f",
                                "info canvases.webp",
                                "info still.webp",
                                "info claims.jpg",
                                "info vast.json",
                                "info sizes.json",
                                "info nulls",
                                "info nested",
                                "info name",

                                "info pages.flipbook",
                                "info base64.flipbook",
                                "info names.flipbook",
                                "info zeros.flipbook",
                                "render zeros.flipbook -o o.png"})
        row(command, limit, 1);
    for (const char *command : {"info endless.png", "info mono.bmp", "info runs.bmp",
                                "info claims.pgm", "info claims.pbm"})
        row(command, "it is cut short or damaged", 1);
    for (const char *command : {"info canvas.webp", "info riff.webp"})
        row(command, "nothing could be read", 1);
    row("info outside.json", "\"frame\" of frame 1 is not a rectangle of whole pixels", 1);
    row("info nested.json", "too deeply nested document", 1);
    row("info dot.png --grid 100000x100000", "cannot be divided into 100000 x 100000", 1);
    row("info spaces", "larger than 64.0 MiB", 1);
    row("info text.flipbook", "its document.json is too large", 1);
    row("render page.flipbook -o o.png", "a page of 1e+06 x 1e+06 pixels is too large", 1);
    row("render dot.flipbook -o o.png --scale 100", "a page of 20000 x 10000 pixels is too large",
        1);
    row("info count.png", "it announces 2147483647 frames but has 1", 0);
    row("info outside.png", "frame 2 is outside of the picture", 0);
    for (const char *command : {"info offset.gif", "info size.flipbook"})
        row(command, "", 0);
}

void TestBombsFormats::bombs()
{
    QFETCH(QString, arguments);
    QFETCH(QString, message);
    QFETCH(int, status);
    BombCheck::run(m_folder.path(), arguments, message, status);
}

QTEST_GUILESS_MAIN(TestBombsFormats)
#include "tst_bombs_formats.moc"
