#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/pathkinds.h"

#include <QtCore/QDirIterator>
#include <QtTest/QTest>

Q_DECLARE_METATYPE(InputKind)

namespace
{

struct InputCommand {
    const char *line; ///< with IN for the path
    Content content;
    QList<QByteArray> outputs; ///< what it writes
};

QVector<InputCommand> inputCommands()
{
    return {
        {"IN", Content::Document, {}},
        {"info IN", Content::Document, {}},
        {"info --json IN doc.flipbook", Content::Document, {}},
        {"info --opaque IN", Content::Gif, {}},
        {"sheet IN -o out.png", Content::Document, {"out.png"}},
        {"play IN", Content::Picture, {}},
        {"new out.flipbook --add IN", Content::Picture, {"out.flipbook"}},
        {"new out.flipbook --keep-timing --add red.png IN", Content::Gif, {"out.flipbook"}},
        {"new out.flipbook --film IN red.png", Content::Picture, {"out.flipbook"}},
        {"edit IN --interval 70", Content::Document, {"IN"}},
        {"edit doc.flipbook --add IN", Content::Gif, {"doc.flipbook"}},
        {"edit doc.flipbook --insert 1=IN", Content::Picture, {"doc.flipbook"}},
        {"edit doc.flipbook --replace 1=IN", Content::Picture, {"doc.flipbook"}},
        {"edit doc.flipbook --replace-all IN", Content::Picture, {"doc.flipbook"}},
        {"render IN -o out.png", Content::Document, {"out.png"}},
        {"frames IN -o out", Content::Document, {"out"}},
        {"record IN -o out --seconds 0.04", Content::Document, {"out"}},
        {"gif IN -o out.gif", Content::Document, {"out.gif"}},
        {"webp IN -o out.webp", Content::Document, {"out.webp"}},
        {"apng IN -o out.png", Content::Document, {"out.png"}},
        {"atlas IN -o out.png --json out.json", Content::Document, {"out.png", "out.json"}},
        {"sprite IN -o out.sprite3", Content::Document, {"out.sprite3"}},
        {"project IN -o out.sb3", Content::Document, {"out.sb3"}},
        {"web IN -o out.html", Content::Document, {"out.html"}},
        {"info film.gif --plugin IN", Content::Library, {}},
    };
}

QList<QByteArray> wordsOf(const QByteArray &line, const QByteArray &path)
{
    QList<QByteArray> words = line.split(' ');
    for (QByteArray &word : words) {
        if (word == "IN" || word.endsWith("=IN"))
            word = word.left(word.size() - 2) + path;
    }
    return words;
}

/// All bytes of a file, or of the files in a folder.
QByteArray bytesAt(const QString &path)
{
    if (!QFileInfo(path).isDir())
        return bytesOf(path);
    QByteArray bytes;
    const QStringList names = QDir(path).entryList(QDir::Files, QDir::Name);
    for (const QString &name : names)
        bytes += name.toUtf8() + bytesOf(path + QLatin1Char('/') + name);
    return bytes;
}

QByteArray outputOf(const PathScratch &scratch, const InputCommand &command)
{
    QByteArray bytes;
    for (const QByteArray &output : command.outputs)
        bytes += bytesAt(QFile::decodeName(scratch.absolute(output)));
    return bytes;
}

bool isOneOf(const QByteArray &message, const QByteArray &reasons)
{
    const QList<QByteArray> all = reasons.split('|');
    return std::any_of(all.begin(), all.end(),
                       [&](const QByteArray &reason) { return message.contains(reason); });
}

} // namespace

/// Each command with each kind of path to what it reads. Either it reads exactly that file, or it
/// says why not; it opens nothing else and writes nothing but its output.
class TestInputPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyCommandReadsWhatIsNamedOrSaysWhyNot_data();
    void everyCommandReadsWhatIsNamedOrSaysWhyNot();

private:
    QStringList problems(const InputKind &kind, const InputCommand &command);
    QString problemOfRefusal(const InputKind &kind, const InputCommand &command,
                             const QByteArray &path, const PathRun &run) const;
    QString problemOfReading(const PathScratch &scratch, const InputCommand &command,
                             const PathRun &run) const;
    bool holdsSecrets(const QString &document) const;

    DocumentFixture m_fixture;
    QMap<QByteArray, QByteArray> m_expected; ///< outputs, by commands
    bool m_canRunAsNobody = false;
};

void TestInputPaths::initTestCase()
{
    m_canRunAsNobody = canRunAs(User::Nobody);
    const QVector<InputCommand> commands = inputCommands();
    for (const InputCommand &command : commands) {
        const PathScratch scratch(command.content);
        const QByteArray path = scratch.file("usual" + scratch.ending());
        const PathRun run = runIn(scratch, wordsOf(command.line, path), User::Self);
        QVERIFY2(command.content == Content::Library || run.status == 0, run.err.constData());
        m_expected.insert(command.line, outputOf(scratch, command));
    }
}

void TestInputPaths::everyCommandReadsWhatIsNamedOrSaysWhyNot_data()
{
    QTest::addColumn<InputKind>("kind");
    QTest::addColumn<int>("number");
    int number = 0;
    const QVector<InputKind> kinds = inputKinds();
    for (const InputKind &kind : kinds)
        QTest::newRow(kind.name) << kind << number++;
}

void TestInputPaths::everyCommandReadsWhatIsNamedOrSaysWhyNot()
{
    QFETCH(InputKind, kind);
    QFETCH(int, number);
    if (kind.user == User::Nobody && !m_canRunAsNobody)
        QSKIP("no user without rights can run the program");
    if (kind.input != Input::Nothing && qEnvironmentVariableIsSet("STANDARD_FILES_OPEN"))
        QSKIP("the program gets all standard files, also those that are closed");
    QStringList all;
    const QVector<InputCommand> commands = inputCommands();
    const int step = commandStep(commands.size());
    for (int i = number % step; i < commands.size(); i += step)
        all += problems(kind, commands.at(i));
    for (const QString &problem : qAsConst(all))
        qCritical("%s", qPrintable(problem));
    QCOMPARE(all.size(), 0);
}

QStringList TestInputPaths::problems(const InputKind &kind, const InputCommand &command)
{
    PathScratch scratch(command.content);
    const QByteArray path = kind.make(scratch);
    // What an edited document is, behind links.
    QByteArray ofThisProcess = path;
    ofThisProcess.replace("/proc/self/cwd/", scratch.folder());
    const QString place =
        QFileInfo(QFile::decodeName(scratch.absolute(ofThisProcess))).canonicalFilePath();
    const auto before = scratch.listing();
    const PathRun run = runIn(scratch, wordsOf(command.line, path), kind.user, kind.input);

    QStringList problems;
    const bool isRead = kind.reason.isEmpty() && command.content != Content::Library;
    const QString wrong = isRead ? problemOfReading(scratch, command, run)
                                 : problemOfRefusal(kind, command, path, run);
    if (!wrong.isEmpty())
        problems << wrong;
    if (!scratch.arePipesUntouched())
        problems << QStringLiteral("opened a pipe");
    const QString folder = QFileInfo(QFile::decodeName(scratch.folder())).canonicalFilePath();
    const QList<QByteArray> changes = scratch.changesSince(before);
    for (const QByteArray &change : changes) {
        const QString changed = folder + QLatin1Char('/') + QFile::decodeName(change);
        const QByteArray output = change.split('/').constFirst();
        if (!isRead || !(command.outputs.contains(output) ||
                         (command.outputs.contains("IN") && changed == place)))
            problems << QStringLiteral("changed %1").arg(QFile::decodeName(change));
    }
    for (QString &problem : problems)
        problem = QStringLiteral("%1: %2, %3: %4")
                      .arg(QLatin1String(command.line), problem)
                      .arg(run.status)
                      .arg(QString::fromUtf8(run.err.left(300)));
    return problems;
}

QString TestInputPaths::problemOfRefusal(const InputKind &kind, const InputCommand &command,
                                         const QByteArray &path, const PathRun &run) const
{
    // Without a command, only what is there is taken for a file.
    if (QByteArray(command.line) == "IN" && run.status == 2)
        return run.err.contains("is neither a command nor a file") ? QString()
                                                                   : QStringLiteral("usage");
    const QByteArray reason = kind.reason.isEmpty() ? "cannot be loaded" : kind.reason;
    if (run.status != 1)
        return QStringLiteral("not refused");
    if (!run.err.contains(kind.shown.isEmpty() ? path : kind.shown))
        return QStringLiteral("does not name the file");
    if (command.content == Content::Library && run.err.contains("is a folder"))
        return QString();
    return isOneOf(run.err, reason) ? QString() : QStringLiteral("another reason");
}

QString TestInputPaths::problemOfReading(const PathScratch &scratch, const InputCommand &command,
                                         const PathRun &run) const
{
    if (run.status != 0)
        return QStringLiteral("not read");
    if (run.out.contains("77 x 13") || run.out.contains("\"width\": 77") ||
        run.out.contains("frames    3"))
        return QStringLiteral("another file was read");
    // The page has the name of the file as its title.
    const QByteArray line = command.line;
    if (command.content == Content::Document && !line.startsWith("web") &&
        !line.startsWith("edit") && outputOf(scratch, command) != m_expected.value(line))
        return QStringLiteral("another output");
    const QByteArray output = command.outputs.value(0);
    if (output.endsWith(".flipbook") && holdsSecrets(QFile::decodeName(scratch.absolute(output))))
        return QStringLiteral("another file was read");
    return QString();
}

bool TestInputPaths::holdsSecrets(const QString &document) const
{
    Reading reading(qint64(64) << 20, false);
    const LoadedDocument loaded = loadDocument(m_fixture.plugin(), document, reading);
    for (const Page *page : loaded.document->pages()) {
        const QList<CBaseObject *> objects = page->objects();
        for (CBaseObject *object : objects) {
            const Plugin::Frames frames = m_fixture.plugin().frames(*object);
            for (const auto &frame : frames) {
                if (frame.second.size() != QSize(4, 3))
                    return true;
            }
        }
    }
    return false;
}

QTEST_MAIN(TestInputPaths)
#include "tst_inputpaths.moc"
