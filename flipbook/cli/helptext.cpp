#include "flipbook/cli/helptext.h"

#include "flipbook/cli/commandtable.h"

QString overviewText()
{
    QString text = QStringLiteral("Usage: flipbook COMMAND [ARGUMENT]...\n"
                                  "       flipbook FILE...\n"
                                  "Inspects, plays, edits and exports animated images. With files "
                                  "and no command,\nopens them in a window, or describes them "
                                  "where there is no display.\n\n"
                                  "Commands:\n");
    for (const Command &command : commandTable())
        text += QStringLiteral("  %1 %2\n      %3\n")
                    .arg(command.name, command.arguments, command.summary);
    text += QStringLiteral("\n'flipbook help COMMAND' describes a command;\n"
                           "'flipbook --version' prints the version.");
    return text;
}

QString helpText(const Command &command)
{
    QCommandLineParser line;
    line.addOptions(optionsOf(command));
    // The parser's own first line names the program by its path and leaves the command out.
    const QString text = line.helpText();
    const QString options = text.mid(text.indexOf(QStringLiteral("\n\n")) + 2);
    return QStringLiteral("Usage: flipbook %1 %2\n%3\n\n%4")
        .arg(command.name, command.arguments, command.summary, options.trimmed());
}
