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
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<bool>("isBelieved");
    const auto row = [](const char *name, QSize size, qint64 bytes, bool isBelieved) {
        QTest::newRow(name) << size << bytes << isBelieved;
    };
    row("64 MiB from nothing", {4096, 4096}, 0, true);
    row("one row more from nothing", {4096, 4097}, 0, false);
    row("one pixel more from nothing", {16777217, 1}, 0, false);
    // 4096 * 4097 * 4 bytes are 2032.6 times 1032 * 32.
    row("one row more from enough", {4096, 4097}, 2032, true);
    row("one row more from one byte less", {4096, 4097}, 2031, false);
    // 100000 * 100000 * 4 bytes are 1211240.3 times 1032 * 32.
    row("a large one from enough", {100000, 100000}, 1211240, true);
    row("a large one from one byte less", {100000, 100000}, 1211239, false);
    constexpr int longest = std::numeric_limits<int>::max();
    row("the largest", {longest, longest}, qint64(1) << 40, false);
}

void TestPictureSize::aSizeIsBelievedUpToTheBestCompression()
{
    QFETCH(QSize, size);
    QFETCH(qint64, bytes);
    QTEST(PictureStream::isJustified(size, bytes), "isBelieved");
}

QTEST_APPLESS_MAIN(TestPictureSize)
#include "tst_picture_size.moc"
