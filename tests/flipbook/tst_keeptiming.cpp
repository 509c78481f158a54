#include "flipbook/base/failure.h"
#include "flipbook/editing/frameeditor.h"
#include "flipbook/editing/keeptiming.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/flipbook/objectstate.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

/// Films whose frames are shown for different times, in a document with one interval for all.
class TestKeepTiming : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void framesAreRepeatedAtTheirCommonInterval();
    void repeatsSharePixels();
    void everythingElseIsAsWithoutTheOption();
    void theMessageTellsWhatBecomesOfTheLength();
    void anEvenFilmNeedsNoRepeats();
    void onlyUnevenFilmsAreTouched();
    void aFilmThatWasCutKeepsTheRhythmOfItsFrames();
    void oddDelays_data();
    void oddDelays();
    void tooManyFramesAreRefused();
    void repeatsAvoidNamesThatAreTaken();
    void framesBeyondThePlanStaySingle();
    void plans_data();
    void plans();

private:
    QString path(const QString &name) const { return m_fixture->path(name); }
    QString filmOf(const QList<int> &delaysCs, int loop = 0) const;
    FlipbookRun make(const QStringList &words) const;
    ObjectState made(int number = 1) const
    {
        return objectIn(m_fixture->plugin(), m_document, number);
    }

    std::unique_ptr<DocumentFixture> m_fixture;
    QString m_document;
};

void TestKeepTiming::initTestCase()
{
    m_fixture = std::make_unique<DocumentFixture>();
    m_document = path(QStringLiteral("doc.flipbook"));
}

void TestKeepTiming::init()
{
    QFile::remove(m_document);
}

/// A GIF of 4 x 3 pixels whose frames are red, green, blue, white, red and so on.
QString TestKeepTiming::filmOf(const QList<int> &delaysCs, int loop) const
{
    GifBuilder builder(4, 3);
    builder.loop(loop);
    for (int i = 0; i < delaysCs.size(); ++i)
        builder.add(i % 4, delaysCs.at(i));
    const QString film = path(QStringLiteral("film.gif"));
    builder.write(film);
    return film;
}

/// Runs "flipbook new" on the document; the words follow its name.
FlipbookRun TestKeepTiming::make(const QStringList &words) const
{
    return flipbook(QStringList({QStringLiteral("new"), m_document}) + words);
}

void TestKeepTiming::framesAreRepeatedAtTheirCommonInterval()
{
    const FlipbookRun run =
        make({QStringLiteral("--keep-timing"), QStringLiteral("--add"), filmOf({5, 10, 20}, 3)});
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);

    const ObjectState film = made();
    QCOMPARE(film.intervalMs, 50);
    QCOMPARE(film.loopCount, 2);
    const QStringList frames = {
        QStringLiteral("film_1 #ff0000 4x3"),     QStringLiteral("film_2 #00ff00 4x3"),
        QStringLiteral("film_2 (2) #00ff00 4x3"), QStringLiteral("film_3 #0000ff 4x3"),
        QStringLiteral("film_3 (2) #0000ff 4x3"), QStringLiteral("film_3 (3) #0000ff 4x3"),
        QStringLiteral("film_3 (4) #0000ff 4x3")};
    QCOMPARE(film.frames, frames);

    // 50 + 100 + 200 ms, and three pictures of 4 x 3 pixels of 4 bytes.
    const FlipbookRun info = flipbook({QStringLiteral("info"), m_document});
    QVERIFY2(info.out.contains(QStringLiteral("interval  50 ms (0.35 s for all frames)\n")),
             qPrintable(info.out));
    QVERIFY2(info.out.contains(QStringLiteral("memory    144 bytes decoded\n")),
             qPrintable(info.out));
}

void TestKeepTiming::repeatsSharePixels()
{
    QCOMPARE(make({QStringLiteral("--add"), filmOf({5, 10, 20}), QStringLiteral("--keep-timing")})
                 .status,
             0);
    const QVector<qint64> pixels = made().pixels;
    QCOMPARE(pixels.size(), 7);
    QCOMPARE(pixels.at(2), pixels.at(1));
    for (int i : {4, 5, 6})
        QCOMPARE(pixels.at(i), pixels.at(3));
    QVERIFY(pixels.at(0) != pixels.at(1));
    QVERIFY(pixels.at(1) != pixels.at(3));

    // They still do after an edit that reads the object again.
    QCOMPARE(flipbook({QStringLiteral("edit"), m_document, QStringLiteral("--loops"),
                       QStringLiteral("4")})
                 .status,
             0);
    const ObjectState edited = made();
    QCOMPARE(edited.pixels.at(6), edited.pixels.at(3));
}

void TestKeepTiming::everythingElseIsAsWithoutTheOption()
{
    const QString film = filmOf({5, 10, 20}, 1);
    QCOMPARE(make({QStringLiteral("--keep-timing"), QStringLiteral("--add"), film}).status, 0);
    const ObjectState kept = made();
    QCOMPARE(make({QStringLiteral("--force"), QStringLiteral("--add"), film}).status, 0);
    const ObjectState plain = made();
    QCOMPARE(plain.frames.size(), 3);
    QCOMPARE(kept.loopCount, 0);
    QCOMPARE(kept.loopCount, plain.loopCount);
    QCOMPARE(kept.position, QPointF(24, 24));
    QCOMPARE(kept.position, plain.position);
    QCOMPARE(kept.size, QSizeF(4, 3));
    QCOMPARE(kept.size, plain.size);
    QCOMPARE(kept.type, plain.type);
    QVERIFY(kept.layer == plain.layer);
}

void TestKeepTiming::theMessageTellsWhatBecomesOfTheLength()
{
    // The interval of all is the first delay: three times 50 ms.
    const QString film = filmOf({5, 10, 20});
    const FlipbookRun run = make({QStringLiteral("--add"), film});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: warning: its frames have different durations, but here "
                            "each is shown for 50 ms: one pass takes 0.15 s instead of 0.35 s; "
                            "--keep-timing preserves the timing by repeating frames\n")
                 .arg(film));
    QCOMPARE(made().intervalMs, 50);
    QCOMPARE(made().frames.size(), 3);
}

void TestKeepTiming::anEvenFilmNeedsNoRepeats()
{
    const QString film = filmOf({7, 7, 7});
    const FlipbookRun plain = make({QStringLiteral("--add"), film});
    QCOMPARE(plain.err, QString());
    const QByteArray bytes = bytesOf(m_document);
    QVERIFY(!bytes.isEmpty());
    const FlipbookRun kept = make({QStringLiteral("--force"), QStringLiteral("--keep-timing"),
                                   QStringLiteral("--add"), film});
    QCOMPARE(kept.err, QString());
    QCOMPARE(kept.status, 0);
    QVERIFY(bytesOf(m_document) == bytes);
}

void TestKeepTiming::onlyUnevenFilmsAreTouched()
{
    const QString even = path(QStringLiteral("even.gif"));
    GifBuilder(4, 3).add(0, 30).add(1, 30).write(even);
    const QString late = path(QStringLiteral("late.gif"));
    GifBuilder(4, 3).add(2, 30).add(3, 60).write(late);
    const QString sun = path(QStringLiteral("sun.png"));
    QVERIFY(Pictures::solid(4, 3, Qt::yellow).save(sun));
    const FlipbookRun run = make({QStringLiteral("--keep-timing"), QStringLiteral("--add"), even,
                                  filmOf({5, 10}), sun, late});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(made(1).frames, QStringList({QStringLiteral("even_1 #ff0000 4x3"),
                                          QStringLiteral("even_2 #00ff00 4x3")}));
    QCOMPARE(made(1).intervalMs, 300);
    QCOMPARE(made(2).frames, QStringList({QStringLiteral("film_1 #ff0000 4x3"),
                                          QStringLiteral("film_2 #00ff00 4x3"),
                                          QStringLiteral("film_2 (2) #00ff00 4x3")}));
    QCOMPARE(made(2).intervalMs, 50);
    QCOMPARE(made(3).frames, QStringList(QStringLiteral("sun #ffff00 4x3")));
    QCOMPARE(made(4).frames, QStringList({QStringLiteral("late_1 #0000ff 4x3"),
                                          QStringLiteral("late_2 #ffffff 4x3"),
                                          QStringLiteral("late_2 (2) #ffffff 4x3")}));
    QCOMPARE(made(4).intervalMs, 300);
}

void TestKeepTiming::aFilmThatWasCutKeepsTheRhythmOfItsFrames()
{
    const QString film = filmOf({5, 10, 20});
    QByteArray bytes = bytesOf(film);
    // The trailer, and the third frame but for its first bytes: 8 of control, 10 of descriptor, 1
    // of code size.
    const int thirdFrame = bytes.lastIndexOf(QByteArray::fromHex("21f904"));
    writeBytes(film, bytes.left(thirdFrame + 8 + 10 + 1));
    const FlipbookRun run = make({QStringLiteral("--keep-timing"), QStringLiteral("--add"), film});
    QCOMPARE(run.status, 0);
    QCOMPARE(
        run.err,
        QStringLiteral("flipbook: %1: warning: truncated: 2 of 3 frames could be read completely\n")
            .arg(film));
    QCOMPARE(made().intervalMs, 50);
    QCOMPARE(made().frames.mid(0, 3), QStringList({QStringLiteral("film_1 #ff0000 4x3"),
                                                   QStringLiteral("film_2 #00ff00 4x3"),
                                                   QStringLiteral("film_2 (2) #00ff00 4x3")}));
}

void TestKeepTiming::oddDelays_data()
{
    QTest::addColumn<QList<int>>("delaysCs");
    QTest::addColumn<int>("intervalMs");
    QTest::addColumn<int>("frames");
    // As players have it, less than 20 ms is not taken literally: 100 ms instead.
    QTest::newRow("no delay beside 100 ms") << QList<int>{0, 10} << 100 << 2;
    QTest::newRow("10 ms beside 100 ms") << QList<int>{1, 10} << 100 << 2;
    QTest::newRow("no delay beside 50 ms") << QList<int>{0, 5} << 50 << 3;
    QTest::newRow("no delay at all") << QList<int>{0, 0, 0} << 100 << 3;
    QTest::newRow("20 and 30 ms") << QList<int>{2, 3} << 10 << 5;
    QTest::newRow("primes") << QList<int>{7, 11, 13} << 10 << 31;
    QTest::newRow("a last frame that rests") << QList<int>{10, 10, 300} << 100 << 32;
    QTest::newRow("one frame") << QList<int>{37} << 370 << 1;
    // 3 + 19997, the most that are allowed.
    QTest::newRow("very many") << QList<int>{3, 19997} << 10 << 20000;
}

void TestKeepTiming::oddDelays()
{
    QFETCH(QList<int>, delaysCs);
    const FlipbookRun run =
        make({QStringLiteral("--keep-timing"), QStringLiteral("--add"), filmOf(delaysCs)});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, 0);
    const ObjectState film = made();
    QTEST(film.intervalMs, "intervalMs");
    QTEST(film.frames.size(), "frames");
    QVERIFY(film.frames.last().startsWith(QStringLiteral("film_%1").arg(delaysCs.size())));
    QStringList unique = film.frames;
    QCOMPARE(unique.removeDuplicates(), 0);
}

void TestKeepTiming::tooManyFramesAreRefused()
{
    const auto refused = [this](const QList<int> &delaysCs, const char *frames) {
        const QString film = filmOf(delaysCs);
        const FlipbookRun run =
            make({QStringLiteral("--keep-timing"), QStringLiteral("--add"), film});
        QCOMPARE(run.err, QStringLiteral("flipbook: %1: keeping its timing would take %2 frames, "
                                         "more than the 20000 that are allowed\n")
                              .arg(film, QLatin1String(frames)));
        QCOMPARE(run.status, 1);
        QVERIFY(!QFile::exists(m_document));
    };
    refused({2, 19999}, "20001");
    refused({65521, 65519, 65497}, "196537");
}

void TestKeepTiming::repeatsAvoidNamesThatAreTaken()
{
    const std::unique_ptr<Document> document = m_fixture->document({Qt::red, Qt::green, Qt::blue});
    Page &page = *document->pages().first();
    CBaseObject &object = *page.objects().constFirst();
    FrameEditor editor(object);
    editor.rename(1, QStringLiteral("cat"));
    editor.rename(2, QStringLiteral("cat (3)"));
    editor.rename(3, QStringLiteral("50%1"));
    CBaseObject *repeated =
        repeatFrames(m_fixture->plugin(), page, object, {40, {3, 2, 2}}, QStringLiteral("film"));
    QCOMPARE(page.objects(), QList<CBaseObject *>{repeated});
    QStringList names;
    const auto frames = m_fixture->plugin().frames(*repeated);
    for (const auto &frame : frames)
        names << frame.first;
    QCOMPARE(names, QStringList({QStringLiteral("cat"), QStringLiteral("cat (2)"),
                                 QStringLiteral("cat (4)"), QStringLiteral("cat (3)"),
                                 QStringLiteral("cat (3) (2)"), QStringLiteral("50%1"),
                                 QStringLiteral("50%1 (2)")}));
    QCOMPARE(AnimatedObject(*repeated).intervalMs(), 40);
}

void TestKeepTiming::framesBeyondThePlanStaySingle()
{
    const std::unique_ptr<Document> document = m_fixture->document({Qt::red, Qt::green, Qt::blue});
    Page &page = *document->pages().first();
    const QPointF place = page.objects().constFirst()->getPos();
    CBaseObject *repeated = repeatFrames(m_fixture->plugin(), page, *page.objects().constFirst(),
                                         {40, {2}}, QStringLiteral("film"));
    QList<QRgb> colours;
    const auto frames = m_fixture->plugin().frames(*repeated);
    for (const auto &frame : frames)
        colours << frame.second.pixel(0, 0);
    QCOMPARE(colours, QList<QRgb>({0xffff0000, 0xffff0000, 0xff00ff00, 0xff0000ff}));
    QCOMPARE(repeated->getPos(), place);
    QCOMPARE(repeated->objectId(), 7);
}

void TestKeepTiming::plans_data()
{
    QTest::addColumn<QVector<int>>("delaysMs");
    QTest::addColumn<int>("intervalMs");
    QTest::addColumn<QVector<int>>("repeats");
    using List = QVector<int>;
    QTest::newRow("nothing") << List{} << 0 << List{};
    QTest::newRow("one") << List{70} << 70 << List{1};
    QTest::newRow("even") << List{40, 40} << 40 << List{1, 1};
    QTest::newRow("doubling") << List{50, 100, 200} << 50 << List{1, 2, 4};
    QTest::newRow("neither divides the other") << List{120, 180} << 60 << List{2, 3};
    QTest::newRow("no time counts as 1 ms") << List{0, 3} << 1 << List{1, 3};
    QTest::newRow("less than no time, too") << List{-5, 2} << 1 << List{1, 2};
    QTest::newRow("the largest") << List{2147483647, 2147483647} << 2147483647 << List{1, 1};
}

void TestKeepTiming::plans()
{
    QFETCH(QVector<int>, delaysMs);
    const RepeatPlan plan = planRepeats(delaysMs);
    QTEST(plan.intervalMs, "intervalMs");
    QTEST(plan.repeats, "repeats");
}

QTEST_MAIN(TestKeepTiming)
#include "tst_keeptiming.moc"
