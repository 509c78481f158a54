#include "flipbook/base/failure.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/documentinfo.h"
#include "flipbook/cli/infotext.h"
#include "flipbook/cli/sheetoptions.h"
#include "framework/page.h"

#include <QtCore/QJsonArray>

#include <optional>

namespace
{

QStringList textOf(const Plugin &plugin, const OpenedFile &opened, Pixels pixels)
{
    if (opened.isDocument)
        return documentLines(plugin, *opened.document, pixels);
    return infoLines(summarise(plugin, *opened.objects().constFirst(), pixels),
                     FileFigures::of(opened));
}

QJsonObject jsonOf(const Plugin &plugin, const OpenedFile &opened, Pixels pixels)
{
    if (!opened.isDocument) {
        return infoJson(summarise(plugin, *opened.objects().constFirst(), pixels),
                        FileFigures::of(opened), opened.warnings);
    }
    QJsonObject json = documentInfo(plugin, *opened.document, pixels);
    json[QStringLiteral("warnings")] = QJsonArray::fromStringList(opened.warnings);
    return json;
}

InfoRow rowOf(const Plugin &plugin, const QString &path, const OpenedFile &opened)
{
    InfoRow row;
    row.file = path;
    row.format = opened.isDocument ? QStringLiteral("document") : opened.format;
    const QList<CBaseObject *> objects = opened.objects();
    for (CBaseObject *object : objects)
        row.frames += AnimatedObject(*object).frameCount();
    if (opened.isDocument) {
        const QList<Page *> pages = opened.document->pages();
        row.size = pages.isEmpty() ? QSizeF() : pages.constFirst()->pageRect().size();
        return row;
    }
    const ObjectSummary summary = summarise(plugin, *objects.constFirst(), Pixels::NotCounted);
    const FileFigures figures = FileFigures::of(opened);
    row.size = summary.size;
    row.interval =
        figures.shortestDelay == figures.longestDelay
            ? QStringLiteral("%1 ms").arg(summary.intervalMs)
            : QStringLiteral("%1 to %2 ms").arg(figures.shortestDelay).arg(figures.longestDelay);
    row.loops = loopWords(summary.loopCount);
    return row;
}

void printOne(const QCommandLineParser &line, const Plugin &plugin, const QString &path,
              Pixels pixels)
{
    Reading reading = Arguments::reading(line);
    const OpenedFile opened = openNamed(plugin, path, reading);
    if (line.isSet(QStringLiteral("json"))) {
        printJson(QJsonDocument(jsonOf(plugin, opened, pixels)));
        return;
    }
    Console::print(path);
    const QStringList lines = textOf(plugin, opened, pixels);
    for (const QString &text : lines)
        Console::print(text);
}

/// Files that cannot be read are told, and do not stop the others. @throw Failure of the last one
void printMany(const QCommandLineParser &line, const Plugin &plugin, const QStringList &paths,
               Pixels pixels)
{
    QJsonArray json;
    QVector<InfoRow> rows;
    std::optional<Failure> failed;
    const bool asJson = line.isSet(QStringLiteral("json"));
    for (const QString &path : paths) {
        try {
            // Each file may take as much memory as one alone: they are not kept.
            Reading reading = Arguments::reading(line);
            const OpenedFile opened = openNamed(plugin, path, reading);
            if (!asJson) {
                rows.append(rowOf(plugin, path, opened));
                continue;
            }
            QJsonObject form = jsonOf(plugin, opened, pixels);
            form[QStringLiteral("file")] = path;
            json.append(form);
        } catch (const Failure &failure) {
            if (failed)
                Console::fail(failed->subject, failed->reason);
            failed = failure;
        }
    }
    if (asJson)
        printJson(QJsonDocument(json));
    else if (!rows.isEmpty())
        Console::print(infoTable(rows).join(QLatin1Char('\n')));
    if (failed)
        throw Failure(*failed);
}

void run(const QCommandLineParser &line)
{
    const QStringList paths = Arguments::files(line);
    const Pixels pixels =
        line.isSet(QStringLiteral("opaque")) ? Pixels::Counted : Pixels::NotCounted;
    if (paths.size() > 1 && pixels == Pixels::Counted && !line.isSet(QStringLiteral("json")))
        throw UsageError{QStringLiteral("the table has no room for --opaque; use --json as well, "
                                        "or name one file")};
    const Plugin plugin = openPlugin(line);
    if (paths.size() == 1)
        printOne(line, plugin, paths.first(), pixels);
    else
        printMany(line, plugin, paths, pixels);
}

} // namespace

Command infoCommand()
{
    return withSheetOptions(
        {QStringLiteral("info"),
         QStringLiteral("FILE... [--json] [--opaque]"),
         QStringLiteral(
             "Print figures about an animation or document: frames, size, timing, memory."),
         {{QStringLiteral("json"),
           QStringLiteral("Print a JSON object, or an array of them for several files.")},
          {QStringLiteral("opaque"),
           QStringLiteral("Also print the share of opaque pixels, for which all frames are "
                          "decoded.")}},
         run});
}
