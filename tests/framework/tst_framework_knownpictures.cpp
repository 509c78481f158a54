#include "framework/imagestore.h"

#include <QtCore/QBuffer>
#include <QtCore/QCryptographicHash>
#include <QtGui/QImageWriter>
#include <QtTest/QTest>

namespace
{

QImage solid(const QColor &color)
{
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

/// A PNG file with @p format as the name of a pixel format; without that text if it is empty.
QByteArray pngOf(QImage image, const QString &format)
{
    if (!format.isEmpty())
        image.setText(QStringLiteral("PixelFormat"), format);
    QByteArray png;
    QBuffer buffer(&png);
    QImageWriter(&buffer, "png").write(image);
    return png;
}

QString md5(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

/// The digest of @p image in a store that has never seen it.
QString freshDigest(const QImage &image)
{
    return ImageStore().add(image);
}

} // namespace

/// A store recognises pictures that it has encoded or decoded, and gives the same digests as a new
/// one.
class TestFrameworkKnownPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangedPictureGetsAnotherDigest();
    void aPictureThatWasReadIsRecognised();
    void foreignFilesAreEncodedAgain_data();
    void foreignFilesAreEncodedAgain();
    void aRemovedPictureCanBeAddedAgain();
    void aClearedPictureCanBeAddedAgain();
    void onlyPicturesInUseAreKept();
    void aRecognisedPictureIsInUse();
    void picturesThatAreGoneAreForgotten();
};

void TestFrameworkKnownPictures::aChangedPictureGetsAnotherDigest()
{
    ImageStore store;
    QImage picture = solid(Qt::red);
    const QString red = store.add(picture);
    picture.setPixelColor(0, 0, Qt::blue);
    const QString changed = store.add(picture);
    QVERIFY(changed != red);
    QCOMPARE(changed, freshDigest(picture));
    picture.setPixelColor(0, 0, Qt::red);
    QCOMPARE(store.add(picture), red);
}

void TestFrameworkKnownPictures::aPictureThatWasReadIsRecognised()
{
    ImageStore store;
    const QString digest = store.add(solid(Qt::red));
    QImage read = store.image(digest);
    QCOMPARE(store.add(read), digest);
    QCOMPARE(freshDigest(read), digest);
    read.fill(Qt::blue);
    QCOMPARE(store.add(read), freshDigest(solid(Qt::blue)));
}

void TestFrameworkKnownPictures::foreignFilesAreEncodedAgain_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("no format") << QString();
    QTest::newRow("an unknown format") << QStringLiteral("Plaid");
    QTest::newRow("the name of another format") << QStringLiteral("Mono");
}

void TestFrameworkKnownPictures::foreignFilesAreEncodedAgain()
{
    QFETCH(QString, format);
    const QByteArray png = pngOf(solid(QColor(1, 2, 3, 4)), format);
    ImageStore store;
    QVERIFY(store.addPng(md5(png), png));
    const QImage picture = store.image(md5(png));
    QVERIFY(!picture.isNull());
    QCOMPARE(store.add(picture), freshDigest(picture));
    QVERIFY(store.add(picture) != md5(png));
}

void TestFrameworkKnownPictures::aRemovedPictureCanBeAddedAgain()
{
    ImageStore store;
    const QImage picture = solid(Qt::red);
    const QString digest = store.add(picture);
    store.remove(digest);
    QCOMPARE(store.add(picture), digest);
    QCOMPARE(store.image(digest), picture);
}

void TestFrameworkKnownPictures::aClearedPictureCanBeAddedAgain()
{
    ImageStore store;
    const QImage picture = solid(Qt::red);
    const QString digest = store.add(picture);
    store.clear();
    QCOMPARE(store.add(picture), digest);
    QCOMPARE(store.image(digest), picture);
}

void TestFrameworkKnownPictures::onlyPicturesInUseAreKept()
{
    ImageStore store;
    const QImage red = solid(Qt::red);
    const QString redDigest = store.add(red);
    const QString blueDigest = store.add(solid(Qt::blue));
    store.beginUse();
    const QString greenDigest = store.add(solid(Qt::green));
    QCOMPARE(store.add(red), redDigest);
    store.dropUnused();
    QVERIFY(store.contains(redDigest));
    QVERIFY(store.contains(greenDigest));
    QVERIFY(!store.contains(blueDigest));
    QCOMPARE(store.byteCount(), store.png(redDigest).size() + store.png(greenDigest).size());
    // Nothing was added between the two calls.
    store.beginUse();
    store.dropUnused();
    QVERIFY(store.digests().isEmpty());
    QCOMPARE(store.add(red), redDigest);
    QVERIFY(store.contains(redDigest));
}

void TestFrameworkKnownPictures::aRecognisedPictureIsInUse()
{
    ImageStore store;
    const QString digest = store.add(solid(Qt::red));
    const QImage read = store.image(digest);
    store.beginUse();
    QCOMPARE(store.add(read), digest);
    QCOMPARE(store.add(QImage()), QString());
    store.dropUnused();
    QCOMPARE(store.digests(), QList<QString>{digest});
}

void TestFrameworkKnownPictures::picturesThatAreGoneAreForgotten()
{
    ImageStore store;
    const QString digest = store.add(solid(Qt::red));
    // As a document that is saved again and again while its objects are copied and loaded.
    for (int use = 0; use < 5; ++use) {
        store.beginUse();
        const QImage copy = solid(Qt::red);
        store.addAhead({copy});
        QCOMPARE(store.add(copy), digest);
        const QImage read = store.image(digest);
        store.dropUnused();
        QCOMPARE(store.recognisedCount(), 2);
        QCOMPARE(store.add(read), digest);
    }
}

QTEST_GUILESS_MAIN(TestFrameworkKnownPictures)
#include "tst_framework_knownpictures.moc"
