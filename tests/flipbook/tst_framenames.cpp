#include "flipbook/document/documentfile.h"
#include "flipbook/export/framefilename.h"
#include "flipbook/import/framenames.h"
#include "flipbook/object/animatedobject.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/flipbook/objectstate.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtTest/QTest>

/// Names of frames that come from files and go to files.
class TestFrameNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTakenNameGetsTheFirstFreeNumber_data();
    void aTakenNameGetsTheFirstFreeNumber();
    void manyEqualNamesAreNumbered();
    void aFrameIsCalledAsItsFile_data();
    void aFrameIsCalledAsItsFile();
    void aFileIsCalledAsItsFrame_data();
    void aFileIsCalledAsItsFrame();
    void filesSortAsFramesDo();
    void anyNameComesBack();
    void theNamesOfAForeignFolderAreUsed();
    void pictureFilesOnAPageGiveTheirNames();
    void insertedPhotosKeepTheirNumbers();
    void aNameThatIsTakenGetsANumberAndIsTold();
};

void TestFrameNames::aTakenNameGetsTheFirstFreeNumber_data()
{
    QTest::addColumn<QString>("present");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("given");
    const auto row = [](const char *present, const char *wanted, const char *given) {
        QTest::addRow("%s to %s", wanted, present)
            << QString::fromLatin1(present) << QString::fromLatin1(wanted)
            << QString::fromLatin1(given);
    };
    row("", "IMG_0001,IMG_0002", "IMG_0001,IMG_0002");
    row("IMG_0001", "IMG_0001,IMG_0002", "IMG_0001 (2),IMG_0002");
    row("a,a (2)", "a,a,b", "a (3),a (4),b");
    row("", "a,a (2),a", "a,a (2),a (3)");
    row("", "a,a,a (2)", "a,a (2),a (2) (2)");
    row("a,a", "a", "a (2)");
    row("", ",", ", (2)");
    row("A", "a", "a");
    row("%1", "%1,%2", "%1 (2),%2");
}

void TestFrameNames::aTakenNameGetsTheFirstFreeNumber()
{
    QFETCH(QString, present);
    QFETCH(QString, wanted);
    QFETCH(QString, given);
    Plugin::Frames frames;
    if (!present.isEmpty()) {
        const QStringList names = present.split(QLatin1Char(','));
        for (const QString &name : names)
            frames.append({name, QImage()});
    }
    Plugin::Frames added;
    QStringList numbered;
    const QStringList expected = given.split(QLatin1Char(','));
    const QStringList asked = wanted.split(QLatin1Char(','));
    for (const QString &name : asked) {
        if (expected.at(added.size()) != name)
            numbered << expected.at(added.size());
        added.append({name, QImage()});
    }
    FrameNames names(frames);
    QCOMPARE(names.giveAll(added), numbered);
    QStringList got;
    for (const auto &frame : added)
        got << frame.first;
    QCOMPARE(got, expected);
}

void TestFrameNames::manyEqualNamesAreNumbered()
{
    FrameNames names;
    for (int i = 0; i < 20000; ++i)
        names.give(QStringLiteral("a"));
    QCOMPARE(names.give(QStringLiteral("a")), QStringLiteral("a (20001)"));
}

void TestFrameNames::aFrameIsCalledAsItsFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *path, const char *name) {
        QTest::newRow(path) << QString::fromUtf8(path) << QString::fromUtf8(name);
    };
    row("/a/IMG_0001.JPG", "IMG_0001");
    row("IMG_0001.edited.png", "IMG_0001.edited");
    row("a.b/c", "c");
    row(".png", ".png");
    row("söл日.png", "söл日");
    row("a/ b .png", " b ");
}

void TestFrameNames::aFrameIsCalledAsItsFile()
{
    QFETCH(QString, path);
    QTEST(FrameNames::ofFile(path), "name");
}

void TestFrameNames::aFileIsCalledAsItsFrame_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("file");
    const auto row = [](const char *title, int number, int count, const QString &name,
                        const QString &file) {
        QTest::newRow(title) << number << count << name << file;
    };
    const auto text = [](const char *utf8) { return QString::fromUtf8(utf8); };
    row("one of few", 1, 9, text("world_1"), text("1-world_1.png"));
    row("the first of ten", 1, 10, text("world_1"), text("01-world_1.png"));
    row("the last of ten", 10, 10, text("a"), text("10-a.png"));
    row("one of thousands", 37, 1500, text("a"), text("0037-a.png"));
    row("no name", 2, 3, QString(), text("2.png"));
    row("slashes", 1, 1, text("../../etc/passwd"), text("1-.._.._etc_passwd.png"));
    row("a backslash and a colon", 1, 1, text("C:\\x"), text("1-C__x.png"));
    row("what Windows forbids", 1, 1, text("<a>|\"b\"?*"), text("1-_a___b___.png"));
    row("only dots", 1, 1, text(".."), text("1-...png"));
    row("a dash first", 1, 1, text("-rf"), text("1--rf.png"));
    row("control characters", 1, 1, text("a\nb\tc\x1b[31m\x7f"), text("1-a_b_c_[31m_.png"));
    row("a zero", 1, 1, QString::fromLatin1("a\0b", 3), text("1-a_b.png"));
    row("text that would run backwards", 1, 1, text("a\xe2\x80\xaegnp"), text("1-a_gnp.png"));
    row("a joined emoji", 1, 1, text("👩‍🚀"), text("1-👩‍🚀.png"));
    row("half a character", 1, 1, QString(QChar(0xd83d)) + text("x"), text("1-_x.png"));
    row("scripts", 1, 1, text("söл日"), text("1-söл日.png"));
    row("percent signs", 1, 1, text("%1 %2"), text("1-%1 %2.png"));
    row("120 letters", 1, 1, QString(120, QLatin1Char('a')),
        QStringLiteral("1-") + QString(120, QLatin1Char('a')) + QStringLiteral(".png"));
    row("121 letters", 1, 1, QString(121, QLatin1Char('a')),
        QStringLiteral("1-") + QString(120, QLatin1Char('a')) + QStringLiteral(".png"));
    // Three bytes each.
    row("long Chinese", 1, 1, text("日").repeated(500),
        QStringLiteral("1-") + text("日").repeated(40) + QStringLiteral(".png"));
    // Eleven bytes each, which belong together.
    row("long emoji", 1, 1, text("👩‍🚀").repeated(50),
        QStringLiteral("1-") + text("👩‍🚀").repeated(10) + QStringLiteral(".png"));
}

void TestFrameNames::aFileIsCalledAsItsFrame()
{
    QFETCH(int, number);
    QFETCH(int, count);
    QFETCH(QString, name);
    QTEST(frameFileName(number, count, name), "file");
}

void TestFrameNames::filesSortAsFramesDo()
{
    QStringList files;
    for (int i = 1; i <= 120; ++i)
        files << frameFileName(i, 120, QStringLiteral("%1").arg(1000 - i));
    QStringList sorted = files;
    sorted.sort();
    QCOMPARE(files, sorted);
}

void TestFrameNames::anyNameComesBack()
{
    const QStringList names = {QStringLiteral("world_1"),
                               QString(QLatin1String("")),
                               QStringLiteral("a/b"),
                               QStringLiteral(".."),
                               QStringLiteral("-rf"),
                               QStringLiteral("same"),
                               QStringLiteral("same"),
                               QString(400, QLatin1Char('n')),
                               QString::fromUtf8("söл日 👩‍🚀"),
                               QString::fromLatin1("a\0b\n\t\x1b[31m", 10),
                               QStringLiteral("\"quoted\" \\ %1"),
                               QStringLiteral(" spaces ")};
    DocumentFixture fixture;
    QList<QColor> colours;
    for (int i = 0; i < names.size(); ++i)
        colours << QColor(i, 0, 0);
    const auto document = fixture.document(colours);
    FrameNames::assign(*document->pages().first()->objects().first(), names);
    const QString file = fixture.path(QStringLiteral("names.flipbook"));
    saveDocument(*document, file);
    const QString folder = fixture.path(QStringLiteral("names"));
    const FlipbookRun run =
        flipbook({QStringLiteral("frames"), file, QStringLiteral("-o"), folder});
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    const QStringList files = QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    QCOMPARE(files.mid(0, 4),
             QStringList({QStringLiteral("01-world_1.png"), QStringLiteral("02.png"),
                          QStringLiteral("03-a_b.png"), QStringLiteral("04-...png")}));
    QCOMPARE(files.size(), names.size() + 1);

    const FlipbookRun info = flipbook({QStringLiteral("info"), folder, QStringLiteral("--json")});
    QCOMPARE(info.err, QString());
    QCOMPARE(info.json().value(QStringLiteral("names")).toArray(),
             QJsonArray::fromStringList(names));

    // And from there into a document again.
    const QString again = fixture.path(QStringLiteral("again.flipbook"));
    QCOMPARE(flipbook({QStringLiteral("new"), again, QStringLiteral("--add"), folder}).status, 0);
    const QJsonArray pages = flipbook({QStringLiteral("info"), again, QStringLiteral("--json")})
                                 .json()
                                 .value(QStringLiteral("pages"))
                                 .toArray();
    const QJsonArray objects = pages.first().toObject().value(QStringLiteral("objects")).toArray();
    QCOMPARE(objects.first().toObject().value(QStringLiteral("names")).toArray(),
             QJsonArray::fromStringList(names));
}

void TestFrameNames::theNamesOfAForeignFolderAreUsed()
{
    DocumentFixture fixture;
    const QString folder = fixture.path(QStringLiteral("wf"));
    QVERIFY(QDir().mkdir(folder));
    QVERIFY(Pictures::solid(4, 3, Qt::red).save(folder + QStringLiteral("/a.png")));
    // An element without a file is no frame, and one without a name has the object's own.
    writeBytes(folder + QStringLiteral("/config.json"),
               R"({"ImageList": [{"filename": "a.png", "name": "world_1"},
                   {"name": "nothing"}, {"filename": "a.png"},
                   {"filename": "a.png", "name": ""}, {"filename": "a.png", "name": null}]})");
    const FlipbookRun info = flipbook({QStringLiteral("info"), folder, QStringLiteral("--json")});
    QCOMPARE(info.status, 0);
    QCOMPARE(info.json().value(QStringLiteral("names")).toArray(),
             (QJsonArray{QStringLiteral("world_1"), QStringLiteral("wf_3"), QString(),
                         QStringLiteral("wf_5")}));
}

void TestFrameNames::pictureFilesOnAPageGiveTheirNames()
{
    DocumentFixture fixture;
    const QString photo = fixture.path(QStringLiteral("IMG_0001.jpg"));
    QVERIFY(Pictures::solid(4, 3, Qt::red).save(photo));
    const QString file = fixture.path(QStringLiteral("photo.flipbook"));
    QCOMPARE(flipbook({QStringLiteral("new"), file, QStringLiteral("--add"), photo}).status, 0);
    const FlipbookRun info = flipbook({QStringLiteral("info"), file});
    QVERIFY2(info.out.contains(QStringLiteral("object 1, \"IMG_0001\"")), qPrintable(info.out));
    QVERIFY2(info.out.contains(QStringLiteral("frames    1, named IMG_0001\n")),
             qPrintable(info.out));
}

void TestFrameNames::insertedPhotosKeepTheirNumbers()
{
    DocumentFixture fixture;
    const QString file = fixture.path(QStringLiteral("photos.flipbook"));
    saveDocument(*fixture.document({Qt::red}), file);
    QStringList words = {QStringLiteral("edit"), file};
    for (int i = 1; i <= 4; ++i) {
        const QString photo =
            fixture.path(QStringLiteral("IMG_%1.png").arg(i, 4, 10, QLatin1Char('0')));
        QVERIFY(Pictures::solid(4, 3, Qt::yellow).save(photo));
        words << QStringLiteral("--insert")
              << QStringLiteral("%1=%2").arg(QString::number(i), photo);
    }
    words << QStringLiteral("--delete") << QStringLiteral("5");
    const FlipbookRun run = flipbook(words);
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    QCOMPARE(objectIn(fixture.plugin(), file).frames,
             QStringList(
                 {QStringLiteral("IMG_0001 #ffff00 4x3"), QStringLiteral("IMG_0002 #ffff00 4x3"),
                  QStringLiteral("IMG_0003 #ffff00 4x3"), QStringLiteral("IMG_0004 #ffff00 4x3")}));
}

void TestFrameNames::aNameThatIsTakenGetsANumberAndIsTold()
{
    DocumentFixture fixture;
    const QString file = fixture.path(QStringLiteral("suns.flipbook"));
    saveDocument(*fixture.document({Qt::red}), file);
    const QString sun = fixture.path(QStringLiteral("sun.png"));
    QVERIFY(Pictures::solid(4, 3, Qt::yellow).save(sun));
    const FlipbookRun run = flipbook({QStringLiteral("edit"), file, QStringLiteral("--replace-all"),
                                      sun, QStringLiteral("--insert"), QStringLiteral("2=") + sun,
                                      QStringLiteral("--insert"), QStringLiteral("1=") + sun});
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: warning: %2: the name 'sun' is taken; the frame "
                            "is called 'sun (2)'\n"
                            "flipbook: %1: warning: %2: the name 'sun' is taken; the frame "
                            "is called 'sun (3)'\n")
                 .arg(file, sun));
    QCOMPARE(run.status, 0);
    QCOMPARE(objectIn(fixture.plugin(), file).frames,
             QStringList({QStringLiteral("sun (3) #ffff00 4x3"), QStringLiteral("sun #ffff00 4x3"),
                          QStringLiteral("sun (2) #ffff00 4x3")}));
}

QTEST_MAIN(TestFrameNames)
#include "tst_framenames.moc"
