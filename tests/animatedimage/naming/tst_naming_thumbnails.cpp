#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

/// Names and pictures of all frames, whole and reduced.
class TestNamingThumbnails : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reducedPicturesTouchTheBox_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QSize>("reduced");
        QTest::newRow("wide") << QSize(300, 100) << QSize(150, 50);
        QTest::newRow("high and small") << QSize(10, 20) << QSize(75, 150);
        QTest::newRow("a pixel") << QSize(1, 1) << QSize(150, 150);
        QTest::newRow("as large as the box") << QSize(150, 150) << QSize(150, 150);
        QTest::newRow("a line") << QSize(1000, 1) << QSize(150, 1);
    }

    void reducedPicturesTouchTheBox()
    {
        QFETCH(QSize, size);
        Stage stage(solidFrames({size}));
        ThumbnailList list;
        stage->GetAllThumbnail(false, list);
        QCOMPARE(list.size(), 1);
        QCOMPARE(list.at(0).first, QStringLiteral("f_1"));
        QTEST(list.at(0).second.size(), "reduced");
    }

    void nothingIsSmoothed()
    {
        // Black next to white: 75 columns of each, and no grey between.
        QImage picture(2, 1, QImage::Format_ARGB32);
        picture.setPixelColor(0, 0, Qt::black);
        picture.setPixelColor(1, 0, Qt::white);
        Stage stage({picture});
        ThumbnailList list;
        stage->GetAllThumbnail(false, list);
        const QImage reduced = list.at(0).second;
        QCOMPARE(reduced.size(), QSize(150, 75));
        for (int x = 0; x < 150; ++x)
            QCOMPARE(reduced.pixelColor(x, 37), QColor(x < 75 ? Qt::black : Qt::white));
    }

    void fullPicturesAreSharedNotScaled()
    {
        Stage stage(solidFrames({{300, 100}, {10, 20}}));
        ThumbnailList list;
        stage->GetAllThumbnail(true, list);
        QCOMPARE(list.size(), 2);
        QCOMPARE(list.at(0).second.size(), QSize(300, 100));
        QCOMPARE(list.at(1).first, QStringLiteral("f_2"));
        QCOMPARE(list.at(1).second.cacheKey(), stage.probe.frame(1).image.cacheKey());
    }

    void aFrameWithoutPictureHasNone()
    {
        Stage stage({QImage()});
        for (const bool isFull : {true, false}) {
            ThumbnailList list;
            stage->GetAllThumbnail(isFull, list);
            QCOMPARE(list.size(), 1);
            QVERIFY(list.at(0).second.isNull());
        }
    }

    void aSecondCallDoublesTheList()
    {
        Stage stage(solidFrames({{4, 4}, {5, 5}}));
        ThumbnailList list;
        stage->GetAllThumbnail(false, list);
        stage->GetAllThumbnail(false, list);
        QCOMPARE(list.size(), 4);
        QCOMPARE(list.at(2).first, QStringLiteral("f_1"));
        QCOMPARE(list.at(3).first, QStringLiteral("f_2"));
    }

    void withoutFramesTheListStaysAsItWas()
    {
        Stage stage;
        ThumbnailList list{{QStringLiteral("before"), QImage()}};
        stage->GetAllThumbnail(true, list);
        QCOMPARE(list.size(), 1);
        QCOMPARE(list.at(0).first, QStringLiteral("before"));
    }
};

QTEST_MAIN(TestNamingThumbnails)
#include "tst_naming_thumbnails.moc"
