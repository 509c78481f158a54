#include "animatedimage/object/animatedimage.h"

#include <QtTest/QTest>

namespace
{

/// A drawing in text: rows between slashes, '#' opaque black, '.' transparent.
QImage drawn(const QString &text)
{
    const QStringList rows = text.split(QLatin1Char('/'));
    QImage image(rows.constFirst().size(), rows.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    for (int y = 0; y < rows.size(); ++y) {
        for (int x = 0; x < rows.at(y).size(); ++x) {
            if (rows.at(y).at(x) == QLatin1Char('#'))
                image.setPixelColor(x, y, Qt::black);
        }
    }
    return image;
}

/// A rectangle by its corners, both inclusive.
QRect box(int left, int top, int right, int bottom)
{
    return {QPoint(left, top), QPoint(right, bottom)};
}

/// One row of pixels with these alpha values.
QImage rowOfAlphas(const QList<int> &alphas, QImage::Format format = QImage::Format_ARGB32)
{
    QImage image(alphas.size(), 1, format);
    for (int x = 0; x < alphas.size(); ++x)
        image.setPixelColor(x, 0, QColor(10, 20, 30, alphas.at(x)));
    return image;
}

/// One row of pixels of one byte each.
QImage rowOfBytes(const QList<int> &bytes, QImage::Format format)
{
    QImage image(bytes.size(), 1, format);
    for (int x = 0; x < bytes.size(); ++x)
        image.scanLine(0)[x] = uchar(bytes.at(x));
    return image;
}

} // namespace

class TestRegionScan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsBecomeRectangles_data();
    void runsBecomeRectangles();
    void aPixelIsOpaqueFromTheThresholdUp_data();
    void aPixelIsOpaqueFromTheThresholdUp();
    void oneByteAPixelIsJudgedByItsValue_data();
    void oneByteAPixelIsJudgedByItsValue();
    void fourBytesAPixelAreJudgedByTheFourth_data();
    void fourBytesAPixelAreJudgedByTheFourth();
    void theUnusedByteOfAnOpaqueFormatIsJudgedToo();
    void otherDepthsGiveNoRectangles_data();
    void otherDepthsGiveNoRectangles();
    void aNullPictureGivesNoRectangles();
};

void TestRegionScan::runsBecomeRectangles_data()
{
    QTest::addColumn<QString>("picture");
    QTest::addColumn<QList<QRect>>("expected");
    const auto row = [](const char *name, const char *picture, const QList<QRect> &expected) {
        QTest::newRow(name) << QString::fromLatin1(picture) << expected;
    };

    row("solid: the last column is dropped", "####/####/####", {box(0, 0, 2, 2)});
    row("nothing opaque", "..../....", {});
    row("a run that ends before the last column", "##..", {box(0, 0, 1, 0)});
    row("a run that reaches the last column", "..##", {box(2, 0, 2, 0)});
    row("a run that ends at the last column but one", "###.", {box(0, 0, 2, 0)});
    row("only the last pixel", "...#", {box(3, 0, 2, 0)});
    row("a run and the last pixel", "#..#", {box(0, 0, 0, 0), box(3, 0, 2, 0)});
    row("a picture of one pixel", "#", {box(0, 0, -1, 0)});
    row("a picture of one column", "#/#", {box(0, 0, -1, 1)});
    row("three runs", "#.#.##.", {box(0, 0, 0, 0), box(2, 0, 2, 0), box(4, 0, 5, 0)});

    row("two runs at the same columns grow together", "##.##./##.##./##.##.",
        {box(0, 0, 1, 2), box(3, 0, 4, 2)});
    row("one run, then two", ".###./##.#./##.#.",
        {box(1, 0, 3, 0), box(0, 1, 1, 2), box(3, 1, 3, 2)});
    row("two runs, then one", "#.#./#.#./###.",
        {box(0, 0, 0, 1), box(2, 0, 2, 1), box(0, 2, 2, 2)});
    row("as many runs, moved by one", "##../.##.", {box(0, 0, 1, 0), box(1, 1, 2, 1)});
    row("as many runs, longer", "##../###.", {box(0, 0, 1, 0), box(0, 1, 2, 1)});
    row("as many runs, as long, side by side", "##.../..##.", {box(0, 0, 1, 0), box(2, 1, 3, 1)});
    row("one pair fits and the other does not", "#.##./#..#.",
        {box(0, 0, 0, 0), box(2, 0, 3, 0), box(0, 1, 0, 1), box(3, 1, 3, 1)});
    row("it grows again after it was closed", "##../#.#./#.#./##../##..",
        {box(0, 0, 1, 0), box(0, 1, 0, 2), box(2, 1, 2, 2), box(0, 3, 1, 4)});

    row("a band, an empty row, the same band", "###./###./..../###.",
        {box(0, 0, 2, 1), box(0, 3, 2, 3)});
    row("empty rows, then more runs", "#.../..../..../#.#.",
        {box(0, 0, 0, 0), box(0, 3, 0, 3), box(2, 3, 2, 3)});
    row("empty rows before and after", "..../##../##../....", {box(0, 1, 1, 2)});

    row("lone last pixels, row under row", "...#/...#", {box(3, 0, 2, 1)});
    row("lone last pixels join over an empty row, for nothing is the sum of nothings",
        "...#/..../...#", {box(3, 0, 2, 2)});
    row("a lone last pixel under a run of one", "..#./...#", {box(2, 0, 2, 0), box(3, 1, 2, 1)});
    row("a lone last pixel under a run up to the last column", ".###/...#",
        {box(1, 0, 2, 0), box(3, 1, 2, 1)});
    row("a run and a lone last pixel over an empty row", "#..#/..../#..#",
        {box(0, 0, 0, 0), box(3, 0, 2, 0), box(0, 2, 0, 2), box(3, 2, 2, 2)});
    row("runs that end in different ways at the same column", ".###/.##.", {box(1, 0, 2, 1)});
}

void TestRegionScan::runsBecomeRectangles()
{
    QFETCH(QString, picture);
    QTEST(CAnimatedImage::rectsFromImage(drawn(picture), 1), "expected");
}

void TestRegionScan::aPixelIsOpaqueFromTheThresholdUp_data()
{
    QTest::addColumn<int>("threshold");
    QTest::addColumn<QList<QRect>>("expected");

    // The alphas are 255 128 127 1 0 255 0.
    QTest::newRow("0: everything")
        << 0 << QList<QRect>{box(0, 0, 5, 0)}; // up to the last column, which is dropped
    QTest::newRow("1: all but the wholly transparent")
        << 1 << QList<QRect>{box(0, 0, 3, 0), box(5, 0, 5, 0)};
    QTest::newRow("2") << 2 << QList<QRect>{box(0, 0, 2, 0), box(5, 0, 5, 0)};
    QTest::newRow("128") << 128 << QList<QRect>{box(0, 0, 1, 0), box(5, 0, 5, 0)};
    QTest::newRow("255") << 255 << QList<QRect>{box(0, 0, 0, 0), box(5, 0, 5, 0)};
    QTest::newRow("256: nothing") << 256 << QList<QRect>{};
}

void TestRegionScan::aPixelIsOpaqueFromTheThresholdUp()
{
    QFETCH(int, threshold);
    QTEST(CAnimatedImage::rectsFromImage(rowOfAlphas({255, 128, 127, 1, 0, 255, 0}), threshold),
          "expected");
}

void TestRegionScan::oneByteAPixelIsJudgedByItsValue_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("Grayscale8") << QImage::Format_Grayscale8;
    QTest::newRow("Alpha8") << QImage::Format_Alpha8;
    QTest::newRow("Indexed8") << QImage::Format_Indexed8;
}

void TestRegionScan::oneByteAPixelIsJudgedByItsValue()
{
    QFETCH(QImage::Format, format);
    QImage image = rowOfBytes({0, 1, 2, 0, 255, 0}, format);
    if (format == QImage::Format_Indexed8) {
        // What a palette makes of the value does not count: here 0 is opaque, all else is not.
        QVector<QRgb> palette(256, qRgba(0, 0, 0, 0));
        palette[0] = qRgba(255, 255, 255, 255);
        image.setColorTable(palette);
    }
    const QList<QRect> expected{box(1, 0, 2, 0), box(4, 0, 4, 0)};
    QCOMPARE(CAnimatedImage::rectsFromImage(image, 1), expected);
}

void TestRegionScan::fourBytesAPixelAreJudgedByTheFourth_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("ARGB32") << QImage::Format_ARGB32;
    QTest::newRow("ARGB32_Premultiplied") << QImage::Format_ARGB32_Premultiplied;
    QTest::newRow("RGBA8888") << QImage::Format_RGBA8888;
    QTest::newRow("RGBA8888_Premultiplied") << QImage::Format_RGBA8888_Premultiplied;
}

void TestRegionScan::fourBytesAPixelAreJudgedByTheFourth()
{
    QFETCH(QImage::Format, format);
    const QList<QRect> expected{box(1, 0, 2, 0), box(4, 0, 4, 0)};
    QCOMPARE(CAnimatedImage::rectsFromImage(rowOfAlphas({0, 255, 40, 0, 90, 0}, format), 1),
             expected);
}

void TestRegionScan::theUnusedByteOfAnOpaqueFormatIsJudgedToo()
{
    QImage image(4, 1, QImage::Format_RGB32);
    image.fill(Qt::red);
    QCOMPARE(CAnimatedImage::rectsFromImage(image, 1), QList<QRect>{box(0, 0, 2, 0)});

    auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(0));
    pixels[1] = 0x00ffffff;
    const QList<QRect> expected{box(0, 0, 0, 0), box(2, 0, 2, 0)};
    QCOMPARE(CAnimatedImage::rectsFromImage(image, 1), expected);
}

void TestRegionScan::otherDepthsGiveNoRectangles_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("1 bit") << QImage::Format_Mono;
    QTest::newRow("1 bit, least significant first") << QImage::Format_MonoLSB;
    QTest::newRow("16 bits") << QImage::Format_RGB16;
    QTest::newRow("16 bits with alpha") << QImage::Format_ARGB4444_Premultiplied;
    QTest::newRow("16 bits of grey") << QImage::Format_Grayscale16;
    QTest::newRow("24 bits") << QImage::Format_RGB888;
    QTest::newRow("24 bits with alpha") << QImage::Format_ARGB8565_Premultiplied;
    QTest::newRow("64 bits") << QImage::Format_RGBA64;
}

void TestRegionScan::otherDepthsGiveNoRectangles()
{
    QFETCH(QImage::Format, format);
    QImage image(6, 3, format);
    image.fill(Qt::black);
    QCOMPARE(CAnimatedImage::rectsFromImage(image, 1), QList<QRect>());
}

void TestRegionScan::aNullPictureGivesNoRectangles()
{
    QCOMPARE(CAnimatedImage::rectsFromImage(QImage(), 1), QList<QRect>());
}

QTEST_MAIN(TestRegionScan)
#include "tst_region_scan.moc"
