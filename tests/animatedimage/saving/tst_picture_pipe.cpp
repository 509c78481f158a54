#include "animatedimage/core/picturestream.h"

#include <QtCore/QBuffer>
#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtTest/QTest>

#include <algorithm>

namespace
{

/// A device without positions, which cannot tell how many bytes are to come.
class Pipe : public QIODevice
{
public:
    explicit Pipe(const QByteArray &content)
        : m_content(content)
    {
        open(ReadOnly | Unbuffered);
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        const int count = int(qMin(most, qint64(m_content.size())));
        std::copy_n(m_content.constData(), count, data);
        m_content.remove(0, count);
        return count;
    }
    qint64 writeData(const char * /*data*/, qint64 /*count*/) override { return -1; }

private:
    QByteArray m_content;
};

/// A buffer whose position cannot be changed.
class StuckBuffer : public QBuffer
{
public:
    explicit StuckBuffer(const QByteArray &content)
    {
        setData(content);
        open(ReadOnly);
    }

    bool seek(qint64 /*position*/) override { return false; }
};

QByteArray streamed(const QImage &image)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << image;
    return bytes;
}

} // namespace

/// Pictures that are read from a device like a pipe, or from one that is not what it seems.
class TestPicturePipe : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLargePictureIsBelieved();
    void aCompletePictureIsRead();
    void aPictureWithoutItsLastByteIsRefused();
    void withoutADeviceThereIsNoPicture();
    void aBufferThatCannotBeLookedThroughIsRefused();
    void aPictureLargerThanItsBytesCanBeIsRefused();
    void anOldPictureIsReadWhole();
    void aLongChunkThatIsThereIsPassedOver();
};

void TestPicturePipe::aLargePictureIsBelieved()
{
    // One row more than a picture that is believed without any bytes.
    QImage image(4096, 4097, QImage::Format_Mono);
    image.fill(1);
    Pipe pipe(streamed(image));
    QDataStream stream(&pipe);
    QImage read;
    QVERIFY(PictureStream::read(stream, read));
    QCOMPARE(read, image);
}

void TestPicturePipe::aCompletePictureIsRead()
{
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(Qt::red);
    Pipe pipe(streamed(image));
    QDataStream stream(&pipe);
    QImage read;
    QVERIFY(PictureStream::readWhole(stream, read));
    QCOMPARE(stream.status(), QDataStream::Ok);
    QCOMPARE(read, image);
}

void TestPicturePipe::aPictureWithoutItsLastByteIsRefused()
{
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(Qt::red);
    QByteArray bytes = streamed(image);
    bytes.chop(1);
    Pipe pipe(bytes);
    QDataStream stream(&pipe);
    QImage read;
    QVERIFY(!PictureStream::readWhole(stream, read));
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
}

void TestPicturePipe::withoutADeviceThereIsNoPicture()
{
    QDataStream stream;
    QImage read(3, 2, QImage::Format_ARGB32);
    QVERIFY(!PictureStream::readWhole(stream, read));
    QVERIFY(read.isNull());
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
}

void TestPicturePipe::aBufferThatCannotBeLookedThroughIsRefused()
{
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(Qt::red);
    StuckBuffer buffer(streamed(image));
    QDataStream stream(&buffer);
    QImage read;
    QVERIFY(!PictureStream::read(stream, read));
    QVERIFY(read.isNull());
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
}

void TestPicturePipe::aPictureLargerThanItsBytesCanBeIsRefused()
{
    QImage image(20000, 20000, QImage::Format_Mono);
    image.fill(1);
    // 20000 * 20000 pixels need 48450 bytes, of which the marker and the header are 37.
    const QByteArray bytes = streamed(image).left(37 + 1000);
    QDataStream stream(bytes);
    QImage read;
    QVERIFY(!PictureStream::read(stream, read));
    QVERIFY(read.isNull());
    QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
}

void TestPicturePipe::anOldPictureIsReadWhole()
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QDataStream output(&bytes, QIODevice::WriteOnly);
    output.setVersion(1);
    output << image;
    QCOMPARE(bytes.left(2), QByteArray("BM"));
    QDataStream stream(bytes);
    stream.setVersion(1);
    QImage read;
    QVERIFY(PictureStream::readWhole(stream, read));
    QCOMPARE(read, image);
}

void TestPicturePipe::aLongChunkThatIsThereIsPassedOver()
{
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(Qt::red);
    // One byte more than is believed of a chunk that is not there, after the header.
    const int length = 64 * 1024 * 1024 + 1;
    QByteArray chunk(length, 0);
    chunk.prepend(QByteArray::fromHex("04000001") + "teSt");
    chunk.append(QByteArray::fromHex("6ab4b0ff"));
    QByteArray bytes = streamed(image);
    bytes.insert(37, chunk);
    QDataStream stream(bytes);
    // The library takes no more than 8 MB for a chunk that it does not know, and passes it over.
    QTest::ignoreMessage(QtWarningMsg, "libpng warning: teSt: chunk data is too large");
    QImage read;
    QVERIFY(PictureStream::read(stream, read));
    QCOMPARE(read, image);
}

QTEST_GUILESS_MAIN(TestPicturePipe)
#include "tst_picture_pipe.moc"
