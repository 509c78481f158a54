#include "flipbook/document/documentfile.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/flipbook/objectstate.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtTest/QTest>

/// Several pictures that become one film, several files for one command, and standard input.
class TestPictureSeries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void aFolderOfPicturesIsAFilmInNaturalOrder();
    void filesThatAreNoPicturesAreLeftOut();
    void aFolderWithoutPicturesIsRefused();
    void aPictureOutsideOfTheFolderIsRefused();
    void aFolderThatNeedsTooMuchIsRefused();
    void namedPicturesAreAFilmInNaturalOrder();
    void severalFilmsAndAnimationsAreAddedTogether();
    void equalNamesAreTold();
    void severalPicturesAreInsertedInOrder();
    void anEmptyFilmIsWrongUsage_data();
    void anEmptyFilmIsWrongUsage();
    void aPictureOfAFilmThatCannotBeReadIsNamed();
    void manyFilesAreATable();
    void manyFilesAreAnArrayForPrograms();
    void aFileThatCannotBeReadDoesNotStopTheOthers();
    void standardInputIsRead_data();
    void standardInputIsRead();
    void standardInputIsAddedToADocument();
    void standardInputIsBounded();
    void standardInputIsNamedInMessages();

private:
    QString path(const QString &name) const { return m_fixture->path(name); }
    /// Pictures of 4 x 3 pixels, in the folder "pictures".
    QString picture(const QString &name, const QColor &colour) const;

    std::unique_ptr<DocumentFixture> m_fixture;
    QString m_folder;
    QString m_document;
};

void TestPictureSeries::initTestCase()
{
    m_fixture = std::make_unique<DocumentFixture>();
    m_folder = path(QStringLiteral("pictures"));
    m_document = path(QStringLiteral("doc.flipbook"));
}

void TestPictureSeries::init()
{
    QFile::remove(m_document);
    QVERIFY(QDir(m_folder).removeRecursively());
    QVERIFY(QDir().mkpath(m_folder));
}

QString TestPictureSeries::picture(const QString &name, const QColor &colour) const
{
    QString file = m_folder + QLatin1Char('/') + name;
    Pictures::solid(4, 3, colour).save(file, "png");
    return file;
}

void TestPictureSeries::aFolderOfPicturesIsAFilmInNaturalOrder()
{
    picture(QStringLiteral("IMG_10.png"), Qt::blue);
    picture(QStringLiteral("IMG_2.png"), Qt::red);
    picture(QStringLiteral("IMG_9.PNG"), Qt::green);
    const FlipbookRun run =
        flipbook({QStringLiteral("new"), m_document, QStringLiteral("--add"), m_folder});
    QCOMPARE(run.err, QString());
    const ObjectState film = objectIn(m_fixture->plugin(), m_document, 1);
    QCOMPARE(film.frames,
             QStringList({QStringLiteral("IMG_2 #ff0000 4x3"), QStringLiteral("IMG_9 #00ff00 4x3"),
                          QStringLiteral("IMG_10 #0000ff 4x3")}));
    const FlipbookRun info = flipbook({QStringLiteral("info"), m_folder + QStringLiteral("/.")});
    QVERIFY2(info.out.contains(QStringLiteral("  format    folder of pictures\n"
                                              "  frames    3, named IMG_2 to IMG_10\n")),
             qPrintable(info.out));
}

void TestPictureSeries::filesThatAreNoPicturesAreLeftOut()
{
    picture(QStringLiteral("1.png"), Qt::red);
    picture(QStringLiteral(".hidden.png"), Qt::blue);
    writeBytes(m_folder + QStringLiteral("/notes.txt"), "1");
    writeBytes(m_folder + QStringLiteral("/2.png"), "1");
    const FlipbookRun run = flipbook({QStringLiteral("info"), m_folder});
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: warning: 2.png is left out: not a picture that "
                                     "can be read; those are PNG, JPEG, GIF, BMP, PBM, PGM, PPM "
                                     "and WebP\n")
                          .arg(m_folder));
    QVERIFY2(run.out.contains(QStringLiteral("  frames    1, named 1\n")), qPrintable(run.out));
}

void TestPictureSeries::aFolderWithoutPicturesIsRefused()
{
    writeBytes(m_folder + QStringLiteral("/notes.txt"), "1");
    const FlipbookRun run = flipbook({QStringLiteral("info"), m_folder});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: the folder has no config.json and no pictures\n")
                 .arg(m_folder));
    writeBytes(m_folder + QStringLiteral("/1.png"), "1");
    const FlipbookRun damaged = flipbook({QStringLiteral("info"), m_folder});
    QCOMPARE(damaged.status, 1);
    QVERIFY2(damaged.err.contains(QStringLiteral("no picture in the folder can be read: 1.png is "
                                                 "left out: not a picture")),
             qPrintable(damaged.err));
}

void TestPictureSeries::aPictureOutsideOfTheFolderIsRefused()
{
    const QString outside = path(QStringLiteral("outside.png"));
    QVERIFY(Pictures::solid(4, 3, Qt::red).save(outside));
    QVERIFY(QFile::link(outside, m_folder + QStringLiteral("/1.png")));
    const FlipbookRun run = flipbook({QStringLiteral("info"), m_folder});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: ./1.png: leads out of the folder; "
                                     "--allow-outside reads it\n")
                          .arg(m_folder));
    QCOMPARE(flipbook({QStringLiteral("info"), m_folder, QStringLiteral("--allow-outside")}).status,
             0);
}

void TestPictureSeries::aFolderThatNeedsTooMuchIsRefused()
{
    for (const char *name : {"1.png", "2.png", "3.png"})
        QVERIFY(Pictures::solid(500, 500, Qt::red)
                    .save(m_folder + QLatin1Char('/') + QLatin1String(name)));
    // Two of them fit into 2 MiB, at 4 bytes a pixel, but not three.
    const FlipbookRun run = flipbook(
        {QStringLiteral("info"), QStringLiteral("--max-memory"), QStringLiteral("2M"), m_folder});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains(m_folder + QStringLiteral(": 3 pictures would need ")),
             qPrintable(run.err));
}

void TestPictureSeries::namedPicturesAreAFilmInNaturalOrder()
{
    const QString ten = picture(QStringLiteral("walk_10.png"), Qt::blue);
    const QString two = picture(QStringLiteral("walk_2.png"), Qt::red);
    const FlipbookRun run =
        flipbook({QStringLiteral("new"), m_document, QStringLiteral("--film"), ten, two});
    QCOMPARE(run.err, QString());
    const ObjectState film = objectIn(m_fixture->plugin(), m_document, 1);
    QCOMPARE(film.frames, QStringList({QStringLiteral("walk_2 #ff0000 4x3"),
                                       QStringLiteral("walk_10 #0000ff 4x3")}));
    const FlipbookRun info = flipbook({QStringLiteral("info"), m_document});
    QVERIFY2(info.out.contains(QStringLiteral("object 1, \"walk\"")), qPrintable(info.out));
}

void TestPictureSeries::severalFilmsAndAnimationsAreAddedTogether()
{
    const QString gif = path(QStringLiteral("film.gif"));
    GifBuilder(4, 3).add(0, 10).add(1, 10).write(gif);
    const QString one = picture(QStringLiteral("a.png"), Qt::blue);
    const QString other = picture(QStringLiteral("b.png"), Qt::red);
    const FlipbookRun run =
        flipbook({QStringLiteral("new"), QStringLiteral("--film"), one, other, m_document,
                  QStringLiteral("--film"), other, QStringLiteral("--add"), gif});
    QCOMPARE(run.err, QString());
    QCOMPARE(objectIn(m_fixture->plugin(), m_document, 1).frames.size(), 2);
    QCOMPARE(objectIn(m_fixture->plugin(), m_document, 1).frames.first(),
             QStringLiteral("film_1 #ff0000 4x3"));
    QCOMPARE(objectIn(m_fixture->plugin(), m_document, 2).frames,
             QStringList({QStringLiteral("a #0000ff 4x3"), QStringLiteral("b #ff0000 4x3")}));
    QCOMPARE(objectIn(m_fixture->plugin(), m_document, 3).frames,
             QStringList({QStringLiteral("b #ff0000 4x3")}));
}

void TestPictureSeries::equalNamesAreTold()
{
    const QString one = picture(QStringLiteral("a.bmp"), Qt::blue);
    const QString other = picture(QStringLiteral("a.png"), Qt::red);
    const FlipbookRun run =
        flipbook({QStringLiteral("new"), m_document, QStringLiteral("--film"), one, other});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: warning: the name 'a' is taken; the frame is "
                                     "called 'a (2)'\n")
                          .arg(one));
}

void TestPictureSeries::severalPicturesAreInsertedInOrder()
{
    const QString one = picture(QStringLiteral("b.png"), Qt::blue);
    const QString other = picture(QStringLiteral("a,1.png"), Qt::red);
    const QString third = picture(QStringLiteral("c.png"), Qt::green);
    QCOMPARE(flipbook({QStringLiteral("new"), m_document, QStringLiteral("--add"), third}).err,
             QString());
    const auto inserted = [this](const QString &value) {
        return flipbook({QStringLiteral("edit"), m_document, QStringLiteral("--insert"), value});
    };
    // One file may have a comma in its name.
    QCOMPARE(inserted(QStringLiteral("1=") + other).err, QString());
    QCOMPARE(inserted(QStringLiteral("2=%1,%2").arg(one, third)).err.count(QLatin1Char('\n')), 1);
    QCOMPARE(objectIn(m_fixture->plugin(), m_document, 1).frames,
             QStringList({QStringLiteral("a,1 #ff0000 4x3"), QStringLiteral("b #0000ff 4x3"),
                          QStringLiteral("c (2) #00ff00 4x3"), QStringLiteral("c #00ff00 4x3")}));
    // All or none.
    const QByteArray before = bytesOf(m_document);
    const FlipbookRun missing = inserted(QStringLiteral("1=%1,none.png").arg(one));
    QCOMPARE(missing.status, 1);
    QVERIFY2(missing.err.contains(QStringLiteral("none.png: not found")), qPrintable(missing.err));
    QVERIFY(bytesOf(m_document) == before);
    QCOMPARE(inserted(QStringLiteral("1=%1,").arg(one)).status, 2);
}

void TestPictureSeries::anEmptyFilmIsWrongUsage_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no picture") << QStringList{QStringLiteral("--film")}
                                << QStringLiteral("--film needs files");
    QTest::newRow("an option instead")
        << QStringList{QStringLiteral("--film"), QStringLiteral("--force")}
        << QStringLiteral("--film needs files");
    QTest::newRow("the second") << QStringList{QStringLiteral("--film"), QStringLiteral("a.png"),
                                               QStringLiteral("--film")}
                                << QStringLiteral("--film needs files");
}

void TestPictureSeries::anEmptyFilmIsWrongUsage()
{
    QFETCH(QStringList, words);
    QFETCH(QString, reason);
    const FlipbookRun run = flipbook(QStringList{QStringLiteral("new"), m_document} + words);
    QCOMPARE(run.status, 2);
    QVERIFY2(run.err.startsWith(QStringLiteral("flipbook: ") + reason), qPrintable(run.err));
    QVERIFY(!QFile::exists(m_document));
}

void TestPictureSeries::aPictureOfAFilmThatCannotBeReadIsNamed()
{
    const QString one = picture(QStringLiteral("a.png"), Qt::blue);
    const QString missing = m_folder + QStringLiteral("/b.png");
    const FlipbookRun run =
        flipbook({QStringLiteral("new"), m_document, QStringLiteral("--film"), one, missing});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: not found\n").arg(missing));
    QVERIFY(!QFile::exists(m_document));
}

void TestPictureSeries::manyFilesAreATable()
{
    const QString gif = m_folder + QStringLiteral("/film.gif");
    GifBuilder(4, 3).loop(3).add(0, 10).add(1, 20).write(gif);
    const QString still = picture(QStringLiteral("a.png"), Qt::blue);
    saveDocument(*m_fixture->document({Qt::red, Qt::green}), m_document);
    const FlipbookRun run =
        flipbookIn(m_folder, {QStringLiteral("info"), QStringLiteral("film.gif"),
                              QStringLiteral("a.png"), QStringLiteral("../doc.flipbook")});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out,
             QStringLiteral("file             format    frames  size       interval       loops\n"
                            "film.gif         GIF       2       4 x 3      100 to 200 ms  3 times\n"
                            "a.png            PNG       1       4 x 3      200 ms         forever\n"
                            "../doc.flipbook  document  2       200 x 100\n"));
    QVERIFY(QFile::exists(gif) && QFile::exists(still));
}

void TestPictureSeries::manyFilesAreAnArrayForPrograms()
{
    const QString one = picture(QStringLiteral("a.png"), Qt::blue);
    const QString other = picture(QStringLiteral("b.png"), Qt::red);
    const FlipbookRun run =
        flipbook({QStringLiteral("info"), QStringLiteral("--json"), one, other});
    QCOMPARE(run.err, QString());
    const QJsonArray array = QJsonDocument::fromJson(run.out.toUtf8()).array();
    QCOMPARE(array.size(), 2);
    QCOMPARE(array.at(1).toObject().value(QStringLiteral("file")).toString(), other);
    QCOMPARE(array.at(1).toObject().value(QStringLiteral("format")).toString(),
             QStringLiteral("PNG"));
    QCOMPARE(array.at(0).toObject().value(QStringLiteral("width")).toInt(), 4);
}

void TestPictureSeries::aFileThatCannotBeReadDoesNotStopTheOthers()
{
    const QString one = picture(QStringLiteral("a.png"), Qt::blue);
    const FlipbookRun run =
        flipbook({QStringLiteral("info"), QStringLiteral("--json"),
                  path(QStringLiteral("none.gif")), one, path(QStringLiteral("no.gif"))});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: not found\nflipbook: %2: not found\n")
                          .arg(path(QStringLiteral("none.gif")), path(QStringLiteral("no.gif"))));
    QCOMPARE(QJsonDocument::fromJson(run.out.toUtf8()).array().size(), 1);
}

void TestPictureSeries::standardInputIsRead_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("frames");
    QTest::newRow("a GIF") << QStringLiteral("walk.gif") << QStringLiteral("GIF") << 12;
    QTest::newRow("an APNG") << QStringLiteral("pinwheel.png") << QStringLiteral("APNG") << 8;
    QTest::newRow("a picture") << QStringLiteral("apple.png") << QStringLiteral("PNG") << 1;
}

void TestPictureSeries::standardInputIsRead()
{
    QFETCH(QString, file);
    const QByteArray bytes = bytesOf(QFINDTESTDATA("../../samples") + QLatin1Char('/') + file);
    const FlipbookRun run = flipbookReading(
        bytes, {QStringLiteral("info"), QStringLiteral("--json"), QStringLiteral("-")});
    QCOMPARE(run.err, QString());
    QTEST(run.json().value(QStringLiteral("format")).toString(), "format");
    QTEST(run.json().value(QStringLiteral("frames")).toInt(), "frames");
    const QString first = run.json().value(QStringLiteral("names")).toArray().at(0).toString();
    QVERIFY2(first.startsWith(QStringLiteral("film")), qPrintable(first));
}

void TestPictureSeries::standardInputIsAddedToADocument()
{
    const QByteArray film = GifBuilder(4, 3).add(0, 10).add(1, 10).data();
    const FlipbookRun run = flipbookReading(
        film, {QStringLiteral("new"), m_document, QStringLiteral("--add"), QStringLiteral("-")});
    QCOMPARE(run.err, QString());
    QCOMPARE(
        objectIn(m_fixture->plugin(), m_document, 1).frames,
        QStringList({QStringLiteral("film_1 #ff0000 4x3"), QStringLiteral("film_2 #00ff00 4x3")}));
    // There is nowhere to write it.
    const QByteArray document = bytesOf(m_document);
    const FlipbookRun edit = flipbookReading(
        document, {QStringLiteral("edit"), QStringLiteral("-"), QStringLiteral("--mirror")});
    QCOMPARE(edit.status, 2);
    const FlipbookRun info =
        flipbookReading(document, {QStringLiteral("info"), QStringLiteral("-")});
    QVERIFY2(info.out.contains(QStringLiteral("object 1, \"film\"")), qPrintable(info.out));
    const FlipbookRun twice =
        flipbookReading(film, {QStringLiteral("info"), QStringLiteral("-"), QStringLiteral("-")});
    QCOMPARE(twice.status, 2);
}

void TestPictureSeries::standardInputIsBounded()
{
    const FlipbookRun run = flipbookReading(QByteArray(3 << 20, 'x'),
                                            {QStringLiteral("info"), QStringLiteral("-"),
                                             QStringLiteral("--max-memory"), QStringLiteral("2M")});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.startsWith(QStringLiteral("flipbook: standard input: the bytes of the file "
                                               "alone would need ")),
             qPrintable(run.err));
}

void TestPictureSeries::standardInputIsNamedInMessages()
{
    const FlipbookRun empty =
        flipbookReading(QByteArray(), {QStringLiteral("info"), QStringLiteral("-")});
    QCOMPARE(empty.status, 1);
    QCOMPARE(empty.err, QStringLiteral("flipbook: standard input: the file is empty\n"));
    // A file of that name needs a path.
    writeBytes(m_folder + QStringLiteral("/-"), GifBuilder(4, 3).add(0, 10).data());
    const FlipbookRun run = flipbookIn(m_folder, {QStringLiteral("info"), QStringLiteral("./-")});
    QVERIFY2(run.err.contains(QStringLiteral("a GIF without \".gif\" in its name")),
             qPrintable(run.err));
}

QTEST_MAIN(TestPictureSeries)
#include "tst_pictureseries.moc"
