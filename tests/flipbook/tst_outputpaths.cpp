#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/pathkinds.h"

#include <QtTest/QTest>

Q_DECLARE_METATYPE(OutputKind)

namespace
{

struct OutputCommand {
    QByteArray line;   ///< with OUT for the path
    QByteArray ending; ///< of OUT; empty for a folder
    QByteArray input;
    /// What else it writes.
    QByteArray second = {};
};

QVector<OutputCommand> fileCommands()
{
    return {
        {"sheet doc.flipbook -o OUT", ".png", "doc.flipbook"},
        {"render doc.flipbook --output OUT", ".png", "doc.flipbook"},
        {"gif doc.flipbook -o OUT", ".gif", "doc.flipbook"},
        {"webp red.png -o OUT", ".webp", "red.png"},
        {"apng film.gif -o OUT", ".png", "film.gif"},
        {"atlas film.gif -o OUT --json second.json", ".png", "film.gif", "second.json"},
        {"atlas film.gif -o second.png --json OUT", ".json", "film.gif", "second.png"},
        {"sprite doc.flipbook -o OUT", ".sprite3", "doc.flipbook"},
        {"project doc.flipbook -o OUT", ".sb3", "doc.flipbook"},
        {"web doc.flipbook -o OUT", ".html", "doc.flipbook"},
        {"new OUT --add red.png --force", ".flipbook", "red.png"},
    };
}

QVector<OutputCommand> folderCommands()
{
    return {
        {"frames red.png -o OUT", {}, "red.png"},
        {"record doc.flipbook -o OUT --seconds 0.08", {}, "doc.flipbook"},
    };
}

QList<QByteArray> wordsOf(const QByteArray &line, const QByteArray &path)
{
    QList<QByteArray> words = line.split(' ');
    for (QByteArray &word : words) {
        if (word == "OUT")
            word = path;
    }
    return words;
}

bool isOneOf(const QByteArray &message, const QByteArray &reasons)
{
    const QList<QByteArray> all = reasons.split('|');
    return std::any_of(all.begin(), all.end(),
                       [&](const QByteArray &reason) { return message.contains(reason); });
}

/// The path as messages show it.
QByteArray shown(const QByteArray &path)
{
    QByteArray text = path;
    text.replace("\xff", "\\xff");
    return text;
}

/// What is at @p path, from the folder of @p scratch, with its ending.
bool isWritten(const PathScratch &scratch, const QByteArray &path)
{
    const QString place = QFile::decodeName(scratch.absolute(path));
    if (QFileInfo(place).isDir())
        return !QDir(place).isEmpty();
    const QByteArray bytes = bytesOf(place);
    return bytes.size() > 3;
}

/// What is wrong with a run that should write.
QStringList problemsOfWriting(const PathScratch &scratch, const OutputCommand &command,
                              const PathRun &run, const QByteArray &target,
                              const QList<QByteArray> &changes)
{
    QStringList problems;
    if (run.status != 0)
        return {QStringLiteral("not written")};
    if (!isWritten(scratch, target))
        problems << QStringLiteral("nothing is there");
    bool isChanged = false;
    for (const QByteArray &change : changes) {
        const bool isTarget = change == target || change.startsWith(target + '/');
        isChanged = isChanged || isTarget;
        if (!isTarget && (command.second.isEmpty() || change != command.second))
            problems << QStringLiteral("changed ") + QFile::decodeName(change);
    }
    if (!isChanged)
        problems << QStringLiteral("wrote nothing");
    return problems;
}

/// What is wrong with a run that should be refused.
QStringList problemsOfRefusal(const OutputKind &kind, const PathRun &run, const QByteArray &path,
                              const QList<QByteArray> &changes)
{
    QStringList problems;
    const bool isUsage = isOneOf(kind.reason, "does not end in|needs a value");
    if (run.status != (isUsage ? 2 : 1))
        problems << QStringLiteral("not refused");
    if (!run.err.contains(shown(path)))
        problems << QStringLiteral("does not name the file");
    if (!isOneOf(run.err, kind.reason))
        problems << QStringLiteral("another reason");
    for (const QByteArray &change : changes)
        problems << QStringLiteral("changed ") + QFile::decodeName(change);
    return problems;
}

QStringList problems(const OutputKind &kind, const OutputCommand &command)
{
    PathScratch scratch(Content::Document);
    const QByteArray path = kind.make(scratch, command.ending, command.input);
    const auto before = scratch.listing();
    const PathRun run = runIn(scratch, wordsOf(command.line, path), kind.user);
    const QList<QByteArray> changes = scratch.changesSince(before);
    QByteArray target = kind.target.isEmpty() ? path : kind.target;
    if (!kind.target.isEmpty())
        target.replace("*", command.ending);
    QStringList problems = kind.reason.isEmpty()
                               ? problemsOfWriting(scratch, command, run, target, changes)
                               : problemsOfRefusal(kind, run, path, changes);
    if (!scratch.arePipesUntouched())
        problems << QStringLiteral("opened a pipe");
    for (QString &problem : problems)
        problem = QStringLiteral("%1: %2, %3: %4")
                      .arg(QString::fromUtf8(command.line), problem)
                      .arg(run.status)
                      .arg(QString::fromUtf8(run.err.left(300)));
    return problems;
}

} // namespace

/// Each command that writes, with each kind of path to its output. Either the output is exactly
/// there, or the command says why not; nothing else changes.
class TestOutputPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_canRunAsNobody = canRunAs(User::Nobody); }
    void filesAreWrittenWhereTheyAreNamed_data();
    void filesAreWrittenWhereTheyAreNamed();
    void foldersAreWrittenWhereTheyAreNamed_data();
    void foldersAreWrittenWhereTheyAreNamed();
    void aDocumentThatIsThereIsKept();
    void twoOutputsAreNeverOneFile_data();
    void twoOutputsAreNeverOneFile();
    void messagesAreNeverWrittenIntoAFile();

private:
    static void addRows(const QVector<OutputKind> &kinds);
    void check(const QVector<OutputCommand> &commands) const;

    bool m_canRunAsNobody = false;
};

void TestOutputPaths::addRows(const QVector<OutputKind> &kinds)
{
    QTest::addColumn<OutputKind>("kind");
    QTest::addColumn<int>("number");
    for (int i = 0; i < kinds.size(); ++i)
        QTest::newRow(kinds.at(i).name) << kinds.at(i) << i;
}

void TestOutputPaths::check(const QVector<OutputCommand> &commands) const
{
    QFETCH(OutputKind, kind);
    QFETCH(int, number);
    if (kind.user == User::Nobody && !m_canRunAsNobody)
        QSKIP("no user without rights can run the program");
    int wrong = 0;
    const int step = commandStep(commands.size());
    for (int i = number % step; i < commands.size(); i += step) {
        const QStringList found = problems(kind, commands.at(i));
        for (const QString &problem : found)
            qCritical("%s", qPrintable(problem));
        wrong += found.size();
    }
    QCOMPARE(wrong, 0);
}

void TestOutputPaths::filesAreWrittenWhereTheyAreNamed_data()
{
    addRows(fileOutputKinds());
}

void TestOutputPaths::filesAreWrittenWhereTheyAreNamed()
{
    check(fileCommands());
}

void TestOutputPaths::foldersAreWrittenWhereTheyAreNamed_data()
{
    addRows(folderOutputKinds());
}

void TestOutputPaths::foldersAreWrittenWhereTheyAreNamed()
{
    check(folderCommands());
}

void TestOutputPaths::aDocumentThatIsThereIsKept()
{
    const PathScratch scratch(Content::Document);
    scratch.link("doc.flipbook", "link.flipbook");
    const auto before = scratch.listing();
    const QList<QByteArray> paths = {"doc.flipbook", "./doc.flipbook", "link.flipbook"};
    for (const QByteArray &path : paths) {
        const PathRun run = runIn(scratch, {"new", path, "--add", "red.png"}, User::Self);
        QCOMPARE(run.status, 1);
        QCOMPARE(run.err, "flipbook: " + path + ": already exists; --force replaces it\n");
    }
    QCOMPARE(scratch.changesSince(before), QList<QByteArray>());
}

void TestOutputPaths::twoOutputsAreNeverOneFile_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::newRow("a file that is there") << true;
    QTest::newRow("a file that is not there yet") << false;
}

void TestOutputPaths::twoOutputsAreNeverOneFile()
{
    QFETCH(bool, isThere);
    const PathScratch scratch(Content::Document);
    if (isThere)
        scratch.file("out.json", "old");
    scratch.link("sub/../out.json", "out.png");
    const auto before = scratch.listing();
    const PathRun run =
        runIn(scratch, {"atlas", "film.gif", "-o", "out.png", "--json", "./out.json"}, User::Self);
    QCOMPARE(run.err, QByteArray("flipbook: ./out.json: is the same file as out.png\n"));
    QCOMPARE(run.status, 1);
    QCOMPARE(scratch.changesSince(before), QList<QByteArray>());
}

void TestOutputPaths::messagesAreNeverWrittenIntoAFile()
{
    // Without standard files, the first file that is opened would have their numbers.
    const PathScratch scratch(Content::Document);
    const PathRun usual = runIn(scratch, {"gif", "doc.flipbook", "-o", "a.gif"}, User::Self);
    QCOMPARE(usual.status, 0);
    const PathRun run =
        runIn(scratch, {"gif", "doc.flipbook", "-o", "b.gif"}, User::Self, Input::AllClosed);
    // Its line could not be printed.
    QCOMPARE(run.status, 1);
    const QString folder = QFile::decodeName(scratch.folder());
    QCOMPARE(bytesOf(folder + QStringLiteral("b.gif")).toHex(),
             bytesOf(folder + QStringLiteral("a.gif")).toHex());
    const PathRun reading = runIn(scratch, {"info", "-"}, User::Self, Input::Closed);
    QCOMPARE(reading.status, 1);
    QVERIFY2(reading.err.startsWith("flipbook: standard input: "), reading.err.constData());
}

QTEST_MAIN(TestOutputPaths)
#include "tst_outputpaths.moc"
