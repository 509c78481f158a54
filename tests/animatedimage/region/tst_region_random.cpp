#include "animatedimage/object/animatedimage.h"
#include "randompictures.h"
#include "slowregion.h"

#include <QtTest/QTest>

namespace
{

constexpr unsigned firstSeed = 20240611;
constexpr int picturesOfAKind = 4200;

} // namespace

/// The plug-in's search for opaque rectangles compared with a slow one, on random pictures. Each
/// picture has its own seed, which is printed if the two differ.
class TestRegionRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bothFindTheSameRectangles_data();
    void bothFindTheSameRectangles();
    void theSlowOneKnowsTheCasesWorkedByHand();
};

void TestRegionRandom::bothFindTheSameRectangles_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("blobs") << int(RandomPictures::Blobs);
    QTest::newRow("dither") << int(RandomPictures::Dither);
    QTest::newRow("sparse columns") << int(RandomPictures::SparseColumns);
    QTest::newRow("empty rows") << int(RandomPictures::EmptyRows);
    QTest::newRow("lone last pixels") << int(RandomPictures::LoneLastPixels);
}

void TestRegionRandom::bothFindTheSameRectangles()
{
    QFETCH(int, kind);
    int rectangles = 0;
    int withoutWidth = 0;
    for (int i = 0; i < picturesOfAKind; ++i) {
        const unsigned seed = firstSeed + unsigned(kind * picturesOfAKind + i);
        RandomPictures pictures(seed);
        const QImage picture = pictures.next(static_cast<RandomPictures::Kind>(kind));
        const int threshold = i % 4 == 3 ? pictures.number(-1, 257) : 1;

        const QList<QRect> found = CAnimatedImage::rectsFromImage(picture, threshold);
        const QList<QRect> expected = SlowRegion::rectsFromImage(picture, threshold);

        QVERIFY2(found == expected,
                 qPrintable(QStringLiteral("seed %1, %2 x %3, %4 bits, threshold %5: %6 rectangles "
                                           "instead of %7")
                                .arg(seed)
                                .arg(picture.width())
                                .arg(picture.height())
                                .arg(picture.depth())
                                .arg(threshold)
                                .arg(found.size())
                                .arg(expected.size())));
        rectangles += found.size();
        for (const QRect &rect : found)
            withoutWidth += rect.width() == 0 ? 1 : 0;
    }
    // The pictures were worth the comparison.
    QVERIFY(rectangles > picturesOfAKind);
    QVERIFY(withoutWidth > 0);
}

void TestRegionRandom::theSlowOneKnowsTheCasesWorkedByHand()
{
    QImage solid(4, 3, QImage::Format_ARGB32);
    solid.fill(Qt::red);
    QCOMPARE(SlowRegion::rectsFromImage(solid, 1), QList<QRect>{QRect(0, 0, 3, 3)});

    QImage lonePixel(4, 1, QImage::Format_ARGB32);
    lonePixel.fill(Qt::transparent);
    lonePixel.setPixelColor(3, 0, Qt::red);
    QCOMPARE(SlowRegion::rectsFromImage(lonePixel, 1), QList<QRect>{QRect(3, 0, 0, 1)});

    QCOMPARE(SlowRegion::rectsFromImage(solid.convertToFormat(QImage::Format_RGB888), 1),
             QList<QRect>());
}

QTEST_MAIN(TestRegionRandom)
#include "tst_region_random.moc"
