#include "flipbook/base/compactpng.h"
#include "flipbook/base/palette.h"
#include "flipbook/base/pngencoder.h"

#include <QtCore/QBuffer>
#include <QtGui/QColorSpace>
#include <QtGui/QImageWriter>
#include <QtTest/QTest>

#include <algorithm>
#include <random>
#include <set>

namespace
{

using Random = std::mt19937;

int below(Random &random, int limit)
{
    return int(random() % unsigned(limit));
}

/// A picture of up to 40 x 40 pixels with up to @p colors colours of any opacity, in runs.
QImage randomPicture(Random &random, int colors, QImage::Format format)
{
    std::vector<QRgb> palette;
    palette.reserve(size_t(colors));
    for (int i = 0; i < colors; ++i)
        palette.push_back(QRgb(random()) | (below(random, 2) == 0 ? 0xff000000 : 0));
    QImage image(1 + below(random, 40), 1 + below(random, 40), format);
    QRgb color = palette.front();
    for (int y = 0; y < image.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (below(random, 3) == 0)
                color = palette[size_t(below(random, colors))];
            row[x] = color;
        }
    }
    return image;
}

/// The colours of @p image, found pixel by pixel.
std::set<QRgb> colorsOf(const QImage &image)
{
    std::set<QRgb> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colors.insert(image.pixel(x, y));
    }
    return colors;
}

/// What Qt writes.
QByteArray qtPng(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter(&buffer, "png").write(image);
    return bytes;
}

QImage read(const QByteArray &png)
{
    return QImage::fromData(png, "PNG");
}

/// Says how two pictures that were read differ in anything; empty when they do not.
QString difference(const QImage &found, const QImage &expected)
{
    if (found.format() != expected.format())
        return QStringLiteral("format %1, not %2").arg(found.format()).arg(expected.format());
    if (found != expected)
        return QStringLiteral("pixels");
    if (found.dotsPerMeterX() != expected.dotsPerMeterX() ||
        found.dotsPerMeterY() != expected.dotsPerMeterY())
        return QStringLiteral("resolution");
    if (found.colorSpace() != expected.colorSpace())
        return QStringLiteral("colour space");
    if (found.offset() != expected.offset())
        return QStringLiteral("offset");
    if (found.text() != expected.text())
        return QStringLiteral("texts: ") + found.text();
    return QString();
}

/// The bits of a sample and the colour type in the header of a PNG file.
QPair<int, int> kindOf(const QByteArray &png)
{
    return {png.at(24), png.at(25)};
}

/// A row of pixels, each of another colour.
QImage colored(int colors)
{
    QImage image(colors, 1, QImage::Format_ARGB32);
    for (int x = 0; x < colors; ++x)
        image.setPixel(x, 0, qRgba(x % 256, x / 256, 0, 100));
    return image;
}

} // namespace

class TestPngEncoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void palettesAreThoseFoundPixelByPixel_data();
    void palettesAreThoseFoundPixelByPixel();
    void theAlphaOfAnOpaqueFormatDoesNotCount();
    void filesReadLikeThoseOfQt_data();
    void filesReadLikeThoseOfQt();
    void otherFormatsReadLikeThoseOfQt_data();
    void otherFormatsReadLikeThoseOfQt();
    void whatBelongsToAPictureComesBack();
    void anIndexBeyondTheTableReadsAsInFilesOfQt();
    void compactFilesHaveTheSamePixels();
    void palettesHaveNoMoreBitsThanTheyNeed_data();
    void palettesHaveNoMoreBitsThanTheyNeed();
    void aPictureWithoutPixelsGivesNoFile();
};

void TestPngEncoder::palettesAreThoseFoundPixelByPixel_data()
{
    QTest::addColumn<int>("colors");
    for (const int colors : {1, 2, 3, 17, 200, 250, 256, 257, 300, 1600})
        QTest::addRow("%d colours", colors) << colors;
}

void TestPngEncoder::palettesAreThoseFoundPixelByPixel()
{
    QFETCH(int, colors);
    Random random{unsigned(colors)};
    for (int i = 0; i < 100; ++i) {
        const auto format = i % 2 == 0 ? QImage::Format_ARGB32 : QImage::Format_RGB32;
        const QImage image = randomPicture(random, colors, format);
        const std::set<QRgb> expected = colorsOf(image);
        const bool isFew = expected.size() <= 256;
        QCOMPARE(hasFewColors(image), isFew);
        const QImage indexed = withPalette(image);
        QCOMPARE(indexed.isNull(), !isFew);
        if (!isFew)
            continue;
        QCOMPARE(indexed.format(), QImage::Format_Indexed8);
        QVector<QRgb> table = indexed.colorTable();
        QVERIFY(std::is_partitioned(table.cbegin(), table.cend(),
                                    [](QRgb color) { return qAlpha(color) < 255; }));
        std::sort(table.begin(), table.end());
        QCOMPARE(table, QVector<QRgb>(expected.cbegin(), expected.cend()));
        QCOMPARE(indexed.convertToFormat(format), image);
    }
}

void TestPngEncoder::theAlphaOfAnOpaqueFormatDoesNotCount()
{
    QImage image(300, 1, QImage::Format_RGB32);
    auto *row = reinterpret_cast<QRgb *>(image.scanLine(0));
    for (int x = 0; x < 300; ++x)
        row[x] = qRgba(1, 2, 3, x % 256);
    QVERIFY(hasFewColors(image));
    QCOMPARE(withPalette(image).colorTable(), QVector<QRgb>{qRgb(1, 2, 3)});
}

void TestPngEncoder::filesReadLikeThoseOfQt_data()
{
    palettesAreThoseFoundPixelByPixel_data();
}

void TestPngEncoder::filesReadLikeThoseOfQt()
{
    QFETCH(int, colors);
    Random random{unsigned(colors)};
    for (int i = 0; i < 60; ++i) {
        const auto format = i % 2 == 0 ? QImage::Format_ARGB32 : QImage::Format_RGB32;
        QImage image = randomPicture(random, colors, format);
        if (i % 3 == 0)
            image.setDotsPerMeterX(below(random, 5000));
        QCOMPARE(difference(read(encodedPng(image)), read(qtPng(image))), QString());
        QCOMPARE(read(encodedPng(image)).convertToFormat(format),
                 read(qtPng(image)).convertToFormat(format));
        const QImage indexed = withPalette(image);
        if (indexed.isNull())
            continue;
        for (const PngEffort effort : {PngEffort::Least, PngEffort::Usual, PngEffort::Most})
            QCOMPARE(read(encodedPng(indexed, effort)).convertToFormat(QImage::Format_ARGB32),
                     indexed.convertToFormat(QImage::Format_ARGB32));
    }
}

void TestPngEncoder::otherFormatsReadLikeThoseOfQt_data()
{
    QTest::addColumn<int>("format");
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
        QTest::addRow("%d", format) << format;
}

void TestPngEncoder::otherFormatsReadLikeThoseOfQt()
{
    QFETCH(int, format);
    Random random(1);
    for (const int colors : {2, 100, 1600}) {
        const QImage image = randomPicture(random, colors, QImage::Format_ARGB32)
                                 .convertToFormat(QImage::Format(format));
        QCOMPARE(difference(read(encodedPng(image)), read(qtPng(image))), QString());
    }
}

void TestPngEncoder::whatBelongsToAPictureComesBack()
{
    Random random(2);
    const QImage bare = randomPicture(random, 20, QImage::Format_ARGB32);
    QVector<QImage> images(6, bare);
    images[0].setText(QStringLiteral("Author"), QStringLiteral("Ren\u00e9e"));
    images[0].setText(QStringLiteral("Title"), QStringLiteral("A walk"));
    images[1].setText(QStringLiteral("Title"), QStringLiteral("A long walk. ").repeated(4));
    images[2].setText(QStringLiteral("Title"), QStringLiteral("\u8d70"));
    images[3].setColorSpace(QColorSpace::DisplayP3);
    images[4].setOffset(QPoint(3, -4));
    images[5].setText(QStringLiteral("Title"), QString());
    for (const QImage &image : qAsConst(images))
        QCOMPARE(difference(read(encodedPng(image)), read(qtPng(image))), QString());
    QCOMPARE(read(encodedPng(images.at(0))).text(QStringLiteral("Title")),
             QStringLiteral("A walk"));
}

void TestPngEncoder::anIndexBeyondTheTableReadsAsInFilesOfQt()
{
    QImage image(4, 1, QImage::Format_Indexed8);
    image.setColorTable({qRgb(1, 2, 3), qRgb(4, 5, 6)});
    for (int x = 0; x < 4; ++x)
        image.scanLine(0)[x] = uchar(x % 2);
    QCOMPARE(difference(read(encodedPng(image)).convertToFormat(QImage::Format_ARGB32),
                        read(qtPng(image)).convertToFormat(QImage::Format_ARGB32)),
             QString());
    image.scanLine(0)[3] = 200;
    QCOMPARE(encodedPng(image), qtPng(image));
}

void TestPngEncoder::compactFilesHaveTheSamePixels()
{
    Random random(3);
    for (int i = 0; i < 200; ++i) {
        const auto format = i % 2 == 0 ? QImage::Format_ARGB32 : QImage::Format_RGB32;
        const QImage image = randomPicture(random, 1 + below(random, 600), format);
        const QImage expected = image.convertToFormat(QImage::Format_ARGB32);
        for (const PngEffort effort : {PngEffort::Least, PngEffort::Usual, PngEffort::Most}) {
            const QByteArray palette = palettePng(image, effort);
            QCOMPARE(palette.isEmpty(), colorsOf(image).size() > 256);
            if (!palette.isEmpty())
                QCOMPARE(read(palette).convertToFormat(QImage::Format_ARGB32), expected);
            QCOMPARE(read(compactPng(image, effort)).convertToFormat(QImage::Format_ARGB32),
                     expected);
        }
    }
}

void TestPngEncoder::palettesHaveNoMoreBitsThanTheyNeed_data()
{
    QTest::addColumn<int>("colors");
    QTest::addColumn<int>("bits");
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("2") << 2 << 1;
    QTest::newRow("3") << 3 << 2;
    QTest::newRow("4") << 4 << 2;
    QTest::newRow("5") << 5 << 4;
    QTest::newRow("16") << 16 << 4;
    QTest::newRow("17") << 17 << 8;
    QTest::newRow("256") << 256 << 8;
}

void TestPngEncoder::palettesHaveNoMoreBitsThanTheyNeed()
{
    QFETCH(int, colors);
    QFETCH(int, bits);
    constexpr int palette = 3;
    const QByteArray png = compactPng(colored(colors));
    QCOMPARE(kindOf(png), qMakePair(bits, palette));
    QCOMPARE(read(png).convertToFormat(QImage::Format_ARGB32), colored(colors));
}

void TestPngEncoder::aPictureWithoutPixelsGivesNoFile()
{
    QVERIFY(encodedPng(QImage()).isEmpty());
    QVERIFY(palettePng(QImage()).isEmpty());
    QVERIFY(compactPng(QImage()).isEmpty());
}

QTEST_MAIN(TestPngEncoder)
#include "tst_pngencoder.moc"
