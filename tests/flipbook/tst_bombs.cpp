#include "tests/flipbook/bombcheck.h"
#include "tests/flipbook/bombs.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmbuilder.h"
#include "tests/flipbook/measuredrun.h"
#include "tests/support/gifbuilder.h"

#include <QtCore/QJsonArray>
#include <QtTest/QTest>

#include <array>

/// Small files that would need much memory: every command refuses them, or gets along with what
/// --max-memory allows.
class TestBombs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void bombs_data();
    void bombs();
    void whatFitsIsNotRefused_data();
    void whatFitsIsNotRefused();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    void writePictures() const;
    void writeFilms() const;
    void writeWebFilms() const;
    void writeDocuments() const;
    void writeTexts() const;

    QTemporaryDir m_folder;
};

namespace
{

// The longest that the decoder accepts.
constexpr int textLength = 7900000;

QJsonObject background(double side, const QByteArray &frame)
{
    QJsonObject state = Bombs::stateWith({frame});
    state.insert(QStringLiteral("Size"), QJsonArray{side, side});
    state.insert(QStringLiteral("Position"), QJsonArray{0, 0});
    state.insert(
        QStringLiteral("OtherParams"),
        QJsonObject{{QStringLiteral("animatedType"), QJsonObject{{QStringLiteral("int"), 1}}}});
    return state;
}

QJsonObject shownAt(double side, QJsonObject state)
{
    state.insert(QStringLiteral("Size"), QJsonArray{side, side});
    state.insert(QStringLiteral("Position"), QJsonArray{0, 0});
    return state;
}

QByteArray inlineState(const QByteArray &prefix, const QByteArray &png, int count)
{
    QByteArray images = (R"({"png":")" + prefix + png.toBase64() + R"("},)").repeated(count);
    images.chop(1);
    return R"({"format":"flipbook document","version":1,"pages":[{"rect":[0,0,9,9],"objects":[)"
           R"({"kind":"animated image","layer":"normal","state":{"ImageList":[)" +
           images + "]}}]}]}";
}

// What would take more memory than is allowed.
constexpr std::array<const char *, 38> refused = {
    "info texts.png",
    "sheet texts.png -o o.png",
    "edit dot.flipbook --insert 1=texts.png",
    "edit dot.flipbook --replace 1=texts.png",
    "new n.flipbook --add texts.png",
    "info texts",
    "info profile.png",
    "info wide.png",
    "info claims.jpg",
    "info many",
    "info vast.gif",
    "info suffix",
    "info dots.gif",
    "info vast.png",
    "info dots.png",
    "info vast.webp",
    "info dots.webp",
    "info sheet.json",
    "info cells.png --cell 1x1",
    "new n.flipbook --keep-timing --add dots.gif",
    "info texts.flipbook",
    "render texts.flipbook -o o.png",
    "edit texts.flipbook --interval 3",
    "info heavy.flipbook",
    "info deep.flipbook",
    "info backgrounds.flipbook",
    "record backgrounds.flipbook -o rec --seconds 1",
    "info background.flipbook",
    "sprite large.flipbook -o o.sprite3",
    "project large.flipbook -o o.sb3",
    "record pictures.flipbook -o rec3 --seconds 1",
    "edit large.flipbook --type background",
    "info objects.flipbook",
    "info entries.flipbook",
    "info inline.flipbook",
    "info nulls.flipbook",
    "info nested.flipbook",
    "info spaces.flipbook",
};

} // namespace

void TestBombs::initTestCase()
{
    writePictures();
    writeFilms();
    writeWebFilms();
    writeDocuments();
    writeTexts();
}

void TestBombs::writePictures() const
{
    using namespace Bombs;
    const QSize dot(1, 1);
    const QVector<QByteArray> texts(50, compressedText(textLength));
    writeBytes(path(QStringLiteral("texts.png")), png(dot, texts));
    writeBytes(path(QStringLiteral("profile.png")), png(dot, {colourProfile(60000000)}));
    writeBytes(path(QStringLiteral("wide.png")), png({30000, 3000}));
    writeBytes(path(QStringLiteral("claims.ppm")), "P6 60000 60000 255\n");
    writeBytes(path(QStringLiteral("claims.bmp")),
               "BM" +
                   QByteArray::fromHex("000000000000000036000000"
                                       "2800000060ea000060ea0000"
                                       "0100180000000000") +
                   QByteArray(20, '\0'));
    // A progressive picture of 60,000 x 60,000.
    writeBytes(path(QStringLiteral("claims.jpg")),
               QByteArray::fromHex("ffd8ffc2001108ea60ea6003012200021101031101"
                                   "ffda000c03010002000300003f00"));
    writeFolder(path(QStringLiteral("texts")), png(dot, texts.mid(0, 5)), 20);
    writeFolder(path(QStringLiteral("many")), png(dot), 500000);
    writeBytes(path(QStringLiteral("dot.png")), png(dot));
}

void TestBombs::writeFilms() const
{
    GifBuilder vast(16383, 16383);
    vast.add({QRect(0, 0, 1, 1), 0});
    vast.write(path(QStringLiteral("vast.gif")));
    writeBytes(path(QStringLiteral("dots.gif")), Bombs::manyDots(200000));
    writeBytes(path(QStringLiteral("squares.gif")), Bombs::checkerboardFilm(128, 300));
    QDir(m_folder.path()).mkdir(QStringLiteral("suffix"));
    vast.write(path(QStringLiteral("suffix/bomb.gif")));
    writeBytes(path(QStringLiteral("suffix/config.json")),
               R"({"ImageList": [{"filename": "bomb.gif"}, {"filename": "bomb"}]})");
}

void TestBombs::writeWebFilms() const
{
    const QImage dot = pixelRow({0xffff0000});
    const FilmFrame frame{dot, {0, 0}};
    ApngBuilder vast(QSize(30000, 30000), 0);
    writeBytes(path(QStringLiteral("vast.png")), vast.still(dot).add(frame).data());
    ApngBuilder dots(QSize(1, 1), 0);
    for (int i = 0; i < 100000; ++i)
        dots.add(frame);
    writeBytes(path(QStringLiteral("dots.png")), dots.data());
    writeBytes(path(QStringLiteral("vast.webp")), webpFilm(QSize(16383, 16383), 0, {frame}));
    writeBytes(path(QStringLiteral("dots.webp")),
               webpFilm(QSize(1, 1), 0, QVector<FilmFrame>(100000, frame)));
    // What is just within the limit: a frame, and what it takes to put it together.
    QImage large(1500, 1500, QImage::Format_ARGB32);
    for (int y = 0; y < large.height(); ++y) {
        for (int x = 0; x < large.width(); ++x)
            large.setPixel(x, y, qRgba(x, y, x * y, x ^ y));
    }
    const FilmFrame whole{large, {0, 0}};
    writeBytes(path(QStringLiteral("near.png")), ApngBuilder(large.size(), 0).add(whole).data());
    writeBytes(path(QStringLiteral("near.webp")), webpFilm(large.size(), 0, {whole}));
    writeBytes(path(QStringLiteral("still.webp")), webpPicture(large));
    writeBytes(path(QStringLiteral("cells.png")), Bombs::png({1500, 1500}));
    writeBytes(path(QStringLiteral("sheet.json")),
               "{\"frames\":[" +
                   QByteArray(R"({"frame":{"x":0,"y":0,"w":1,"h":1}},)").repeated(300000) +
                   R"({"frame":{"x":0,"y":0,"w":1,"h":1}}],"meta":{"image":"dot.png"}})");
}

void TestBombs::writeDocuments() const
{
    using namespace Bombs;
    const QByteArray dot = png({1, 1});
    const QByteArray wordy = png({1, 1}, QVector<QByteArray>(110, compressedText(textLength)));
    writeDocument(path(QStringLiteral("texts.flipbook")), {stateWith({wordy})}, {wordy});

    QVector<QByteArray> heavy;
    for (char letter = 'a'; letter <= 'z'; ++letter)
        heavy.append(png({1, 1}, {text(4000000, letter)}));
    writeDocument(path(QStringLiteral("heavy.flipbook")), {stateWith(heavy)}, heavy);

    const QByteArray deep =
        png({2000, 2000}, {pngChunk("tEXt", QByteArray("PixelFormat\0RGBA64", 18))});
    writeDocument(path(QStringLiteral("deep.flipbook")), {stateWith({deep})}, {deep});

    QVector<QJsonObject> backgrounds(4, background(8000, dot));
    writeDocument(path(QStringLiteral("backgrounds.flipbook")), backgrounds, {dot});
    writeDocument(path(QStringLiteral("background.flipbook")), {background(1e9, dot)}, {dot});
    writeDocument(path(QStringLiteral("large.flipbook")), {shownAt(12000, stateWith({dot, dot}))},
                  {dot});
    writeDocument(path(QStringLiteral("frames.flipbook")),
                  {stateWith(QVector<QByteArray>(3000, dot))}, {dot});
    QVector<QByteArray> squares;
    for (int i = 0; i < 300; ++i)
        squares.append(checkerboard(128, i % 2));
    writeDocument(path(QStringLiteral("squares.flipbook")), {stateWith(squares)},
                  squares.mid(0, 2));
    // Pictures that are painted at each step.
    QVector<QJsonObject> shown;
    QVector<QByteArray> large;
    for (char letter = 'a'; letter < 'o'; ++letter) {
        large.append(png({1000, 1000}, {text(1, letter)}));
        shown.append(shownAt(1000, stateWith({large.last()})));
    }
    writeDocument(path(QStringLiteral("pictures.flipbook")), shown, large);
    writeDocument(path(QStringLiteral("objects.flipbook")), QVector<QJsonObject>(50000), {});
    writeBytes(path(QStringLiteral("entries.flipbook")), manyEntries(25000));
    writeBytes(path(QStringLiteral("dot.flipbook")), QByteArray());
    writeDocument(path(QStringLiteral("dot.flipbook")), {stateWith({dot})}, {dot});
}

void TestBombs::writeTexts() const
{
    using namespace Bombs;
    const QByteArray large = png({6000, 6000});
    writeDocument(path(QStringLiteral("inline.flipbook")), inlineState("", large, 3));
    writeDocument(path(QStringLiteral("hidden.flipbook")),
                  inlineState(QByteArray(80, '!'), large, 3));
    const QByteArray head = R"({"format":"flipbook document","version":1,"pages":[)";
    writeDocument(path(QStringLiteral("nulls.flipbook")),
                  head +
                      R"({"rect":[0,0,9,9],"objects":[{"kind":"animated image","state":)"
                      R"({"ImageList":[)" +
                      QByteArray("null,").repeated(10000000) + "null]}}]}]}");
    writeDocument(path(QStringLiteral("nested.flipbook")),
                  head + QByteArray("[[[[[[0]]]]]],").repeated(500000) + "0]}");
    writeDocument(path(QStringLiteral("spaces.flipbook")), head + QByteArray(60000000, ' ') + "]}");
}

void TestBombs::bombs_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("message"); // a part of it
    QTest::addColumn<int>("status");
    const auto row = [](const char *arguments, const char *message, int status) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(message)
                                 << status;
    };
    const char *limit = "--max-memory allows";
    for (const char *command : refused)
        row(command, limit, 1);
    for (const char *command : {"info claims.ppm", "info claims.bmp"})
        row(command, "it is cut short or damaged", 1);
    row("sheet frames.flipbook -o o.png", "frames are too many for one sheet within the memory", 1);
    row("info hidden.flipbook", "frame 1 of object 1 of page 1 is empty: its picture is damaged",
        0);
    for (const char *command :
         {"sheet large.flipbook -o o.png", "render large.flipbook -o o.png",
          "frames large.flipbook -o out", "edit frames.flipbook --loops 3", "info squares.gif",
          "info near.png", "info near.webp", "info still.webp",
          "edit dot.flipbook --insert 1=still.webp",
          "edit frames.flipbook --duplicate 1:1 --move 1:2",
          "edit frames.flipbook --insert 1=dot.png", "edit squares.flipbook --loops 3",
          "edit squares.flipbook --move 1:2 --mirror --flip --duplicate 3:3",
          "render squares.flipbook -o o.png", "record squares.flipbook -o rec2 --seconds 1"})
        row(command, "", 0);
}

void TestBombs::bombs()
{
    QFETCH(QString, arguments);
    QFETCH(QString, message);
    QFETCH(int, status);
    BombCheck::run(m_folder.path(), arguments, message, status);
}

void TestBombs::whatFitsIsNotRefused_data()
{
    QTest::addColumn<QString>("arguments");
    for (const char *arguments :
         {"info fits.png", "info dots.gif", "info film.gif", "info film.flipbook",
          "sheet film.gif -o o.png", "sprite film.flipbook -o o.sprite3",
          "edit film.flipbook --duplicate 1:1 --move 1:2 --loops 3", "frames film.gif -o out",
          "new n.flipbook --force --keep-timing --add film.gif"})
        QTest::newRow(arguments) << QString::fromLatin1(arguments);
}

void TestBombs::whatFitsIsNotRefused()
{
    QFETCH(QString, arguments);
    const QTemporaryDir folder;
    const auto in = [&folder](const char *name) { return folder.filePath(QLatin1String(name)); };
    // 36 MB of pixels, twice while they are copied; with all else, what 80 MiB can hold.
    writeBytes(in("fits.png"), Bombs::png({3000, 3000}));
    writeBytes(in("dots.gif"), Bombs::manyDots(50000));
    GifBuilder film(640, 480);
    for (int i = 0; i < 24; ++i)
        film.add({QRect(0, 0, 640, 480), i % 4});
    film.write(in("film.gif"));
    if (arguments.contains(QLatin1String("film.flipbook")))
        QCOMPARE(flipbookIn(folder.path(), {QStringLiteral("new"), QStringLiteral("film.flipbook"),
                                            QStringLiteral("--add"), QStringLiteral("film.gif")})
                     .status,
                 0);
    const QStringList words = arguments.split(QLatin1Char(' ')) +
                              QStringList{QStringLiteral("--max-memory"), QStringLiteral("80M")};
    const MeasuredRun run = measuredFlipbook(folder.path(), words);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
}

QTEST_GUILESS_MAIN(TestBombs)
#include "tst_bombs.moc"
