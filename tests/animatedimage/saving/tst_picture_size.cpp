#include "animatedimage/core/picturestream.h"

#include <QtTest/QTest>

/// Which claimed sizes of pictures are believed. Memory that is set aside and not touched does not
/// show in a process, so the decision itself is tested.
class TestPictureSize : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSizeIsBelievedUpToTheBestCompression_data();
    void aSizeIsBelievedUpToTheBestCompression();
};

void TestPictureSize::aSizeIsBelievedUpToTheBestCompression_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("bits");
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<bool>("isBelieved");
    const auto row = [](const char *name, QSize size, int bits, qint64 bytes, bool isBelieved) {
        QTest::newRow(name) << size << bits << bytes << isBelieved;
    };
    row("8 MiB from nothing", {2048, 1024}, 32, 0, true);
    row("one row more from nothing", {2048, 1025}, 32, 0, false);
    row("one pixel more from nothing", {2097153, 1}, 32, 0, false);
    row("8 MiB of wide pixels from nothing", {1024, 1024}, 64, 0, true);
    row("one row more of wide pixels from nothing", {1024, 1025}, 64, 0, false);
    row("8 MiB of bits from nothing", {8192, 8192}, 1, 0, true);
    row("one row more of bits from nothing", {8192, 8193}, 1, 0, false);
    // The row takes 8192 bytes, which are 1.98 times 1032 * 4.
    row("one row more from enough", {2048, 1025}, 32, 2, true);
    row("one row more from one byte less", {2048, 1025}, 32, 1, false);
    // 100000 * 100000 * 4 - 8388608 bytes are 9687890.4 times 1032 * 4.
    row("a large one from enough", {100000, 100000}, 32, 9687891, true);
    row("a large one from one byte less", {100000, 100000}, 32, 9687890, false);
    constexpr int longest = std::numeric_limits<int>::max();
    row("the largest", {longest, longest}, 64, qint64(1) << 40, false);
}

void TestPictureSize::aSizeIsBelievedUpToTheBestCompression()
{
    QFETCH(QSize, size);
    QFETCH(int, bits);
    QFETCH(qint64, bytes);
    QTEST(PictureStream::isJustified(size, bits, bytes), "isBelieved");
}

QTEST_APPLESS_MAIN(TestPictureSize)
#include "tst_picture_size.moc"
