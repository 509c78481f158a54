#include "flipbook/base/failure.h"
#include "flipbook/export/gif/gifdelays.h"
#include "flipbook/export/gif/gifexport.h"
#include "flipbook/import/gifdescriptors.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmfixture.h"
#include "tests/support/pictures.h"

#include <QtCore/QBuffer>
#include <QtGui/QImageReader>
#include <QtTest/QTest>

#include <cmath>

class TestGifExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pixelsSurvive_data();
    void pixelsSurvive();
    void timesAreRoundedWithoutDrifting_data();
    void timesAreRoundedWithoutDrifting();
    void timesAndLoopsAreInTheFile();
    void aStillPictureHasNeitherTimesNorLoops();
    void halfTransparentPixelsGoToTheNearerSide();
    void framesWithoutAnyColourAreWritten();
    void onlyWhatChangesIsWritten();
    void manyColoursComeClose();
    void whatIsNotKeptIsTold();
    void ditheringKeepsTheMeanColour();
    void mirroredObjectsAreWrittenAsTheyAreShown();
    void picturesOfDifferentSizesAreInTheMiddle();
    void wholeScalesRepeatPixels();
    void aSideBeyondTheFormatIsRefused();
    void memoryIsCounted();

private:
    QByteArray gif(const QList<QImage> &pictures, Dithering dithering = Dithering::None) const;

    DocumentFixture m_fixture;
};

namespace
{

/// All frames of a GIF as Qt reads them.
QList<QImage> framesOf(const QByteArray &gif)
{
    QBuffer buffer;
    buffer.setData(gif);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "gif");
    QList<QImage> frames;
    for (QImage frame = reader.read(); !frame.isNull(); frame = reader.read())
        frames.append(GifPicture::of(frame)); // Qt's transparent pixels are white below
    return frames;
}

GifDescriptors descriptorsOf(const QByteArray &gif)
{
    QBuffer buffer;
    buffer.setData(gif);
    buffer.open(QIODevice::ReadOnly);
    return readGifDescriptors(buffer);
}

/// A picture whose 256 x 64 pixels have next to as many colours.
QImage gradient()
{
    QImage picture(256, 64, QImage::Format_ARGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, qRgb(x, 255 - x, y * 4));
    }
    return picture;
}

} // namespace

QByteArray TestGifExport::gif(const QList<QImage> &pictures, Dithering dithering) const
{
    const OwnedObject object = FilmFixture::object(m_fixture.plugin(), pictures);
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object);
    return gifOf(film, dithering, MemoryAccount(), QStringLiteral("out.gif")).bytes;
}

void TestGifExport::pixelsSurvive_data()
{
    QTest::addColumn<int>("colours");
    QTest::addColumn<bool>("hasOwn");
    QTest::addColumn<bool>("hasHoles");
    for (const int colours : {1, 2, 4, 16, 40, 200}) {
        for (const bool hasOwn : {false, true}) {
            for (const bool hasHoles : {false, true})
                QTest::addRow("%d colours%s%s", colours, hasOwn ? " of each frame" : "",
                              hasHoles ? ", with holes" : "")
                    << colours << hasOwn << hasHoles;
        }
    }
}

void TestGifExport::pixelsSurvive()
{
    QFETCH(int, colours);
    QFETCH(bool, hasOwn);
    QFETCH(bool, hasHoles);
    for (quint32 seed = 1; seed <= 25; ++seed) {
        const QList<QImage> pictures = FilmFixture::randomPictures(
            {seed, 8, QSize(12 + int(seed), 17), colours, hasOwn, hasHoles});
        const QList<QImage> frames = framesOf(gif(pictures));
        QCOMPARE(frames.size(), pictures.size());
        for (int i = 0; i < frames.size(); ++i)
            QVERIFY2(frames.at(i) == pictures.at(i),
                     qPrintable(QStringLiteral("seed %1, frame %2").arg(seed).arg(i + 1)));
    }
}

void TestGifExport::timesAreRoundedWithoutDrifting_data()
{
    QTest::addColumn<QVector<int>>("ms");
    QTest::addColumn<QVector<int>>("centiseconds");
    const auto row = [](const char *name, const QVector<int> &ms, const QVector<int> &units) {
        QTest::newRow(name) << ms << units;
    };
    row("whole", {100, 30, 20}, {10, 3, 2});
    // They begin at 0, 25, 50, 75 ms.
    row("halves", {25, 25, 25, 25}, {3, 2, 3, 2});
    // Thirty a second: at 33, 66, 99 ms, and after ten frames at 330.
    row("thirds", {33, 33, 33, 33, 33, 33, 33, 33, 33, 33}, {3, 4, 3, 3, 4, 3, 3, 3, 4, 3});
    row("too short, made up for", {10, 10, 100}, {2, 2, 8});
    row("too short", {10, 10, 10}, {2, 2, 2});
    row("none", {0}, {2});
    row("too long", {700000, 100}, {65535, 4475});
}

void TestGifExport::timesAreRoundedWithoutDrifting()
{
    QFETCH(QVector<int>, ms);
    QFETCH(QVector<int>, centiseconds);
    QCOMPARE(gifDelays(ms).centiseconds, centiseconds);
}

void TestGifExport::timesAndLoopsAreInTheFile()
{
    const QList<QImage> pictures = {Pictures::solid(3, 2, Qt::red), Pictures::solid(3, 2, Qt::blue),
                                    Pictures::solid(3, 2, Qt::red)};
    // Our loop counts, and what the file says.
    const QVector<QPair<int, int>> loops = {{-1, 0}, {0, 1}, {4, 5}, {70000, 65535}};
    for (const auto &loop : loops) {
        const OwnedObject object = FilmFixture::object(m_fixture.plugin(), pictures, loop.first);
        const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object, {50, 210, 40});
        const WrittenFilm written =
            gifOf(film, Dithering::None, MemoryAccount(), QStringLiteral("out.gif"));
        QCOMPARE(written.remarks, QStringList());
        const GifDescriptors descriptors = descriptorsOf(written.bytes);
        QCOMPARE(descriptors.repetitions.value_or(-1), loop.second);
        QCOMPARE(descriptors.shortestDelay, 40);
        QCOMPARE(descriptors.longestDelay, 210);
        QCOMPARE(descriptors.wholeFrames, 3);
        QCOMPARE(descriptors.ending, GifEnding::Trailer);
    }
}

void TestGifExport::aStillPictureHasNeitherTimesNorLoops()
{
    const QByteArray bytes = gif({Pictures::solid(3, 2, Qt::red)});
    QVERIFY(!bytes.contains("NETSCAPE"));
    // Header 6, screen 7, two colours 6, image 10, code size 1, block 1 + 4, end 1, trailer 1:
    // clear, 0, 00, 000 as codes 4, 0, 6, 7, end.
    QCOMPARE(bytes.size(), 6 + 7 + 6 + 10 + 1 + 1 + 2 + 1 + 1);
    QCOMPARE(framesOf(bytes), QList<QImage>{Pictures::solid(3, 2, Qt::red)});
}

void TestGifExport::halfTransparentPixelsGoToTheNearerSide()
{
    QImage picture = Pictures::transparent(2, 1);
    picture.setPixel(0, 0, 0x7f102030);
    picture.setPixel(1, 0, 0x80102030);
    const QList<QImage> frames = framesOf(gif({picture}));
    QCOMPARE(frames.first().pixel(0, 0), 0U);
    QCOMPARE(frames.first().pixel(1, 0), 0xff102030U);
}

void TestGifExport::framesWithoutAnyColourAreWritten()
{
    const QImage blank = Pictures::transparent(3, 2);
    QCOMPARE(framesOf(gif({blank})), QList<QImage>{blank});
    QCOMPARE(framesOf(gif({blank, blank})), QList<QImage>({blank, blank}));
    // The only colours are too many for a palette of all frames.
    QCOMPARE(framesOf(gif({gradient(), Pictures::transparent(256, 64)})).constLast(),
             Pictures::transparent(256, 64));
}

void TestGifExport::onlyWhatChangesIsWritten()
{
    // Noise on which one dot changes: the second frame adds no more than its blocks.
    QList<QImage> pictures = {
        FilmFixture::randomPictures({3, 1, QSize(64, 64), 200, false, false}).constFirst()};
    pictures << pictures.first();
    pictures.last().setPixel(40, 20, 0xff123456);
    const int one = gif({pictures.first()}).size();
    const int two = gif(pictures).size();
    // Loops 19, two controls of 8, image 10, code size 1, codes 1 + 2, end 1, and a colour in a
    // palette of 256.
    QVERIFY2(two - one <= 19 + 16 + 10 + 1 + 3 + 1 + 3, qPrintable(QString::number(two - one)));
}

void TestGifExport::manyColoursComeClose()
{
    const QImage picture = gradient();
    const QImage shown = framesOf(gif({picture})).constFirst();
    double error = 0.0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb wanted = picture.pixel(x, y);
            const QRgb pixel = shown.pixel(x, y);
            QCOMPARE(qAlpha(pixel), 255);
            error += std::pow(qRed(wanted) - qRed(pixel), 2) +
                     std::pow(qGreen(wanted) - qGreen(pixel), 2) +
                     std::pow(qBlue(wanted) - qBlue(pixel), 2);
        }
    }
    const double mean = std::sqrt(error / (3.0 * picture.width() * picture.height()));
    // The pixels are on a plane: red and green change along 256 steps, blue across them along 256.
    // The best that 256 colours can do are cells of 13.5 x 19 steps, with an error of
    // sqrt((2 * 13.5^2 + 19^2) / 12 / 3) = 4.5.
    QVERIFY2(mean < 1.3 * 4.5, qPrintable(QString::number(mean)));
}

void TestGifExport::whatIsNotKeptIsTold()
{
    const OwnedObject colourful =
        FilmFixture::object(m_fixture.plugin(), {gradient(), Pictures::solid(256, 64, Qt::red)});
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *colourful, {5, 5});
    const WrittenFilm written =
        gifOf(film, Dithering::None, MemoryAccount(), QStringLiteral("out.gif"));
    QCOMPARE(written.remarks,
             QStringList({QStringLiteral("in 1 of 2 frames more than 256 colours change; they "
                                         "became the nearest of 256, while apng and webp keep all"),
                          QStringLiteral("a pass takes 0.04 s instead of 0.01 s: players show no "
                                         "frame of a GIF for less than 20 ms, nor for more than "
                                         "655.35 s")}));
}

void TestGifExport::ditheringKeepsTheMeanColour()
{
    const QImage picture = gradient();
    const QImage dithered = framesOf(gif({picture}, Dithering::Diffused)).constFirst();
    QVERIFY(dithered != framesOf(gif({picture})).constFirst());
    for (int x = 16; x + 32 < picture.width(); x += 16) {
        int wanted = 0;
        int mean = 0;
        for (int i = 0; i < 16 * 16; ++i) {
            wanted += qRed(picture.pixel(x + i % 16, 24 + i / 16));
            mean += qRed(dithered.pixel(x + i % 16, 24 + i / 16));
        }
        QVERIFY2(std::abs(wanted - mean) < 2 * 256, qPrintable(QString::number(mean - wanted)));
    }
}

void TestGifExport::mirroredObjectsAreWrittenAsTheyAreShown()
{
    QImage picture = Pictures::solid(2, 2, Qt::red);
    picture.setPixel(0, 0, 0xff00ff00);
    const OwnedObject object = FilmFixture::object(m_fixture.plugin(), {picture});
    object->setMirror(true, false);
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object);
    QCOMPARE(film.picture(0), picture.mirrored(true, false));
}

void TestGifExport::picturesOfDifferentSizesAreInTheMiddle()
{
    const OwnedObject object = FilmFixture::object(
        m_fixture.plugin(), {Pictures::solid(6, 2, Qt::red), Pictures::solid(2, 4, Qt::blue)});
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object);
    QCOMPARE(film.size(), QSize(6, 4));
    QImage first = Pictures::transparent(6, 4);
    QImage second = first;
    for (int i = 0; i < 6; ++i) {
        first.setPixel(i, 1, 0xffff0000);
        first.setPixel(i, 2, 0xffff0000);
    }
    for (int y = 0; y < 4; ++y) {
        second.setPixel(2, y, 0xff0000ff);
        second.setPixel(3, y, 0xff0000ff);
    }
    QCOMPARE(film.picture(0), first);
    QCOMPARE(film.picture(1), second);
}

void TestGifExport::wholeScalesRepeatPixels()
{
    QImage picture = Pictures::solid(2, 1, Qt::red);
    picture.setPixel(1, 0, 0xff0000ff);
    const OwnedObject object = FilmFixture::object(m_fixture.plugin(), {picture});
    const OutgoingFilm film =
        FilmFixture::film(m_fixture.plugin(), *object, {}, {1, 0, 1, false, 3.0});
    QCOMPARE(film.size(), QSize(6, 3));
    for (int x = 0; x < 6; ++x)
        QCOMPARE(film.picture(0).pixel(x, 2), x < 3 ? 0xffff0000U : 0xff0000ffU);
}

void TestGifExport::aSideBeyondTheFormatIsRefused()
{
    const OwnedObject object =
        FilmFixture::object(m_fixture.plugin(), {Pictures::solid(7000, 1, Qt::red)});
    const OutgoingFilm film =
        FilmFixture::film(m_fixture.plugin(), *object, {}, {1, 0, 1, false, 10.0});
    QVERIFY_EXCEPTION_THROWN(
        gifOf(film, Dithering::None, MemoryAccount(), QStringLiteral("out.gif")), Failure);
}

void TestGifExport::memoryIsCounted()
{
    const OwnedObject object =
        FilmFixture::object(m_fixture.plugin(), {Pictures::solid(500, 500, Qt::red)});
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object);
    // A picture takes 1,000,000 bytes.
    QVERIFY_EXCEPTION_THROWN(
        gifOf(film, Dithering::None, MemoryAccount(4000000), QStringLiteral("out.gif")), Failure);
    gifOf(film, Dithering::None, MemoryAccount(16000000), QStringLiteral("out.gif"));
}

QTEST_MAIN(TestGifExport)
#include "tst_gifexport.moc"
