#include "flipbook/base/failure.h"
#include "flipbook/export/webpexport.h"
#include "flipbook/export/webpjoin.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmfixture.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

#include <memory>
#include <webp/demux.h>

class TestWebpExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pixelsSurvive_data();
    void pixelsSurvive();
    void colourBelowTransparencySurvives();
    void timesAndLoopsAreInTheFile();
    void qualityTradesDetailsForSize();
    void memoryIsCounted();
    void aSideBeyondTheFormatIsRefused();
    void aLongFilmHasThePicturesOfAllItsParts_data();
    void aLongFilmHasThePicturesOfAllItsParts();
    void equalPicturesOfALongFilmAreOneAcrossParts();
    void onePartJoinedHasTheBytesThatTheLibraryWrites_data();
    void onePartJoinedHasTheBytesThatTheLibraryWrites();
    void whatIsNoWebPIsNotJoined();

private:
    WrittenFilm webp(const QList<QImage> &pictures, const QVector<int> &delaysMs = {},
                     int loopCount = -1, std::optional<double> quality = std::nullopt) const;

    DocumentFixture m_fixture;
};

namespace
{

/// What libwebp's decoder makes of a file.
struct Decoded {
    QList<QImage> frames;
    QVector<int> endsMs; ///< when each of them ends
    int passes = -1;     ///< 0 is forever
};

Decoded decoded(const QByteArray &bytes)
{
    WebPAnimDecoderOptions options;
    WebPAnimDecoderOptionsInit(&options);
    options.color_mode = MODE_BGRA;
    const WebPData data = {reinterpret_cast<const uint8_t *>(bytes.constData()),
                           std::size_t(bytes.size())};
    const std::unique_ptr<WebPAnimDecoder, decltype(&WebPAnimDecoderDelete)> decoder(
        WebPAnimDecoderNew(&data, &options), WebPAnimDecoderDelete);
    Decoded result;
    WebPAnimInfo info;
    if (!decoder || !WebPAnimDecoderGetInfo(decoder.get(), &info))
        return result;
    result.passes = int(info.loop_count);
    while (WebPAnimDecoderHasMoreFrames(decoder.get())) {
        uint8_t *pixels = nullptr;
        int end = 0;
        if (!WebPAnimDecoderGetNext(decoder.get(), &pixels, &end))
            return Decoded();
        result.frames.append(
            QImage(pixels, int(info.canvas_width), int(info.canvas_height), QImage::Format_ARGB32)
                .copy());
        result.endsMs.append(end);
    }
    return result;
}

/// What is shown at @p ms.
QImage shownAt(const Decoded &film, int ms)
{
    for (int i = 0; i < film.frames.size(); ++i) {
        if (ms < film.endsMs.at(i))
            return film.frames.at(i);
    }
    return QImage();
}

/// @p picture with its fully transparent pixels 0: a decoder that blends frames does not keep what
/// is below them.
QImage withoutHidden(QImage picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) == 0)
                picture.setPixel(x, y, 0);
        }
    }
    return picture;
}

} // namespace

WrittenFilm TestWebpExport::webp(const QList<QImage> &pictures, const QVector<int> &delaysMs,
                                 int loopCount, std::optional<double> quality) const
{
    const OwnedObject object = FilmFixture::object(m_fixture.plugin(), pictures, loopCount);
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object, delaysMs);
    return webpOf(film, quality, MemoryAccount(), QStringLiteral("out.webp"));
}

void TestWebpExport::pixelsSurvive_data()
{
    QTest::addColumn<bool>("hasHoles");
    QTest::addColumn<bool>("hasHalfHoles");
    QTest::newRow("opaque") << false << false;
    QTest::newRow("holes") << true << false;
    QTest::newRow("any alpha") << true << true;
}

void TestWebpExport::pixelsSurvive()
{
    QFETCH(bool, hasHoles);
    QFETCH(bool, hasHalfHoles);
    for (quint32 seed = 1; seed <= 12; ++seed) {
        const QList<QImage> pictures = FilmFixture::randomPictures(
            {seed, 6, QSize(20 + int(seed), 17), 400, true, hasHoles, hasHalfHoles});
        const Decoded film = decoded(webp(pictures).bytes);
        // Equal pictures in a row may have become one: look at the middle of each.
        for (int i = 0; i < pictures.size(); ++i)
            QVERIFY2(withoutHidden(shownAt(film, 100 * i + 50)) == withoutHidden(pictures.at(i)),
                     qPrintable(QStringLiteral("seed %1, frame %2").arg(seed).arg(i + 1)));
        QCOMPARE(film.endsMs.constLast(), 600);
    }
}

void TestWebpExport::colourBelowTransparencySurvives()
{
    QImage picture = Pictures::solid(4, 4, Qt::red);
    picture.setPixel(1, 1, 0x00123456);
    QCOMPARE(decoded(webp({picture}).bytes).frames, QList<QImage>{picture});
}

void TestWebpExport::timesAndLoopsAreInTheFile()
{
    const QList<QImage> pictures = {Pictures::solid(3, 2, Qt::red), Pictures::solid(3, 2, Qt::blue),
                                    Pictures::solid(3, 2, Qt::red)};
    // Our loop counts, and what the file says.
    const QVector<QPair<int, int>> loops = {{-1, 0}, {0, 1}, {4, 5}, {70000, 65535}};
    for (const auto &loop : loops) {
        const Decoded film = decoded(webp(pictures, {5, 211, 40}, loop.first).bytes);
        QCOMPARE(film.passes, loop.second);
        QCOMPARE(film.endsMs, QVector<int>({5, 216, 256}));
    }
}

void TestWebpExport::qualityTradesDetailsForSize()
{
    const QList<QImage> pictures =
        FilmFixture::randomPictures({4, 3, QSize(80, 80), 400, false, false});
    const int exact = webp(pictures).bytes.size();
    const int good = webp(pictures, {}, -1, 90.0).bytes.size();
    const int small = webp(pictures, {}, -1, 5.0).bytes.size();
    QVERIFY2(small < good && good < exact,
             qPrintable(QStringLiteral("%1 %2 %3").arg(small).arg(good).arg(exact)));
}

void TestWebpExport::memoryIsCounted()
{
    const OwnedObject object =
        FilmFixture::object(m_fixture.plugin(), {Pictures::solid(500, 500, Qt::red)});
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object);
    // A picture takes 1,000,000 bytes.
    QVERIFY_EXCEPTION_THROWN(
        webpOf(film, std::nullopt, MemoryAccount(10000000), QStringLiteral("out.webp")), Failure);
    webpOf(film, std::nullopt, MemoryAccount(30000000), QStringLiteral("out.webp"));
}

void TestWebpExport::aSideBeyondTheFormatIsRefused()
{
    const OwnedObject object =
        FilmFixture::object(m_fixture.plugin(), {Pictures::solid(16384, 1, Qt::red)});
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object);
    QVERIFY_EXCEPTION_THROWN(
        webpOf(film, std::nullopt, MemoryAccount(), QStringLiteral("out.webp")), Failure);
}

void TestWebpExport::aLongFilmHasThePicturesOfAllItsParts_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("two parts, the last of one picture") << 1001;
    QTest::newRow("three parts") << 2300;
}

void TestWebpExport::aLongFilmHasThePicturesOfAllItsParts()
{
    QFETCH(int, count);
    QList<QImage> pictures =
        FilmFixture::randomPictures({7, count, QSize(8, 6), 50, false, true, true});
    // The second part begins with a pixel that the one before does not have, alone on the canvas.
    pictures[1000] = Pictures::transparent(8, 6);
    pictures[1000].setPixel(5, 3, 0xff102030);
    // Nothing is transparent before that.
    pictures[999] = Pictures::solid(8, 6, Qt::red);
    QVector<int> delaysMs;
    QVector<int> ends;
    for (int i = 0; i < count; ++i) {
        delaysMs.append(10 + i % 7);
        ends.append(ends.isEmpty() ? delaysMs.at(i) : ends.constLast() + delaysMs.at(i));
    }
    const Decoded film = decoded(webp(pictures, delaysMs, 4).bytes);
    QCOMPARE(film.passes, 5);
    QCOMPARE(film.endsMs.constLast(), ends.constLast());
    int at = 0;
    for (int i = 0; i < count; ++i) {
        while (film.endsMs.at(at) < ends.at(i))
            ++at;
        QVERIFY2(withoutHidden(film.frames.at(at)) == withoutHidden(pictures.at(i)),
                 qPrintable(QString::number(i)));
    }
}

void TestWebpExport::equalPicturesOfALongFilmAreOneAcrossParts()
{
    QList<QImage> pictures;
    for (int i = 0; i < 990; ++i)
        pictures << Pictures::solid(2, 2, QColor(i % 2, 0, 0));
    for (int i = 0; i < 20; ++i)
        pictures << Pictures::solid(2, 2, Qt::blue);
    pictures << Pictures::solid(2, 2, Qt::red) << Pictures::solid(2, 2, Qt::green);
    const Decoded film = decoded(webp(pictures).bytes);
    // Of 100 ms each.
    QCOMPARE(film.frames.size(), 993);
    QCOMPARE(film.endsMs.mid(989), QVector<int>({99000, 101000, 101100, 101200}));
    QCOMPARE(film.frames.at(990), Pictures::solid(2, 2, Qt::blue));
    QCOMPARE(film.frames.at(991), Pictures::solid(2, 2, Qt::red));
}

void TestWebpExport::onePartJoinedHasTheBytesThatTheLibraryWrites_data()
{
    QTest::addColumn<bool>("hasHoles");
    QTest::addColumn<double>("quality");
    QTest::newRow("opaque") << false << -1.0;
    QTest::newRow("with holes") << true << -1.0;
    QTest::newRow("with losses") << false << 50.0;
    QTest::newRow("with holes and losses") << true << 50.0;
}

void TestWebpExport::onePartJoinedHasTheBytesThatTheLibraryWrites()
{
    QFETCH(bool, hasHoles);
    QFETCH(double, quality);
    for (quint32 seed = 1; seed <= 10; ++seed) {
        const QList<QImage> pictures = FilmFixture::randomPictures(
            {seed, 9, QSize(31, 22 + int(seed)), 40, true, hasHoles, hasHoles});
        const QByteArray written =
            webp(pictures, {}, 6, quality < 0 ? std::nullopt : std::make_optional(quality)).bytes;
        WebpJoin joined(pictures.first().size());
        QVERIFY(joined.add(written, 0, [] { return QByteArray(); }));
        QCOMPARE(joined.file(7).toHex(), written.toHex());
    }
}

void TestWebpExport::whatIsNoWebPIsNotJoined()
{
    WebpJoin joined(QSize(4, 4));
    const QByteArray still = webp({Pictures::solid(4, 4, Qt::red)}).bytes;
    const QByteArray small = webp({Pictures::solid(2, 2, Qt::red)}).bytes;
    QVERIFY(!joined.add("RIFF", 10, [&] { return still; }));
    QVERIFY(!joined.add(small, 10, [] { return QByteArray("RIFF"); }));
    QVERIFY(joined.add(small, 10, [&] { return still; }));
    QVERIFY(joined.add(still, 20, [] { return QByteArray(); }));
    QCOMPARE(decoded(joined.file(1)).endsMs, QVector<int>({10, 30}));
}

QTEST_MAIN(TestWebpExport)
#include "tst_webpexport.moc"
