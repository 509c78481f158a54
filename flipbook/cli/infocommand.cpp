#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/documentinfo.h"
#include "flipbook/cli/infotext.h"

#include <QtCore/QJsonArray>

namespace
{

QStringList textOf(const Plugin &plugin, const OpenedFile &opened, Pixels pixels)
{
    if (opened.isDocument)
        return documentLines(plugin, *opened.document, pixels);
    return infoLines(summarise(plugin, *opened.objects().constFirst(), pixels), opened.gif);
}

QJsonObject jsonOf(const Plugin &plugin, const OpenedFile &opened, Pixels pixels)
{
    if (!opened.isDocument) {
        return infoJson(summarise(plugin, *opened.objects().constFirst(), pixels), opened.gif,
                        opened.warnings);
    }
    QJsonObject json = documentInfo(plugin, *opened.document, pixels);
    json[QStringLiteral("warnings")] = QJsonArray::fromStringList(opened.warnings);
    return json;
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const Plugin plugin = openPlugin(line);
    Reading reading = Arguments::reading(line);
    const OpenedFile opened = openNamed(plugin, path, reading);
    const Pixels pixels =
        line.isSet(QStringLiteral("opaque")) ? Pixels::Counted : Pixels::NotCounted;
    if (line.isSet(QStringLiteral("json"))) {
        printJson(jsonOf(plugin, opened, pixels));
        return;
    }
    Console::print(path);
    const QStringList lines = textOf(plugin, opened, pixels);
    for (const QString &text : lines)
        Console::print(text);
}

} // namespace

Command infoCommand()
{
    return {QStringLiteral("info"),
            QStringLiteral("FILE [--json] [--opaque]"),
            QStringLiteral(
                "Print figures about an animation or document: frames, size, timing, memory."),
            {{QStringLiteral("json"), QStringLiteral("Print a JSON object.")},
             {QStringLiteral("opaque"),
              QStringLiteral("Also print the share of opaque pixels, for which all frames are "
                             "decoded.")}},
            run};
}
