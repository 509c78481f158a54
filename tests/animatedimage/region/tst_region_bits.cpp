#include "animatedimage/core/opaquebits.h"

#include <QtTest/QTest>

#include <random>
#include <vector>

namespace
{

using Words = std::vector<quint64>;

constexpr quint64 all = ~quint64(0);
constexpr unsigned firstSeed = 20261121;
constexpr int linesToTry = 6000;

/// The bits as they are defined, pixel by pixel.
Words expectedBits(const OpaqueBits::Line &line)
{
    Words words(size_t(OpaqueBits::wordCount(line.width)), 0);
    for (int x = 0; x < line.width; ++x) {
        const uchar judged = line.bytes[(x + 1) * line.bytesPerPixel - 1];
        if (judged >= line.threshold)
            words[size_t(x / 64)] |= quint64(1) << (x % 64);
    }
    return words;
}

Words bitsOf(const OpaqueBits::Line &line, quint64 guess)
{
    Words words(size_t(OpaqueBits::wordCount(line.width)), guess);
    OpaqueBits::read(line, words.data());
    return words;
}

Words portableBitsOf(const OpaqueBits::Line &line)
{
    Words words(size_t(OpaqueBits::wordCount(line.width)), 0xaaaaaaaaaaaaaaaa);
    OpaqueBits::readPortably(line, words.data());
    return words;
}

/// A line of stretches: each is empty, opaque, on either side of the threshold, or mixed.
std::vector<uchar> randomLine(std::mt19937 &random, int width, int bytesPerPixel, int threshold)
{
    // One byte in front, so that no line begins where vectors like to.
    std::vector<uchar> bytes(size_t(width) * size_t(bytesPerPixel) + 1);
    for (uchar &byte : bytes)
        byte = uchar(random());
    unsigned kind = 0;
    for (int x = 0; x < width; ++x) {
        if (x % 64 == 0 || random() % 50 == 0)
            kind = unsigned(random() % 5);
        const int values[] = {0, 255, threshold - 1, threshold, int(random() % 256)};
        bytes[size_t(x + 1) * size_t(bytesPerPixel)] = uchar(values[kind]);
    }
    return bytes;
}

} // namespace

/// The opaque pixels of a line as bits: by the vectors of the processor, by plain words, and as
/// they are defined.
class TestRegionBits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLineOfFivePixels();
    void aLineLongerThanAWord();
    void aGuessChangesNothing();
    void bothWaysFindTheSameBits_data();
    void bothWaysFindTheSameBits();
};

void TestRegionBits::aLineOfFivePixels()
{
    const uchar bytes[] = {0, 1, 2, 200, 0};
    const Words expected{0b01110};
    QCOMPARE(bitsOf({bytes, 5, 1, 1}, 0), expected);
    QCOMPARE(portableBitsOf({bytes, 5, 1, 1}), expected);
    QCOMPARE(bitsOf({bytes, 5, 1, 2}, 0), Words{0b01100});
    QCOMPARE(portableBitsOf({bytes, 5, 1, 200}), Words{0b01000});
}

void TestRegionBits::aLineLongerThanAWord()
{
    std::vector<uchar> bytes(size_t(66) * 4, 77);
    for (int x = 0; x < 66; ++x)
        bytes[4 * size_t(x) + 3] = x == 64 ? 0 : 255;
    const Words expected{all, 0b10};
    QCOMPARE(bitsOf({bytes.data(), 66, 4, 1}, all), expected);
    QCOMPARE(portableBitsOf({bytes.data(), 66, 4, 1}), expected);
}

void TestRegionBits::aGuessChangesNothing()
{
    std::vector<uchar> bytes(size_t(64) * 4, 0);
    for (const quint64 guess : {quint64(0), all, quint64(5)})
        QCOMPARE(bitsOf({bytes.data(), 64, 4, 1}, guess), Words{0});
    bytes[4 * 17 + 3] = 9;
    for (const quint64 guess : {quint64(0), all, quint64(5)}) {
        QCOMPARE(bitsOf({bytes.data(), 64, 4, 9}, guess), Words{quint64(1) << 17});
        QCOMPARE(bitsOf({bytes.data(), 64, 4, 10}, guess), Words{0});
    }
}

void TestRegionBits::bothWaysFindTheSameBits_data()
{
    QTest::addColumn<int>("bytesPerPixel");
    QTest::newRow("one byte a pixel") << 1;
    QTest::newRow("four bytes a pixel") << 4;
}

void TestRegionBits::bothWaysFindTheSameBits()
{
    QFETCH(int, bytesPerPixel);
    for (int i = 0; i < linesToTry; ++i) {
        const unsigned seed = firstSeed + unsigned(i);
        std::mt19937 random(seed);
        const int width = 1 + int(random() % (i % 3 == 0 ? 70 : 400));
        const int threshold = i % 2 == 0 ? 1 : 1 + int(random() % 255);
        const std::vector<uchar> bytes = randomLine(random, width, bytesPerPixel, threshold);
        const OpaqueBits::Line line{bytes.data() + 1, width, bytesPerPixel, threshold};
        const Words expected = expectedBits(line);
        const auto why = [&] {
            return QStringLiteral("seed %1, width %2, threshold %3")
                .arg(seed)
                .arg(width)
                .arg(threshold)
                .toLatin1();
        };
        QVERIFY2(portableBitsOf(line) == expected, why().constData());
        for (const quint64 guess : {quint64(0), all})
            QVERIFY2(bitsOf(line, guess) == expected, why().constData());
    }
}

QTEST_GUILESS_MAIN(TestRegionBits)
#include "tst_region_bits.moc"
