#include "flipbook/base/compactpng.h"
#include "flipbook/document/documentfile.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

/// "flipbook web": what is in the page. How it plays is seen in a browser, by tests/web.
class TestWebCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void timesOfAGifAreKept();
    void aDocumentKeepsItsOwnInterval();
    void equalFramesAreInThePageOnce();
    void framesAreSelected();
    void picturesAreScaledAndObjectsAreNot();
    void namesCannotLeaveTheirPlace();
    void theSamePageGivesTheSameBytes();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();
    void anInputIsNotOverwritten();
    void tooLittleMemoryLeavesNoFile();
    void compactPicturesHaveTheSamePixels_data();
    void compactPicturesHaveTheSamePixels();
    void compactPicturesHaveNoMoreThanTheyNeed_data();
    void compactPicturesHaveNoMoreThanTheyNeed();

private:
    QString path(const QString &name) const { return m_fixture->path(name); }
    QByteArray written(const QString &input, const QStringList &options = {}) const;
    static QJsonObject dataOf(const QByteArray &page);
    static QJsonObject objectOf(const QByteArray &page)
    {
        return dataOf(page).value(QLatin1String("objects")).toArray().at(0).toObject();
    }

    std::unique_ptr<DocumentFixture> m_fixture;
};

void TestWebCommand::initTestCase()
{
    m_fixture = std::make_unique<DocumentFixture>();
    GifBuilder film(4, 4);
    film.add(1, 50).add(2, 2).add(1, 150);
    film.write(path(QStringLiteral("film.gif")));
}

/// The page of @p input; empty when it was not written.
QByteArray TestWebCommand::written(const QString &input, const QStringList &options) const
{
    const QString output = path(QStringLiteral("out.html"));
    QFile::remove(output);
    const FlipbookRun run = flipbook(
        QStringList({QStringLiteral("web"), path(input), QStringLiteral("-o"), output}) + options);
    QFile file(output);
    return run.status == 0 && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject TestWebCommand::dataOf(const QByteArray &page)
{
    const QByteArray begin = "<script type=\"application/json\" id=\"data\">";
    const int from = page.indexOf(begin) + begin.size();
    return QJsonDocument::fromJson(page.mid(from, page.indexOf("</script>", from) - from)).object();
}

void TestWebCommand::timesOfAGifAreKept()
{
    const QJsonObject object = objectOf(written(QStringLiteral("film.gif")));
    QCOMPARE(object.value(QLatin1String("delays")).toArray(), QJsonArray({500, 20, 1500}));
    QCOMPARE(object.value(QLatin1String("name")).toString(), QStringLiteral("film"));
    QCOMPARE(object.value(QLatin1String("width")).toDouble(), 4.0);
}

void TestWebCommand::aDocumentKeepsItsOwnInterval()
{
    const QString document = path(QStringLiteral("film.flipbook"));
    QCOMPARE(flipbook({QStringLiteral("new"), document, QStringLiteral("--add"),
                       path(QStringLiteral("film.gif"))})
                 .status,
             0);
    QCOMPARE(
        flipbook({QStringLiteral("edit"), document, QStringLiteral("--interval"),
                  QStringLiteral("70"), QStringLiteral("--loops"), QStringLiteral("3"),
                  QStringLiteral("--flip"), QStringLiteral("--type"), QStringLiteral("background")})
            .status,
        0);
    const QJsonObject object = objectOf(written(QStringLiteral("film.flipbook")));
    QCOMPARE(object.value(QLatin1String("delays")).toArray(), QJsonArray({70, 70, 70}));
    QCOMPARE(object.value(QLatin1String("loops")).toInt(), 2);
    QCOMPARE(object.value(QLatin1String("isFlipped")).toBool(), true);
    QCOMPARE(object.value(QLatin1String("isMirrored")).toBool(true), false);
    QCOMPARE(object.value(QLatin1String("isBackground")).toBool(), true);
    QVERIFY(
        written(QStringLiteral("film.flipbook"), {QStringLiteral("--page"), QStringLiteral("2")})
            .isEmpty());
}

void TestWebCommand::equalFramesAreInThePageOnce()
{
    const QByteArray page = written(QStringLiteral("film.gif"));
    QCOMPARE(dataOf(page).value(QLatin1String("pictures")).toArray().size(), 2);
    QCOMPARE(objectOf(page).value(QLatin1String("frames")).toArray(), QJsonArray({0, 1, 0}));
}

void TestWebCommand::framesAreSelected()
{
    const QJsonObject some = objectOf(
        written(QStringLiteral("film.gif"),
                {QStringLiteral("--every"), QStringLiteral("2"), QStringLiteral("--reverse")}));
    QCOMPARE(some.value(QLatin1String("delays")).toArray(), QJsonArray({1500, 520}));

    // A still picture has no second frame, and stays.
    QVERIFY(Pictures::solid(3, 2, Qt::red).save(path(QStringLiteral("still.png"))));
    QCOMPARE(flipbook({QStringLiteral("new"), path(QStringLiteral("two.flipbook")),
                       QStringLiteral("--add"), path(QStringLiteral("film.gif")),
                       QStringLiteral("--add"), path(QStringLiteral("still.png"))})
                 .status,
             0);
    const QString document = QStringLiteral("two.flipbook");
    const QJsonArray objects =
        dataOf(written(document, {QStringLiteral("--frames"), QStringLiteral("2-3")}))
            .value(QLatin1String("objects"))
            .toArray();
    QCOMPARE(objects.at(0).toObject().value(QLatin1String("delays")).toArray(),
             QJsonArray({500, 500}));
    QCOMPARE(objects.at(1).toObject().value(QLatin1String("frames")).toArray().size(), 1);
    const FlipbookRun run =
        flipbookIn(path(QString()),
                   {QStringLiteral("web"), document, QStringLiteral("-o"), QStringLiteral("x.html"),
                    QStringLiteral("--frames"), QStringLiteral("4")});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err,
             QStringLiteral("flipbook: two.flipbook: film: it has 3 frames, so no frame 4\n"));
}

void TestWebCommand::picturesAreScaledAndObjectsAreNot()
{
    const QByteArray page =
        written(QStringLiteral("film.gif"), {QStringLiteral("--scale"), QStringLiteral("0.5")});
    const QJsonArray pictures = dataOf(page).value(QLatin1String("pictures")).toArray();
    const QByteArray png = QByteArray::fromBase64(pictures.at(0).toString().toLatin1());
    QCOMPARE(QImage::fromData(png).size(), QSize(2, 2));
    const QJsonObject object = objectOf(page);
    QCOMPARE(object.value(QLatin1String("width")).toDouble(), 4.0);
    QCOMPARE(object.value(QLatin1String("scaleX")).toDouble(), 2.0);
    QCOMPARE(object.value(QLatin1String("delays")).toArray(), QJsonArray({500, 20, 1500}));
}

void TestWebCommand::namesCannotLeaveTheirPlace()
{
    const QString name = QStringLiteral("a <!-- @DATA@ <script>& \" ' .png");
    QVERIFY(Pictures::solid(3, 2, Qt::red).save(path(name)));
    const QByteArray page = written(name);
    QVERIFY(page.contains("<title>a &lt;!-- @DATA@ &lt;script&gt;&amp; &quot; ' </title>"));
    QVERIFY(!page.contains("<!--"));
    QCOMPARE(page.count("<script"), 2);
    QCOMPARE(objectOf(page).value(QLatin1String("name")).toString(),
             QStringLiteral("a <!-- @DATA@ <script>& \" ' "));
}

void TestWebCommand::theSamePageGivesTheSameBytes()
{
    const QByteArray page = written(QStringLiteral("film.gif"));
    QVERIFY(page.startsWith("<!DOCTYPE html>\n"));
    QCOMPARE(written(QStringLiteral("film.gif")), page);
}

void TestWebCommand::wrongUsageIsTold_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *arguments, const char *reason) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(reason);
    };
    row("web film.gif", "-o is missing");
    row("web -o a.html", "a file is missing");
    row("web film.gif -o a.png", "'a.png' does not end in .html");
}

void TestWebCommand::wrongUsageIsTold()
{
    QFETCH(QString, arguments);
    QFETCH(QString, reason);
    const FlipbookRun run = flipbookIn(path(QString()), arguments.split(QLatin1Char(' ')));
    QCOMPARE(run.status, 2);
    QVERIFY2(run.err.startsWith(QStringLiteral("flipbook: %1\n").arg(reason)), qPrintable(run.err));
}

void TestWebCommand::anInputIsNotOverwritten()
{
    const QString input = path(QStringLiteral("film.html"));
    QVERIFY(QFile::copy(path(QStringLiteral("film.gif")), input));
    const FlipbookRun run = flipbook({QStringLiteral("web"), input, QStringLiteral("-o"), input});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: is an input; it is not overwritten\n").arg(input));
}

void TestWebCommand::tooLittleMemoryLeavesNoFile()
{
    // 1000 x 1000 pixels are 4 MB decoded. Noise does not shrink: 4 MB as a PNG file, and four
    // times a third more as text.
    constexpr quint32 seed = 7;
    QRandomGenerator random(seed);
    QImage noise(1000, 1000, QImage::Format_RGB32);
    for (int y = 0; y < noise.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(noise.scanLine(y));
        std::generate(row, row + noise.width(), [&random] { return random.generate(); });
    }
    QVERIFY(noise.save(path(QStringLiteral("noise.png"))));
    QVERIFY(!written(QStringLiteral("noise.png")).isEmpty());
    const QString output = path(QStringLiteral("none.html"));
    const FlipbookRun run =
        flipbook({QStringLiteral("web"), path(QStringLiteral("noise.png")), QStringLiteral("-o"),
                  output, QStringLiteral("--max-memory"), QStringLiteral("18M")});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.startsWith(
                 QStringLiteral("flipbook: %1: the page").arg(path(QStringLiteral("noise.png")))),
             qPrintable(run.err));
    QVERIFY(!QFile::exists(output));
}

namespace
{

/// Pixels of @p count colours in all, with or without opacity.
QImage colored(int count, bool isOpaque)
{
    QImage image(31, 17, QImage::Format_ARGB32);
    int number = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x, ++number) {
            const int color = number % count;
            image.setPixel(
                x, y,
                qRgba(color % 256, 255 - color % 256, color / 2, isOpaque ? 255 : color % 256));
        }
    }
    return image;
}

/// The colour type in the header of a PNG file.
int colorTypeOf(const QByteArray &png)
{
    constexpr int position = 25;
    return png.at(position);
}

} // namespace

void TestWebCommand::compactPicturesHaveTheSamePixels_data()
{
    QTest::addColumn<QImage>("image");
    for (const int count : {1, 2, 3, 16, 17, 255, 256, 257, 400}) {
        QTest::addRow("%d opaque colours", count) << colored(count, true);
        QTest::addRow("%d colours", count) << colored(count, false);
    }
    QTest::newRow("premultiplied")
        << colored(300, false).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QTest::newRow("with a palette") << colored(200, true).convertToFormat(QImage::Format_Indexed8);
    QTest::newRow("black and white") << colored(2, true).convertToFormat(QImage::Format_Mono);
    QTest::newRow("one pixel") << Pictures::solid(1, 1, Qt::red, QImage::Format_RGB32);
}

void TestWebCommand::compactPicturesHaveTheSamePixels()
{
    QFETCH(QImage, image);
    const QImage expected = image.convertToFormat(QImage::Format_ARGB32);
    const QImage found =
        QImage::fromData(compactPng(image), "PNG").convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(found.size(), expected.size());
    for (int y = 0; y < expected.height(); ++y) {
        for (int x = 0; x < expected.width(); ++x)
            QCOMPARE(found.pixel(x, y), expected.pixel(x, y));
    }
}

void TestWebCommand::compactPicturesHaveNoMoreThanTheyNeed_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<int>("colorType");
    QTest::newRow("256 colours") << colored(256, false) << 3;
    QTest::newRow("257 colours, opaque") << colored(257, true) << 2;
    QTest::newRow("400 colours, opaque") << colored(400, true) << 2;
    QTest::newRow("400 colours") << colored(400, false) << 6;
}

void TestWebCommand::compactPicturesHaveNoMoreThanTheyNeed()
{
    QFETCH(QImage, image);
    QFETCH(int, colorType);
    QCOMPARE(colorTypeOf(compactPng(image)), colorType);
    QVERIFY(compactPng(QImage()).isEmpty());
}

QTEST_MAIN(TestWebCommand)
#include "tst_webcommand.moc"
