#include "framework/imagestore.h"
#include "tests/support/quiet.h"

#include <QtCore/QBuffer>
#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtCore/QtEndian>
#include <QtGui/QColorSpace>
#include <QtGui/QImageWriter>
#include <QtTest/QTest>

Q_DECLARE_METATYPE(QImage::Format)

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

QString md5(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

QByteArray pngOf(const QImage &image)
{
    QByteArray png;
    QBuffer buffer(&png);
    QImageWriter(&buffer, "png").write(image);
    return png;
}

/// CRC-32 as PNG files have it.
quint32 crc(const QByteArray &bytes)
{
    quint32 sum = 0xffffffff;
    for (char byte : bytes) {
        sum ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ (sum & 1 ? 0xedb88320 : 0);
    }
    return ~sum;
}

QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

/// @p png with another size in its header, whose checksum is right again.
QByteArray resized(const QByteArray &png, quint32 width, quint32 height)
{
    QByteArray changed = png;
    changed.replace(16, 4, bigEndian(width)).replace(20, 4, bigEndian(height));
    return changed.replace(29, 4, bigEndian(crc(changed.mid(12, 17))));
}

/// The most address space that this process ever had, in MiB.
qint64 peakOfAddressSpace()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    const QByteArray text = status.readAll();
    const int at = text.indexOf("VmPeak:") + 7;
    return text.mid(at, text.indexOf("kB", at) - at).trimmed().toLongLong() / 1024;
}

QImage decoded(const QByteArray &png)
{
    ImageStore store;
    store.addPng(md5(png), png);
    return store.image(md5(png));
}

} // namespace

class TestFrameworkImageStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewStoreHasNotOverflowed();
    void aPictureIsKeptOnce();
    void theDigestIsThatOfThePng();
    void aNullPictureIsNotKept();
    void anUnknownDigestHasNoPicture();
    void aPngMustHaveItsDigest();
    void picturesAreRemoved();
    void whatThereIsNoRoomForIsNotKept();
    void formatsComeBack_data();
    void formatsComeBack();
    void rareFormatsSettle_data();
    void rareFormatsSettle();
    void everyPremultipliedValueComesBack();
    void tablesComeBack_data();
    void tablesComeBack();
    void indexesBeyondTheTableAreBlack();
    void onlyPixelsMakeADifference();
    void otherProgramsCanReadThePng();
    void thePngNamesItsFormatAndDensity();
    void foreignPngsAreTaken();
    void whatIsNoPngIsNoPicture();
    void damagedPngsDoNotHarm();
    void aDeclaredSizeMustBePlausible();
    void aLargePlainPictureComesBack();
    void aWrongFormatNameIsPassedOver_data();
    void aWrongFormatNameIsPassedOver();
};

void TestFrameworkImageStore::whatThereIsNoRoomForIsNotKept()
{
    ImageStore store;
    const QString red = store.add(solid(Qt::red));
    const qint64 one = store.png(red).size();
    QCOMPARE(store.byteCount(), one);
    store.setCapacity(2 * one - 1);
    QVERIFY(!store.hasOverflowed());
    // The same size in another colour; the first is kept already, and takes nothing.
    QCOMPARE(store.add(solid(Qt::red)), red);
    QCOMPARE(store.add(solid(Qt::green)), QString());
    QVERIFY(store.hasOverflowed());
    const QByteArray more = pngOf(solid(Qt::blue).scaled(900, 900));
    QVERIFY(!store.addPng(md5(more), more));
    QCOMPARE(store.digests(), QList<QString>{red});
    const QByteArray exact = pngOf(solid(Qt::green));
    store.setCapacity(one + exact.size());
    QVERIFY(!store.hasOverflowed());
    QVERIFY(store.addPng(md5(exact), exact));
    QCOMPARE(store.byteCount(), one + exact.size());
    store.remove(red);
    store.clear();
    QCOMPARE(store.byteCount(), 0);
}

void TestFrameworkImageStore::aNewStoreHasNotOverflowed()
{
    const ImageStore store;
    QVERIFY(!store.hasOverflowed());
    QCOMPARE(store.byteCount(), qint64(0));
}

void TestFrameworkImageStore::aPictureIsKeptOnce()
{
    ImageStore store;
    const QString red = store.add(solid(Qt::red));
    const QString again = store.add(solid(Qt::red));
    const QString blue = store.add(solid(Qt::blue));
    QCOMPARE(red, again);
    QVERIFY(red != blue);
    QList<QString> expected{red, blue};
    std::sort(expected.begin(), expected.end());
    QCOMPARE(store.digests(), expected);
    QVERIFY(store.contains(blue));
    QCOMPARE(store.image(blue), solid(Qt::blue));
}

void TestFrameworkImageStore::theDigestIsThatOfThePng()
{
    ImageStore store;
    const QString digest = store.add(colourful());
    QCOMPARE(digest.size(), 32);
    QVERIFY(store.png(digest).startsWith("\x89PNG\r\n\x1a\n"));
    QCOMPARE(digest, md5(store.png(digest)));
}

void TestFrameworkImageStore::aNullPictureIsNotKept()
{
    ImageStore store;
    QCOMPARE(store.add(QImage()), QString());
    QVERIFY(store.digests().isEmpty());
    QVERIFY(store.image(QString()).isNull());
}

void TestFrameworkImageStore::anUnknownDigestHasNoPicture()
{
    const ImageStore store;
    const QString digest(32, QLatin1Char('0'));
    QVERIFY(store.image(digest).isNull());
    QVERIFY(store.png(digest).isEmpty());
    QVERIFY(!store.contains(digest));
}

void TestFrameworkImageStore::aPngMustHaveItsDigest()
{
    ImageStore from;
    const QString digest = from.add(colourful());
    const QByteArray png = from.png(digest);
    ImageStore store;
    QVERIFY(!store.addPng(QString(), png));
    QVERIFY(!store.addPng(digest.toUpper(), png));
    QVERIFY(!store.addPng(digest, png + 'x'));
    QVERIFY(!store.addPng(md5(QByteArray()), QByteArray()));
    QVERIFY(store.digests().isEmpty());
    QVERIFY(store.addPng(digest, png));
    QCOMPARE(store.image(digest), colourful());
}

void TestFrameworkImageStore::picturesAreRemoved()
{
    ImageStore store;
    const QString red = store.add(solid(Qt::red));
    store.add(solid(Qt::blue));
    store.remove(red);
    QVERIFY(!store.contains(red));
    QCOMPARE(store.digests().size(), 1);
    store.clear();
    QVERIFY(store.digests().isEmpty());
}

void TestFrameworkImageStore::formatsComeBack_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("Mono") << QImage::Format_Mono;
    QTest::newRow("MonoLSB") << QImage::Format_MonoLSB;
    QTest::newRow("Indexed8") << QImage::Format_Indexed8;
    QTest::newRow("Grayscale8") << QImage::Format_Grayscale8;
    QTest::newRow("Grayscale16") << QImage::Format_Grayscale16;
    QTest::newRow("Alpha8") << QImage::Format_Alpha8;
    QTest::newRow("RGB16") << QImage::Format_RGB16;
    QTest::newRow("RGB888") << QImage::Format_RGB888;
    QTest::newRow("BGR888") << QImage::Format_BGR888;
    QTest::newRow("RGB32") << QImage::Format_RGB32;
    QTest::newRow("RGBX8888") << QImage::Format_RGBX8888;
    QTest::newRow("ARGB32") << QImage::Format_ARGB32;
    QTest::newRow("ARGB32_Premultiplied") << QImage::Format_ARGB32_Premultiplied;
    QTest::newRow("RGBA8888") << QImage::Format_RGBA8888;
    QTest::newRow("RGBX64") << QImage::Format_RGBX64;
    QTest::newRow("RGBA64") << QImage::Format_RGBA64;
}

void TestFrameworkImageStore::formatsComeBack()
{
    QFETCH(QImage::Format, format);
    const QImage image = colourful().convertToFormat(format);
    ImageStore store;
    const QString digest = store.add(image);
    const QImage back = store.image(digest);
    QCOMPARE(back.format(), format);
    QCOMPARE(back, image);
    QCOMPARE(store.add(back), digest);
    QCOMPARE(ImageStore().add(back), digest);
}

void TestFrameworkImageStore::rareFormatsSettle_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<QImage::Format>("settled");
    QTest::newRow("RGB444") << QImage::Format_RGB444 << QImage::Format_RGB32;
    QTest::newRow("RGB555") << QImage::Format_RGB555 << QImage::Format_RGB32;
    QTest::newRow("RGB666") << QImage::Format_RGB666 << QImage::Format_RGB32;
    QTest::newRow("RGB30") << QImage::Format_RGB30 << QImage::Format_RGBX64;
    QTest::newRow("BGR30") << QImage::Format_BGR30 << QImage::Format_RGBX64;
    QTest::newRow("ARGB4444") << QImage::Format_ARGB4444_Premultiplied << QImage::Format_ARGB32;
    QTest::newRow("ARGB8565") << QImage::Format_ARGB8565_Premultiplied << QImage::Format_ARGB32;
    QTest::newRow("A2RGB30") << QImage::Format_A2RGB30_Premultiplied << QImage::Format_RGBA64;
    QTest::newRow("RGBA8888p") << QImage::Format_RGBA8888_Premultiplied << QImage::Format_ARGB32;
    QTest::newRow("RGBA64p") << QImage::Format_RGBA64_Premultiplied << QImage::Format_RGBA64;
}

void TestFrameworkImageStore::rareFormatsSettle()
{
    QFETCH(QImage::Format, format);
    QFETCH(QImage::Format, settled);
    const QImage image = colourful().convertToFormat(format);
    ImageStore store;
    const QString digest = store.add(image);
    const QImage back = store.image(digest);
    QCOMPARE(back.format(), settled);
    QCOMPARE(back, image.convertToFormat(settled));
    QCOMPARE(store.add(back), digest);
    QCOMPARE(ImageStore().add(back), digest);
}

void TestFrameworkImageStore::everyPremultipliedValueComesBack()
{
    QImage image(256, 256, QImage::Format_ARGB32_Premultiplied);
    for (int alpha = 0; alpha < 256; ++alpha) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(alpha));
        for (int value = 0; value < 256; ++value) {
            const int possible = qMin(value, alpha);
            line[value] = qRgba(possible, alpha - possible, possible / 2, alpha);
        }
    }
    ImageStore store;
    const QString digest = store.add(image);
    const QImage back = store.image(digest);
    for (int alpha = 0; alpha < 256; ++alpha)
        QCOMPARE(memcmp(back.constScanLine(alpha), image.constScanLine(alpha), 1024), 0);
    QCOMPARE(store.add(back), digest);
    QCOMPARE(ImageStore().add(back), digest);
}

void TestFrameworkImageStore::tablesComeBack_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<QVector<QRgb>>("table");
    const auto indexed = QImage::Format_Indexed8;
    const auto mono = QImage::Format_Mono;
    const QRgb black = qRgb(0, 0, 0);
    const QRgb white = qRgb(255, 255, 255);
    QTest::newRow("colours") << indexed << QVector<QRgb>{qRgb(255, 0, 0), qRgb(0, 0, 255)};
    QTest::newRow("opacities") << indexed << QVector<QRgb>{qRgba(1, 2, 3, 0), qRgba(1, 2, 3, 77)};
    QTest::newRow("twice the same") << indexed << QVector<QRgb>{white, white};
    QTest::newRow("more than used") << indexed << QVector<QRgb>{white, black, qRgb(1, 2, 3)};
    QTest::newRow("black and white") << mono << QVector<QRgb>{black, white};
    QTest::newRow("white and black") << mono << QVector<QRgb>{white, black};
    QTest::newRow("two colours") << mono << QVector<QRgb>{qRgb(9, 8, 7), qRgba(1, 2, 3, 4)};
    QTest::newRow("two dark greys") << mono << QVector<QRgb>{black, qRgb(1, 1, 1)};
}

void TestFrameworkImageStore::tablesComeBack()
{
    QFETCH(QImage::Format, format);
    QFETCH(QVector<QRgb>, table);
    QImage image(9, 2, format);
    image.setColorTable(table);
    image.fill(0);
    image.setPixel(3, 1, 1);
    image.setPixel(8, 0, 1);
    ImageStore store;
    const QString digest = store.add(image);
    const QImage back = store.image(digest);
    QCOMPARE(back.format(), format);
    QCOMPARE(back.colorTable(), table);
    for (int x = 0; x < 9; ++x) {
        QCOMPARE(back.pixelIndex(x, 0), x == 8 ? 1 : 0);
        QCOMPARE(back.pixelIndex(x, 1), x == 3 ? 1 : 0);
    }
    QCOMPARE(store.add(back), digest);
    QCOMPARE(ImageStore().add(back), digest);
}

void TestFrameworkImageStore::indexesBeyondTheTableAreBlack()
{
    QImage image(2, 1, QImage::Format_Indexed8);
    image.setColorTable({qRgb(255, 0, 0)});
    image.scanLine(0)[0] = 0;
    image.scanLine(0)[1] = 200;
    ImageStore store;
    const QString digest = store.add(image);
    const QImage back = store.image(digest);
    QCOMPARE(back.pixelColor(0, 0), QColor(Qt::red));
    QCOMPARE(back.pixelColor(1, 0), QColor(Qt::black));
    QCOMPARE(back.pixelIndex(1, 0), 200);
    QCOMPARE(store.add(back), digest);
    QCOMPARE(ImageStore().add(back), digest);
}

void TestFrameworkImageStore::onlyPixelsMakeADifference()
{
    ImageStore store;
    QImage noted = colourful();
    noted.setText(QStringLiteral("Author"), QStringLiteral("somebody"));
    noted.setDotsPerMeterX(5000);
    noted.setDotsPerMeterY(7000);
    noted.setDevicePixelRatio(2.0);
    noted.setColorSpace(QColorSpace(QColorSpace::AdobeRgb));
    noted.setOffset(QPoint(3, 4));
    QCOMPARE(store.add(noted), store.add(colourful()));
    const QImage back = store.image(store.add(noted));
    QVERIFY(back.textKeys().isEmpty());
    QCOMPARE(back.devicePixelRatio(), 1.0);

    QImage large(40, 40, QImage::Format_RGB888);
    large.fill(QColor(10, 20, 30));
    const QImage wide = large.copy(1, 1, 3, 3);
    QImage narrow(3, 3, QImage::Format_RGB888);
    for (int y = 0; y < 3; ++y)
        memcpy(narrow.scanLine(y), wide.constScanLine(y), 9);
    QCOMPARE(store.add(wide), store.add(narrow));
}

void TestFrameworkImageStore::otherProgramsCanReadThePng()
{
    ImageStore store;
    const QImage premultiplied = colourful().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QByteArray png = store.png(store.add(premultiplied));
    QCOMPARE(QImage::fromData(png, "png"), premultiplied.convertToFormat(QImage::Format_ARGB32));
}

void TestFrameworkImageStore::thePngNamesItsFormatAndDensity()
{
    ImageStore store;
    QImage noted = colourful().convertToFormat(QImage::Format_RGB16);
    noted.setDotsPerMeterX(5000);
    const QImage png = QImage::fromData(store.png(store.add(noted)), "png");
    QCOMPARE(png.text(QStringLiteral("PixelFormat")), QStringLiteral("RGB16"));
    // 96 dots to an inch.
    QCOMPARE(png.dotsPerMeterX(), 3780);
    QCOMPARE(png.dotsPerMeterY(), 3780);
}

void TestFrameworkImageStore::foreignPngsAreTaken()
{
    QImage image = colourful();
    image.setText(QStringLiteral("Title"), QStringLiteral("x"));
    const QImage back = decoded(pngOf(image));
    QCOMPARE(back, colourful());
    QVERIFY(back.textKeys().isEmpty());
}

void TestFrameworkImageStore::whatIsNoPngIsNoPicture()
{
    QVERIFY(decoded("nonsense").isNull());
    QByteArray bmp;
    QBuffer buffer(&bmp);
    QImageWriter(&buffer, "bmp").write(colourful());
    QVERIFY(!bmp.isEmpty());
    QVERIFY(decoded(bmp).isNull());
}

void TestFrameworkImageStore::damagedPngsDoNotHarm()
{
    const Quiet quiet;
    const QByteArray png = pngOf(colourful());
    int nulls = 0;
    for (int at = 0; at < png.size(); ++at) {
        nulls += decoded(png.left(at)).isNull() ? 1 : 0;
        QByteArray damaged = png;
        damaged[at] = char(~damaged[at]);
        const QImage image = decoded(damaged);
        QVERIFY(image.isNull() || image.width() * image.height() < 1 << 24);
    }
    QVERIFY(nulls > png.size() / 2);
}

void TestFrameworkImageStore::aDeclaredSizeMustBePlausible()
{
    const Quiet quiet;
    const QByteArray png = pngOf(solid(Qt::red));
    const qint64 peak = peakOfAddressSpace();
    QVERIFY(peak > 0);
    const QImage huge = decoded(resized(png, 0x7fffffff, 0x7fffffff));
    const QImage large = decoded(resized(png, 30000, 30000));
    const QImage negative = decoded(resized(png, 0xffffffff, 8));
    const QImage same = decoded(resized(png, 8, 8));
    // The second would have taken 3433 MiB before the decoder noticed that its rows are missing.
    QVERIFY(peakOfAddressSpace() < peak + 500);
    QVERIFY(huge.isNull());
    QVERIFY(large.isNull());
    QVERIFY(negative.isNull());
    QCOMPARE(same, solid(Qt::red));

    // A single colour shrinks as far as anything can, and is still taken.
    QImage plain(4200, 4200, QImage::Format_RGB32);
    plain.fill(Qt::white);
    ImageStore store;
    QCOMPARE(store.image(store.add(plain)).size(), QSize(4200, 4200));
}

void TestFrameworkImageStore::aLargePlainPictureComesBack()
{
    // Many more pixels of four bytes than are believed of so small a file.
    QImage plain(4096, 4096, QImage::Format_Mono);
    plain.fill(0);
    // Two million bytes of 0.
    const QByteArray png = pngOf(plain);
    QVERIFY(png.size() < 3200);
    ImageStore store;
    QVERIFY(store.addPng(md5(png), png));
    QCOMPARE(store.image(md5(png)), plain);
}

void TestFrameworkImageStore::aWrongFormatNameIsPassedOver_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("unknown") << QStringLiteral("CMYK");
    QTest::newRow("mono") << QStringLiteral("Mono");
    QTest::newRow("indexed") << QStringLiteral("Indexed8");
}

void TestFrameworkImageStore::aWrongFormatNameIsPassedOver()
{
    QFETCH(QString, name);
    QImage image = colourful();
    image.setText(QStringLiteral("PixelFormat"), name);
    QCOMPARE(decoded(pngOf(image)), colourful());

    QImage manyIndexes = colourful().convertToFormat(QImage::Format_Indexed8);
    const QImage bare = manyIndexes;
    manyIndexes.setText(QStringLiteral("PixelFormat"), name);
    QCOMPARE(decoded(pngOf(manyIndexes)), bare);
}

QTEST_MAIN(TestFrameworkImageStore)
#include "tst_framework_imagestore.moc"
