#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/import/apngfilm.h"
#include "flipbook/import/picturefile.h"
#include "flipbook/import/sheetjson.h"
#include "flipbook/import/webpfile.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmbuilder.h"

#include <QtTest/QTest>

#include <functional>

namespace
{

constexpr qint64 maxMemory = qint64(1) << 20;
constexpr QRgb red = 0xffff0000;
constexpr QRgb green = 0xff00ff00;
constexpr QRgb shade = 0x80402010;

using Read = std::function<DecodedFilm(const QByteArray &file)>;

QVector<FilmFrame> frames(int number)
{
    FilmFrame first{pixelRow({red, shade}), {0, 0}};
    FilmFrame second{pixelRow({green}), {0, 0}, 40};
    second.blends = true;
    second.disposal = number % 2;
    FilmFrame third{pixelRow({shade, 0}), {0, 0}, 3};
    third.blends = true;
    return QVector<FilmFrame>{first, second, third, third, second}.mid(0, number);
}

QByteArray apng(int number, bool hasStill)
{
    ApngBuilder builder(QSize(2, 1), number);
    if (hasStill)
        builder.still(pixelRow({green, green}));
    const QVector<FilmFrame> all = frames(number);
    for (const FilmFrame &frame : all)
        builder.add(frame);
    return builder.data();
}

} // namespace

/// Small files of every kind that are cut anywhere, or in which any byte is another one.
class TestFilmSurvival : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void apngFilesAreReadOrRefused_data();
    void apngFilesAreReadOrRefused();
    void webpFilesAreReadOrRefused_data();
    void webpFilesAreReadOrRefused();
    void sheetDescriptionsAreReadOrRefused_data();
    void sheetDescriptionsAreReadOrRefused();

private:
    void damageEverywhere(const QByteArray &file, const Read &read);

    DocumentFixture m_fixture;
};

/// What is read keeps within the memory allowed; what is refused has a reason.
void TestFilmSurvival::damageEverywhere(const QByteArray &file, const Read &read)
{
    int whole = 0;
    int refused = 0;
    const auto attempt = [&](const QByteArray &damaged) {
        try {
            const DecodedFilm film = read(damaged);
            qint64 bytes = 0;
            for (const QImage &picture : film.pictures)
                bytes += picture.sizeInBytes();
            QVERIFY(!film.pictures.isEmpty() && bytes <= maxMemory);
            QVERIFY(film.delaysMs.isEmpty() || film.delaysMs.size() == film.pictures.size());
            ++whole;
        } catch (const Failure &failure) {
            QVERIFY(!failure.subject.isEmpty() && !failure.reason.isEmpty());
            ++refused;
        }
    };
    attempt(file);
    QCOMPARE(whole, 1);
    for (int length = 0; length < file.size(); ++length)
        attempt(file.left(length));
    for (int at = 0; at < file.size(); ++at) {
        for (const int change : {0x01, 0x10, 0xff}) {
            QByteArray damaged = file;
            damaged[at] = char(damaged.at(at) ^ change);
            attempt(damaged);
        }
    }
    QVERIFY(refused > 0);
}

void TestFilmSurvival::apngFilesAreReadOrRefused_data()
{
    QTest::addColumn<QByteArray>("file");
    for (int number = 1; number <= 4; ++number)
        QTest::addRow("%d frames", number) << apng(number, false);
    QTest::newRow("a picture for other programs") << apng(2, true);
}

void TestFilmSurvival::apngFilesAreReadOrRefused()
{
    QFETCH(QByteArray, file);
    damageEverywhere(file, [](const QByteArray &damaged) {
        MemoryAccount memory(maxMemory);
        return readApng(damaged, QStringLiteral("film.png"), memory);
    });
}

void TestFilmSurvival::webpFilesAreReadOrRefused_data()
{
    QTest::addColumn<QByteArray>("file");
    for (int number = 1; number <= 4; ++number)
        QTest::addRow("%d frames", number) << webpFilm(QSize(2, 1), number, frames(number));
    QTest::newRow("a still picture") << webpPicture(pixelRow({red, shade, green}));
}

void TestFilmSurvival::webpFilesAreReadOrRefused()
{
    QFETCH(QByteArray, file);
    damageEverywhere(file, [](const QByteArray &damaged) {
        MemoryAccount memory(maxMemory);
        DecodedFilm still;
        if (!WebpFile::isAnimated(damaged)) {
            const QImage picture = WebpFile::readStill(damaged);
            if (picture.isNull())
                throw Failure{QStringLiteral("still.webp"), QStringLiteral("damaged")};
            still.pictures.append(picture);
            return still;
        }
        return WebpFile::readFilm(damaged, QStringLiteral("film.webp"), memory);
    });
}

void TestFilmSurvival::sheetDescriptionsAreReadOrRefused_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("an array") << QByteArray(
        R"({"frames":[{"filename":"a","frame":{"x":0,"y":0,"w":1,"h":1},"duration":30}],)"
        R"("meta":{"image":"s.png"}})");
    QTest::newRow("an object") << QByteArray(
        R"({"frames":{"b":{"frame":{"x":1,"y":0,"w":1,"h":1}}},"meta":{"image":"s.png"}})");
    QTest::newRow("trimmed") << QByteArray(
        R"({"frames":[{"frame":{"x":0,"y":0,"w":2,"h":1},"spriteSourceSize":)"
        R"({"x":1,"y":1,"w":2,"h":1},"sourceSize":{"w":4,"h":3}}],"meta":{"image":"s.png"}})");
    QTest::newRow("turned") << QByteArray(
        R"({"frames":[{"frame":{"x":0,"y":0,"w":1,"h":2},"rotated":true}],)"
        R"("meta":{"image":"s.png"}})");
    QTest::newRow("two") << QByteArray(
        R"({"frames":[{"frame":{"x":0,"y":0,"w":1,"h":1}},{"frame":{"x":1,"y":0,"w":1,"h":1}}],)"
        R"("meta":{"image":"s.png"}})");
}

void TestFilmSurvival::sheetDescriptionsAreReadOrRefused()
{
    QFETCH(QByteArray, file);
    QVERIFY(pixelRow({red, green}).save(m_fixture.path(QStringLiteral("s.png"))));
    const QString path = m_fixture.path(QStringLiteral("sheet.json"));
    damageEverywhere(file, [&path](const QByteArray &damaged) {
        writeBytes(path, damaged);
        Reading reading(maxMemory, false);
        const std::unique_ptr<QFile> opened = reading.openFile(path);
        return readSheetJson(*opened, path, reading);
    });
}

QTEST_MAIN(TestFilmSurvival)
#include "tst_filmsurvival.moc"
