#include "animatedimage/core/picturestream.h"
#include "tests/support/pictures.h"

#include <QtCore/QDataStream>
#include <QtTest/QTest>

namespace
{

struct Result {
    QList<QImage> images;
    QDataStream::Status status;
    qint64 position;
};

Result readByUs(const QByteArray &bytes, QDataStream::Status before = QDataStream::Ok)
{
    QDataStream stream(bytes);
    stream.setStatus(before);
    const QList<QImage> images = PictureStream::readList(stream);
    return {images, stream.status(), stream.device()->pos()};
}

Result readByQt(const QByteArray &bytes, QDataStream::Status before = QDataStream::Ok)
{
    QDataStream stream(bytes);
    stream.setStatus(before);
    QList<QImage> images;
    stream >> images;
    return {images, stream.status(), stream.device()->pos()};
}

QByteArray streamed(const QList<QImage> &images)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << images;
    return bytes;
}

QList<QImage> threePictures()
{
    return {Pictures::solid(3, 2, Qt::red), QImage(),
            Pictures::solid(2, 2, Qt::green, QImage::Format_RGB32)};
}

} // namespace

/// The reader of inline pictures, compared with Qt's own.
class TestFormPictureList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wholeListsAreReadAsQtReadsThem()
    {
        const QByteArray bytes = streamed(threePictures()) + "beyond";
        const Result ours = readByUs(bytes);
        QCOMPARE(ours.images.size(), 3);
        QCOMPARE(ours.images.at(0), Pictures::solid(3, 2, Qt::red));
        QVERIFY(ours.images.at(1).isNull());
        QCOMPARE(ours.images, readByQt(bytes).images);
        QCOMPARE(ours.position, qint64(bytes.size() - 6));
        QCOMPARE(ours.position, readByQt(bytes).position);
        QCOMPARE(ours.status, QDataStream::Ok);
    }

    void listsCutShortAreReadAsQtReadsThem()
    {
        const QByteArray bytes = streamed(threePictures());
        for (int length = 0; length < bytes.size(); ++length) {
            const Result ours = readByUs(bytes.left(length));
            const Result theirs = readByQt(bytes.left(length));
            QVERIFY2(ours.images == theirs.images, qPrintable(QString::number(length)));
            QVERIFY2(ours.status == theirs.status, qPrintable(QString::number(length)));
        }
        QCOMPARE(readByUs(bytes.left(bytes.size() - 20)).images, QList<QImage>());
    }

    void aStatusThatWasBadBeforeIsPutBack()
    {
        const QByteArray bytes = streamed(threePictures());
        const Result ours = readByUs(bytes, QDataStream::ReadCorruptData);
        QCOMPARE(ours.images.size(), 3);
        QCOMPARE(ours.status, QDataStream::ReadCorruptData);
        QCOMPARE(readByQt(bytes, QDataStream::ReadCorruptData).status, ours.status);
        QCOMPARE(readByUs(bytes.left(20), QDataStream::ReadCorruptData).status,
                 QDataStream::ReadCorruptData);
    }

    void aCountBeyondMeasureIsNotBelieved()
    {
        const Result ours = readByUs(QByteArray::fromHex("ffffffff"));
        QVERIFY(ours.images.isEmpty());
        QVERIFY(ours.status != QDataStream::Ok);
    }

    void aCountThatNullPicturesFollowEndsWithTheBytes()
    {
        const Result ours = readByUs(QByteArray::fromHex("ffffffff") + QByteArray(4000, '\0'));
        QVERIFY(ours.images.isEmpty());
    }

    void nullPicturesOfOldVersionsHaveNoBytes_data()
    {
        QTest::addColumn<int>("version");
        for (const int version : {1, 2, 3, 4, 5})
            QTest::addRow("version %d", version) << version;
    }

    void nullPicturesOfOldVersionsHaveNoBytes()
    {
        QFETCH(int, version);
        for (const QList<QImage> &images :
             {QList<QImage>{QImage()}, threePictures(), QList<QImage>{QImage(), QImage()}}) {
            QByteArray bytes;
            QDataStream out(&bytes, QIODevice::WriteOnly);
            out.setVersion(version);
            out << images << qint32(77);

            QDataStream in(bytes);
            in.setVersion(version);
            const QList<QImage> read = PictureStream::readList(in);
            // Qt's reader takes the picture after a null one for that one.
            QDataStream inByQt(bytes);
            inByQt.setVersion(version);
            QList<QImage> readByQt;
            inByQt >> readByQt;
            QCOMPARE(read.size(), images.size());
            QCOMPARE(read, readByQt);
            qint32 next = 0;
            in >> next;
            QCOMPARE(next, 77);
            QCOMPARE(in.status(), QDataStream::Ok);
        }
    }

    void aPictureCutShortIsDamageInEachVersion_data()
    {
        QTest::addColumn<int>("version");
        for (const int version : {2, 4, 5})
            QTest::addRow("version %d", version) << version;
    }

    void aPictureCutShortIsDamageInEachVersion()
    {
        QFETCH(int, version);
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setVersion(version);
        out << Pictures::solid(3, 2, Qt::red);
        // With nothing of it left it would be a null picture.
        for (int length = 1; length < bytes.size(); ++length) {
            QDataStream in(bytes.left(length));
            in.setVersion(version);
            QImage image;
            QVERIFY2(!PictureStream::readWhole(in, image), qPrintable(QString::number(length)));
        }
    }

    void endlessNullPicturesOfOldVersionsAreDamage()
    {
        QDataStream stream(QByteArray::fromHex("ffffffff"));
        stream.setVersion(4);
        QVERIFY(PictureStream::readList(stream).isEmpty());
        QVERIFY(stream.status() != QDataStream::Ok);

        QDataStream many(QByteArray::fromHex("00010000"));
        many.setVersion(4);
        QCOMPARE(PictureStream::readList(many).size(), 65536);
        QCOMPARE(many.status(), QDataStream::Ok);
    }

    void aPictureThatItsBytesCannotHoldIsNotRead()
    {
        // 30000 x 30000 pixels, 3.6 GB, in a file of a few dozen bytes; its checksum is right.
        QByteArray png = QByteArray::fromHex("89504e470d0a1a0a"
                                             "0000000d49484452"
                                             "0000753000007530"
                                             "0806000000");
        png += QByteArray::fromHex("6627f8ba");
        const Result ours = readByUs(QByteArray::fromHex("00000001"
                                                         "00000001") +
                                     png);
        QVERIFY(ours.images.isEmpty());
        QVERIFY(ours.status != QDataStream::Ok);
    }

    void largePicturesOfOneColorAreRead_data()
    {
        QTest::addColumn<QImage>("picture");
        // Each takes more memory than its size alone would be granted.
        const auto row = [](const char *name, int side, QImage::Format format) {
            QImage picture(side, side, format);
            picture.fill(0);
            QTest::newRow(name) << picture;
        };
        row("of bits", 9000, QImage::Format_Mono);
        row("of grey", 3000, QImage::Format_Grayscale8);
        row("of colours", 1500, QImage::Format_ARGB32);
        row("of wide colours", 1100, QImage::Format_RGBA64);
    }

    void largePicturesOfOneColorAreRead()
    {
        QFETCH(QImage, picture);
        const Result ours = readByUs(streamed({picture}));
        QCOMPARE(ours.status, QDataStream::Ok);
        QCOMPARE(ours.images.size(), 1);
        QVERIFY(ours.images.constFirst() == picture);
    }

    void withoutADeviceThereIsNothing()
    {
        QDataStream stream;
        QCOMPARE(PictureStream::readList(stream), QList<QImage>());
        QImage image = Pictures::solid(1, 1, Qt::red);
        QVERIFY(!PictureStream::read(stream, image));
        QVERIFY(image.isNull());
    }
};

QTEST_MAIN(TestFormPictureList)
#include "tst_form_picturelist.moc"
