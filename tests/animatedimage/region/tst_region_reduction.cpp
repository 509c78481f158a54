#include "animatedimage/core/region.h"
#include "slowregion.h"
#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <random>

namespace
{

/// What a frame with this picture is found to cover.
CAnimatedPortrait measuredFrame(const QImage &picture)
{
    Stage stage;
    stage.addFrame(QStringLiteral("f"), picture);
    return stage.probe.frame(0);
}

QImage filled(int side, QImage::Format format, const QColor &color)
{
    QImage image(side, side, format);
    image.fill(color);
    return image;
}

} // namespace

/// Pictures of many pixels are measured on a smaller copy.
class TestRegionReduction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void upTo65536PixelsAreMeasuredAsTheyAre_data();
    void upTo65536PixelsAreMeasuredAsTheyAre();
    void morePixelsAreReducedToFit_data();
    void morePixelsAreReducedToFit();
    void theProductOfTheSidesIsA32BitNumber();
    void anotherGreatestSideHasAnotherLimit();
    void aSquareBeyond32BitsIsALimit();
    void aNullPictureStaysNull();
    void aReducedFrameIsMeasuredInPixelsOfTheCopy();
    void shallowPicturesCanBeHitOnceTheyWereReduced_data();
    void shallowPicturesCanBeHitOnceTheyWereReduced();
    void anEightBitPictureIsJudgedByValueAndOnceReducedByAlpha();
    void aPictureWithoutAlphaIsMeasuredAsIfItWereReduced();
};

void TestRegionReduction::upTo65536PixelsAreMeasuredAsTheyAre_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("300 x 200") << QSize(300, 200);
    QTest::newRow("256 x 256") << QSize(256, 256);
    QTest::newRow("long but thin") << QSize(65536, 1);
    QTest::newRow("tall but thin") << QSize(1, 65536);
}

void TestRegionReduction::upTo65536PixelsAreMeasuredAsTheyAre()
{
    QFETCH(QSize, size);
    QImage source = Pictures::solid(size.width(), size.height(), Qt::red);
    QImage out;
    QVERIFY(CAnimatedImage::getImageForPath(source, out, 256));
    QCOMPARE(out.size(), size);
    QCOMPARE(out.cacheKey(), source.cacheKey()); // the very same pixels
}

void TestRegionReduction::morePixelsAreReducedToFit_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("300 x 300") << QSize(300, 300) << QSize(256, 256);
    QTest::newRow("512 x 256") << QSize(512, 256) << QSize(256, 128);
    QTest::newRow("256 x 1024") << QSize(256, 1024) << QSize(64, 256);
    QTest::newRow("one pixel too many in a row") << QSize(257, 256) << QSize(256, 255);
    QTest::newRow("never without a pixel") << QSize(65537, 1) << QSize(256, 1);
}

void TestRegionReduction::morePixelsAreReducedToFit()
{
    QFETCH(QSize, size);
    QImage source = Pictures::solid(size.width(), size.height(), Qt::red);
    QImage out;
    QVERIFY(CAnimatedImage::getImageForPath(source, out, 256));
    QTEST(out.size(), "expected");
}

void TestRegionReduction::theProductOfTheSidesIsA32BitNumber()
{
    // 46341 squared does not fit into 31 bits, so it counts as negative. One bit a pixel, and
    // memory that is never touched.
    constexpr int side = 46341;
    constexpr int bytesPerLine = (side + 31) / 32 * 4;
    const std::unique_ptr<void, decltype(&std::free)> pixels(
        std::calloc(size_t(bytesPerLine), size_t(side)), &std::free);
    QVERIFY(pixels);
    QImage source(static_cast<const uchar *>(pixels.get()), side, side, bytesPerLine,
                  QImage::Format_Mono);
    QImage out;
    QVERIFY(CAnimatedImage::getImageForPath(source, out, 256));
    QCOMPARE(out.size(), QSize(side, side));
}

void TestRegionReduction::anotherGreatestSideHasAnotherLimit()
{
    QImage source = Pictures::solid(20, 6, Qt::red);
    QImage out;
    QVERIFY(CAnimatedImage::getImageForPath(source, out, 11)); // 120 pixels, at most 121
    QCOMPARE(out.size(), QSize(20, 6));
    QVERIFY(CAnimatedImage::getImageForPath(source, out, 10));
    QCOMPARE(out.size(), QSize(10, 3));
}

void TestRegionReduction::aSquareBeyond32BitsIsALimit()
{
    QImage source = Pictures::solid(3, 2, Qt::red);
    QImage out;
    QVERIFY(CAnimatedImage::getImageForPath(source, out, 65536));
    QCOMPARE(out.size(), QSize(3, 2));
    QVERIFY(CAnimatedImage::getImageForPath(source, out, -2030043136));
    QCOMPARE(out.size(), QSize(3, 2));
}

void TestRegionReduction::aNullPictureStaysNull()
{
    QImage source;
    QImage out = Pictures::solid(3, 3, Qt::red);
    QVERIFY(CAnimatedImage::getImageForPath(source, out, 256));
    QVERIFY(out.isNull());
}

void TestRegionReduction::aReducedFrameIsMeasuredInPixelsOfTheCopy()
{
    const CAnimatedPortrait frame = measuredFrame(Pictures::solid(512, 256, Qt::red));
    QCOMPARE(frame.regionSize, QSize(256, 128));
    QCOMPARE(frame.rects, QList<QRect>{QRect(0, 0, 255, 128)});
    QCOMPARE(frame.size, QSizeF(512.0, 256.0));
    QCOMPARE(frame.image.size(), QSize(512, 256));
}

void TestRegionReduction::shallowPicturesCanBeHitOnceTheyWereReduced_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("16 bits") << QImage::Format_RGB16;
    QTest::newRow("24 bits") << QImage::Format_RGB888;
    QTest::newRow("1 bit") << QImage::Format_Mono;
}

void TestRegionReduction::shallowPicturesCanBeHitOnceTheyWereReduced()
{
    QFETCH(QImage::Format, format);

    const CAnimatedPortrait asItIs = measuredFrame(filled(100, format, Qt::black));
    QCOMPARE(asItIs.regionSize, QSize(100, 100));
    QVERIFY(asItIs.rects.isEmpty());
    QVERIFY(asItIs.path.isEmpty());

    const CAnimatedPortrait reduced = measuredFrame(filled(512, format, Qt::black));
    QCOMPARE(reduced.regionSize, QSize(256, 256));
    QCOMPARE(reduced.rects, QList<QRect>{QRect(0, 0, 255, 256)});
}

void TestRegionReduction::anEightBitPictureIsJudgedByValueAndOnceReducedByAlpha()
{
    const CAnimatedPortrait asItIs =
        measuredFrame(filled(100, QImage::Format_Grayscale8, Qt::black));
    QVERIFY(asItIs.rects.isEmpty()); // all its values are 0

    const CAnimatedPortrait reduced =
        measuredFrame(filled(512, QImage::Format_Grayscale8, Qt::black));
    QCOMPARE(reduced.rects, QList<QRect>{QRect(0, 0, 255, 256)});
}

void TestRegionReduction::aPictureWithoutAlphaIsMeasuredAsIfItWereReduced()
{
    std::mt19937 random(7);
    QList<QSize> sizes{{1280, 720}, {65537, 1}, {1, 65537}, {2, 40000}, {257, 256}, {40000, 3}};
    for (int i = 0; i < 60; ++i)
        sizes.append(QSize(200 + int(random() % 900), 330 + int(random() % 900)));
    for (const QSize &size : qAsConst(sizes)) {
        // The unused byte of each pixel may be anything.
        QImage picture(size, QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y) {
            auto *line = reinterpret_cast<quint32 *>(picture.scanLine(y));
            std::generate(line, line + size.width(), [&] { return quint32(random()); });
        }
        const QImage reduced = OpaqueRegion::measuredImage(picture, 256);
        const OpaqueRegion::Measured found = OpaqueRegion::measured(picture, 256);
        QCOMPARE(found.size, reduced.size());
        QCOMPARE(OpaqueRegion::toList(found.rects), SlowRegion::rectsFromImage(reduced, 1));
    }
    // Without a reduction that byte counts, whatever it means.
    QImage odd = Pictures::solid(10, 10, Qt::red, QImage::Format_RGB32);
    odd.bits()[3] = 0;
    QCOMPARE(OpaqueRegion::measured(odd, 256).rects.front(), QRect(1, 0, 8, 1));
}

QTEST_MAIN(TestRegionReduction)
#include "tst_region_reduction.moc"
