#include "flipbook/import/lzwwalk.h"
#include "tests/flipbook/slowlzwwalk.h"

#include <QtTest/QTest>

#include <random>
#include <vector>

namespace
{

constexpr unsigned firstSeed = 20261122;
constexpr int dataToTry = 3000;
constexpr qint64 endless = qint64(1) << 40;

using Bytes = std::vector<uchar>;

/// Codes as the bits of a picture's data: valid ones of a growing size, so that a walk goes far,
/// with a wrong one now and then.
class CodeWriter
{
public:
    CodeWriter(std::mt19937 &random, int minimumCodeSize)
        : m_random(random)
        , m_minimumCodeSize(minimumCodeSize)
    {
        restart();
    }

    Bytes randomCodes(int count)
    {
        for (int i = 0; i < count; ++i) {
            const unsigned kind = unsigned(m_random() % 1000);
            if (kind == 0)
                put(int(m_random() % (1u << m_codeSize)));
            else if (kind < 3)
                put(1 << m_minimumCodeSize);
            else
                put(valid());
        }
        m_bytes.push_back(uchar(m_bits));
        return m_bytes;
    }

private:
    void restart()
    {
        m_codeSize = m_minimumCodeSize + 1;
        m_nextCode = (1 << m_minimumCodeSize) + 2;
        m_isFirst = true;
    }

    /// A pixel, a code that is known, or the one that is about to be.
    int valid()
    {
        const int clearCode = 1 << m_minimumCodeSize;
        const int pixel = int(m_random() % unsigned(clearCode));
        if (m_isFirst || m_random() % 3 == 0)
            return pixel;
        const int known = m_nextCode - clearCode - 1;
        const int code = clearCode + 2 + int(m_random() % unsigned(known));
        return code > 4095 ? pixel : code;
    }

    void put(int code)
    {
        m_bits |= quint64(code) << m_bitCount;
        m_bitCount += m_codeSize;
        for (; m_bitCount >= 8; m_bitCount -= 8, m_bits >>= 8)
            m_bytes.push_back(uchar(m_bits));
        if (code == 1 << m_minimumCodeSize) {
            restart();
            return;
        }
        const bool isEntered = !m_isFirst && m_nextCode < 4096;
        m_isFirst = false;
        if (!isEntered)
            return;
        ++m_nextCode;
        if (m_nextCode == 1 << m_codeSize && m_codeSize < 12)
            ++m_codeSize;
    }

    std::mt19937 &m_random;
    const int m_minimumCodeSize;
    int m_codeSize = 0;
    int m_nextCode = 0;
    bool m_isFirst = true;
    quint64 m_bits = 0;
    int m_bitCount = 0;
    Bytes m_bytes;
};

Bytes randomBytes(std::mt19937 &random, int count)
{
    Bytes bytes(size_t(count), 0);
    for (uchar &byte : bytes)
        byte = uchar(random());
    return bytes;
}

} // namespace

/// Walking through picture data: fast, and as it is easiest to read.
class TestLzwWalk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fourPixelsOfTwoBits();
    void randomDataAreWalkedThroughAlike();
};

void TestLzwWalk::fourPixelsOfTwoBits()
{
    // From the lowest bit: clear (100), pixel 1 (001), the newest code (110), which is two pixels,
    // pixel 2 (010), and with one bit more, end (0101).
    const uchar bytes[] = {0x8c, 0x55};
    LzwWalk walk(2, 100);
    walk.feed(bytes, 2);
    QCOMPARE(walk.pixels(), 4);
    QVERIFY(walk.hasPixelCode());
    QVERIFY(!walk.isDamaged());
}

void TestLzwWalk::randomDataAreWalkedThroughAlike()
{
    qint64 most = 0;
    int damaged = 0;
    for (unsigned seed = firstSeed; seed < firstSeed + dataToTry; ++seed) {
        std::mt19937 random(seed);
        const int codeSize = int(random() % 13);
        const Bytes data = random() % 5 == 0
                               ? randomBytes(random, int(random() % 400))
                               : CodeWriter(random, codeSize).randomCodes(int(random() % 9000));
        const qint64 wanted = random() % 2 ? endless : qint64(random() % 20000);
        LzwWalk fast(codeSize, wanted);
        SlowLzwWalk slow(codeSize, wanted);
        for (size_t at = 0; at < data.size();) {
            const int count = int(std::min(data.size() - at, size_t(random() % 256)));
            fast.feed(data.data() + at, count);
            slow.feed(data.data() + at, count);
            at += size_t(count);
            QVERIFY2(fast.pixels() == slow.pixels() && fast.isDamaged() == slow.isDamaged() &&
                         fast.hasPixelCode() == slow.hasPixelCode(),
                     qPrintable(QStringLiteral("seed %1, code size %2, at byte %3")
                                    .arg(seed)
                                    .arg(codeSize)
                                    .arg(at)));
        }
        most = std::max(most, fast.pixels());
        damaged += fast.isDamaged() ? 1 : 0;
    }
    // Both kinds of data were among them.
    QVERIFY(most > 10000);
    QVERIFY(damaged > 100 && damaged < dataToTry - 100);
}

QTEST_GUILESS_MAIN(TestLzwWalk)
#include "tst_lzwwalk.moc"
