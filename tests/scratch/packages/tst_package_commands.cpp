#include "flipbook/document/documentfile.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/scratch/packages/exporter/packagefile.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

#include <algorithm>

/// "flipbook sprite" and "flipbook project" where something is in the way, or too much.
class TestPackageCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void anObjectWithoutFramesGivesAMessageAndNoFile_data();
    void anObjectWithoutFramesGivesAMessageAndNoFile();
    void outputsThatCannotBeWrittenAreNamed_data();
    void outputsThatCannotBeWrittenAreNamed();
    void aFullDiskLeavesNoHalfFile_data();
    void aFullDiskLeavesNoHalfFile();
    void aFullDiskLeavesTheFileThatWasThere();
    void wrongUsageIsTold_data();
    void wrongUsageIsTold();
    void manyCostumesAreRemarkedOn();
    void muchDataIsRemarkedOn();
    void picturesLargerThanATextureAreReduced();
    void aReducedPictureKeepsAPixelOnEachSide_data();
    void aReducedPictureKeepsAPixelOnEachSide();
    void theProjectNamesTheProgramThatMadeIt();
    void aProjectOfSelectedFramesLooksAsLarge();
    void selectedFramesStayWhereTheyAreOnThePage();
    void moderateFilmsGiveNoRemark();

private:
    QString path(const QString &name) const { return m_fixture->path(name); }
    QStringList files() const { return QDir(path(QString())).entryList(QDir::Files); }
    FlipbookRun sprite(const QString &input, const QString &output) const
    {
        return flipbook(
            {QStringLiteral("sprite"), path(input), QStringLiteral("-o"), path(output)});
    }
    QJsonArray projectOf(const QString &input, const QString &options) const;
    static FlipbookRun withSmallDisk(int halfKilobytes, const QStringList &arguments);

    std::unique_ptr<DocumentFixture> m_fixture;
    QStringList m_files;
};

/// The film walk.gif, and a document that has an object without frames.
void TestPackageCommands::initTestCase()
{
    m_fixture = std::make_unique<DocumentFixture>();
    QVERIFY(QFile::copy(QStringLiteral(SAMPLES "/walk.gif"), path(QStringLiteral("walk.gif"))));
    QVERIFY(QFile::copy(QStringLiteral(SAMPLES "/apple.png"), path(QStringLiteral("apple.png"))));
    const auto document = m_fixture->document({});
    saveDocument(*document, path(QStringLiteral("empty.flipbook")));
}

void TestPackageCommands::init()
{
    m_files = files();
}

/// Runs flipbook where no file can grow beyond this size, as on a disk that is full.
FlipbookRun TestPackageCommands::withSmallDisk(int halfKilobytes, const QStringList &arguments)
{
    // Writing is refused with an error then, not with a signal.
    const QString script = QStringLiteral("trap '' XFSZ; ulimit -f %1; exec \"$@\"");
    QProcess process;
    process.start(QStringLiteral("sh"),
                  QStringList({QStringLiteral("-c"), script.arg(halfKilobytes),
                               QStringLiteral("sh"), QStringLiteral(FLIPBOOK_PROGRAM)}) +
                      arguments);
    FlipbookRun run;
    if (process.waitForFinished(longestRunMs()) && process.exitStatus() == QProcess::NormalExit)
        run.status = process.exitCode();
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

void TestPackageCommands::anObjectWithoutFramesGivesAMessageAndNoFile_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("output");
    QTest::newRow("sprite") << QStringLiteral("sprite") << QStringLiteral("out.sprite3");
    QTest::newRow("project") << QStringLiteral("project") << QStringLiteral("out.sb3");
}

void TestPackageCommands::anObjectWithoutFramesGivesAMessageAndNoFile()
{
    QFETCH(QString, command);
    QFETCH(QString, output);
    const QString document = path(QStringLiteral("empty.flipbook"));
    const FlipbookRun run = flipbook({command, document, QStringLiteral("-o"), path(output)});
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: film: has no frames, and Scratch does not "
                                     "accept a sprite without costumes\n")
                          .arg(document));
    QCOMPARE(files(), m_files);
}

void TestPackageCommands::outputsThatCannotBeWrittenAreNamed_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no folder") << QStringLiteral("none/out.sprite3")
                               << QStringLiteral("its folder does not exist");
    QTest::newRow("a folder") << QStringLiteral("folder.sprite3") << QStringLiteral("is a folder");
}

void TestPackageCommands::outputsThatCannotBeWrittenAreNamed()
{
    QFETCH(QString, output);
    QFETCH(QString, reason);
    QVERIFY(QDir().mkpath(path(QStringLiteral("folder.sprite3"))));
    const FlipbookRun run = sprite(QStringLiteral("walk.gif"), output);
    QCOMPARE(run.status, 1);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: %2\n").arg(path(output), reason));
    QCOMPARE(files(), m_files);
}

void TestPackageCommands::aFullDiskLeavesNoHalfFile_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("halfKilobytes");
    QTest::addColumn<QString>("message");
    // The film's pictures have some 10 KB each, all of them more than 60 KB.
    QTest::newRow("for the package")
        << QStringLiteral("walk.gif") << 120 << QStringLiteral("out.sprite3: ");
    QTest::newRow("for its pictures")
        << QStringLiteral("apple.png") << 2
        << QStringLiteral("apple.png: apple: its costumes could not be written");
    QTest::newRow("for a copy of the film")
        << QStringLiteral("walk.gif") << 2
        << QStringLiteral("walk.gif: no private copy can be made: File too large");
}

void TestPackageCommands::aFullDiskLeavesNoHalfFile()
{
    QFETCH(QString, input);
    QFETCH(int, halfKilobytes);
    QFETCH(QString, message);
    const FlipbookRun run =
        withSmallDisk(halfKilobytes, {QStringLiteral("sprite"), path(input), QStringLiteral("-o"),
                                      path(QStringLiteral("out.sprite3"))});
    QCOMPARE(run.status, 1);
    // What the library that writes pictures says of it comes first.
    QVERIFY2(run.err.contains(QStringLiteral("flipbook: ") + path(message)), qPrintable(run.err));
    QCOMPARE(files(), m_files);
}

void TestPackageCommands::aFullDiskLeavesTheFileThatWasThere()
{
    const QString output = path(QStringLiteral("kept.sprite3"));
    writeBytes(output, "an earlier sprite");
    const FlipbookRun run =
        withSmallDisk(120, {QStringLiteral("sprite"), path(QStringLiteral("walk.gif")),
                            QStringLiteral("-o"), output});
    QCOMPARE(run.status, 1);
    QCOMPARE(bytesOf(output), QByteArray("an earlier sprite"));
    QVERIFY(QFile::remove(output));
    QCOMPARE(files(), m_files);
}

void TestPackageCommands::wrongUsageIsTold_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *arguments, const char *reason) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(reason);
    };
    row("sprite walk.gif", "-o is missing");
    row("sprite -o a.sprite3", "a file is missing");
    row("sprite walk.gif -o a.sb3", "'a.sb3' does not end in .sprite3");
    row("project walk.gif -o a.sprite3", "'a.sprite3' does not end in .sb3");
}

void TestPackageCommands::wrongUsageIsTold()
{
    QFETCH(QString, arguments);
    QFETCH(QString, reason);
    const FlipbookRun run = flipbookIn(path(QString()), arguments.split(QLatin1Char(' ')));
    QCOMPARE(run.status, 2);
    QVERIFY2(run.err.startsWith(QStringLiteral("flipbook: %1\n").arg(reason)), qPrintable(run.err));
    QCOMPARE(files(), m_files);
}

void TestPackageCommands::manyCostumesAreRemarkedOn()
{
    GifBuilder film(2, 2);
    for (int i = 0; i < 201; ++i)
        film.add(i % 4, 10);
    film.write(path(QStringLiteral("long.gif")));
    const FlipbookRun run = sprite(QStringLiteral("long.gif"), QStringLiteral("long.sprite3"));
    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: warning: long: has 201 costumes; Scratch is "
                                     "slow with more than 200\n")
                          .arg(path(QStringLiteral("long.sprite3"))));
}

void TestPackageCommands::muchDataIsRemarkedOn()
{
    // Noise does not shrink: 2000 x 2000 opaque pixels are 12 MB, or 11.4 MiB.
    constexpr quint32 seed = 5;
    QRandomGenerator random(seed);
    QImage noise(2000, 2000, QImage::Format_ARGB32);
    for (int y = 0; y < noise.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(noise.scanLine(y));
        std::generate(row, row + noise.width(),
                      [&random] { return random.generate() | 0xff000000; });
    }
    QVERIFY(noise.save(path(QStringLiteral("noise.png"))));
    const FlipbookRun run = sprite(QStringLiteral("noise.png"), QStringLiteral("noise.sprite3"));
    QCOMPARE(run.status, 0);
    QVERIFY2(run.err.startsWith(QStringLiteral("flipbook: %1: warning: noise: has pictures of 1")
                                    .arg(path(QStringLiteral("noise.sprite3")))),
             qPrintable(run.err));
    const QString slow = QStringLiteral(" MiB; Scratch is slow with more than 10.0 MiB\n");
    QVERIFY2(run.err.contains(slow), qPrintable(run.err));
    const QString last = run.err.section(QLatin1Char('\n'), 1, 1);
    QVERIFY2(last.startsWith(QStringLiteral("flipbook: %1: warning: the file has 1")
                                 .arg(path(QStringLiteral("noise.sprite3")))),
             qPrintable(last));
    QVERIFY2(last.endsWith(QStringLiteral(" MiB; --every 2 or --scale 0.5 makes it smaller")),
             qPrintable(last));
}

void TestPackageCommands::picturesLargerThanATextureAreReduced()
{
    // 200 x 8192 / 10000 is 163.84, cut off.
    QVERIFY(Pictures::solid(10000, 200, Qt::blue).save(path(QStringLiteral("wide.png"))));
    const FlipbookRun run = sprite(QStringLiteral("wide.png"), QStringLiteral("wide.sprite3"));
    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QStringLiteral(
                          "flipbook: %1: warning: wide: pictures of 10000 x 200 pixels are larger "
                          "than Scratch can draw, and were reduced to 8192 x 163\n")
                          .arg(path(QStringLiteral("wide.sprite3"))));
}

void TestPackageCommands::aReducedPictureKeepsAPixelOnEachSide_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("costume");
    QTest::addColumn<QString>("reduced");
    QTest::newRow("one row") << QSize(20000, 1) << QStringLiteral("20000 x 1")
                             << QStringLiteral("8192 x 1");
    QTest::newRow("one column") << QSize(1, 20000) << QStringLiteral("1 x 20000")
                                << QStringLiteral("1 x 8192");
}

void TestPackageCommands::aReducedPictureKeepsAPixelOnEachSide()
{
    QFETCH(QSize, size);
    QFETCH(QString, costume);
    QFETCH(QString, reduced);
    QVERIFY(Pictures::solid(size.width(), size.height(), Qt::blue)
                .save(path(QStringLiteral("line.png"))));
    const FlipbookRun run = sprite(QStringLiteral("line.png"), QStringLiteral("line.sprite3"));
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: warning: line: pictures of %2 pixels are larger "
                            "than Scratch can draw, and were reduced to %3\n")
                 .arg(path(QStringLiteral("line.sprite3")), costume, reduced));
    QCOMPARE(run.status, 0);
    const PackageFile package = readPackage(path(QStringLiteral("line.sprite3")));
    QCOMPARE(package.sprites.size(), 1);
    const QJsonObject described = package.sprites.at(0)
                                      .toObject()
                                      .value(QLatin1String("costumes"))
                                      .toArray()
                                      .at(0)
                                      .toObject();
    const QByteArray png = package.files.value(described.value(QLatin1String("md5ext")).toString());
    const QImage picture = QImage::fromData(png, "PNG");
    QCOMPARE(QStringLiteral("%1 x %2").arg(picture.width()).arg(picture.height()), reduced);
    QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::blue));
}

void TestPackageCommands::theProjectNamesTheProgramThatMadeIt()
{
    QCOMPARE(flipbook({QStringLiteral("project"), path(QStringLiteral("walk.gif")),
                       QStringLiteral("-o"), path(QStringLiteral("walk.sb3"))})
                 .status,
             0);
    const QString version = flipbook({QStringLiteral("--version")}).out.trimmed();
    QVERIFY(version.startsWith(QStringLiteral("flipbook 0.")));
    const QByteArray project =
        readPackage(path(QStringLiteral("walk.sb3"))).files.value(QStringLiteral("project.json"));
    const QJsonObject meta =
        QJsonDocument::fromJson(project).object().value(QLatin1String("meta")).toObject();
    QCOMPARE(meta.value(QLatin1String("agent")).toString(), version);
}

/// The sprites of the project of @p input, with these options.
QJsonArray TestPackageCommands::projectOf(const QString &input, const QString &options) const
{
    QStringList arguments = {QStringLiteral("project"), path(input), QStringLiteral("-o"),
                             path(QStringLiteral("some.sb3"))};
    arguments += options.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const FlipbookRun run = flipbook(arguments);
    if (run.status != 0)
        return {run.err};
    return readPackage(path(QStringLiteral("some.sb3"))).sprites;
}

void TestPackageCommands::aProjectOfSelectedFramesLooksAsLarge()
{
    // A frame of 8 x 6 has a costume of 16 x 12, of which each side is halved. The first and the
    // third frame are shown for the time of the one after them, too: 300 and 700 ms.
    GifBuilder(8, 6).add(0, 10).add(1, 20).add(2, 30).add(3, 40).write(
        path(QStringLiteral("four.gif")));
    const QJsonObject sprite =
        projectOf(QStringLiteral("four.gif"), QStringLiteral("--every 2 --reverse --scale 0.5"))
            .first()
            .toObject();
    const QJsonArray costumes = sprite.value(QLatin1String("costumes")).toArray();
    QCOMPARE(costumes.size(), 2);
    const QJsonObject first = costumes.at(0).toObject();
    QCOMPARE(first.value(QLatin1String("name")).toString(), QStringLiteral("four_3"));
    QCOMPARE(costumes.at(1).toObject().value(QLatin1String("name")).toString(),
             QStringLiteral("four_1"));
    const PackageFile package = readPackage(path(QStringLiteral("some.sb3")));
    const QString picture = first.value(QLatin1String("md5ext")).toString();
    QCOMPARE(QImage::fromData(package.files.value(picture)).size(), QSize(8, 6));
    QCOMPARE(first.value(QLatin1String("rotationCenterX")).toDouble(), 4.0);
    QCOMPARE(sprite.value(QLatin1String("size")).toDouble(), 200.0);
    const QJsonObject lists = sprite.value(QLatin1String("lists")).toObject();
    QCOMPARE(lists.begin().value().toArray().at(1).toArray(),
             QJsonArray({QStringLiteral("0.7"), QStringLiteral("0.3")}));
}

void TestPackageCommands::selectedFramesStayWhereTheyAreOnThePage()
{
    QCOMPARE(flipbook({QStringLiteral("new"), path(QStringLiteral("both.flipbook")),
                       QStringLiteral("--add"), path(QStringLiteral("walk.gif")),
                       QStringLiteral("--add"), path(QStringLiteral("apple.png"))})
                 .status,
             0);
    const QString document = QStringLiteral("both.flipbook");
    const QJsonArray whole = projectOf(document, QString());
    const QJsonArray some = projectOf(document, QStringLiteral("--frames 3-5 --scale 2"));
    QCOMPARE(whole.size(), 2);
    QCOMPARE(some.size(), 2);
    for (int i = 0; i < 2; ++i) {
        const QJsonObject before = whole.at(i).toObject();
        const QJsonObject after = some.at(i).toObject();
        for (const char *key : {"name", "x", "y", "direction"})
            QCOMPARE(after.value(QLatin1String(key)), before.value(QLatin1String(key)));
        QCOMPARE(after.value(QLatin1String("size")).toDouble() * 2,
                 before.value(QLatin1String("size")).toDouble());
    }
    // A still picture has no third frame, and stays.
    QCOMPARE(some.at(0).toObject().value(QLatin1String("costumes")).toArray().size(), 3);
    QCOMPARE(some.at(1).toObject().value(QLatin1String("costumes")).toArray().size(), 1);
    QCOMPARE(projectOf(document, QStringLiteral("--frames 3-13")).first().toString(),
             QStringLiteral("flipbook: %1: walk: it has 12 frames, so no frame 13\n")
                 .arg(path(document)));
}

void TestPackageCommands::moderateFilmsGiveNoRemark()
{
    const FlipbookRun run = sprite(QStringLiteral("walk.gif"), QStringLiteral("walk.sprite3"));
    QCOMPARE(run.status, 0);
    QCOMPARE(run.out + run.err, QString());
}

QTEST_MAIN(TestPackageCommands)
#include "tst_package_commands.moc"
