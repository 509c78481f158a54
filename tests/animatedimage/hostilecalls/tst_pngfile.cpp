#include "animatedimage/core/pngfile.h"
#include "tests/animatedimage/hostilecalls/pngbuilder.h"
#include "tests/support/quiet.h"

#include <QtCore/QBuffer>
#include <QtCore/QRandomGenerator>
#include <QtGui/QImageReader>
#include <QtTest/QTest>

/// Which PNG files are refused before they are decoded, and where the device is then.
class TestPngFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pixelsAreBelievedUpToTheBestCompression_data();
    void pixelsAreBelievedUpToTheBestCompression();
    void aFileWithoutItsEndIsIncomplete();
    void aFileWithoutItsLastCheckSumIsComplete();
    void otherBytesAreLeftToTheLibrary();
    void aFileAfterOtherBytesIsFound();
    void aDeviceThatFailsOnTheWayIsRefused();
    void nothingIsRefusedThatTheLibraryReads();
};

namespace
{

using namespace PngBuilder;

QByteArray pixels(int bytes)
{
    return chunk("IDAT", QByteArray(bytes, '\0'));
}

QByteArray end()
{
    return chunk("IEND", QByteArray());
}

struct Answer {
    bool isComplete;
    qint64 position;
};

Answer answerFor(const QByteArray &file, int begin = 0)
{
    QByteArray bytes = file;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    buffer.seek(begin);
    const bool isComplete = PngFile::isComplete(buffer);
    return {isComplete, buffer.pos()};
}

/// A buffer that can be read, or moved to a position, only so many times.
class FailingBuffer : public QBuffer
{
public:
    FailingBuffer(const QByteArray &content, int reads, int seeks)
        : m_reads(reads)
        , m_seeks(seeks)
    {
        setData(content);
        open(ReadOnly);
    }

    bool seek(qint64 position) override { return m_seeks-- > 0 && QBuffer::seek(position); }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        return m_reads-- > 0 ? QBuffer::readData(data, most) : -1;
    }

private:
    int m_reads;
    int m_seeks;
};

/// A file with all its pixels, of some size and kind, as small as deflate makes it.
QByteArray wholeFile(QRandomGenerator &random)
{
    constexpr struct {
        int depth;
        int kind;
        int channels;
    } kinds[] = {{1, 0, 1}, {2, 0, 1}, {4, 0, 1}, {8, 0, 1}, {16, 0, 1}, {8, 2, 3}, {16, 2, 3},
                 {1, 3, 1}, {2, 3, 1}, {8, 3, 1}, {8, 4, 2}, {16, 4, 2}, {8, 6, 4}, {16, 6, 4}};
    const auto kind = kinds[random.bounded(int(std::size(kinds)))];
    const int most = random.bounded(8) == 0 ? 300 : 40;
    const int width = random.bounded(1, most);
    const int height = random.bounded(1, most);
    const int rowBytes = 1 + (width * kind.depth * kind.channels + 7) / 8;
    QByteArray raw(rowBytes * height, '\0');
    if (random.bounded(2) == 0) {
        for (int i = 0; i < raw.size(); ++i) {
            if (i % rowBytes != 0)
                raw[i] = char(random.bounded(4));
        }
    }
    const QByteArray data = deflated(raw);
    const int cut = random.bounded(data.size());
    QByteArray file = signature() + header(quint32(width), quint32(height), kind.depth, kind.kind);
    if (kind.kind == 3)
        file += chunk("PLTE", QByteArray(768 >> (8 - kind.depth), '\x40'));
    if (random.bounded(3) == 0)
        file += compressedText(random.bounded(3000));
    return file + chunk("IDAT", data.left(cut)) + chunk("IDAT", data.mid(cut)) + end();
}

/// What may befall a file on its way.
QByteArray damaged(QByteArray file, QRandomGenerator &random)
{
    switch (random.bounded(4)) {
    case 0:
        return file.left(random.bounded(file.size()));
    case 1: {
        // The library takes long for sides of many thousand pixels.
        constexpr int heightLow = 23;
        const int at = random.bounded(heightLow, file.size());
        file[at] = char(random.bounded(256));
        return file;
    }
    case 2: {
        const int at = file.indexOf("IDAT") - 4;
        const int next = file.indexOf("IDAT", at + 8) - 4;
        return file.remove(at, next - at);
    }
    default:
        return file;
    }
}

} // namespace

void TestPngFile::pixelsAreBelievedUpToTheBestCompression_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<int>("least");
    const auto row = [](const char *name, const QByteArray &header, int least) {
        QTest::newRow(name) << header << least;
    };
    // 4096 * 4097 bits are 2097664 bytes, which are 2032.6 times 1032.
    row("bits", header(4096, 4097, 1, 0), 2033);
    row("bits that are interlaced", header(4096, 4097, 1, 0, true), 2033);
    row("indexes of four bits", header(2064, 1000, 4, 3), 1000);
    row("grey", header(1032, 1000, 8, 0), 1000);
    row("grey with alpha", header(516, 1000, 8, 4), 1000);
    row("colours", header(344, 1000, 8, 2), 1000);
    row("colours with alpha", header(258, 1000, 8, 6), 1000);
    row("wide colours with alpha", header(129, 1000, 16, 6), 1000);
}

void TestPngFile::pixelsAreBelievedUpToTheBestCompression()
{
    QFETCH(QByteArray, header);
    QFETCH(int, least);
    const QByteArray begin = signature() + header;
    QVERIFY(answerFor(begin + pixels(least) + end()).isComplete);
    QVERIFY(answerFor(begin + pixels(least - 10) + pixels(10) + end()).isComplete);
    const QByteArray few = begin + pixels(least - 1);
    const Answer refused = answerFor(few + end() + "what follows");
    QVERIFY(!refused.isComplete);
    // After the length and the type of the chunk that follows the pixels.
    QCOMPARE(refused.position, qint64(few.size() + 8));
}

void TestPngFile::aFileWithoutItsEndIsIncomplete()
{
    const QByteArray text = compressedText(1000);
    const QByteArray begin = signature() + header(1, 1, 8, 6);
    const QList<QByteArray> files{begin,
                                  begin + text,
                                  begin + text + pixels(20),
                                  begin + text + pixels(20) + end().left(7),
                                  begin + chunk("tEXt", "Comment", 60 << 20) + pixels(20) + end(),
                                  begin + pixels(20) + chunk("tEXt", "a", 0xffffffff)};
    for (const QByteArray &file : files) {
        const Answer answer = answerFor(file);
        QVERIFY(!answer.isComplete);
        QCOMPARE(answer.position, qint64(file.size()));
    }
}

void TestPngFile::aFileWithoutItsLastCheckSumIsComplete()
{
    const QByteArray file = signature() + header(1, 1, 8, 6) + pixels(20) + end();
    for (int missing = 0; missing <= 4; ++missing) {
        const Answer answer = answerFor(file.left(file.size() - missing));
        QVERIFY(answer.isComplete);
        QCOMPARE(answer.position, qint64(0));
    }
}

void TestPngFile::otherBytesAreLeftToTheLibrary()
{
    for (const QByteArray &bytes : {QByteArray(), QByteArray("BM"), QByteArray(100, '\0'),
                                    signature(), signature() + chunk("tEXt", QByteArray(100, 'a')),
                                    (signature() + header(1, 1, 8, 6)).left(25)}) {
        const Answer answer = answerFor(bytes);
        QVERIFY(answer.isComplete);
        QCOMPARE(answer.position, qint64(0));
    }
}

void TestPngFile::aFileAfterOtherBytesIsFound()
{
    const QByteArray whole = signature() + header(1, 1, 8, 6) + pixels(20) + end();
    const Answer found = answerFor("before" + whole, 6);
    QVERIFY(found.isComplete);
    QCOMPARE(found.position, qint64(6));
    const QByteArray none = signature() + header(1, 1, 8, 6) + end();
    const Answer refused = answerFor("before" + none + "after", 6);
    QVERIFY(!refused.isComplete);
    QCOMPARE(refused.position, qint64(6 + none.size() - 4));
}

void TestPngFile::aDeviceThatFailsOnTheWayIsRefused()
{
    const QByteArray file = signature() + header(1, 1, 8, 6) + pixels(20) + end();
    constexpr int enough = 20;
    FailingBuffer sound(file, enough, enough);
    QVERIFY(PngFile::isComplete(sound));
    // To each of three chunks, to the one after the pixels, and back to the beginning.
    for (int seeks = 0; seeks < 5; ++seeks) {
        FailingBuffer stuck(file, enough, seeks);
        QVERIFY2(!PngFile::isComplete(stuck), qPrintable(QString::number(seeks)));
    }
    // The beginning of each of three chunks.
    for (int reads = 0; reads < 3; ++reads) {
        FailingBuffer broken(file, reads, enough);
        QVERIFY2(!PngFile::isComplete(broken), qPrintable(QString::number(reads)));
    }
}

void TestPngFile::nothingIsRefusedThatTheLibraryReads()
{
    const Quiet quiet;
    QRandomGenerator random(1);
    int refused = 0;
    int read = 0;
    for (int i = 0; i < 600; ++i) {
        QByteArray bytes = damaged(wholeFile(random), random);
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        const bool isRead = !QImageReader(&buffer, "png").read().isNull();
        const bool isComplete = answerFor(bytes).isComplete;
        QVERIFY2(isComplete || !isRead, bytes.toHex());
        refused += isComplete ? 0 : 1;
        read += isRead ? 1 : 0;
    }
    // A quarter is cut, and a quarter loses some of its pixels.
    QVERIFY2(refused > 100, qPrintable(QString::number(refused)));
    QVERIFY2(read > 140, qPrintable(QString::number(read)));
}

QTEST_GUILESS_MAIN(TestPngFile)
#include "tst_pngfile.moc"
