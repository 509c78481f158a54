#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtTest/QTest>

class TestDocumentCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void aNewDocumentHoldsItsFilms();
    void anExistingDocumentIsKept();
    void aDocumentThatCannotBeMadeLeavesNothing();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();
    void framesAndConfigImportAsTheSameObject();
    void framesNeedAChoiceAmongObjects();
    void aPageIsPainted();
    void aRecordingMovesInStepsOfFortyMilliseconds();
    void recordingsAreEqualOnEveryRun();
    void aFolderInAGifPathIsExplained();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    FlipbookRun run(const QString &command, const QStringList &arguments) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_film;
    QString m_document;
};

void TestDocumentCommands::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_film = path(QStringLiteral("film.gif"));
    GifBuilder(20, 10).loop(0).add(0, 10).add(1, 10).write(m_film);
    m_document = path(QStringLiteral("doc.flipbook"));
    const FlipbookRun made =
        run(QStringLiteral("new"), {m_document, QStringLiteral("--add"), m_film});
    QCOMPARE(made.out + made.err, QString());
    QCOMPARE(made.status, 0);
}

FlipbookRun TestDocumentCommands::run(const QString &command, const QStringList &arguments) const
{
    return flipbook(QStringList(command) + arguments);
}

void TestDocumentCommands::aNewDocumentHoldsItsFilms()
{
    const QString picture = path(QStringLiteral("my_cat.png"));
    QVERIFY(Pictures::solid(30, 40, Qt::blue).save(picture));
    const QString two = path(QStringLiteral("two.flipbook"));
    QCOMPARE(run(QStringLiteral("new"), {QStringLiteral("--add"), m_film, picture, two}).status, 0);

    const FlipbookRun info = run(QStringLiteral("info"), {two, QStringLiteral("--json")});
    QCOMPARE(info.status, 0);
    const QJsonArray pages = info.json().value(QStringLiteral("pages")).toArray();
    QCOMPARE(pages.size(), 1);
    const QJsonArray objects = pages.first().toObject().value(QStringLiteral("objects")).toArray();
    QCOMPARE(objects.size(), 2);
    const QJsonObject film = objects.at(0).toObject();
    QCOMPARE(film.value(QStringLiteral("frames")).toInt(), 2);
    QCOMPARE(film.value(QStringLiteral("intervalMs")).toInt(), 100);
    QCOMPARE(film.value(QStringLiteral("loopCount")).toInt(), -1);
    QCOMPARE(film.value(QStringLiteral("x")).toDouble(), 24.0);
    QCOMPARE(film.value(QStringLiteral("y")).toDouble(), 24.0);
    const QJsonObject cat = objects.at(1).toObject();
    QCOMPARE(cat.value(QStringLiteral("names")).toArray(), QJsonArray{QStringLiteral("my_cat")});
    QCOMPARE(cat.value(QStringLiteral("x")).toDouble(), 68.0); // 24 + 20 + 24
    QCOMPARE(cat.value(QStringLiteral("shownHeight")).toDouble(), 40.0);

    const FlipbookRun text = run(QStringLiteral("info"), {two});
    QVERIFY(text.out.startsWith(two + QStringLiteral("\npage 1, 320 x 240\n"
                                                     "  object 1, \"film\", 20 x 10 at (24, 24)\n"
                                                     "    frames    2, named film_1 to film_2\n")));
}

void TestDocumentCommands::anExistingDocumentIsKept()
{
    const QByteArray before = bytesOf(m_document);
    const QStringList again = {m_document, QStringLiteral("--add"), m_film, m_film};
    const FlipbookRun refused = run(QStringLiteral("new"), again);
    QCOMPARE(refused.status, 1);
    QCOMPARE(refused.err,
             QStringLiteral("flipbook: %1: already exists; --force replaces it\n").arg(m_document));
    QCOMPARE(bytesOf(m_document), before);
    QCOMPARE(run(QStringLiteral("new"), again + QStringList(QStringLiteral("--force"))).status, 0);
    QVERIFY(bytesOf(m_document) != before);
}

void TestDocumentCommands::aDocumentThatCannotBeMadeLeavesNothing()
{
    const QString missing = path(QStringLiteral("missing.gif"));
    const QString never = path(QStringLiteral("never.flipbook"));
    const FlipbookRun failed =
        run(QStringLiteral("new"), {never, QStringLiteral("--add"), m_film, missing});
    QCOMPARE(failed.status, 1);
    QCOMPARE(failed.err, QStringLiteral("flipbook: %1: not found\n").arg(missing));
    QVERIFY(!QFile::exists(never));
}

void TestDocumentCommands::wrongUsageIsTold_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *arguments, const char *reason) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(reason);
    };
    row("new", "a file is missing");
    row("new film.gif", "'film.gif' does not end in .flipbook");
    row("new a.flipbook --add b.flipbook", "'b.flipbook' is one document too many");
    row("new a.flipbook film.gif", "files to be added must follow --add");
    row("new a.flipbook --add", "--add needs files");
    row("render a.flipbook -o p.png --scale 0",
        "--scale takes a number above 0, up to 100, not '0'");
    row("render a.flipbook -o p.png --scale nan",
        "--scale takes a number above 0, up to 100, not 'nan'");
    row("record a.flipbook -o d", "--seconds is missing");
    row("record a.flipbook -o d --seconds 0.01",
        "0.01 seconds at 25 pictures a second give no picture");
    row("record a.flipbook -o d --seconds 1 --fps 0",
        "--fps takes a whole number from 1 to 1000, not '0'");
    row("frames a.flipbook -o d.gif",
        "'d.gif' contains \".gif\" and could not be imported as a frame folder");
}

void TestDocumentCommands::wrongUsageIsTold()
{
    QFETCH(QString, arguments);
    QFETCH(QString, reason);
    const FlipbookRun told = flipbook(arguments.split(QLatin1Char(' ')));
    QCOMPARE(told.err.section(QLatin1Char('\n'), 0, 0), QStringLiteral("flipbook: ") + reason);
    QCOMPARE(told.status, 2);
}

void TestDocumentCommands::framesAndConfigImportAsTheSameObject()
{
    // With the same name as the film, so that the frames get the same names again.
    QVERIFY(QDir().mkdir(path(QStringLiteral("out"))));
    const QString folder = path(QStringLiteral("out/film"));
    const FlipbookRun exported =
        run(QStringLiteral("frames"), {m_document, QStringLiteral("-o"), folder});
    QCOMPARE(exported.out + exported.err, QString());
    QCOMPARE(exported.status, 0);
    QCOMPARE(QDir(folder).entryList(QDir::Files),
             (QStringList{QStringLiteral("1-film_1.png"), QStringLiteral("2-film_2.png"),
                          QStringLiteral("config.json")}));

    DocumentFixture fixture;
    const OwnedObject original = fixture.plugin().createObject();
    const OwnedObject copy = fixture.plugin().createObject();
    AnimatedObject(*original).loadPath(m_film);
    AnimatedObject(*copy).loadPath(folder);
    const Plugin::Frames wanted = fixture.plugin().frames(*original);
    const Plugin::Frames got = fixture.plugin().frames(*copy);
    QCOMPARE(got.size(), 2);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(got.at(i).first, wanted.at(i).first);
        QCOMPARE(got.at(i).second.convertToFormat(QImage::Format_ARGB32),
                 wanted.at(i).second.convertToFormat(QImage::Format_ARGB32));
    }
    QCOMPARE(AnimatedObject(*copy).intervalMs(), 100);
    QCOMPARE(AnimatedObject(*copy).loopCount(), AnimatedObject(*original).loopCount());
    QCOMPARE(copy->getSize(), QSizeF(20, 10));

    const FlipbookRun again =
        run(QStringLiteral("frames"), {m_document, QStringLiteral("-o"), folder});
    QCOMPARE(again.status, 1);
    QCOMPARE(again.err,
             QStringLiteral("flipbook: %1: is a folder that is not empty\n").arg(folder));
}

void TestDocumentCommands::framesNeedAChoiceAmongObjects()
{
    const QString two = path(QStringLiteral("two.flipbook"));
    const QString folder = path(QStringLiteral("frames"));
    QCOMPARE(run(QStringLiteral("new"), {two, QStringLiteral("--add"), m_film, m_film}).status, 0);
    QCOMPARE(run(QStringLiteral("frames"), {two, QStringLiteral("-o"), folder}).err,
             QStringLiteral("flipbook: %1: it has 2 objects; choose one with --object\n").arg(two));
    QVERIFY(!QFile::exists(folder));
    QCOMPARE(run(QStringLiteral("frames"), {two, QStringLiteral("-o"), folder,
                                            QStringLiteral("--object"), QStringLiteral("2")})
                 .status,
             0);
}

void TestDocumentCommands::aPageIsPainted()
{
    const QString edited = path(QStringLiteral("edited.png"));
    const QString presented = path(QStringLiteral("presented.png"));
    QCOMPARE(run(QStringLiteral("render"), {m_document, QStringLiteral("-o"), edited}).status, 0);
    QCOMPARE(run(QStringLiteral("render"),
                 {m_document, QStringLiteral("-o"), presented, QStringLiteral("--presented"),
                  QStringLiteral("--scale"), QStringLiteral("2")})
                 .status,
             0);
    const QImage page(edited);
    QCOMPARE(page.size(), QSize(320, 240));
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x)
            QCOMPARE(page.pixelColor(x, y),
                     QRect(24, 24, 20, 10).contains(x, y) ? QColor(Qt::red) : QColor(Qt::white));
    }
    QCOMPARE(QImage(presented).size(), QSize(640, 480));
    QCOMPARE(QImage(presented).pixelColor(60, 60), QColor(Qt::red));

    const FlipbookRun beyond =
        run(QStringLiteral("render"), {m_document, QStringLiteral("-o"), edited,
                                       QStringLiteral("--page"), QStringLiteral("2")});
    QCOMPARE(beyond.status, 1);
    QCOMPARE(
        beyond.err,
        QStringLiteral("flipbook: %1: the document has 1 pages, so no page 2\n").arg(m_document));
}

void TestDocumentCommands::aRecordingMovesInStepsOfFortyMilliseconds()
{
    const QString folder = path(QStringLiteral("record"));
    QCOMPARE(run(QStringLiteral("record"), {m_document, QStringLiteral("-o"), folder,
                                            QStringLiteral("--seconds"), QStringLiteral("0.4")})
                 .status,
             0);
    // Two frames of 100 ms. After 0, 40, 80 ms the first; 120, 160 the second; at 200 ms the film
    // begins again.
    const QByteArray shown = "aaabbaaabb";
    QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 10);
    for (int i = 0; i < 10; ++i) {
        const QImage picture(
            QStringLiteral("%1/frame-%2.png").arg(folder).arg(i + 1, 5, 10, QLatin1Char('0')));
        QCOMPARE(picture.pixelColor(30, 30), QColor(shown.at(i) == 'a' ? Qt::red : Qt::green));
    }
}

void TestDocumentCommands::recordingsAreEqualOnEveryRun()
{
    const QStringList folders = {path(QStringLiteral("one")), path(QStringLiteral("other"))};
    for (const QString &folder : folders)
        QCOMPARE(run(QStringLiteral("record"),
                     {m_document, QStringLiteral("-o"), folder, QStringLiteral("--seconds"),
                      QStringLiteral("0.2"), QStringLiteral("--fps"), QStringLiteral("50")})
                     .status,
                 0);
    const QStringList pictures = QDir(folders.first()).entryList(QDir::Files);
    QCOMPARE(pictures.size(), 10);
    for (const QString &picture : pictures)
        QCOMPARE(bytesOf(folders.last() + QLatin1Char('/') + picture),
                 bytesOf(folders.first() + QLatin1Char('/') + picture));
}

void TestDocumentCommands::aFolderInAGifPathIsExplained()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("x.gifs/frames"))));
    const QString folder = path(QStringLiteral("x.gifs/frames"));
    writeBytes(folder + QStringLiteral("/config.json"), "{}");
    const FlipbookRun info = run(QStringLiteral("info"), {folder});
    QCOMPARE(info.status, 1);
    QCOMPARE(info.err,
             QStringLiteral("flipbook: %1: is a folder, but its path contains \".gif\" and "
                            "would be taken for a GIF; use another path to it\n")
                 .arg(folder));
}

QTEST_MAIN(TestDocumentCommands)
#include "tst_documentcommands.moc"
