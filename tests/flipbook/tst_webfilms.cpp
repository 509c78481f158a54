#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/reading.h"
#include "flipbook/document/openedfile.h"
#include "flipbook/import/apngfilm.h"
#include "flipbook/import/webpfile.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmbuilder.h"
#include "tests/flipbook/flipbookrun.h"

#include <QtTest/QTest>

Q_DECLARE_METATYPE(QVector<QRgb>)

namespace
{

constexpr QRgb red = 0xffff0000;
constexpr QRgb green = 0xff00ff00;
constexpr QRgb blue = 0xff0000ff;
constexpr QRgb nothing = 0;

DecodedFilm apng(const QByteArray &file)
{
    MemoryAccount memory(1 << 20);
    return readApng(file, QStringLiteral("film.png"), memory);
}

DecodedFilm webp(const QByteArray &file)
{
    MemoryAccount memory(1 << 20);
    return WebpFile::readFilm(file, QStringLiteral("film.webp"), memory);
}

/// The reason why a film is refused; empty if it is not.
template<typename Read>
QString refusal(const Read &read)
{
    try {
        read();
    } catch (const Failure &failure) {
        return failure.reason;
    }
    return QString();
}

QVector<QVector<QRgb>> pixelsOfAll(const DecodedFilm &film)
{
    QVector<QVector<QRgb>> all;
    for (const QImage &picture : film.pictures)
        all.append(pixelsOf(picture));
    return all;
}

} // namespace

/// Animated PNG and WebP files: their frames, times and repetitions.
class TestWebFilms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesAreDisposedOfAsTheySay_data();
    void framesAreDisposedOfAsTheySay();
    void framesAreBlendedAsTheySay();
    void aFrameIsPutInItsPlace();
    void blendingIsExact();
    void aPictureForOtherProgramsIsNoFrame();
    void delaysAreTakenAsBrowsersDo();
    void repetitionsAreTakenOver();
    void palettesAndDeepColoursAreRead();
    void whatIsCutOffIsTold();
    void whatIsDamagedIsTold();
    void aFileWithoutWholeFramesIsRefused();
    void memoryIsCountedBeforeDecoding();
    void aCanvasOfMorePixelsThanCanBeCountedIsRefused();
    void everyCommandReadsThem();
    void keepTimingWorksForThem();
    void theNameOfTheFileDoesNotMatter();
    void theSamplesAreRead();

private:
    QString write(const QString &name, const QByteArray &bytes) const
    {
        writeBytes(m_fixture.path(name), bytes);
        return m_fixture.path(name);
    }

    DocumentFixture m_fixture;
};

void TestWebFilms::framesAreDisposedOfAsTheySay_data()
{
    QTest::addColumn<int>("disposal");
    QTest::addColumn<QVector<QRgb>>("third");
    // Red all over; then green on the left, disposed of; then nothing, painted over it.
    QTest::newRow("kept") << 0 << QVector<QRgb>{green, red};
    QTest::newRow("cleared") << 1 << QVector<QRgb>{nothing, red};
    QTest::newRow("restored") << 2 << QVector<QRgb>{red, red};
}

void TestWebFilms::framesAreDisposedOfAsTheySay()
{
    QFETCH(int, disposal);
    QFETCH(QVector<QRgb>, third);
    FilmFrame second{pixelRow({green}), {0, 0}};
    second.disposal = disposal;
    FilmFrame last{pixelRow({nothing}), {0, 0}};
    last.blends = true;
    const QVector<FilmFrame> frames = {{pixelRow({red, red}), {0, 0}}, second, last};
    ApngBuilder builder(QSize(2, 1), 0);
    for (const FilmFrame &frame : frames)
        builder.add(frame);
    const QVector<QVector<QRgb>> expected = {{red, red}, {green, red}, third};
    QCOMPARE(pixelsOfAll(apng(builder.data())), expected);
    if (disposal < 2)
        QCOMPARE(pixelsOfAll(webp(webpFilm(QSize(2, 1), 0, frames))), expected);
}

void TestWebFilms::framesAreBlendedAsTheySay()
{
    FilmFrame replacing{pixelRow({nothing, blue}), {0, 0}};
    FilmFrame painted = replacing;
    painted.blends = true;
    const QVector<FilmFrame> frames = {
        {pixelRow({red, red}), {0, 0}}, painted, {pixelRow({green, green}), {0, 0}}, replacing};
    ApngBuilder builder(QSize(2, 1), 0);
    for (const FilmFrame &frame : frames)
        builder.add(frame);
    const QVector<QVector<QRgb>> expected = {
        {red, red}, {red, blue}, {green, green}, {nothing, blue}};
    QCOMPARE(pixelsOfAll(apng(builder.data())), expected);
    QCOMPARE(pixelsOfAll(webp(webpFilm(QSize(2, 1), 0, frames))), expected);
}

void TestWebFilms::aFrameIsPutInItsPlace()
{
    QImage sheet(3, 3, QImage::Format_ARGB32);
    sheet.fill(red);
    const QVector<FilmFrame> frames = {{sheet, {0, 0}}, {pixelRow({blue}), {2, 2}}};
    const QByteArray png = ApngBuilder(QSize(3, 3), 0).add(frames.at(0)).add(frames.at(1)).data();
    const QVector<QRgb> expected = {red, red, red, red, red, red, red, red, blue};
    QCOMPARE(pixelsOf(apng(png).pictures.at(1)), expected);
    QCOMPARE(pixelsOf(webp(webpFilm(QSize(3, 3), 0, frames)).pictures.at(1)), expected);
}

void TestWebFilms::blendingIsExact()
{
    // Half of white over black is grey, and red of 128 over blue of 128 is opaque by 192:
    // 128 * 255 + 128 * 127 = 48896 parts, of which 32640 are red: 255 * 32640 / 48896 = 170.2,
    // and 255 * 16256 / 48896 = 84.8 blue; 48896 / 255 = 191.7.
    FilmFrame top{pixelRow({0x80ffffff, 0x80ff0000}), {0, 0}};
    top.blends = true;
    const QByteArray png = ApngBuilder(QSize(2, 1), 0)
                               .add({pixelRow({0xff000000, 0x800000ff}), {0, 0}})
                               .add(top)
                               .data();
    QCOMPARE(pixelsOf(apng(png).pictures.at(1)), (QVector<QRgb>{0xff808080, 0xc0aa0055}));
}

void TestWebFilms::aPictureForOtherProgramsIsNoFrame()
{
    const DecodedFilm film = apng(ApngBuilder(QSize(1, 1), 0)
                                      .still(pixelRow({blue}))
                                      .add({pixelRow({red}), {0, 0}})
                                      .add({pixelRow({green}), {0, 0}})
                                      .data());
    QCOMPARE(pixelsOfAll(film), (QVector<QVector<QRgb>>{{red}, {green}}));
    QCOMPARE(film.warnings, QStringList());
}

void TestWebFilms::delaysAreTakenAsBrowsersDo()
{
    ApngBuilder builder(QSize(1, 1), 0);
    const QVector<QPair<int, int>> fractions = {{1, 4},  {5, 0},     {0, 100},  {1, 100},
                                                {11, 0}, {11, 1000}, {1, 30},   {65535, 1},
                                                {1, 3},  {2, 3},     {10, 1000}};
    for (const auto &fraction : fractions) {
        FilmFrame frame{pixelRow({red}), {0, 0}};
        frame.delay = fraction.first;
        frame.divisor = fraction.second;
        builder.add(frame);
    }
    // A divisor of 0 is 100; up to 10 ms is 100 ms.
    QCOMPARE(apng(builder.data()).delaysMs,
             (QVector<int>{250, 50, 100, 100, 110, 11, 33, 65535000, 333, 667, 100}));

    QVector<FilmFrame> frames;
    for (const int delay : {0, 10, 11, 40, 16777215}) {
        FilmFrame frame{pixelRow({red}), {0, 0}};
        frame.delay = delay;
        frames.append(frame);
    }
    QCOMPARE(webp(webpFilm(QSize(1, 1), 0, frames)).delaysMs,
             (QVector<int>{100, 100, 11, 40, 16777215}));
}

void TestWebFilms::repetitionsAreTakenOver()
{
    const FilmFrame frame{pixelRow({red}), {0, 0}};
    for (const int plays : {0, 1, 5}) {
        QCOMPARE(apng(ApngBuilder(QSize(1, 1), plays).add(frame).data()).loopCount, plays - 1);
        QCOMPARE(webp(webpFilm(QSize(1, 1), plays, {frame})).loopCount, plays - 1);
    }
    // -1 is forever.
    QCOMPARE(apng(ApngBuilder(QSize(1, 1), -1).add(frame).data()).loopCount, 2147483646);
}

void TestWebFilms::palettesAndDeepColoursAreRead()
{
    // The chunks of pictures that Qt writes, with a description of one frame before the picture.
    QImage palette(2, 1, QImage::Format_Indexed8);
    palette.setColorTable({green, 0x40ff0000});
    palette.setPixel(0, 0, 0);
    palette.setPixel(1, 0, 1);
    QImage deep(2, 1, QImage::Format_RGBA64);
    deep.setPixelColor(0, 0, QColor::fromRgb(blue));
    deep.setPixelColor(1, 0, QColor(255, 0, 0, 64));
    for (const QImage &picture : {palette, deep}) {
        const QString path = m_fixture.path(QStringLiteral("still.png"));
        QVERIFY(picture.save(path));
        QByteArray file = bytesOf(path);
        const QByteArray model =
            ApngBuilder(QSize(2, 1), 0).add({pixelRow({red, red}), {0, 0}}).data();
        const int start = model.indexOf("acTL") - 4;
        file.insert(33, model.mid(start, model.indexOf("IDAT") - 4 - start));
        const DecodedFilm film = apng(file);
        QCOMPARE(pixelsOfAll(film), (QVector<QVector<QRgb>>{
                                        pixelsOf(picture.convertToFormat(QImage::Format_ARGB32))}));
    }
}

void TestWebFilms::whatIsCutOffIsTold()
{
    const FilmFrame frame{pixelRow({red}), {0, 0}};
    const QByteArray png = ApngBuilder(QSize(1, 1), 0).add(frame).add(frame).add(frame).data();
    const DecodedFilm cutPng = apng(png.left(png.lastIndexOf("fdAT") + 6));
    QCOMPARE(cutPng.pictures.size(), 2);
    QCOMPARE(cutPng.warnings,
             QStringList{QStringLiteral("truncated: 2 of 3 frames could be read completely")});

    // A WebP file does not say how many frames it has.
    const QByteArray film = webpFilm(QSize(1, 1), 0, {frame, frame, frame});
    const DecodedFilm cutWebp = webp(film.left(film.lastIndexOf("ANMF") + 40));
    QCOMPARE(cutWebp.pictures.size(), 2);
    QCOMPARE(cutWebp.warnings,
             QStringList{QStringLiteral("truncated: its end is missing; 2 frames could be read")});
}

void TestWebFilms::whatIsDamagedIsTold()
{
    const FilmFrame frame{pixelRow({red}), {0, 0}};
    const FilmFrame outside{pixelRow({red}), {1, 0}};
    const QByteArray wrongPlace = ApngBuilder(QSize(1, 1), 0).add(frame).add(outside).data();
    QCOMPARE(apng(wrongPlace).warnings,
             QStringList{QStringLiteral("frame 2 is outside of the picture: 1 of 2 frames could be "
                                        "read completely")});

    QByteArray changed = ApngBuilder(QSize(1, 1), 0).add(frame).add(frame).data();
    const int at = changed.lastIndexOf("fdAT");
    changed[at + 12] = char(changed.at(at + 12) ^ 1);
    QCOMPARE(apng(changed).warnings,
             QStringList{QStringLiteral("damaged at byte %1: 1 of 2 frames could be read "
                                        "completely")
                             .arg(at - 4)});

    QCOMPARE(apng(ApngBuilder(QSize(1, 1), 0).add(frame).announce(4).data()).warnings,
             QStringList{QStringLiteral("it announces 4 frames but has 1")});
}

void TestWebFilms::aFileWithoutWholeFramesIsRefused()
{
    const FilmFrame frame{pixelRow({red}), {0, 0}};
    const QByteArray png = ApngBuilder(QSize(1, 1), 0).add(frame).data();
    QCOMPARE(refusal([&] { apng(png.left(png.indexOf("IDAT") + 6)); }),
             QStringLiteral("an APNG of which no frame could be read: truncated"));
    const QByteArray film = webpFilm(QSize(1, 1), 0, {frame});
    QCOMPARE(refusal([&] { webp(film.left(40)); }),
             QStringLiteral("a WebP film of which no frame could be read: it is cut short or "
                            "damaged"));
}

void TestWebFilms::aCanvasOfMorePixelsThanCanBeCountedIsRefused()
{
    // 2.7 * 10^18 pixels: their bytes are beyond 64 bits.
    const int side = 0x61616161;
    const QByteArray file =
        ApngBuilder(QSize(side, side), 0).add({pixelRow({0xffff0000}), {0, 0}}).data();
    QVERIFY_EXCEPTION_THROWN(apng(file), OverBudget);
}

void TestWebFilms::memoryIsCountedBeforeDecoding()
{
    // Two frames and the canvases of a film of 3000 x 3000 pixels need far more than 64 MiB.
    const FilmFrame frame{pixelRow({red}), {0, 0}};
    const QByteArray png =
        ApngBuilder(QSize(3000, 3000), 0).still(pixelRow({red})).add(frame).data();
    const QByteArray film = webpFilm(QSize(3000, 3000), 0, {frame, frame});
    const QString pngPath = write(QStringLiteral("large.png"), png);
    const QString webpPath = write(QStringLiteral("large.webp"), film);
    for (const QString &path : {pngPath, webpPath}) {
        const FlipbookRun run = flipbook(
            {QStringLiteral("info"), QStringLiteral("--max-memory"), QStringLiteral("64M"), path});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.err.contains(QStringLiteral("of 3000 x 3000 pixels would need")),
                 qPrintable(run.err));
    }
}

void TestWebFilms::everyCommandReadsThem()
{
    FilmFrame second{pixelRow({green, blue}), {0, 0}};
    second.delay = 40;
    const QVector<FilmFrame> frames = {{pixelRow({red, red}), {0, 0}, 40}, second};
    const QString png =
        write(QStringLiteral("film.png"),
              ApngBuilder(QSize(2, 1), 1).add(frames.at(0)).add(frames.at(1)).data());
    const QString webp = write(QStringLiteral("film.webp"), webpFilm(QSize(2, 1), 1, frames));
    for (const QString &path : {png, webp}) {
        const FlipbookRun info = flipbook({QStringLiteral("info"), path});
        QCOMPARE(info.err, QString());
        QCOMPARE(info.out, QStringLiteral("%1\n"
                                          "  format    %2\n"
                                          "  frames    2, named film_1 to film_2\n"
                                          "  size      2 x 1 pixels\n"
                                          "  interval  40 ms (0.08 s for all frames)\n"
                                          "  loops     once (loop count 0)\n"
                                          "  memory    16 bytes decoded\n")
                               .arg(path, path == png ? QStringLiteral("APNG")
                                                      : QStringLiteral("animated WebP")));
        const QString sheet = m_fixture.path(QStringLiteral("sheet.png"));
        QCOMPARE(flipbook({QStringLiteral("sheet"), path, QStringLiteral("-o"), sheet}).status, 0);
        const FlipbookRun play = flipbook({QStringLiteral("play"), path});
        QVERIFY2(play.out.contains(QStringLiteral("frame 2 of 2  film_2")), qPrintable(play.out));
        const QString sprite = m_fixture.path(QStringLiteral("film.sprite3"));
        QCOMPARE(flipbook({QStringLiteral("sprite"), path, QStringLiteral("-o"), sprite}).status,
                 0);
    }
}

void TestWebFilms::keepTimingWorksForThem()
{
    const QVector<FilmFrame> frames = {{pixelRow({red}), {0, 0}, 50},
                                       {pixelRow({green}), {0, 0}, 100}};
    const QString film = write(QStringLiteral("uneven.webp"), webpFilm(QSize(1, 1), 0, frames));
    const QString document = m_fixture.path(QStringLiteral("uneven.flipbook"));
    const FlipbookRun warned =
        flipbook({QStringLiteral("new"), document, QStringLiteral("--add"), film});
    QVERIFY2(warned.err.contains(QStringLiteral("one pass takes 0.1 s instead of 0.15 s")),
             qPrintable(warned.err));
    const FlipbookRun kept =
        flipbook({QStringLiteral("new"), document, QStringLiteral("--force"),
                  QStringLiteral("--keep-timing"), QStringLiteral("--add"), film});
    QCOMPARE(kept.err, QString());
    const FlipbookRun info = flipbook({QStringLiteral("info"), document});
    QVERIFY2(info.out.contains(QStringLiteral("frames    3, named uneven_1 to uneven_2 (2)\n")) &&
                 info.out.contains(QStringLiteral("interval  50 ms (0.15 s for all frames)\n")),
             qPrintable(info.out));
}

void TestWebFilms::theNameOfTheFileDoesNotMatter()
{
    const QVector<FilmFrame> frames = {{pixelRow({red}), {0, 0}}, {pixelRow({green}), {0, 0}}};
    const QString path = write(QStringLiteral("film.png"), webpFilm(QSize(1, 1), 0, frames));
    Reading reading(1 << 20, false);
    QCOMPARE(openFile(m_fixture.plugin(), path, reading).format, QStringLiteral("animated WebP"));
}

void TestWebFilms::theSamplesAreRead()
{
    Reading reading(1 << 24, false);
    const QString folder = QFINDTESTDATA("../../samples");
    const OpenedFile pinwheel =
        openFile(m_fixture.plugin(), folder + QStringLiteral("/pinwheel.png"), reading);
    QCOMPARE(pinwheel.delaysMs(), QVector<int>(8, 80));
    const OpenedFile owl =
        openFile(m_fixture.plugin(), folder + QStringLiteral("/owl.webp"), reading);
    const QVector<int> expected = owl.delaysMs();
    // The same drawing as a GIF, whose delays are in hundredths of a second.
    const OpenedFile gif =
        openFile(m_fixture.plugin(), folder + QStringLiteral("/uneven.gif"), reading);
    QCOMPARE(expected, gif.delaysMs());
    QCOMPARE(owl.warnings + pinwheel.warnings, QStringList());
}

QTEST_MAIN(TestWebFilms)
#include "tst_webfilms.moc"
