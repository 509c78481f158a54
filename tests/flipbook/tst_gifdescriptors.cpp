#include "flipbook/import/gifdescriptors.h"
#include "tests/support/gifbuilder.h"

#include <QtCore/QBuffer>
#include <QtGui/QImage>
#include <QtTest/QTest>

namespace
{

GifDescriptors read(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return readGifDescriptors(buffer);
}

// The screen, 2 x 1, and a palette of two colours: 19 bytes.
QByteArray head()
{
    return QByteArray::fromHex("474946383961"
                               "0200"
                               "0100"
                               "800000"
                               "000000ffffff");
}

// A frame of 2 x 1 pixels with this code size and these data: 10 bytes, then code size and data.
QByteArray frame(const char *codeSizeAndData)
{
    return QByteArray::fromHex("2c"
                               "0000000002000100"
                               "00") +
           QByteArray::fromHex(codeSizeAndData);
}

// Codes of three bits: clear 4, pixel 1, pixel 1, end 5, which is 100 001 001 101 from low to high.
const char soundData[] = "02"
                         "02"
                         "4c0a"
                         "00";

} // namespace

Q_DECLARE_METATYPE(GifBuilder::Frame)

class TestGifDescriptors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWholeFileEndsAtItsTrailer();
    void aFileCutAtAnyByteTellsHowManyFramesAreWhole();
    void delaysAreTakenAsPlayersTakeThem();
    void theLoopExtensionGivesTheRepetitions_data();
    void theLoopExtensionGivesTheRepetitions();
    void aScreenWithoutSizeIsTheFirstFrame();
    void otherBytesAreNoGif_data();
    void otherBytesAreNoGif();
    void damagedFramesAreNamed_data();
    void damagedFramesAreNamed();
    void aFrameWithoutASizeMayShowPixelsAllTheSame();
    void unusualCodeSizesAreReadAsDecodersReadThem_data();
    void unusualCodeSizesAreReadAsDecodersReadThem();
    void usualCodeSizesAreNotRemarkedOn();
    void aScreenThatADecoderLeavesUnsetIsNoticed_data();
    void aScreenThatADecoderLeavesUnsetIsNoticed();
    void blocksAfterAControlWithoutContentAreFound();
    void dataBehindTheEndOfAPictureDoNoHarm();
    void onlyTheFirstDamagesAreKept();
    void anUnknownBlockEndsTheReading();
    void endlessEmptyBlocksEndAtOnce();
    void disposalTellsWhatADecoderMustKeep();
};

void TestGifDescriptors::aWholeFileEndsAtItsTrailer()
{
    const GifDescriptors gif = read(head() + frame(soundData) + ';' + "after");
    QVERIFY(gif.hasSignature);
    QVERIFY(gif.hasScreen);
    QCOMPARE(gif.screen, QSize(2, 1));
    QCOMPARE(gif.frames, 1);
    QCOMPARE(gif.wholeFrames, 1);
    QCOMPARE(gif.damagedFrames, 0);
    QCOMPARE(gif.ending, GifEnding::Trailer);
    QCOMPARE(gif.endOffset, 35);
}

void TestGifDescriptors::aFileCutAtAnyByteTellsHowManyFramesAreWhole()
{
    // 25 bytes of screen and palette; each frame has 8 of control, 10 of descriptor, 1 of code
    // size and 4 of data.
    const QByteArray whole = GifBuilder(2, 1).add(0, 10).add(1, 10).data();
    QCOMPARE(whole.size(), 72);
    for (int length = 0; length <= whole.size(); ++length) {
        const GifDescriptors gif = read(whole.left(length));
        QCOMPARE(gif.hasSignature, length >= 6);
        QCOMPARE(gif.hasScreen, length >= 13);
        QCOMPARE(gif.frames, length < 34 ? 0 : length < 57 ? 1 : 2);
        QCOMPARE(gif.wholeFrames, length < 48 ? 0 : length < 71 ? 1 : 2);
        QCOMPARE(gif.damagedFrames, 0);
        QCOMPARE(gif.ending, length == 72 ? GifEnding::Trailer : GifEnding::CutShort);
        QCOMPARE(gif.endOffset, length);
    }
}

void TestGifDescriptors::delaysAreTakenAsPlayersTakeThem()
{
    const GifDescriptors gif = read(GifBuilder(2, 1).add(0, 1).add(1, 2).add(2, 30).data());
    QCOMPARE(gif.shortestDelay, 20);
    QCOMPARE(gif.longestDelay, 300);

    const GifDescriptors without = read(head() + frame(soundData) + ';');
    QCOMPARE(without.shortestDelay, 100);
    QCOMPARE(without.longestDelay, 100);
}

void TestGifDescriptors::theLoopExtensionGivesTheRepetitions_data()
{
    QTest::addColumn<int>("loop");
    QTest::newRow("forever") << 0;
    QTest::newRow("three") << 3;
    QTest::newRow("most") << 65535;
}

void TestGifDescriptors::theLoopExtensionGivesTheRepetitions()
{
    QFETCH(int, loop);
    const GifDescriptors with = read(GifBuilder(2, 1).loop(loop).add(0, 10).data());
    QVERIFY(with.repetitions.has_value());
    QCOMPARE(*with.repetitions, loop);
    QVERIFY(!read(GifBuilder(2, 1).add(0, 10).data()).repetitions.has_value());
}

void TestGifDescriptors::aScreenWithoutSizeIsTheFirstFrame()
{
    GifBuilder builder(0, 0);
    builder.add({QRect(3, 4, 10, 20), 0});
    builder.add({QRect(0, 0, 50, 60), 1});
    QCOMPARE(read(builder.data()).screen, QSize(13, 24));
}

void TestGifDescriptors::otherBytesAreNoGif_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("hello, world, how are you?");
    QTest::newRow("another version") << QByteArray("GIF90a\1\0\1\0\0\0\0;");
    QTest::newRow("a PNG") << QByteArray("\x89PNG\r\n\x1a\n");
}

void TestGifDescriptors::otherBytesAreNoGif()
{
    QFETCH(QByteArray, bytes);
    const GifDescriptors gif = read(bytes);
    QVERIFY(!gif.hasSignature);
    QCOMPARE(gif.frames, 0);
}

void TestGifDescriptors::damagedFramesAreNamed_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("what");
    QTest::addColumn<bool>("pixelsFound");
    QTest::newRow("a code size of thirteen")
        << QByteArray("0d0100"
                      "00")
        << QStringLiteral("its code size 13 is out of range") << false;
    QTest::newRow("no data for a code size of zero")
        << QByteArray("0000") << QStringLiteral("its picture ends early") << false;
    QTest::newRow("no data") << QByteArray("0200") << QStringLiteral("its picture ends early")
                             << false;
    // Clear, one pixel, end: 100 001 101 and nothing more.
    QTest::newRow("one pixel missing")
        << QByteArray("02024c0100") << QStringLiteral("its picture ends early") << true;
    // Clear, then code 7, which nothing has defined. Decoders draw a pixel for it.
    QTest::newRow("an undefined code")
        << QByteArray("02013c00") << QStringLiteral("its picture data are invalid") << true;
    // Clear and end.
    QTest::newRow("no pixel code")
        << QByteArray("02012c00") << QStringLiteral("its picture ends early") << false;
}

void TestGifDescriptors::damagedFramesAreNamed()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, what);
    QFETCH(bool, pixelsFound);
    const GifDescriptors gif =
        read(head() + frame(soundData) + frame(data.constData()) + frame(soundData) + ';');
    QCOMPARE(gif.frames, 3);
    QCOMPARE(gif.wholeFrames, 2);
    QCOMPARE(gif.damagedFrames, 1);
    QCOMPARE(gif.damages.size(), 1);
    QCOMPARE(gif.damages.first().frame, 2);
    QCOMPARE(gif.damages.first().what, what);
    QCOMPARE(gif.ending, GifEnding::Trailer);
    QCOMPARE(read(head() + frame(data.constData()) + ';').pixelsFound, pixelsFound);
}

void TestGifDescriptors::aFrameWithoutASizeMayShowPixelsAllTheSame()
{
    const QByteArray sizeless =
        QByteArray::fromHex("2c000000000000010000") + QByteArray::fromHex(soundData);
    const GifDescriptors gif = read(head() + sizeless + ';');
    QCOMPARE(gif.damages.size(), 1);
    QCOMPARE(gif.damages.first().what, QStringLiteral("it has no size"));
    QVERIFY(gif.pixelsFound);
}

void TestGifDescriptors::unusualCodeSizesAreReadAsDecodersReadThem_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("what");
    // Two pixels of the colour 1 in codes of 10 to 13 bits: clear, 1, 1, end.
    QTest::newRow("nine") << QByteArray("0905000610408000")
                          << QStringLiteral("its code size 9 is out of range");
    QTest::newRow("ten") << QByteArray("0a06000c4000020800")
                         << QStringLiteral("its code size 10 is out of range");
    QTest::newRow("eleven") << QByteArray("0b0600180001108000")
                            << QStringLiteral("its code size 11 is out of range");
    QTest::newRow("twelve") << QByteArray("0c070030000480000800")
                            << QStringLiteral("its code size 12 is out of range");
}

void TestGifDescriptors::unusualCodeSizesAreReadAsDecodersReadThem()
{
    QFETCH(QByteArray, data);
    QFETCH(QString, what);
    const QByteArray bytes = head() + frame(soundData) + frame(data.constData()) + ';';
    const GifDescriptors gif = read(bytes);
    QCOMPARE(gif.wholeFrames, 2);
    QCOMPARE(gif.damagedFrames, 0);
    QVERIFY(gif.unusual.has_value());
    QCOMPARE(gif.unusual->frame, 2);
    QCOMPARE(gif.unusual->what, what);

    QByteArray alone = head() + frame(data.constData()) + ';';
    const QImage picture = QImage::fromData(alone, "GIF");
    QCOMPARE(picture.size(), QSize(2, 1));
    QCOMPARE(picture.pixel(0, 0), 0xffffffff);
    QCOMPARE(picture.pixel(1, 0), 0xffffffff);
}

void TestGifDescriptors::usualCodeSizesAreNotRemarkedOn()
{
    for (const char *data : {"0100", "0200", "0800"})
        QVERIFY(!read(head() + frame(data) + ';').unusual);
    QCOMPARE(read(head() + frame("0000") + frame("0900") + ';').unusual->frame, 1);
}

void TestGifDescriptors::aScreenThatADecoderLeavesUnsetIsNoticed_data()
{
    QTest::addColumn<GifBuilder::Frame>("frame");
    QTest::addColumn<bool>("isUnset");
    using Frame = GifBuilder::Frame;
    const auto row = [](const char *name, const Frame &frame, bool isUnset) {
        QTest::newRow(name) << frame << isUnset;
    };
    const auto own = [](const QRect &rect, int transparentIndex = -1) {
        return Frame{rect, 0, 10, GifBuilder::Unspecified, transparentIndex, true};
    };
    row("own palette, all covered", own({0, 0, 4, 3}), false);
    row("own palette, more than all covered", own({0, 0, 5, 4}), false);
    row("own palette, not at the left", own({1, 0, 4, 3}), true);
    row("own palette, not at the top", own({0, 1, 4, 3}), true);
    row("own palette, not at the right", own({0, 0, 3, 3}), true);
    row("own palette, not at the bottom", own({0, 0, 4, 2}), true);
    row("own palette, transparent", own({0, 0, 2, 2}, 1), false);
    row("the global palette", {{0, 0, 2, 2}}, false);
}

void TestGifDescriptors::aScreenThatADecoderLeavesUnsetIsNoticed()
{
    QFETCH(GifBuilder::Frame, frame);
    QFETCH(bool, isUnset);
    GifBuilder builder(4, 3);
    builder.add(frame);
    // Only the first frame counts.
    builder.add({QRect(1, 1, 1, 1), 0, 10, GifBuilder::Unspecified, -1, true});
    const GifDescriptors gif = read(builder.data());
    QCOMPARE(gif.leavesScreenUnset, isUnset);
    QCOMPARE(gif.firstFrame, frame.rect);
    QCOMPARE(gif.blocksOffset, 25);

    // Without a global palette there is no colour to fill the screen with.
    QByteArray bytes = builder.data();
    bytes.remove(13, 12);
    bytes[10] = 0x11;
    QCOMPARE(read(bytes).leavesScreenUnset, false);
    QCOMPARE(read(bytes).blocksOffset, 13);
}

void TestGifDescriptors::blocksAfterAControlWithoutContentAreFound()
{
    // Decoders take the next byte for the length of another block.
    const QByteArray control = QByteArray::fromHex("21f900"
                                                   "0201ff00");
    const GifDescriptors gif = read(head() + control + frame(soundData) + ';');
    QCOMPARE(gif.ending, GifEnding::Trailer);
    QCOMPARE(gif.wholeFrames, 1);
    const QByteArray application = QByteArray::fromHex("21ff00"
                                                       "0201ff00");
    QCOMPARE(read(head() + application + frame(soundData) + ';').wholeFrames, 1);
}

void TestGifDescriptors::dataBehindTheEndOfAPictureDoNoHarm()
{
    const QByteArray sub = "01"
                           "ff";
    QByteArray data = "02"
                      "02"
                      "4c0a";
    for (int i = 0; i < 40; ++i)
        data += sub;
    const GifDescriptors gif = read(head() + frame((data + "00").constData()) + ';');
    QCOMPARE(gif.wholeFrames, 1);
    QCOMPARE(gif.damagedFrames, 0);
    QCOMPARE(gif.ending, GifEnding::Trailer);
}

void TestGifDescriptors::onlyTheFirstDamagesAreKept()
{
    QByteArray bytes = head();
    for (int i = 0; i < 1000; ++i)
        bytes += frame("0000");
    const GifDescriptors gif = read(bytes);
    QCOMPARE(gif.damagedFrames, 1000);
    QCOMPARE(gif.damages.size(), 5);
    QCOMPARE(gif.damages.last().frame, 5);
}

void TestGifDescriptors::anUnknownBlockEndsTheReading()
{
    const GifDescriptors gif = read(head() + frame(soundData) + "X" + frame(soundData) + ';');
    QCOMPARE(gif.ending, GifEnding::UnknownBlock);
    QCOMPARE(gif.endOffset, 34);
    QCOMPARE(gif.frames, 1);
}

void TestGifDescriptors::endlessEmptyBlocksEndAtOnce()
{
    // An extension, then nothing but empty sub-blocks.
    const GifDescriptors gif =
        read(head() + QByteArray::fromHex("21fe") + QByteArray(100000, '\0'));
    QCOMPARE(gif.ending, GifEnding::UnknownBlock);
    QCOMPARE(gif.endOffset, 22);
    QCOMPARE(gif.frames, 0);
}

void TestGifDescriptors::disposalTellsWhatADecoderMustKeep()
{
    GifBuilder plain(2, 1);
    plain.add(0, 10);
    QVERIFY(!read(plain.data()).hasTransparency);
    QVERIFY(!read(plain.data()).restoresPrevious);

    GifBuilder clearing(2, 1);
    clearing.add({QRect(0, 0, 2, 1), 0, 10, GifBuilder::RestoreBackground});
    QVERIFY(read(clearing.data()).hasTransparency);
    QVERIFY(!read(clearing.data()).restoresPrevious);

    GifBuilder returning(2, 1);
    returning.add({QRect(0, 0, 2, 1), 0, 10, GifBuilder::RestorePrevious, 3});
    QVERIFY(read(returning.data()).hasTransparency);
    QVERIFY(read(returning.data()).restoresPrevious);
}

QTEST_GUILESS_MAIN(TestGifDescriptors)
#include "tst_gifdescriptors.moc"
