#include "tests/flipbook/flipbookrun.h"
#include "tests/support/gifbuilder.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

class TestCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void helpAndVersionAreResults_data();
    void helpAndVersionAreResults();
    void helpDescribesACommand();
    void aFileWithoutACommandIsDescribedWhereThereIsNoDisplay();
    void optionsAreTakenWithADisplayToo();
    void theOutputHasALongNameToo_data();
    void theOutputHasALongNameToo();
    void wrongUsageHasAStatusOfItsOwn_data();
    void wrongUsageHasAStatusOfItsOwn();
    void aResultThatCannotBeWrittenIsAFailure();
    void theProgramOfTheWindowIsNamedWhenItIsMissing();
    void thePluginIsNamedWhenItCannotBeLoaded();
    void theEnvironmentNamesAnotherPlugin();
    void debugLinesAreShownOnRequestOnly();
    void namesBeyondAsciiWorkInThePlainLocale();
    void namesCannotSteerTheTerminal();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
    QString m_film;
};

void TestCommandLine::initTestCase()
{
    QVERIFY(m_folder.isValid());
    m_film = path(QStringLiteral("film.gif"));
    GifBuilder(4, 4).add(0, 2).add(1, 2).write(m_film);
}

void TestCommandLine::helpAndVersionAreResults_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("beginning");
    const QString version = QStringLiteral("flipbook 0.1.0\n");
    QTest::newRow("--help") << QStringList{QStringLiteral("--help")}
                            << QStringLiteral("Usage: flipbook COMMAND");
    QTest::newRow("--version") << QStringList{QStringLiteral("--version")} << version;
    for (const char *command : {"info", "sheet", "play"}) {
        const QString name = QLatin1String(command);
        QTest::newRow(qPrintable(name + QStringLiteral(" --help")))
            << QStringList{name, QStringLiteral("--help")}
            << QStringLiteral("Usage: flipbook %1 ").arg(name);
        QTest::newRow(qPrintable(name + QStringLiteral(" --version")))
            << QStringList{name, QStringLiteral("--version")} << version;
    }
}

void TestCommandLine::helpAndVersionAreResults()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, beginning);
    const FlipbookRun run = flipbook(arguments);
    QCOMPARE(run.status, 0);
    QVERIFY2(run.out.startsWith(beginning), qPrintable(run.out));
    QCOMPARE(run.err, QString());
}

void TestCommandLine::helpDescribesACommand()
{
    const QStringList words = {QStringLiteral("sheet"), QStringLiteral("--help")};
    const FlipbookRun described = flipbook({QStringLiteral("help"), words.first()});
    QCOMPARE(described.status, 0);
    QCOMPARE(described.err, QString());
    QCOMPARE(described.out, flipbook(words).out);
    QCOMPARE(flipbook({QStringLiteral("help")}).out, flipbook({QStringLiteral("--help")}).out);
}

void TestCommandLine::aFileWithoutACommandIsDescribedWhereThereIsNoDisplay()
{
    const FlipbookRun run = flipbook({m_film});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QString());
    QCOMPARE(run.out, flipbook({QStringLiteral("info"), m_film}).out);
    QVERIFY(run.out.contains(QStringLiteral("frames    2, named film_1 to film_2\n")));
    QCOMPARE(flipbook({m_film, QStringLiteral("--json")}).json().value(QStringLiteral("frames")),
             QJsonValue(2));
    QFile film(m_film);
    QVERIFY(film.open(QIODevice::ReadOnly));
    const FlipbookRun input = flipbookReading(film.readAll(), {QStringLiteral("-")});
    QCOMPARE(input.err, QString());
    QVERIFY2(input.out.contains(QStringLiteral("  frames    2, ")), qPrintable(input.out));
}

void TestCommandLine::optionsAreTakenWithADisplayToo()
{
    // The window knows no options: the command is meant.
    const FlipbookRun run =
        flipbook({m_film, QStringLiteral("--json")}, {QStringLiteral("DISPLAY=:nowhere")});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.json().value(QStringLiteral("frames")), QJsonValue(2));
}

void TestCommandLine::theOutputHasALongNameToo_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::newRow("two words") << QStringLiteral("sheet FILM --output OUT.png");
    QTest::newRow("an equals sign") << QStringLiteral("sheet FILM --output=OUT.png");
    QTest::newRow("a sprite") << QStringLiteral("sprite FILM --output OUT.sprite3");
    QTest::newRow("a project") << QStringLiteral("project FILM --output OUT.sb3");
    QTest::newRow("a folder") << QStringLiteral("frames FILM --output OUT");
}

void TestCommandLine::theOutputHasALongNameToo()
{
    QFETCH(QString, arguments);
    const QString name = path(QStringLiteral("long"));
    arguments.replace(QStringLiteral("FILM"), m_film).replace(QStringLiteral("OUT"), name);
    const FlipbookRun run = flipbook(arguments.split(QLatin1Char(' ')));
    QCOMPARE(run.out + run.err, QString());
    QCOMPARE(run.status, 0);
    const QString output = arguments.mid(arguments.indexOf(name));
    QVERIFY(QFileInfo::exists(output));
}

void TestCommandLine::wrongUsageHasAStatusOfItsOwn_data()
{
    QTest::addColumn<QString>("arguments"); // FILM is replaced by a valid file
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *arguments, const char *reason) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(reason);
    };
    row("", "a command is missing");
    row("frob FILM", "'frob' is neither a command nor a file");
    row("info", "a file is missing");
    row("play FILM other.gif", "'other.gif' is one file too many");
    row("shet FILM", "'shet' is neither a command nor a file; did you mean 'sheet'?");
    row("--hlep", "'--hlep' is neither a command nor a file; did you mean '--help'?");
    row("info FILM --frob", "'--frob' is not an option of info");
    row("info FILM --jsn", "'--jsn' is not an option of info; did you mean '--json'?");
    row("info FILM -json", "'-json' is not an option of info; did you mean '--json'?");
    row("info FILM -x", "'-x' is not an option of info");
    row("FILM --jsn", "'--jsn' is not an option of info; did you mean '--json'?");
    row("help shet", "'shet' is not a command; did you mean 'sheet'?");
    row("help sheet play", "'play' is one word too many");
    row("completion", "the name of a shell is missing: bash or zsh");
    row("completion fish", "'fish' is neither 'bash' nor 'zsh'");
    row("completion bash zsh", "'zsh' is one word too many");
    row("sheet FILM --output a.png -o b.png", "-o is given twice");
    row("info FILM --max-memory 12Q", "--max-memory takes a size such as 64M, not '12Q'");
    row("info FILM --max-memory 1M --max-memory 2M", "--max-memory is given twice");
    row("sheet FILM", "-o is missing");
    row("sheet FILM -o sheet.jpg", "'sheet.jpg' does not end in .png");
    row("play FILM --loops 0", "--loops takes a whole number from 1 to 1000000, not '0'");
    row("play FILM --loops many", "--loops takes a whole number from 1 to 1000000, not 'many'");
}

void TestCommandLine::wrongUsageHasAStatusOfItsOwn()
{
    QFETCH(QString, arguments);
    QFETCH(QString, reason);
    QStringList words = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    words.replaceInStrings(QStringLiteral("FILM"), m_film);
    const FlipbookRun run = flipbook(words);
    QCOMPARE(run.status, 2);
    QCOMPARE(run.out, QString());
    QCOMPARE(run.err.section(QLatin1Char('\n'), 0, 0), QStringLiteral("flipbook: ") + reason);
}

void TestCommandLine::aResultThatCannotBeWrittenIsAFailure()
{
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(QStringLiteral(FLIPBOOK_PROGRAM), {QStringLiteral("info"), m_film});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardError(),
             QByteArray("flipbook: standard output: cannot be written\n"));
}

void TestCommandLine::theProgramOfTheWindowIsNamedWhenItIsMissing()
{
    const QFileInfo program(QStringLiteral(FLIPBOOK_PROGRAM));
    const QTemporaryDir install;
    QVERIFY(QDir(install.path()).mkdir(QStringLiteral("bin")));
    const QString alone = install.filePath(QStringLiteral("bin/flipbook"));
    QVERIFY(QFile::copy(program.filePath(), alone));
    QVERIFY(QFile::link(QDir::cleanPath(program.path() + QStringLiteral("/../lib")),
                        install.filePath(QStringLiteral("lib"))));
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    process.start(alone, {m_film});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(QString::fromUtf8(process.readAllStandardError()),
             QStringLiteral("flipbook: %1-window: cannot be started: No such file or directory\n")
                 .arg(alone));
}

void TestCommandLine::thePluginIsNamedWhenItCannotBeLoaded()
{
    const FlipbookRun missing =
        flipbook({QStringLiteral("info"), m_film, QStringLiteral("--plugin"),
                  path(QStringLiteral("no.so"))});
    QCOMPARE(missing.status, 1);
    QVERIFY(missing.err.startsWith(QStringLiteral("flipbook: %1: the plug-in cannot be loaded: ")
                                       .arg(path(QStringLiteral("no.so")))));

    // A library, but another one.
    const QString framework =
        QFileInfo(QStringLiteral(PLUGIN_FILE)).path() + QStringLiteral("/libframework.so");
    const FlipbookRun other =
        flipbook({QStringLiteral("info"), m_film, QStringLiteral("--plugin"), framework});
    QCOMPARE(other.status, 1);
    QCOMPARE(
        other.err,
        QStringLiteral(
            "flipbook: %1: not an animated image plug-in: it has no createObject_animatedImage\n")
            .arg(framework));
}

void TestCommandLine::theEnvironmentNamesAnotherPlugin()
{
    const QString variable = QStringLiteral("FLIPBOOK_PLUGIN=");
    QCOMPARE(flipbook({QStringLiteral("info"), m_film}, {variable + path(QStringLiteral("no.so"))})
                 .status,
             1);
    const QString copy = path(QStringLiteral("copy.so"));
    QVERIFY(QFile::link(QStringLiteral(PLUGIN_FILE), copy));
    QCOMPARE(flipbook({QStringLiteral("info"), m_film}, {variable + copy}).status, 0);
}

void TestCommandLine::debugLinesAreShownOnRequestOnly()
{
    const QStringList play = {QStringLiteral("play"), m_film, QStringLiteral("--loops"),
                              QStringLiteral("1")};
    QCOMPARE(flipbook(play).err, QString());
    const FlipbookRun verbose = flipbook(play + QStringList(QStringLiteral("--verbose")));
    QVERIFY2(verbose.err.contains(QStringLiteral("notifyPlayStatus")), qPrintable(verbose.err));
}

void TestCommandLine::namesBeyondAsciiWorkInThePlainLocale()
{
    const QString film = path(QString::fromUtf8("na\xc3\xafve \xe5\x8a\xa8.gif"));
    QVERIFY(QFile::copy(m_film, film));
    const FlipbookRun run = flipbook({QStringLiteral("info"), film, QStringLiteral("--json")},
                                     {QStringLiteral("LC_ALL=C")});
    QCOMPARE(run.status, 0);
    QCOMPARE(run.json().value(QStringLiteral("names")).toArray().first().toString(),
             QString::fromUtf8("na\xc3\xafve \xe5\x8a\xa8_1"));
}

void TestCommandLine::namesCannotSteerTheTerminal()
{
    const FlipbookRun run =
        flipbook({QStringLiteral("info"), path(QStringLiteral("a\033[2Jb.gif"))});
    QCOMPARE(run.status, 1);
    QVERIFY(!run.err.contains(QChar(0x1b)));
    QVERIFY(run.err.contains(QStringLiteral("[2Jb.gif: not found")));
}

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
