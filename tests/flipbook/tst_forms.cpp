#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtGui/QImage>
#include <QtTest/QTest>

#include <array>

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
    QJsonArray framesOf(const QString &form) const;
    QString delaysKept(const QString &written) const;
    QString namesKept(const QString &written) const;
    QString alphaKept(const QString &written) const;
    QString loopsKept(const QString &written) const;

    QTemporaryDir m_folder;
};

namespace
{

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

/// How each form is written, with IN for the film and OUT for what is read again.
struct Form {
    const char *name;
    const char *command; ///< as the table has it
    const char *arguments;
    const char *output;
};

constexpr std::array<Form, 6> forms = {{
    {"GIF", "`gif`", "gif IN -o OUT", "out.gif"},
    {"WebP", "`webp`", "webp IN -o OUT", "out.webp"},
    {"APNG", "`apng`", "apng IN -o OUT", "out.png"},
    {"sprite sheet with JSON", "`atlas`", "atlas IN -o sheet.png --json OUT", "sheet.json"},
    {"frame folder", "`frames`", "frames IN -o OUT", "folder"},
    {"document", "`new`", "new OUT --add IN", "out.flipbook"},
}};

} // namespace

bool TestForms::run(const QString &arguments) const
{
    const FlipbookRun run = flipbookIn(m_folder.path(), arguments.split(QLatin1Char(' ')));
    if (run.status != 0)
        QTest::qFail(qPrintable(arguments + QStringLiteral(": ") + run.err), __FILE__, __LINE__);
    return run.status == 0;
}

/// The frames of what was written, as an atlas describes them: that has all that a frame can have.
QJsonArray TestForms::framesOf(const QString &form) const
{
    run(QStringLiteral("atlas %1 -o probe.png --json probe.json").arg(form));
    return QJsonDocument::fromJson(bytesOf(path(QStringLiteral("probe.json"))))
        .object()
        .value(QStringLiteral("frames"))
        .toArray();
}

void TestForms::initTestCase()
{
    // Two frames of 4 x 3, of which one pixel is half transparent: as a folder with names and
    // loops, and as an animation with different times.
    QImage first = Pictures::solid(4, 3, Qt::red);
    first.setPixel(0, 0, 0x80ff0000);
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

QString TestForms::delaysKept(const QString &written) const
{
    QList<int> delays;
    for (const QJsonValue &frame : framesOf(written))
        delays << frame.toObject().value(QStringLiteral("duration")).toInt();
    if (delays == QList<int>({105, 230}))
        return QStringLiteral("ms");
    if (delays == QList<int>({110, 230}))
        return QStringLiteral("10 ms");
    return delays == QList<int>({105, 105}) ? QStringLiteral("one for all")
                                            : QStringLiteral("other");
}

QString TestForms::namesKept(const QString &written) const
{
    QStringList names;
    for (const QJsonValue &frame : framesOf(written))
        names << frame.toObject().value(QStringLiteral("filename")).toString();
    return names == QStringList({QStringLiteral("jump"), QStringLiteral("land")})
               ? QStringLiteral("yes")
               : QStringLiteral("no");
}

QString TestForms::alphaKept(const QString &written) const
{
    const QJsonObject place =
        framesOf(written).first().toObject().value(QStringLiteral("frame")).toObject();
    const QImage sheet(path(QStringLiteral("probe.png")));
    const int alpha = qAlpha(sheet.pixel(place.value(QStringLiteral("x")).toInt(),
                                         place.value(QStringLiteral("y")).toInt()));
    return alpha == 128   ? QStringLiteral("full")
           : alpha == 255 ? QStringLiteral("on or off")
                          : QStringLiteral("none");
}

QString TestForms::loopsKept(const QString &written) const
{
    QJsonObject info =
        flipbookIn(m_folder.path(), {QStringLiteral("info"), QStringLiteral("--json"), written})
            .json();
    // That of a document is in its object.
    const QJsonArray pages = info.value(QStringLiteral("pages")).toArray();
    if (!pages.isEmpty())
        info =
            pages.first().toObject().value(QStringLiteral("objects")).toArray().first().toObject();
    return info.value(QStringLiteral("loopCount")).toInt() == 4 ? QStringLiteral("yes")
                                                                : QStringLiteral("no");
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
    const QString output = QString::fromLatin1(wanted.output);
    const auto written = [&](const QString &input, const QString &to) {
        QString arguments = QString::fromLatin1(wanted.arguments);
        arguments.replace(QLatin1String("IN"), input).replace(QLatin1String("OUT"), to);
        run(arguments);
        return to;
    };
    const QString named = written(QStringLiteral("named"), QStringLiteral("n-") + output);
    const QString names = namesKept(named);
    const QString alpha = alphaKept(named);
    const QString loops = loopsKept(named);
    const QString delays =
        delaysKept(written(QStringLiteral("uneven.json"), QStringLiteral("u-") + output));
    QCOMPARE(tableOfGuide().value(QString::fromLatin1(wanted.name)),
             QStringList({QString::fromLatin1(wanted.command), QStringLiteral("yes"), delays, loops,
                          alpha, names}));
}

QTEST_GUILESS_MAIN(TestForms)
#include "tst_forms.moc"
