#include "animatedimage/core/picturestream.h"

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

QByteArray streamed(const QImage &image)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << image;
    return bytes;
}

} // namespace

/// Pictures that are read from a device like a pipe.
class TestPicturePipe : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLargePictureIsBelieved();
    void aCompletePictureIsRead();
    void aPictureWithoutItsLastByteIsRefused();
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

QTEST_GUILESS_MAIN(TestPicturePipe)
#include "tst_picture_pipe.moc"
