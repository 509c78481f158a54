#include "flipbook/export/gif/lzwencoder.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

#include <array>

using namespace LzwEncoder;

class TestLzwEncoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aKnownPictureGivesItsKnownCodes();
    void whatIsWrittenIsReadAgain_data();
    void whatIsWrittenIsReadAgain();
    void theShortestStreamIsNoLongerThanAnyOther();
    void freePixelsMakeAStreamShorter();
};

namespace
{

/// Reads codes as the format tells it, slowly: every run is kept as a list of its symbols. Empty
/// for a stream that is not sound to its end.
QVector<int> decoded(const QByteArray &stream, int symbolBits)
{
    const int clear = 1 << symbolBits;
    QVector<QVector<int>> runs;
    QVector<int> symbols;
    QVector<int> last;
    int bits = symbolBits + 1;
    qint64 position = 0;
    bool isBegun = false;
    while (position + bits <= qint64(stream.size()) * 8) {
        int code = 0;
        for (int i = 0; i < bits; ++i, ++position) {
            const int byte = quint8(stream.at(int(position / 8)));
            code |= ((byte >> (position % 8)) & 1) << i;
        }
        if (code == clear) {
            runs.clear();
            for (int i = 0; i < clear + 2; ++i)
                runs.append(QVector<int>{i});
            last.clear();
            bits = symbolBits + 1;
            isBegun = true;
            continue;
        }
        if (!isBegun)
            return {};
        if (code == clear + 1)
            return position > qint64(stream.size() - 1) * 8 ? symbols : QVector<int>();
        QVector<int> run;
        if (code < runs.size())
            run = runs.at(code);
        else if (code == runs.size() && !last.isEmpty())
            run = last + QVector<int>{last.first()};
        else
            return {};
        if (!last.isEmpty() && runs.size() < 4096)
            runs.append(last + QVector<int>{run.first()});
        if (runs.size() == 1 << bits && bits < 12)
            ++bits;
        last = run;
        symbols += run;
    }
    return {};
}

bool fits(const QVector<int> &symbols, const QVector<Choice> &pixels)
{
    if (symbols.size() != pixels.size())
        return false;
    for (int i = 0; i < symbols.size(); ++i) {
        if (symbols.at(i) != pixels.at(i).colour && symbols.at(i) != pixels.at(i).transparent)
            return false;
    }
    return true;
}

/// Pixels that repeat what is above or before them now and then, as those of pictures do. A share
/// of them may be written as transparent, and of these some only so.
QVector<Choice> randomPixels(QRandomGenerator &random, int count, int symbolBits, int freePerCent)
{
    const int symbols = 1 << symbolBits;
    const int row = 1 + random.bounded(60);
    const int noise = 1 + random.bounded(50);
    QVector<Choice> pixels;
    for (int i = 0; i < count; ++i) {
        int colour = random.bounded(symbols);
        if (i >= row && random.bounded(100) >= noise)
            colour = pixels.at(i - row).colour;
        else if (i > 0 && random.bounded(100) >= noise)
            colour = pixels.at(i - 1).colour;
        pixels.append({qint16(qMax(0, colour)), -1});
    }
    for (Choice &choice : pixels) {
        if (random.bounded(100) >= freePerCent)
            continue;
        choice.transparent = qint16(symbols - 1);
        if (random.bounded(4) == 0)
            choice.colour = -1;
    }
    return pixels;
}

constexpr std::array<Preference, 2> preferences = {Preference::Colour, Preference::Transparent};
constexpr std::array<Emptying, 3> emptyings = {Emptying::WhenFull, Emptying::WhenWorse,
                                               Emptying::Never};

} // namespace

void TestLzwEncoder::aKnownPictureGivesItsKnownCodes()
{
    // Four pixels of colour 1: clear (4), 1, the run 1 1 (6) that is learnt by it, 1, end (5),
    // in 3 bits each, and after code 6 was learnt and 7 begun in 3 still; the last ones in 4.
    QVector<Choice> pixels(4, Choice{1, -1});
    const QByteArray codes = encoded(pixels, 2, Preference::Colour, Emptying::WhenFull);
    // Lowest bit first: 100 001 110 | 001 | 0101 as 4, 1, 6, 1, 5.
    QCOMPARE(codes.toHex(), QByteArray("8c53"));
    QCOMPARE(decoded(codes, 2), QVector<int>({1, 1, 1, 1}));
}

void TestLzwEncoder::whatIsWrittenIsReadAgain_data()
{
    QTest::addColumn<int>("symbolBits");
    QTest::addColumn<int>("freePerCent");
    for (const int bits : {2, 3, 5, 8}) {
        for (const int free : {0, 30, 95})
            QTest::addRow("%d bits, %d per cent free", bits, free) << bits << free;
    }
}

void TestLzwEncoder::whatIsWrittenIsReadAgain()
{
    QFETCH(int, symbolBits);
    QFETCH(int, freePerCent);
    QRandomGenerator random(quint32(symbolBits * 1000 + freePerCent));
    for (const int count : {1, 2, 3, 7, 40, 300, 5000, 60000}) {
        for (const Preference preference : preferences) {
            for (const Emptying emptying : emptyings) {
                const auto pixels = randomPixels(random, count, symbolBits, freePerCent);
                const QByteArray stream = encoded(pixels, symbolBits, preference, emptying);
                QVERIFY(fits(decoded(stream, symbolBits), pixels));
            }
        }
    }
}

void TestLzwEncoder::theShortestStreamIsNoLongerThanAnyOther()
{
    QRandomGenerator random(5);
    for (int i = 0; i < 20; ++i) {
        const auto pixels = randomPixels(random, 1 + random.bounded(20000), 4, 10 * (i % 5));
        const QByteArray best = shortest(pixels, 4);
        QVERIFY(fits(decoded(best, 4), pixels));
        for (const Emptying emptying : emptyings)
            QVERIFY(best.size() <= encoded(pixels, 4, Preference::Colour, emptying).size());
    }
}

void TestLzwEncoder::freePixelsMakeAStreamShorter()
{
    // Noise that must be written, or may be left transparent.
    QRandomGenerator random(6);
    QVector<Choice> pixels;
    for (int i = 0; i < 4000; ++i)
        pixels.append({qint16(random.bounded(15)), -1});
    const int whole = shortest(pixels, 4).size();
    for (Choice &choice : pixels)
        choice.transparent = 15;
    QVERIFY(shortest(pixels, 4).size() * 10 < whole);
}

QTEST_GUILESS_MAIN(TestLzwEncoder)
#include "tst_lzwencoder.moc"
