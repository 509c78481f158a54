#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/documentinfo.h"
#include "flipbook/cli/infotext.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace
{

QStringList textOf(const Plugin &plugin, const OpenedFile &opened)
{
    if (opened.isDocument)
        return documentLines(plugin, *opened.document);
    return infoLines(summarise(plugin, *opened.objects().constFirst()), opened.gif);
}

QJsonObject jsonOf(const Plugin &plugin, const OpenedFile &opened)
{
    QJsonObject json = opened.isDocument
                           ? documentInfo(plugin, *opened.document)
                           : toJson(summarise(plugin, *opened.objects().constFirst()));
    if (opened.gif) {
        json[QStringLiteral("shortestDelayMs")] = opened.gif->shortestDelay;
        json[QStringLiteral("longestDelayMs")] = opened.gif->longestDelay;
    }
    json[QStringLiteral("warnings")] = QJsonArray::fromStringList(opened.warnings);
    return json;
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const Plugin plugin = openPlugin(line);
    Reading reading = Arguments::reading(line);
    const OpenedFile opened = openNamed(plugin, path, reading);
    if (line.isSet(QStringLiteral("json"))) {
        const QJsonDocument answer(jsonOf(plugin, opened));
        Console::print(QString::fromUtf8(answer.toJson()).trimmed());
        return;
    }
    Console::print(path);
    const QStringList lines = textOf(plugin, opened);
    for (const QString &text : lines)
        Console::print(text);
}

} // namespace

Command infoCommand()
{
    return {QStringLiteral("info"),
            QStringLiteral("FILE [--json]"),
            QStringLiteral(
                "Print figures about an animation or document: frames, size, timing, memory."),
            {{QStringLiteral("json"), QStringLiteral("Print a JSON object.")}},
            run};
}
