#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/document/openedfile.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/flipbook/objectstate.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QJsonArray>
#include <QtTest/QTest>

/// What "flipbook edit" does to objects as a whole and to pages: a document with a film "film" of
/// three frames of 4 x 3 at (24, 24), and above it a picture "sun" of 10 x 20 at (52, 24).
class TestEditObject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void aPlaceAndASizeAreSet_data();
    void aPlaceAndASizeAreSet();
    void aRotatedObjectIsPainted();
    void otherFramesKeepTheirScale();
    void aNameIsThatOfTheObjectAlone();
    void objectsAreStacked_data();
    void objectsAreStacked();
    void anAddedObjectIsEditedByWhatFollows();
    void anAddedFilmMayKeepItsTiming();
    void aFileThatCannotBeAddedChangesNothing();
    void everyObjectMayBeRemoved();
    void aPageGetsAnotherSize();
    void operationsOnOneOfSeveralPages();
    void framesAreReversed();
    void reversedTwiceIsTheSameFile();
    void rangesOfFramesAreDeleted();
    void infoTellsTheRotation();

private:
    QString path(const QString &name) const { return m_fixture->path(name); }
    FlipbookRun edit(const QString &operations) const;
    /// Name, size and place of each object of the first page, from bottom to top.
    QStringList objects(const QString &document = QString()) const;

    std::unique_ptr<DocumentFixture> m_fixture;
    QByteArray m_fresh;
    QString m_document;
};

void TestEditObject::initTestCase()
{
    m_fixture = std::make_unique<DocumentFixture>();
    const QString film = path(QStringLiteral("film.gif"));
    GifBuilder(4, 3).loop(0).add(0, 10).add(1, 10).add(2, 10).write(film);
    GifBuilder(4, 3).loop(0).add(0, 10).add(1, 20).write(path(QStringLiteral("uneven.gif")));
    const QString sun = path(QStringLiteral("sun.png"));
    QVERIFY(Pictures::solid(10, 20, Qt::yellow).save(sun));
    QVERIFY(Pictures::solid(30, 41, Qt::blue).save(path(QStringLiteral("sky.png"))));
    QVERIFY(Pictures::solid(8, 9, Qt::black).save(path(QStringLiteral("big.png"))));
    m_document = path(QStringLiteral("doc.flipbook"));
    const FlipbookRun made =
        flipbook({QStringLiteral("new"), m_document, QStringLiteral("--add"), film, sun});
    QCOMPARE(made.err, QString());
    m_fresh = bytesOf(m_document);
}

void TestEditObject::init()
{
    writeBytes(m_document, m_fresh);
    QCOMPARE(objects(), QStringList({QStringLiteral("film 4x3 at 24,24 turned 0"),
                                     QStringLiteral("sun 10x20 at 52,24 turned 0")}));
}

/// DIR/ stands for the test's folder.
FlipbookRun TestEditObject::edit(const QString &operations) const
{
    QStringList words = operations.split(QLatin1Char(' '));
    words.replaceInStrings(QStringLiteral("DIR/"), path(QString()) + QLatin1Char('/'));
    return flipbook(QStringList({QStringLiteral("edit"), m_document}) + words);
}

QStringList TestEditObject::objects(const QString &document) const
{
    const FlipbookRun info = flipbook({QStringLiteral("info"), QStringLiteral("--json"),
                                       document.isEmpty() ? m_document : document});
    const QJsonArray pages = info.json().value(QStringLiteral("pages")).toArray();
    const QJsonArray forms = pages.first().toObject().value(QStringLiteral("objects")).toArray();
    QStringList result;
    for (const auto &each : forms) {
        const QJsonObject form = each.toObject();
        const auto number = [&form](const char *key) {
            return QString::number(form.value(QLatin1String(key)).toDouble());
        };
        result << QStringLiteral("%1 %2x%3 at %4,%5 turned %6")
                      .arg(form.value(QStringLiteral("name")).toString(), number("shownWidth"),
                           number("shownHeight"), number("x"), number("y"), number("rotation"));
    }
    return result;
}

void TestEditObject::aPlaceAndASizeAreSet_data()
{
    QTest::addColumn<QString>("operations");
    QTest::addColumn<QString>("sun");
    const auto row = [](const char *operations, const char *sun) {
        QTest::newRow(operations) << QString::fromLatin1(operations) << QString::fromLatin1(sun);
    };
    row("--move-to 0,0", "10x20 at 0,0 turned 0");
    row("--move-to -10.5,7", "10x20 at -10.5,7 turned 0");
    row("--move-to 100000,-100000", "10x20 at 100000,-100000 turned 0");
    row("--size 7x5.25", "7x5.25 at 52,24 turned 0");
    row("--size 1x100000", "1x100000 at 52,24 turned 0");
    row("--scale 2", "20x40 at 52,24 turned 0");
    row("--scale 0.1", "1x2 at 52,24 turned 0");
    row("--scale 4 --scale 0.25", "10x20 at 52,24 turned 0");
    row("--rotate 30", "10x20 at 52,24 turned 30");
    row("--rotate -30", "10x20 at 52,24 turned 330");
    row("--rotate 200 --rotate 200", "10x20 at 52,24 turned 40");
    row("--rotate 360", "10x20 at 52,24 turned 0");
    row("--rotate 90 --move-to 1,2 --size 3x4", "3x4 at 1,2 turned 90");
    row("--size 3x4 --rotate 90 --move-to 1,2", "3x4 at 1,2 turned 90");
    row("--rotate 45 --fit-page", "320x240 at 0,0 turned 0");
    row("--page-size 640x400 --fit-page", "640x400 at 0,0 turned 0");
    row("--fit-page --page-size 640x400", "320x240 at 0,0 turned 0");
    row("--type background --fit-page --type normal", "320x240 at 0,0 turned 0");
}

void TestEditObject::aPlaceAndASizeAreSet()
{
    QFETCH(QString, operations);
    QFETCH(QString, sun);
    const FlipbookRun run = edit(QStringLiteral("--object 2 ") + operations);
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    const QStringList all = objects();
    QVERIFY(all.contains(QStringLiteral("film 4x3 at 24,24 turned 0")));
    QVERIFY2(all.contains(QStringLiteral("sun ") + sun), qPrintable(all.join(QLatin1Char('\n'))));
}

void TestEditObject::aRotatedObjectIsPainted()
{
    QCOMPARE(edit(QStringLiteral("--object 2 --move-to 100,100 --rotate 90")).status, 0);
    const QString output = path(QStringLiteral("page.png"));
    QCOMPARE(flipbook({QStringLiteral("render"), m_document, QStringLiteral("-o"), output}).status,
             0);
    // It was 10 wide and 20 high, around (105, 110).
    const QImage page(output);
    QCOMPARE(page.pixelColor(97, 110), QColor(Qt::yellow));
    QCOMPARE(page.pixelColor(112, 110), QColor(Qt::yellow));
    QCOMPARE(page.pixelColor(105, 103), QColor(Qt::white));
    QCOMPARE(page.pixelColor(105, 117), QColor(Qt::white));
}

void TestEditObject::otherFramesKeepTheirScale()
{
    QCOMPARE(edit(QStringLiteral("--object 1 --replace-all DIR/big.png --insert 2=DIR/sun.png "
                                 "--move-to 0,0 --size 16x27"))
                 .status,
             0);
    QCOMPARE(objects().value(0), QStringLiteral("film 16x27 at 0,0 turned 0"));
    // The frame of 8 x 9 is twice as wide and three times as high, and so is the one of 10 x 20
    // that is shown in its place, around the same centre.
    QCOMPARE(edit(QStringLiteral("--object 1 --delete 1")).status, 0);
    QCOMPARE(objects().value(0), QStringLiteral("film 20x60 at -2,-16.5 turned 0"));
}

void TestEditObject::aNameIsThatOfTheObjectAlone()
{
    const FlipbookRun run = flipbook({QStringLiteral("edit"), m_document,
                                      QStringLiteral("--object"), QStringLiteral("1"),
                                      QStringLiteral("--name"), QString::fromUtf8("a \"walk\" é")});
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(objects().value(0), QString::fromUtf8("a \"walk\" é 4x3 at 24,24 turned 0"));
    QCOMPARE(
        objectIn(m_fixture->plugin(), m_document, 1).frames,
        QStringList({QStringLiteral("film_1 #ff0000 4x3"), QStringLiteral("film_2 #00ff00 4x3"),
                     QStringLiteral("film_3 #0000ff 4x3")}));
    QCOMPARE(edit(QStringLiteral("--object 1 --name ")).status, 0);
    QCOMPARE(objects().value(0), QStringLiteral(" 4x3 at 24,24 turned 0"));
}

void TestEditObject::objectsAreStacked_data()
{
    QTest::addColumn<QString>("operations");
    QTest::addColumn<QString>("names");
    const auto row = [](const char *operations, const char *names) {
        QTest::newRow(operations) << QString::fromLatin1(operations) << QString::fromLatin1(names);
    };
    const char *add = "--add DIR/sky.png ";
    const auto added = [&row, add](const char *operations, const char *names) {
        row(qPrintable(QLatin1String(add) + QLatin1String(operations)), names);
    };
    row("--object 1 --raise", "sun film");
    row("--object 2 --lower", "sun film");
    row("--raise --object 1", "sun film");
    row("--object 1 --raise --lower", "film sun");
    row("--object 1 --raise-to-top", "sun film");
    row("--object 2 --raise-to-top", "film sun");
    row("--object 2 --lower-to-bottom", "sun film");
    row("--object 2 --lower-to-bottom --lower-to-bottom", "sun film");
    added("--lower", "film sky sun");
    added("--lower --lower", "sky film sun");
    added("--lower-to-bottom", "sky film sun");
    added("--object 1 --raise-to-top", "sun sky film");
    added("--object 1 --remove", "sun sky");
    added("--remove --object 1 --raise", "sun film");
    // A number counts the objects as what is before it has left them.
    row("--object 1 --raise --object 1 --name first", "first film");
    row("--object 1 --remove --object 1 --name left", "left");
    row("--object 2 --add DIR/sky.png --object 2 --name second", "film second sky");
    // Each layer has its own order, and the background is below.
    row("--object 2 --type background --object 2 --name upper", "sun upper");
    added("--object 1 --type background --object 2 --raise", "film sky sun");
}

void TestEditObject::objectsAreStacked()
{
    QFETCH(QString, operations);
    QFETCH(QString, names);
    const FlipbookRun run = edit(operations);
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    QStringList got;
    const QStringList all = objects();
    for (const QString &object : all)
        got << object.section(QLatin1Char(' '), 0, 0);
    QCOMPARE(got.join(QLatin1Char(' ')), names);
}

void TestEditObject::anAddedObjectIsEditedByWhatFollows()
{
    const FlipbookRun run = edit(QStringLiteral(
        "--object 2 --move-to 1,2 --add DIR/sky.png --add DIR/film.gif --scale 2 --interval 50"));
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    // In the middle of 320 x 240, rounded to whole units.
    QCOMPARE(objects(), QStringList({QStringLiteral("film 4x3 at 24,24 turned 0"),
                                     QStringLiteral("sun 10x20 at 1,2 turned 0"),
                                     QStringLiteral("sky 30x41 at 145,100 turned 0"),
                                     QStringLiteral("film 8x6 at 158,119 turned 0")}));
    const ObjectState added = objectIn(m_fixture->plugin(), m_document, 4);
    QCOMPARE(added.frames.size(), 3);
    QCOMPARE(added.intervalMs, 50);
}

void TestEditObject::anAddedFilmMayKeepItsTiming()
{
    const QString uneven = path(QStringLiteral("uneven.gif"));
    FlipbookRun run = edit(QStringLiteral("--add DIR/uneven.gif"));
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: warning: %2: its frames have different durations, but "
                            "here each is shown for 100 ms; --keep-timing preserves the timing by "
                            "repeating frames\n")
                 .arg(m_document, uneven));
    QCOMPARE(run.status, 0);
    run = edit(QStringLiteral("--keep-timing --add DIR/uneven.gif --name kept"));
    QCOMPARE(run.err, QString());
    QCOMPARE(
        objectIn(m_fixture->plugin(), m_document, 4).frames,
        QStringList({QStringLiteral("uneven_1 #ff0000 4x3"), QStringLiteral("uneven_2 #00ff00 4x3"),
                     QStringLiteral("uneven_2 (2) #00ff00 4x3")}));
    QCOMPARE(objects().value(3), QStringLiteral("kept 4x3 at 158,119 turned 0"));
}

void TestEditObject::aFileThatCannotBeAddedChangesNothing()
{
    for (const char *name : {"missing.gif", "doc.flipbook"}) {
        const QString file = path(QLatin1String(name));
        const FlipbookRun run = edit(QStringLiteral("--object 1 --mirror --add ") + file);
        QVERIFY2(run.err.startsWith(
                     QStringLiteral("flipbook: %1: --add %2: %2: ").arg(m_document, file)),
                 qPrintable(run.err));
        QCOMPARE(run.status, 1);
        QVERIFY(bytesOf(m_document) == m_fresh);
    }
    const FlipbookRun run =
        edit(QStringLiteral("--max-memory 100K --object 1 --add DIR/sky.png --size 2000x2000 "
                            "--type background"));
    QCOMPARE(run.status, 1);
    QVERIFY(bytesOf(m_document) == m_fresh);
}

void TestEditObject::everyObjectMayBeRemoved()
{
    QCOMPARE(edit(QStringLiteral("--object 1 --remove")).status, 0);
    QCOMPARE(edit(QStringLiteral("--remove")).status, 0);
    QCOMPARE(objects(), QStringList());
    // And another one added to what is left.
    QCOMPARE(edit(QStringLiteral("--add DIR/sun.png --move-to 3,4")).status, 0);
    QCOMPARE(objects(), QStringList(QStringLiteral("sun 10x20 at 3,4 turned 0")));
}

void TestEditObject::aPageGetsAnotherSize()
{
    // No object need be chosen.
    const FlipbookRun run = edit(QStringLiteral("--page-size 800x600.5"));
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    const FlipbookRun info = flipbook({QStringLiteral("info"), m_document});
    QCOMPARE(info.out.section(QLatin1Char('\n'), 1, 1), QStringLiteral("page 1, 800 x 600.5"));
}

void TestEditObject::operationsOnOneOfSeveralPages()
{
    constexpr qint64 budget = qint64(256) << 20;
    Reading reading(budget, false);
    const OpenedFile opened = openFile(m_fixture->plugin(), m_document, reading);
    opened.document->addPage(QRectF(0, 0, 100, 50));
    saveDocument(*opened.document, m_document);
    const FlipbookRun run = edit(QStringLiteral(
        "--page 2 --page-size 60x40 --add DIR/sky.png --fit-page --object 1 --page-size 70x40"));
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    QStringList lines = flipbook({QStringLiteral("info"), m_document}).out.split(QLatin1Char('\n'));
    lines = lines.filter(QStringLiteral("page ")) + lines.filter(QStringLiteral("object "));
    QCOMPARE(lines,
             QStringList({QStringLiteral("page 1, 320 x 240"), QStringLiteral("page 2, 70 x 40"),
                          QStringLiteral("  object 1, \"film\", 4 x 3 at (24, 24)"),
                          QStringLiteral("  object 2, \"sun\", 10 x 20 at (52, 24)"),
                          QStringLiteral("  object 3, \"sky\", 60 x 40 at (0, 0)")}));
    // Without --page, it is the page of the object.
    QCOMPARE(edit(QStringLiteral("--object 3 --page-size 90x40 --fit-page")).status, 0);
    QCOMPARE(edit(QStringLiteral("--page-size 400x300")).status, 0);
    lines = flipbook({QStringLiteral("info"), m_document}).out.split(QLatin1Char('\n'));
    QCOMPARE(lines.filter(QStringLiteral("page ")),
             QStringList({QStringLiteral("page 1, 400 x 300"), QStringLiteral("page 2, 90 x 40")}));
    QVERIFY(lines.contains(QStringLiteral("  object 3, \"sky\", 90 x 40 at (0, 0)")));

    const FlipbookRun missing = edit(QStringLiteral("--page 3 --page-size 10x10"));
    QCOMPARE(
        missing.err,
        QStringLiteral("flipbook: %1: the document has 2 pages, so no page 3\n").arg(m_document));
    QCOMPARE(missing.status, 1);
}

void TestEditObject::framesAreReversed()
{
    QCOMPARE(edit(QStringLiteral("--object 1 --mirror --loops 3 --insert 1=DIR/big.png")).status,
             0);
    const ObjectState before = objectIn(m_fixture->plugin(), m_document, 1);
    // The new first frame is shown, at its own size, around the centre.
    QCOMPARE(before.size, QSizeF(8, 9));
    const FlipbookRun run = edit(QStringLiteral("--object 1 --reverse"));
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    const ObjectState after = objectIn(m_fixture->plugin(), m_document, 1);
    QCOMPARE(
        after.frames,
        QStringList({QStringLiteral("film_3 #0000ff 4x3"), QStringLiteral("film_2 #00ff00 4x3"),
                     QStringLiteral("film_1 #ff0000 4x3"), QStringLiteral("big #000000 8x9")}));
    QCOMPARE(after.size, QSizeF(4, 3));
    QCOMPARE(after.position, QPointF(24, 24));
    QCOMPARE(after.loopCount, 2);
    QCOMPARE(after.intervalMs, 100);
    QVERIFY(after.mirrored);
}

void TestEditObject::reversedTwiceIsTheSameFile()
{
    QCOMPARE(edit(QStringLiteral("--object 1 --reverse --reverse")).status, 0);
    QVERIFY(bytesOf(m_document) == m_fresh);
    QCOMPARE(edit(QStringLiteral("--object 1 --reverse")).status, 0);
    QVERIFY(bytesOf(m_document) != m_fresh);
    QCOMPARE(edit(QStringLiteral("--object 1 --reverse")).status, 0);
    QVERIFY(bytesOf(m_document) == m_fresh);
}

void TestEditObject::rangesOfFramesAreDeleted()
{
    QCOMPARE(edit(QStringLiteral("--object 1 --duplicate 1:4 --duplicate 1:5 --delete 2-4")).status,
             0);
    QCOMPARE(
        objectIn(m_fixture->plugin(), m_document, 1).frames,
        QStringList({QStringLiteral("film_1 #ff0000 4x3"), QStringLiteral("film_5 #ff0000 4x3")}));
    QCOMPARE(edit(QStringLiteral("--object 1 --delete 2-2")).status, 0);
    QCOMPARE(objectIn(m_fixture->plugin(), m_document, 1).frames,
             QStringList(QStringLiteral("film_1 #ff0000 4x3")));
}

void TestEditObject::infoTellsTheRotation()
{
    QCOMPARE(edit(QStringLiteral("--object 2 --rotate 12.5")).status, 0);
    const FlipbookRun info = flipbook({QStringLiteral("info"), m_document});
    QVERIFY2(info.out.contains(QStringLiteral(
                 "  object 2, \"sun\", 10 x 20 at (52, 24), rotated by 12.5 degrees\n")),
             qPrintable(info.out));
}

QTEST_MAIN(TestEditObject)
#include "tst_editobject.moc"
