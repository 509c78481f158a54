#include "flipbook/cli/command.h"

#include "flipbook/cli/arguments.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/progressline.h"

QList<QCommandLineOption> commonOptions()
{
    return {
        {QStringLiteral("max-memory"),
         QStringLiteral("Refuse files whose pictures would need more than SIZE of memory, such as "
                        "64M or 3G (default: 2G)."),
         QStringLiteral("SIZE")},
        {QStringLiteral("allow-outside"),
         QStringLiteral("Read files outside of the folder of the document or frame folder that "
                        "refers to them.")},
        {QStringLiteral("plugin"),
         QStringLiteral("Load the plug-in LIBRARY (default: that of FLIPBOOK_PLUGIN in the "
                        "environment, or the one that came with this program)."),
         QStringLiteral("LIBRARY")},
        {QStringLiteral("verbose"), QStringLiteral("Show what the libraries have to say.")},
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")},
        {QStringLiteral("version"), QStringLiteral("Show the version.")},
    };
}

Plugin openPlugin(const QCommandLineParser &line)
{
    return Plugin(Arguments::optional(line, QStringLiteral("plugin")));
}

OpenedFile openNamed(const Plugin &plugin, const QString &path, Reading &reading)
{
    OpenedFile opened;
    {
        const ProgressLine progress(QStringLiteral("Reading %1").arg(path));
        opened = openFile(plugin, path, reading);
    }
    for (const QString &warning : qAsConst(opened.warnings))
        Console::warn(path, warning);
    return opened;
}
