#include "framework/encodeahead.h"
#include "framework/imagestore.h"

#include <QtTest/QTest>

namespace
{

/// A picture of 37 x 11 pixels with colours of every opacity.
QImage colourful()
{
    QImage image(37, 11, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgba(x * 7 % 256, y * 23, x * y % 256, (x * 11 + y * 3) % 256));
    }
    return image;
}

QImage solid(const QColor &color)
{
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

/// Pictures that are told from one another by their widths: many small ones, with a large one, and
/// one with more bytes than all others, here and there.
QList<QImage> ofAllSizes()
{
    QList<QImage> images;
    for (int i = 0; i < 2000; ++i)
        images.append(QImage(1 + i, i % 90 == 7 ? 40 : 1, QImage::Format_Mono));
    images.insert(700, QImage(3000, 3000, QImage::Format_ARGB32));
    images.insert(0, QImage(2999, 300, QImage::Format_ARGB32));
    images.append(QImage());
    return images;
}

QByteArray widthOf(const QImage &image)
{
    return QByteArray::number(image.width());
}

} // namespace

/// Pictures that are encoded several at a time, compared with pictures added one by one.
class TestAddAhead : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picturesAddedAheadAreThoseAddedOneByOne();
    void picturesAddedAheadEndWhereThereIsNoRoom();
    void copiesOfKnownPicturesAreTheSameFiles();
    void picturesThatDifferInOnePixelAreOtherFiles();
    void picturesOfAllSizesAreTakenInTheirOrder();
    void nothingIsTakenAfterTheEnd();
};

void TestAddAhead::picturesAddedAheadAreThoseAddedOneByOne()
{
    QList<QImage> pictures{QImage(), colourful(), solid(Qt::red), colourful()};
    for (int i = 0; i < 40; ++i)
        pictures.append(solid(QColor(i, 2 * i, 3 * i, 255 - i)));
    pictures += {pictures.at(1), pictures.at(7), QImage(1, 1, QImage::Format_Mono)};
    pictures.last().fill(1);
    ImageStore ahead;
    ahead.addAhead(pictures);
    ImageStore oneByOne;
    for (const QImage &picture : qAsConst(pictures))
        oneByOne.add(picture);
    // The colourful one, 41 colours (red once), and the dot.
    QCOMPARE(oneByOne.digests().size(), 43);
    QCOMPARE(ahead.digests(), oneByOne.digests());
    QCOMPARE(ahead.byteCount(), oneByOne.byteCount());
    const auto digests = ahead.digests();
    for (const QString &digest : digests)
        QCOMPARE(ahead.png(digest), oneByOne.png(digest));
    for (const QImage &picture : qAsConst(pictures))
        QCOMPARE(ahead.add(picture), oneByOne.add(picture));
    // Only what is added counts as in use.
    ahead.beginUse();
    ahead.addAhead(pictures);
    ahead.dropUnused();
    QCOMPARE(ahead.byteCount(), 0);
}

void TestAddAhead::picturesAddedAheadEndWhereThereIsNoRoom()
{
    QList<QImage> pictures;
    for (int i = 0; i < 20; ++i)
        pictures.append(solid(QColor(10 * i, 0, 0)));
    ImageStore store;
    for (int i = 0; i < 3; ++i)
        store.add(pictures.at(i));
    const QList<QString> first = store.digests();
    const qint64 bytes = store.byteCount();
    ImageStore ahead;
    ahead.setCapacity(bytes);
    ahead.addAhead(pictures);
    QVERIFY(ahead.hasOverflowed());
    QCOMPARE(ahead.digests(), first);
}

void TestAddAhead::copiesOfKnownPicturesAreTheSameFiles()
{
    const QList<QImage> pictures{colourful(), solid(Qt::red), solid(Qt::blue)};
    ImageStore store;
    store.addAhead(pictures);
    QList<QImage> longer = pictures;
    longer.insert(1, colourful());
    longer.append(solid(Qt::blue));
    // The same bytes as red has, in another format, which is part of the file.
    longer.append(solid(Qt::red).convertToFormat(QImage::Format_RGB32));
    store.addAhead(longer);
    QCOMPARE(store.digests().size(), 4);
    ImageStore oneByOne;
    for (const QImage &picture : qAsConst(longer))
        QCOMPARE(store.add(picture), oneByOne.add(picture));
    QCOMPARE(store.digests(), oneByOne.digests());
}

void TestAddAhead::picturesThatDifferInOnePixelAreOtherFiles()
{
    const QImage picture = colourful();
    ImageStore store;
    store.add(picture);
    QList<QImage> pictures{picture};
    // At the corners, and on lines that a quick look may leave out or not.
    for (const QPoint &place : {QPoint(0, 0), QPoint(36, 10), QPoint(5, 1), QPoint(20, 5)}) {
        QImage other = picture.copy();
        other.setPixel(place, other.pixel(place) ^ 1);
        pictures.append(other);
    }
    store.addAhead(pictures);
    QCOMPARE(store.digests().size(), 5);
    ImageStore oneByOne;
    for (const QImage &each : qAsConst(pictures))
        QCOMPARE(store.add(each), oneByOne.add(each));
}

void TestAddAhead::picturesOfAllSizesAreTakenInTheirOrder()
{
    const QList<QImage> images = ofAllSizes();
    int taken = 0;
    encodeAhead(images, widthOf, [&](int index, const QByteArray &file) {
        if (index != taken || file != widthOf(images.at(index)))
            return false;
        ++taken;
        return true;
    });
    QCOMPARE(taken, 2003);
    encodeAhead({}, widthOf, [&](int, const QByteArray &) { return ++taken > 0; });
    QCOMPARE(taken, 2003);
}

void TestAddAhead::nothingIsTakenAfterTheEnd()
{
    const QList<QImage> images = ofAllSizes();
    for (const int last : {0, 1, 7, 699, 701, 1500}) {
        int taken = 0;
        encodeAhead(images, widthOf, [&](int index, const QByteArray &) {
            ++taken;
            return index < last;
        });
        QCOMPARE(taken, last + 1);
    }
}

QTEST_GUILESS_MAIN(TestAddAhead)
#include "tst_framework_addahead.moc"
