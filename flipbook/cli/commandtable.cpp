#include "flipbook/cli/commandtable.h"

#include "flipbook/cli/nearest.h"

#include <algorithm>

const QList<Command> &commandTable()
{
    static const QList<Command> table = {
        infoCommand(),   sheetCommand(),      playCommand(),   newCommand(),     editCommand(),
        renderCommand(), framesCommand(),     recordCommand(), gifCommand(),     webpCommand(),
        apngCommand(),   atlasCommand(),      spriteCommand(), projectCommand(), webCommand(),
        helpCommand(),   completionCommand(),
    };
    return table;
}

const Command *findCommand(const QString &name)
{
    const QList<Command> &table = commandTable();
    const auto command = std::find_if(table.begin(), table.end(),
                                      [&name](const Command &each) { return each.name == name; });
    return command == table.end() ? nullptr : &*command;
}

QStringList commandNames()
{
    QStringList names;
    for (const Command &command : commandTable())
        names << command.name;
    return names;
}

QList<QCommandLineOption> optionsOf(const Command &command)
{
    QList<QCommandLineOption> options;
    const QList<QCommandLineOption> given = command.options + commonOptions();
    for (const QCommandLineOption &option : given) {
        if (option.names() == QStringList(QStringLiteral("o")))
            options << QCommandLineOption({QStringLiteral("o"), QStringLiteral("output")},
                                          option.description(), option.valueName());
        else
            options << option;
    }
    return options;
}

QString dashed(const QString &option)
{
    return (option.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + option;
}

QString didYouMean(const QString &word, const QStringList &known)
{
    const QString near = nearest(word, known);
    return near.isEmpty() ? QString() : QStringLiteral("; did you mean '%1'?").arg(near);
}
