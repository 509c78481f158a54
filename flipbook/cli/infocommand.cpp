#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/infotext.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace
{

void printText(const QString &path, const ImportedMedia &media, const ObjectSummary &summary)
{
    Console::print(path);
    const QStringList lines = infoLines(summary, media.gif);
    for (const QString &line : lines)
        Console::print(line);
}

void printJson(const ImportedMedia &media, const ObjectSummary &summary)
{
    QJsonObject json = toJson(summary);
    if (media.gif) {
        json[QStringLiteral("shortestDelayMs")] = media.gif->shortestDelay;
        json[QStringLiteral("longestDelayMs")] = media.gif->longestDelay;
    }
    json[QStringLiteral("warnings")] = QJsonArray::fromStringList(media.warnings);
    Console::print(QString::fromUtf8(QJsonDocument(json).toJson()).trimmed());
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const Plugin plugin = openPlugin(line);
    const ImportedMedia media = importNamed(line, plugin, path);
    const ObjectSummary summary = summarise(plugin, *media.object);
    if (line.isSet(QStringLiteral("json")))
        printJson(media, summary);
    else
        printText(path, media, summary);
}

} // namespace

Command infoCommand()
{
    return {QStringLiteral("info"),
            QStringLiteral("FILE [--json]"),
            QStringLiteral("Tell the figures of an animated image: frames, size, timing, memory."),
            {{QStringLiteral("json"), QStringLiteral("Answer with a JSON object.")}},
            run};
}
