#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/pictures.h"

#include <KZip>
#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QImage>
#include <QtTest/QTest>

#include <array>

namespace
{

/// What a form has kept of a film of two frames.
struct Kept {
    bool isRead = false; ///< by flipbook
    QList<int> delaysMs;
    QStringList names;
    int alpha = -1; ///< of the first pixel of the first frame
    bool hasLoops = false;
};

/// Who can say what is in a form.
enum class Reader { Flipbook, Scratch, Browser };

/// How each form is written, with IN for the film and OUT for what is read again. What only others
/// write is put together here, from a folder of pictures, in place of a command.
struct Form {
    const char *name;
    const char *command; ///< as written in the table
    const char *arguments;
    const char *output;
    Reader reader = Reader::Flipbook;
    const char *options = ""; ///< with which flipbook reads it
};

constexpr std::array<Form, 11> forms = {{
    {"GIF", "`gif`", "gif IN -o OUT", "out.gif"},
    {"WebP", "`webp`", "webp IN -o OUT", "out.webp"},
    {"APNG", "`apng`", "apng IN -o OUT", "out.png"},
    {"sprite sheet with JSON", "`atlas`", "atlas IN -o sheet.png --json OUT", "sheet.json"},
    {"sprite sheet with `--grid`", "–", "atlas IN -o OUT --json sheet.json", "grid.png",
     Reader::Flipbook, " --grid 1x2"},
    {"frame folder", "`frames`", "frames IN -o OUT", "folder"},
    {"folder of pictures", "–", "frames IN -o OUT", "pictures"},
    {"document", "`new`", "new OUT --add IN", "out.flipbook"},
    {"Scratch sprite", "`sprite`", "sprite IN -o OUT", "out.sprite3", Reader::Scratch},
    {"Scratch project", "`project`", "project IN -o OUT", "out.sb3", Reader::Scratch},
    {"web page", "`web`", "web IN -o OUT", "out.html", Reader::Browser},
}};

/// A line of the table: the first cell, and those after it.
using Table = QMap<QString, QStringList>;

Table tableOfGuide()
{
    const QString guide = QString::fromUtf8(bytesOf(QStringLiteral(USERS_GUIDE)));
    const QString section = guide.section(QStringLiteral("\n## Forms, and what they keep\n"), 1)
                                .section(QStringLiteral("\n## "), 0, 0);
    Table table;
    const QStringList lines = section.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        QStringList cells = line.split(QLatin1String(" | "));
        if (!line.startsWith(QLatin1String("| ")) || cells.size() < 3)
            continue;
        const QString form = cells.takeFirst().mid(2);
        cells.last().remove(QLatin1String(" |"));
        if (form != QLatin1String("form"))
            table.insert(form, cells);
    }
    return table;
}

QString delaysText(const QList<int> &delaysMs)
{
    if (delaysMs == QList<int>({105, 230}))
        return QStringLiteral("ms");
    if (delaysMs == QList<int>({110, 230}))
        return QStringLiteral("10 ms");
    if (delaysMs == QList<int>({105, 105}))
        return QStringLiteral("one for all");
    // What flipbook takes when it knows none.
    return delaysMs == QList<int>({200, 200}) ? QStringLiteral("no") : QStringLiteral("other");
}

QString namesText(const QStringList &names)
{
    return names == QStringList({QStringLiteral("jump"), QStringLiteral("land")})
               ? QStringLiteral("yes")
               : QStringLiteral("no");
}

QString alphaText(int alpha)
{
    return alpha == 128   ? QStringLiteral("full")
           : alpha == 255 ? QStringLiteral("on or off")
                          : QStringLiteral("none");
}

QString yesOrNo(bool is)
{
    return is ? QStringLiteral("yes") : QStringLiteral("no");
}

/// The target of a sprite, or the last one of a project; the one before that is the stage.
QJsonObject targetOf(const KArchiveDirectory &directory)
{
    if (const KArchiveFile *sprite = directory.file(QStringLiteral("sprite.json")))
        return QJsonDocument::fromJson(sprite->data()).object();
    const KArchiveFile *project = directory.file(QStringLiteral("project.json"));
    return QJsonDocument::fromJson(project->data())
        .object()
        .value(QLatin1String("targets"))
        .toArray()
        .last()
        .toObject();
}

/// Whether the script rests after 5 passes of 2 costumes: that is 9 changes.
bool restsAfterNineChanges(const QJsonObject &blocks)
{
    return std::any_of(blocks.begin(), blocks.end(), [](const QJsonValue &value) {
        const QJsonObject block = value.toObject();
        const QJsonArray operand = block.value(QLatin1String("inputs"))
                                       .toObject()
                                       .value(QLatin1String("OPERAND2"))
                                       .toArray()
                                       .at(1)
                                       .toArray();
        return block.value(QLatin1String("opcode")) == QLatin1String("operator_equals") &&
               operand.at(1) == QLatin1String("9");
    });
}

Kept keptByScratch(const QString &path)
{
    KZip zip(path);
    if (!zip.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject target = targetOf(*zip.directory());
    const QJsonArray costumes = target.value(QLatin1String("costumes")).toArray();
    Kept kept;
    for (const QJsonValue &costume : costumes)
        kept.names << costume.toObject().value(QLatin1String("name")).toString();
    const QString picture = costumes.first().toObject().value(QLatin1String("md5ext")).toString();
    kept.alpha = qAlpha(QImage::fromData(zip.directory()->file(picture)->data()).pixel(0, 0));
    kept.hasLoops = restsAfterNineChanges(target.value(QLatin1String("blocks")).toObject());
    const QJsonObject lists = target.value(QLatin1String("lists")).toObject();
    for (const QJsonValue &list : lists) {
        const QJsonArray seconds = list.toArray().at(1).toArray();
        for (const QJsonValue &value : seconds)
            kept.delaysMs << qRound(value.toString().toDouble() * 1000);
    }
    return kept;
}

Kept keptByBrowser(const QString &path)
{
    const QByteArray page = bytesOf(path);
    const QByteArray begin = "<script type=\"application/json\" id=\"data\">";
    const int from = page.indexOf(begin) + begin.size();
    const QJsonObject data =
        QJsonDocument::fromJson(page.mid(from, page.indexOf("</script>", from) - from)).object();
    const QJsonObject object = data.value(QLatin1String("objects")).toArray().first().toObject();
    const QString picture = data.value(QLatin1String("pictures")).toArray().first().toString();
    Kept kept;
    kept.alpha = qAlpha(QImage::fromData(QByteArray::fromBase64(picture.toLatin1())).pixel(0, 0));
    kept.hasLoops = object.value(QLatin1String("loops")).toInt() == 4;
    const QJsonArray delays = object.value(QLatin1String("delays")).toArray();
    for (const QJsonValue &delay : delays)
        kept.delaysMs << delay.toInt();
    for (const char *name : {"jump", "land"}) {
        if (page.contains(name))
            kept.names << QLatin1String(name);
    }
    return kept;
}

} // namespace

/// The table of forms in the guide for users, against what the commands do: one film is written in
/// each form, and read again.
class TestForms : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theTableIsComplete();
    void whatTheTableSaysIsKept_data();
    void whatTheTableSaysIsKept();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    bool run(const QString &arguments) const;
    Kept keptIn(const Form &form, const QString &input) const;
    Kept keptByFlipbook(const QString &input) const;
    bool hasFourLoops(const QString &input) const;
    void makeOthersForm(const Form &form, const QString &output) const;

    QTemporaryDir m_folder;
};

bool TestForms::run(const QString &arguments) const
{
    const FlipbookRun run = flipbookIn(m_folder.path(), arguments.split(QLatin1Char(' ')));
    if (run.status != 0)
        QTest::qFail(qPrintable(arguments + QStringLiteral(": ") + run.err), __FILE__, __LINE__);
    return run.status == 0;
}

/// What flipbook reads, as an atlas describes it: that has all that a frame can have. @p input is a
/// file, perhaps with options.
Kept TestForms::keptByFlipbook(const QString &input) const
{
    run(QStringLiteral("atlas %1 -o probe.png --json probe.json").arg(input));
    const QJsonArray frames = QJsonDocument::fromJson(bytesOf(path(QStringLiteral("probe.json"))))
                                  .object()
                                  .value(QStringLiteral("frames"))
                                  .toArray();
    Kept kept;
    for (const QJsonValue &value : frames) {
        kept.delaysMs << value.toObject().value(QStringLiteral("duration")).toInt();
        kept.names << value.toObject().value(QStringLiteral("filename")).toString();
    }
    const QJsonObject place = frames.first().toObject().value(QStringLiteral("frame")).toObject();
    const QImage sheet(path(QStringLiteral("probe.png")));
    kept.alpha = qAlpha(sheet.pixel(place.value(QStringLiteral("x")).toInt(),
                                    place.value(QStringLiteral("y")).toInt()));
    kept.hasLoops = hasFourLoops(input);
    return kept;
}

bool TestForms::hasFourLoops(const QString &input) const
{
    QJsonObject info = flipbookIn(m_folder.path(),
                                  (QStringLiteral("info --json ") + input).split(QLatin1Char(' ')))
                           .json();
    // That of a document is in its object.
    const QJsonArray pages = info.value(QStringLiteral("pages")).toArray();
    if (!pages.isEmpty())
        info =
            pages.first().toObject().value(QStringLiteral("objects")).toArray().first().toObject();
    return info.value(QStringLiteral("loopCount")).toInt() == 4;
}

/// Makes what flipbook has written a form that only others write: pictures with the names of their
/// frames and nothing else.
void TestForms::makeOthersForm(const Form &form, const QString &output) const
{
    if (QByteArray(form.output) != "pictures")
        return;
    QDir folder(path(output));
    QVERIFY(folder.remove(QStringLiteral("config.json")));
    const QStringList files = folder.entryList(QDir::Files);
    for (const QString &file : files)
        QVERIFY(folder.rename(file, file.mid(2)));
}

/// What is kept of @p input in @p form.
Kept TestForms::keptIn(const Form &form, const QString &input) const
{
    const QString output = input.at(0) + QLatin1Char('-') + QLatin1String(form.output);
    QString arguments = QLatin1String(form.arguments);
    arguments.replace(QLatin1String("IN"), input).replace(QLatin1String("OUT"), output);
    run(arguments);
    makeOthersForm(form, output);
    const QString read = output + QLatin1String(form.options);
    Kept kept = form.reader == Reader::Scratch   ? keptByScratch(path(output))
                : form.reader == Reader::Browser ? keptByBrowser(path(output))
                                                 : keptByFlipbook(read);
    const QString info = QStringLiteral("info ") + read;
    kept.isRead = flipbookIn(m_folder.path(), info.split(QLatin1Char(' '))).status == 0;
    return kept;
}

void TestForms::initTestCase()
{
    // Two frames of 4 x 3, of which one is half transparent: as a folder with names and loops, and
    // as an animation with different times.
    const QImage first = Pictures::solid(4, 3, QColor(255, 0, 0, 128));
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("named")));
    QVERIFY(first.save(path(QStringLiteral("named/1.png"))));
    QVERIFY(Pictures::solid(4, 3, Qt::blue).save(path(QStringLiteral("named/2.png"))));
    writeBytes(path(QStringLiteral("named/config.json")),
               R"({"ImageList": [{"filename": "1.png", "name": "jump"},
                                 {"filename": "2.png", "name": "land"}],
                   "ShiftInterval": 100, "LoopCount": 4})");
    run(QStringLiteral("atlas named -o uneven.png --json uneven.json"));
    QByteArray json = bytesOf(path(QStringLiteral("uneven.json")));
    const int at = json.indexOf("\"duration\": 100");
    QVERIFY(at > 0);
    json.replace(at, 15, "\"duration\": 105");
    json.replace("\"duration\": 100", "\"duration\": 230");
    writeBytes(path(QStringLiteral("uneven.json")), json);
}

void TestForms::theTableIsComplete()
{
    QStringList names;
    for (const Form &form : forms)
        names << QString::fromLatin1(form.name);
    names.sort();
    QCOMPARE(QStringList(tableOfGuide().keys()), names);
}

void TestForms::whatTheTableSaysIsKept_data()
{
    QTest::addColumn<int>("form");
    for (std::size_t i = 0; i < forms.size(); ++i)
        QTest::newRow(forms[i].name) << int(i);
}

void TestForms::whatTheTableSaysIsKept()
{
    QFETCH(int, form);
    const Form &wanted = forms[std::size_t(form)];
    const Kept named = keptIn(wanted, QStringLiteral("named"));
    const Kept uneven = keptIn(wanted, QStringLiteral("uneven.json"));
    QCOMPARE(tableOfGuide().value(QString::fromLatin1(wanted.name)),
             QStringList({QString::fromUtf8(wanted.command), yesOrNo(named.isRead),
                          delaysText(uneven.delaysMs), yesOrNo(named.hasLoops),
                          alphaText(named.alpha), namesText(named.names)}));
}

QTEST_GUILESS_MAIN(TestForms)
#include "tst_forms.moc"
