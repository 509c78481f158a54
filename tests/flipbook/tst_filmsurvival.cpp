#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/import/apngfilm.h"
#include "flipbook/import/picturefile.h"
#include "flipbook/import/picturelist.h"
#include "flipbook/import/sheetjson.h"
#include "flipbook/import/spritesheet.h"
#include "flipbook/import/webpfile.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmbuilder.h"
#include "tests/support/quiet.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtTest/QTest>

#include <functional>

namespace
{

constexpr qint64 maxMemory = qint64(1) << 20;
constexpr QRgb red = 0xffff0000;
constexpr QRgb green = 0xff00ff00;
constexpr QRgb shade = 0x80402010;
constexpr int byteValues = 256;

using Read = std::function<DecodedFilm(const QByteArray &file)>;

/// Of the other values of a byte, one of so many is tried, another one for each byte. All of them
/// are if FILM_SURVIVAL is "whole"; that takes a minute.
constexpr int usualStride = 7;

int stride()
{
    return qEnvironmentVariable("FILM_SURVIVAL") == QLatin1String("whole") ? 1 : usualStride;
}

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

/// A file whose content changes without being closed, after which some file systems would write it
/// to the disk each time.
class ChangingFile
{
public:
    explicit ChangingFile(const QString &path)
        : m_file(path)
    {
        m_file.open(QIODevice::ReadWrite | QIODevice::Truncate);
    }

    /// At its beginning, to be read.
    QFile &with(const QByteArray &content)
    {
        if (m_file.size() != content.size())
            m_file.resize(content.size());
        m_file.seek(0);
        m_file.write(content);
        m_file.flush();
        m_file.seek(0);
        return m_file;
    }

private:
    QFile m_file;
};

QByteArray saved(const QImage &picture, const char *format)
{
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, format);
    return file;
}

/// Why the second picture of a folder is not in @p film; nothing if that is not told.
QString leftOut(const DecodedFilm &film)
{
    const QString begin = QStringLiteral("2.png is left out: ");
    const QString warning = film.warnings.value(0);
    return warning.startsWith(begin) ? warning.mid(begin.size()) : QString();
}

/// Pictures of two pixels, the left one red, in files of some ten bytes.
void addPictures()
{
    QTest::addColumn<QByteArray>("file");
    const QImage picture = pixelRow({red, green});
    QTest::newRow("PNG") << saved(picture, "png");
    QTest::newRow("PNG with a palette") << saved(
        picture.convertToFormat(QImage::Format_Indexed8, QVector<QRgb>{red, green}), "png");
    QTest::newRow("BMP") << saved(picture, "bmp");
    QTest::newRow("PPM") << saved(picture, "ppm");
    QTest::newRow("WebP") << webpPicture(picture);
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
    void sheetsInAGridAreReadOrRefused_data() { addPictures(); }
    void sheetsInAGridAreReadOrRefused();
    void picturesInFoldersAreReadOrRefused_data() { addPictures(); }
    void picturesInFoldersAreReadOrRefused();
    void picturesOfAFilmAreReadOrRefused_data() { addPictures(); }
    void picturesOfAFilmAreReadOrRefused();

private:
    QString path(const QString &name) const { return m_fixture.path(name); }
    void damageEverywhere(const QByteArray &file, const QString &name, const Read &read);

    DocumentFixture m_fixture;
};

/// What is read keeps within the memory allowed; what is refused has a reason, and names @p name or
/// a file in it.
void TestFilmSurvival::damageEverywhere(const QByteArray &file, const QString &name,
                                        const Read &read)
{
    // Libraries complain of pictures as they like.
    const Quiet quiet;
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
            QVERIFY2(failure.subject.startsWith(name), qPrintable(failure.subject));
            QVERIFY(!failure.reason.isEmpty());
            ++refused;
        }
    };
    attempt(file);
    QCOMPARE(whole, 1);
    for (int length = 0; length < file.size(); ++length)
        attempt(file.left(length));
    for (int at = 0; at < file.size(); ++at) {
        for (int change = 1 + at % stride(); change < byteValues; change += stride()) {
            QByteArray damaged = file;
            damaged[at] = char(damaged.at(at) ^ change);
            attempt(damaged);
        }
    }
    QVERIFY(refused > 0);
    if (stride() == 1)
        fprintf(stdout, "%s: %d bytes, %d read, %d refused\n", QTest::currentDataTag(), file.size(),
                whole, refused);
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
    const QString name = QStringLiteral("film.png");
    damageEverywhere(file, name, [&name](const QByteArray &damaged) {
        MemoryAccount memory(maxMemory);
        return readApng(damaged, name, memory);
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
    const QString name = path(QStringLiteral("film.webp"));
    ChangingFile still(name);
    damageEverywhere(file, name, [&](const QByteArray &damaged) {
        if (WebpFile::isAnimated(damaged)) {
            MemoryAccount memory(maxMemory);
            return WebpFile::readFilm(damaged, name, memory);
        }
        const MemoryAccount memory(maxMemory);
        DecodedFilm film;
        film.pictures.append(readPicture(still.with(damaged), name, memory));
        return film;
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
    QVERIFY(pixelRow({red, green}).save(path(QStringLiteral("s.png"))));
    const QString name = path(QStringLiteral("sheet.json"));
    ChangingFile sheet(name);
    damageEverywhere(file, name, [&](const QByteArray &damaged) {
        Reading reading(maxMemory, false);
        return readSheetJson(sheet.with(damaged), name, reading);
    });
}

void TestFilmSurvival::sheetsInAGridAreReadOrRefused()
{
    QFETCH(QByteArray, file);
    const QString name = path(QStringLiteral("grid"));
    ChangingFile sheet(name);
    damageEverywhere(file, name, [&](const QByteArray &damaged) {
        MemoryAccount memory(maxMemory);
        const QImage picture = readPicture(sheet.with(damaged), name, memory);
        return cutSheet(picture, {QSize(2, 1), QSize(), 0, 0}, name, memory);
    });
}

void TestFilmSurvival::picturesInFoldersAreReadOrRefused()
{
    QFETCH(QByteArray, file);
    const QString folder = path(QStringLiteral("pictures"));
    QDir().mkpath(folder);
    QVERIFY(pixelRow({green}).save(folder + QStringLiteral("/1.png")));
    ChangingFile second(folder + QStringLiteral("/2.png"));
    damageEverywhere(file, folder, [&](const QByteArray &damaged) {
        second.with(damaged);
        Reading reading(maxMemory, false);
        const Source source = reading.open(folder);
        DecodedFilm film = readPictureFolder(source.folder, folder, reading);
        if (film.pictures.size() == 1)
            throw Failure{folder, leftOut(film)};
        return film;
    });
}

void TestFilmSurvival::picturesOfAFilmAreReadOrRefused()
{
    QFETCH(QByteArray, file);
    const QString first = path(QStringLiteral("first.png"));
    QVERIFY(pixelRow({green}).save(first));
    const QString name = path(QStringLiteral("second.png"));
    ChangingFile second(name);
    damageEverywhere(file, name, [&](const QByteArray &damaged) {
        second.with(damaged);
        Reading reading(maxMemory, false);
        return readPictureFiles({first, name}, reading);
    });
}

QTEST_MAIN(TestFilmSurvival)
#include "tst_filmsurvival.moc"
