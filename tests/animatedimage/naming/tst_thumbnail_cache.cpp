#include "animatedimage/core/thumbnail.h"
#include "animatedimage/core/thumbnailcache.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

namespace
{

using Frames = QList<CAnimatedPortrait>;

Frames someFrames()
{
    const QImage corner = Pictures::fromText({"##..", "#..."});
    return {{QStringLiteral("a"), corner},
            {QStringLiteral("b"), QImage()},
            {QStringLiteral("c"), Pictures::solid(300, 100, QColor(1, 2, 3, 4))},
            {QString(), corner},
            {QStringLiteral("grey"), corner.convertToFormat(QImage::Format_Grayscale8)}};
}

/// What the stream operators make of the list.
QByteArray plainAnswer(const Frames &frames, int version)
{
    QList<QPair<QString, QImage>> list;
    for (const CAnimatedPortrait &frame : frames)
        list.append({frame.name, thumbnail(frame.image)});
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    stream << list;
    return bytes;
}

QByteArray answer(ThumbnailCache &cache, const Frames &frames,
                  int version = QDataStream::Qt_DefaultCompiledVersion)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    stream << EncodedThumbnails{cache, frames};
    return bytes;
}

QByteArray plainAnswer(const Frames &frames)
{
    return plainAnswer(frames, QDataStream::Qt_DefaultCompiledVersion);
}

} // namespace

/// Thumbnails that are kept encoded have the same bytes as if they were encoded again.
class TestThumbnailCache : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersAreWhatTheOperatorsWrite_data();
    void answersAreWhatTheOperatorsWrite();
    void oneThumbnailIsWhatTheOperatorWrites();
    void framesComeGoAndMove();
    void aChangedPictureIsEncodedAgain();
    void withoutRoomEachIsEncodedAgain();
    void cachesShareTheirBudget();
};

void TestThumbnailCache::answersAreWhatTheOperatorsWrite_data()
{
    QTest::addColumn<int>("version");
    QTest::newRow("bitmaps") << int(QDataStream::Qt_1_0);
    QTest::newRow("before the marker") << int(QDataStream::Qt_3_0);
    QTest::newRow("the first with a marker") << int(QDataStream::Qt_3_1);
    QTest::newRow("Qt 4") << int(QDataStream::Qt_4_8);
    QTest::newRow("the latest") << int(QDataStream::Qt_DefaultCompiledVersion);
}

void TestThumbnailCache::answersAreWhatTheOperatorsWrite()
{
    QFETCH(int, version);
    ThumbnailCache cache;
    const Frames frames = someFrames();
    const QByteArray expected = plainAnswer(frames, version);
    for (int time = 0; time < 3; ++time)
        QCOMPARE(answer(cache, frames, version), expected);
}

void TestThumbnailCache::oneThumbnailIsWhatTheOperatorWrites()
{
    ThumbnailCache cache;
    const Frames frames = someFrames();
    for (int time = 0; time < 2; ++time) {
        for (const CAnimatedPortrait &frame : frames) {
            QByteArray expected;
            QDataStream plain(&expected, QIODevice::WriteOnly);
            plain << thumbnail(frame.image);
            QByteArray bytes;
            QDataStream stream(&bytes, QIODevice::WriteOnly);
            stream << EncodedThumbnail{cache, frame.image};
            QCOMPARE(bytes, expected);
        }
    }
}

void TestThumbnailCache::framesComeGoAndMove()
{
    ThumbnailCache cache;
    Frames frames = someFrames();
    QCOMPARE(answer(cache, frames), plainAnswer(frames));
    frames.move(0, 2);
    QCOMPARE(answer(cache, frames), plainAnswer(frames));
    const CAnimatedPortrait gone = frames.takeFirst();
    QCOMPARE(answer(cache, frames), plainAnswer(frames));
    frames.append(gone);
    QCOMPARE(answer(cache, frames), plainAnswer(frames));
    QCOMPARE(answer(cache, {}), plainAnswer({}));
    QCOMPARE(answer(cache, frames), plainAnswer(frames));
}

void TestThumbnailCache::aChangedPictureIsEncodedAgain()
{
    ThumbnailCache cache;
    Frames frames = someFrames();
    const QByteArray before = answer(cache, frames);
    frames[0].image.setPixelColor(3, 1, Qt::red);
    QVERIFY(answer(cache, frames) != before);
    QCOMPARE(answer(cache, frames), plainAnswer(frames));
}

void TestThumbnailCache::withoutRoomEachIsEncodedAgain()
{
    CacheBudget budget(200); // room for one or two
    ThumbnailCache cache(budget);
    const Frames frames = someFrames();
    for (int time = 0; time < 3; ++time) {
        QCOMPARE(answer(cache, frames), plainAnswer(frames));
        QVERIFY(cache.bytes() <= 200);
    }
}

void TestThumbnailCache::cachesShareTheirBudget()
{
    CacheBudget budget(1 << 20);
    const Frames frames = someFrames();
    {
        ThumbnailCache first(budget);
        ThumbnailCache second(budget);
        answer(first, frames);
        QVERIFY(first.bytes() > 0);
        QCOMPARE(budget.heldBytes(), first.bytes());
        answer(second, frames);
        QCOMPARE(second.bytes(), first.bytes());
        QCOMPARE(budget.heldBytes(), 2 * first.bytes());
        // A list that is shown no more is forgotten.
        answer(first, {});
        QCOMPARE(first.bytes(), 0);
        QCOMPARE(budget.heldBytes(), second.bytes());
    }
    QCOMPARE(budget.heldBytes(), 0);
}

QTEST_MAIN(TestThumbnailCache)
#include "tst_thumbnail_cache.moc"
