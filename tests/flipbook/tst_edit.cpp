#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/flipbook/objectstate.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

/// What each operation of "flipbook edit" makes of a document with a film of three frames.
class TestEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void operationsOnFrames_data();
    void operationsOnFrames();
    void operationsAreDoneInTheirOrder_data();
    void operationsAreDoneInTheirOrder();
    void aFileNameMayHoldAnything_data();
    void aFileNameMayHoldAnything();
    void anAnimatedPictureGivesItsFirstFrame();
    void theIntervalIsSet_data();
    void theIntervalIsSet();
    void theLoopsAreSet_data();
    void theLoopsAreSet();
    void theTypeMovesTheObjectBetweenTheLayers();
    void mirrorAndFlipTurnTheObjectOver_data();
    void mirrorAndFlipTurnTheObjectOver();
    void settingTheLoopsKeepsEverythingElse();
    void otherObjectsStayAsTheyWere();
    void theWholeCommandLineIsOneEdit();

private:
    QString path(const QString &name) const { return m_fixture->path(name); }
    FlipbookRun edit(const QStringList &operations) const;
    ObjectState edited(int number = 1) const
    {
        return objectIn(m_fixture->plugin(), m_document, number);
    }

    std::unique_ptr<DocumentFixture> m_fixture;
    QByteArray m_fresh;
    QString m_document;
};

void TestEdit::initTestCase()
{
    m_fixture = std::make_unique<DocumentFixture>();
    const QString film = path(QStringLiteral("film.gif"));
    GifBuilder(4, 3).loop(0).add(0, 10).add(1, 10).add(2, 10).write(film);
    m_document = path(QStringLiteral("doc.flipbook"));
    const FlipbookRun made =
        flipbook({QStringLiteral("new"), m_document, QStringLiteral("--add"), film});
    QCOMPARE(made.err, QString());
    QCOMPARE(made.status, 0);
    m_fresh = bytesOf(m_document);
    QVERIFY(Pictures::solid(4, 3, Qt::yellow).save(path(QStringLiteral("sun.png"))));
    QVERIFY(Pictures::solid(8, 9, Qt::black).save(path(QStringLiteral("big_cat.png"))));
}

void TestEdit::init()
{
    writeBytes(m_document, m_fresh);
}

/// Runs "flipbook edit" on the document; DIR/ in an operation stands for the test's folder.
FlipbookRun TestEdit::edit(const QStringList &operations) const
{
    QStringList arguments = {QStringLiteral("edit"), m_document};
    for (QString operation : operations)
        arguments << operation.replace(QLatin1String("DIR/"), path(QString()) + QLatin1Char('/'));
    return flipbook(arguments);
}

void TestEdit::operationsOnFrames_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("frames");
    const auto row = [](const char *operation, const char *frames) {
        QTest::newRow(operation) << QString::fromLatin1(operation) << QString::fromLatin1(frames);
    };
    const char *untouched = "film_1 #ff0000 4x3, film_2 #00ff00 4x3, film_3 #0000ff 4x3";

    row("--insert-blank 1",
        "film_4 clear 4x3, film_1 #ff0000 4x3, film_2 #00ff00 4x3, film_3 #0000ff 4x3");
    row("--insert-blank 2",
        "film_1 #ff0000 4x3, film_4 clear 4x3, film_2 #00ff00 4x3, film_3 #0000ff 4x3");
    row("--insert-blank 4",
        "film_1 #ff0000 4x3, film_2 #00ff00 4x3, film_3 #0000ff 4x3, film_4 clear 4x3");

    row("--duplicate 2:1",
        "film_4 #00ff00 4x3, film_1 #ff0000 4x3, film_2 #00ff00 4x3, film_3 #0000ff 4x3");
    row("--duplicate 3:2",
        "film_1 #ff0000 4x3, film_4 #0000ff 4x3, film_2 #00ff00 4x3, film_3 #0000ff 4x3");
    row("--duplicate 1:4",
        "film_1 #ff0000 4x3, film_2 #00ff00 4x3, film_3 #0000ff 4x3, film_4 #ff0000 4x3");

    row("--rename 1=start", "start #ff0000 4x3, film_2 #00ff00 4x3, film_3 #0000ff 4x3");
    row("--rename 3=a=b", "film_1 #ff0000 4x3, film_2 #00ff00 4x3, a=b #0000ff 4x3");

    row("--delete 1", "film_2 #00ff00 4x3, film_3 #0000ff 4x3");
    row("--delete 2", "film_1 #ff0000 4x3, film_3 #0000ff 4x3");
    row("--delete 3", "film_1 #ff0000 4x3, film_2 #00ff00 4x3");

    row("--move 1:3", "film_2 #00ff00 4x3, film_3 #0000ff 4x3, film_1 #ff0000 4x3");
    row("--move 3:1", "film_3 #0000ff 4x3, film_1 #ff0000 4x3, film_2 #00ff00 4x3");
    row("--move 2:3", "film_1 #ff0000 4x3, film_3 #0000ff 4x3, film_2 #00ff00 4x3");
    row("--move 2:2", untouched);

    // A picture is named as its file is.
    row("--insert 1=DIR/sun.png",
        "sun #ffff00 4x3, film_1 #ff0000 4x3, film_2 #00ff00 4x3, film_3 #0000ff 4x3");
    row("--insert 3=DIR/big_cat.png",
        "film_1 #ff0000 4x3, film_2 #00ff00 4x3, big_cat #000000 8x9, film_3 #0000ff 4x3");
    row("--insert 4=DIR/sun.png",
        "film_1 #ff0000 4x3, film_2 #00ff00 4x3, film_3 #0000ff 4x3, sun #ffff00 4x3");

    row("--replace 2=DIR/sun.png", "film_1 #ff0000 4x3, film_2 #ffff00 4x3, film_3 #0000ff 4x3");
    row("--replace 3=DIR/big_cat.png",
        "film_1 #ff0000 4x3, film_2 #00ff00 4x3, film_3 #000000 8x9");
    row("--replace-all DIR/sun.png", "sun #ffff00 4x3");
    row("--replace-all DIR/big_cat.png", "big_cat #000000 8x9");

    row("--interval 80", untouched);
    row("--loops 3", untouched);
    row("--type background", untouched);
    row("--mirror", untouched);
    row("--flip", untouched);
}

void TestEdit::operationsOnFrames()
{
    QFETCH(QString, operation);
    QFETCH(QString, frames);
    const FlipbookRun run = edit(operation.split(QLatin1Char(' ')));
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(edited().frames, frames.split(QStringLiteral(", ")));
}

void TestEdit::operationsAreDoneInTheirOrder_data()
{
    QTest::addColumn<QString>("operations");
    QTest::addColumn<QString>("frames");
    const auto row = [](const char *operations, const char *frames) {
        QTest::newRow(operations) << QString::fromLatin1(operations) << QString::fromLatin1(frames);
    };
    row("--delete 1 --delete 1", "film_3 #0000ff 4x3");
    row("--rename 1=a --move 1:2 --rename 1=b", "b #00ff00 4x3, a #ff0000 4x3, film_3 #0000ff 4x3");
    row("--move 1:2 --rename 1=b --rename 1=c",
        "c #00ff00 4x3, film_1 #ff0000 4x3, film_3 #0000ff 4x3");
    row("--delete 2 --duplicate 2:1 --delete 3", "film_2 #0000ff 4x3, film_1 #ff0000 4x3");
    row("--duplicate 2:1 --delete 3 --delete 2", "film_4 #00ff00 4x3, film_3 #0000ff 4x3");
    row("--rename=2=x --insert-blank=2 --rename=3=y",
        "film_1 #ff0000 4x3, film_2 clear 4x3, y #00ff00 4x3, film_3 #0000ff 4x3");
    row("--loops 2 --delete 1 --loops 5 --rename 1=last", "last #00ff00 4x3, film_3 #0000ff 4x3");
    row("--replace 1=DIR/sun.png --duplicate 1:4 --replace 1=DIR/big_cat.png --delete 2",
        "film_1 #000000 8x9, film_3 #0000ff 4x3, film_4 #ffff00 4x3");
}

void TestEdit::operationsAreDoneInTheirOrder()
{
    QFETCH(QString, operations);
    QFETCH(QString, frames);
    const FlipbookRun run = edit(operations.split(QLatin1Char(' ')));
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(edited().frames, frames.split(QStringLiteral(", ")));
}

void TestEdit::aFileNameMayHoldAnything_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("frame");
    QTest::newRow("dots") << QStringLiteral("my.sun.v2.png") << QStringLiteral("my.sun.v2");
    QTest::newRow("an equals sign") << QStringLiteral("a=b=c.png") << QStringLiteral("a=b=c");
    QTest::newRow("a colon") << QStringLiteral("1:2.png") << QStringLiteral("1:2");
    QTest::newRow("a colon first") << QStringLiteral(":sun.png") << QStringLiteral(":sun");
    QTest::newRow("spaces") << QStringLiteral(" my sun .png") << QStringLiteral(" my sun ");
    QTest::newRow("letters of many kinds")
        << QString::fromUtf8("söл日.png") << QString::fromUtf8("söл日");
    QTest::newRow("a percent sign") << QStringLiteral("50%1.png") << QStringLiteral("50%1");
}

void TestEdit::aFileNameMayHoldAnything()
{
    QFETCH(QString, name);
    QFETCH(QString, frame);
    const QString picture = path(QString()) + QLatin1Char('/') + name;
    QVERIFY(QFile::copy(path(QStringLiteral("sun.png")), picture));
    const FlipbookRun run =
        flipbookIn(path(QString()), {QStringLiteral("edit"), QStringLiteral("doc.flipbook"),
                                     QStringLiteral("--insert"), QStringLiteral("1=") + name,
                                     QStringLiteral("--replace"), QStringLiteral("2=") + name});
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    const QStringList frames = {
        frame + QStringLiteral(" #ffff00 4x3"), QStringLiteral("film_1 #ffff00 4x3"),
        QStringLiteral("film_2 #00ff00 4x3"), QStringLiteral("film_3 #0000ff 4x3")};
    QCOMPARE(edited().frames, frames);
}

void TestEdit::anAnimatedPictureGivesItsFirstFrame()
{
    const FlipbookRun run = edit({QStringLiteral("--insert"), QStringLiteral("2=DIR/film.gif"),
                                  QStringLiteral("--replace"), QStringLiteral("4=DIR/film.gif")});
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(
        edited().frames,
        QStringList({QStringLiteral("film_1 #ff0000 4x3"), QStringLiteral("film #ff0000 4x3"),
                     QStringLiteral("film_2 #00ff00 4x3"), QStringLiteral("film_3 #ff0000 4x3")}));
}

void TestEdit::theIntervalIsSet_data()
{
    QTest::addColumn<QStringList>("operations");
    QTest::addColumn<int>("intervalMs");
    const auto row = [](const char *operations, int intervalMs) {
        QTest::newRow(operations) << QString::fromLatin1(operations).split(QLatin1Char(' '))
                                  << intervalMs;
    };
    row("--interval 1", 1);
    row("--interval 80", 80);
    row("--interval 2147483647", 2147483647);
    row("--interval 80 --interval 90", 90);
    row("--interval 80 --loops 2", 80);
    row("--fps 25", 40);
    row("--fps 24", 42);
    row("--fps 60", 17);
    row("--fps 12.5", 80);
    row("--fps 0.001", 1000000);
    row("--fps 667", 1);
    row("--fps 1000", 1);
}

void TestEdit::theIntervalIsSet()
{
    QFETCH(QStringList, operations);
    QCOMPARE(edited().intervalMs, 100);
    QCOMPARE(edit(operations).status, 0);
    QTEST(edited().intervalMs, "intervalMs");
}

void TestEdit::theLoopsAreSet_data()
{
    QTest::addColumn<QStringList>("operations");
    QTest::addColumn<int>("loopCount");
    const auto row = [](const char *operations, int loopCount) {
        QTest::newRow(operations) << QString::fromLatin1(operations).split(QLatin1Char(' '))
                                  << loopCount;
    };
    row("--loops forever", -1);
    row("--loops once", 0);
    row("--loops 1", 0);
    row("--loops 2", 1);
    row("--loops 2147483647", 2147483646);
    row("--loops 7 --loops forever", -1);
    row("--loops once --loops 7", 6);
}

void TestEdit::theLoopsAreSet()
{
    QFETCH(QStringList, operations);
    QCOMPARE(edited().loopCount, -1);
    QCOMPARE(edit(operations).status, 0);
    QTEST(edited().loopCount, "loopCount");
}

void TestEdit::theTypeMovesTheObjectBetweenTheLayers()
{
    QVERIFY(edited().type != 1);
    QVERIFY(edited().layer == Page::Layer::Normal);
    QCOMPARE(edit({QStringLiteral("--type"), QStringLiteral("background")}).status, 0);
    QCOMPARE(edited().type, 1);
    QVERIFY(edited().layer == Page::Layer::Background);
    // A background stays one, and in its layer, when it is read again for its loops.
    QCOMPARE(edit({QStringLiteral("--loops"), QStringLiteral("2")}).status, 0);
    QCOMPARE(edited().type, 1);
    QVERIFY(edited().layer == Page::Layer::Background);
    QCOMPARE(edit({QStringLiteral("--type"), QStringLiteral("normal")}).status, 0);
    QCOMPARE(edited().type, 0);
    QVERIFY(edited().layer == Page::Layer::Normal);
}

void TestEdit::mirrorAndFlipTurnTheObjectOver_data()
{
    QTest::addColumn<QStringList>("operations");
    QTest::addColumn<bool>("mirrored");
    QTest::addColumn<bool>("flipped");
    const auto row = [](const char *operations, bool mirrored, bool flipped) {
        QTest::newRow(operations) << QString::fromLatin1(operations).split(QLatin1Char(' '))
                                  << mirrored << flipped;
    };
    row("--mirror", true, false);
    row("--flip", false, true);
    row("--mirror --flip", true, true);
    row("--mirror --flip --mirror", false, true);
    row("--flip --loops 4 --mirror --loops once", true, true);
}

void TestEdit::mirrorAndFlipTurnTheObjectOver()
{
    QFETCH(QStringList, operations);
    QCOMPARE(edit(operations).status, 0);
    const ObjectState object = edited();
    QTEST(object.mirrored, "mirrored");
    QTEST(object.flipped, "flipped");
    // Once more, and the object is as it was.
    QStringList back;
    if (object.mirrored)
        back << QStringLiteral("--mirror");
    if (object.flipped)
        back << QStringLiteral("--flip");
    QCOMPARE(edit(back).status, 0);
    QVERIFY(!edited().mirrored);
    QVERIFY(!edited().flipped);
}

void TestEdit::settingTheLoopsKeepsEverythingElse()
{
    QCOMPARE(edit({QStringLiteral("--mirror"), QStringLiteral("--interval"), QStringLiteral("30"),
                   QStringLiteral("--replace"), QStringLiteral("2=DIR/big_cat.png")})
                 .status,
             0);
    const ObjectState before = edited();
    const QByteArray bytes = bytesOf(m_document);
    QCOMPARE(edit({QStringLiteral("--loops"), QStringLiteral("9")}).status, 0);
    const ObjectState after = edited();
    QCOMPARE(after.loopCount, 8);
    QCOMPARE(after.frames, before.frames);
    QCOMPARE(after.intervalMs, 30);
    QCOMPARE(after.mirrored, true);
    QCOMPARE(after.position, QPointF(24, 24));
    QCOMPARE(after.size, QSizeF(4, 3));
    // And back: the same file, byte for byte.
    QCOMPARE(edit({QStringLiteral("--loops"), QStringLiteral("forever")}).status, 0);
    QCOMPARE(bytesOf(m_document), bytes);
}

void TestEdit::otherObjectsStayAsTheyWere()
{
    const QStringList made = {QStringLiteral("new"),
                              m_document,
                              QStringLiteral("--force"),
                              QStringLiteral("--add"),
                              path(QStringLiteral("film.gif")),
                              path(QStringLiteral("sun.png")),
                              path(QStringLiteral("film.gif"))};
    QCOMPARE(flipbook(made).status, 0);
    QCOMPARE(edit({QStringLiteral("--object"), QStringLiteral("2"), QStringLiteral("--rename"),
                   QStringLiteral("1=sky"), QStringLiteral("--loops"), QStringLiteral("4")})
                 .status,
             0);
    const QStringList film = {QStringLiteral("film_1 #ff0000 4x3"),
                              QStringLiteral("film_2 #00ff00 4x3"),
                              QStringLiteral("film_3 #0000ff 4x3")};
    QCOMPARE(edited(1).frames, film);
    QCOMPARE(edited(1).loopCount, -1);
    QCOMPARE(edited(2).frames, QStringList(QStringLiteral("sky #ffff00 4x3")));
    QCOMPARE(edited(2).loopCount, 3);
    QCOMPARE(edited(3).frames, film);
    QCOMPARE(edited(3).loopCount, -1);
}

void TestEdit::theWholeCommandLineIsOneEdit()
{
    // The document may be anywhere among the operations.
    const FlipbookRun run =
        flipbook({QStringLiteral("edit"), QStringLiteral("--delete"), QStringLiteral("3"),
                  m_document, QStringLiteral("--interval"), QStringLiteral("40"),
                  QStringLiteral("--loops"), QStringLiteral("once"), QStringLiteral("--flip")});
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    const FlipbookRun info = flipbook({QStringLiteral("info"), m_document});
    QCOMPARE(info.out, m_document + QStringLiteral("\n"
                                                   "page 1, 320 x 240\n"
                                                   "  object 1, \"film\", 4 x 3 at (24, 24)\n"
                                                   "    frames    2, named film_1 to film_2\n"
                                                   "    size      4 x 3 pixels\n"
                                                   "    interval  40 ms (0.08 s for all frames)\n"
                                                   "    loops     once (loop count 0)\n"
                                                   "    memory    96 bytes decoded\n"));
}

QTEST_MAIN(TestEdit)
#include "tst_edit.moc"
