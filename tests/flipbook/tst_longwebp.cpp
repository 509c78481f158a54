#include "flipbook/base/memoryaccount.h"
#include "flipbook/import/webpfile.h"
#include "tests/flipbook/filmbuilder.h"

#include <QtTest/QTest>

namespace
{

constexpr QRgb nothing = 0;

DecodedFilm webp(const QByteArray &file)
{
    MemoryAccount memory(4 << 20);
    return WebpFile::readFilm(file, QStringLiteral("film.webp"), memory);
}

/// Opaque; another for each number below 2^24.
QRgb colourOf(int number)
{
    return 0xff000000 | QRgb(number * 7);
}

/// A film of two pixels: frame 0, 2, 4… changes the left one, the others the right one.
QByteArray longWebp(int frames)
{
    QVector<FilmFrame> list;
    for (int i = 0; i < frames; ++i) {
        FilmFrame frame{pixelRow({nothing, nothing}), {0, 0}};
        frame.picture.setPixel(i % 2, 0, colourOf(i));
        frame.blends = true;
        frame.delay = 20 + i % 5;
        list.append(frame);
    }
    return webpFilm(QSize(2, 1), 3, list);
}

} // namespace

/// WebP films with so many frames that they are read in groups.
class TestLongWebp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLongFilmIsReadAsAWhole();
    void aLongFilmThatIsCutIsReadUpToThere();
};

void TestLongWebp::aLongFilmIsReadAsAWhole()
{
    for (int count : {1000, 1001, 2345}) {
        const DecodedFilm film = webp(longWebp(count));
        QCOMPARE(film.pictures.size(), count);
        QCOMPARE(film.warnings, QStringList());
        QCOMPARE(film.loopCount, 2);
        QCOMPARE(pixelsOf(film.pictures.constFirst()), QVector<QRgb>({colourOf(0), nothing}));
        for (int i = 1; i < count; ++i) {
            const int even = i % 2 == 0 ? i : i - 1;
            const int odd = i % 2 == 0 ? i - 1 : i;
            QCOMPARE(pixelsOf(film.pictures.at(i)), QVector<QRgb>({colourOf(even), colourOf(odd)}));
            QCOMPARE(film.delaysMs.at(i), 20 + i % 5);
        }
    }
}

void TestLongWebp::aLongFilmThatIsCutIsReadUpToThere()
{
    const QByteArray whole = longWebp(2345);
    QVector<int> starts;
    for (int at = whole.indexOf("ANMF"); at >= 0; at = whole.indexOf("ANMF", at + 4))
        starts.append(at);
    QCOMPARE(starts.size(), 2345);
    // In the middle of a frame, or in the first bytes of its chunk.
    for (int inside : {4, 20, 40}) {
        for (int frames : {998, 999, 1000, 1001, 1999, 2000, 2001, 2344}) {
            const DecodedFilm film = webp(whole.left(starts.at(frames) + inside));
            QCOMPARE(film.pictures.size(), frames);
            QCOMPARE(film.warnings,
                     QStringList{QStringLiteral("truncated: its end is missing; %1 frames could be "
                                                "read")
                                     .arg(frames)});
        }
    }
}

QTEST_MAIN(TestLongWebp)
#include "tst_longwebp.moc"
