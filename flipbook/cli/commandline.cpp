#include "flipbook/cli/commandline.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/version.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/quickinfo.h"

#include <algorithm>
#include <new>

namespace
{

// In the order in which the help lists them.
QList<Command> commands()
{
    return {infoCommand(),   sheetCommand(),  playCommand(),   newCommand(),    editCommand(),
            renderCommand(), framesCommand(), recordCommand(), spriteCommand(), projectCommand()};
}

QString overview()
{
    QString text = QStringLiteral("Usage: flipbook COMMAND [ARGUMENT]...\n"
                                  "Inspects, plays, edits and exports animated images.\n\n"
                                  "Commands:\n");
    const QList<Command> known = commands();
    for (const Command &command : known)
        text += QStringLiteral("  %1 %2\n      %3\n")
                    .arg(command.name, command.arguments, command.summary);
    text += QStringLiteral("\n'flipbook COMMAND --help' describes a command;\n"
                           "'flipbook --version' prints the version.");
    return text;
}

QString helpOf(const Command &command, const QCommandLineParser &line)
{
    // The parser's own first line names the program by its path and leaves the command out.
    const QString text = line.helpText();
    const QString options = text.mid(text.indexOf(QStringLiteral("\n\n")) + 2);
    return QStringLiteral("Usage: flipbook %1 %2\n%3\n\n%4")
        .arg(command.name, command.arguments, command.summary, options.trimmed());
}

int wrongUsage(const QString &reason, const QString &helpFor)
{
    Console::fail(QString(), reason);
    Console::fail(QString(), QStringLiteral("see 'flipbook %1--help'")
                                 .arg(helpFor.isEmpty() ? QString() : helpFor + QLatin1Char(' ')));
    return WrongUsage;
}

int guarded(const Command &command, const QCommandLineParser &line)
{
    try {
        command.run(line);
        return Success;
    } catch (const UsageError &error) {
        return wrongUsage(error.reason, command.name);
    } catch (const Failure &failure) {
        Console::fail(failure.subject, failure.reason);
    } catch (const std::bad_alloc &) {
        Console::fail(QString(), QStringLiteral("there is not enough memory"));
    }
    return Failed;
}

int runCommand(const Command &command, const QStringList &arguments)
{
    QCommandLineParser line;
    line.addOptions(command.options);
    line.addOptions(commonOptions());
    // The parser takes the first word, the command, for the name of the program.
    if (!line.parse(arguments))
        return wrongUsage(line.errorText(), command.name);
    Console::setVerbose(line.isSet(QStringLiteral("verbose")));
    if (line.isSet(QStringLiteral("help"))) {
        Console::print(helpOf(command, line));
        return Success;
    }
    if (line.isSet(QStringLiteral("version"))) {
        Console::print(programAndVersion());
        return Success;
    }
    return guarded(command, line);
}

int dispatch(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return wrongUsage(QStringLiteral("a command is missing"), QString());
    const QString &first = arguments.first();
    if (first == QLatin1String("--help") || first == QLatin1String("-h")) {
        Console::print(overview());
        return Success;
    }
    if (first == QLatin1String("--version")) {
        Console::print(programAndVersion());
        return Success;
    }
    const QList<Command> known = commands();
    const auto command = std::find_if(known.begin(), known.end(),
                                      [&first](const Command &each) { return each.name == first; });
    if (command == known.end())
        return wrongUsage(QStringLiteral("'%1' is not a command").arg(first), QString());
    return runCommand(*command, arguments);
}

int statusWhenWritten(int status)
{
    if (!Console::isWritten() && status == Success) {
        Console::fail(QStringLiteral("standard output"), QStringLiteral("cannot be written"));
        return Failed;
    }
    return status;
}

} // namespace

int runCommandLine(const QStringList &arguments)
{
    return statusWhenWritten(dispatch(arguments));
}

bool mayRunWithoutApplication(const QStringList &arguments)
{
    return arguments.value(0) == infoCommand().name;
}

std::optional<int> runWithoutApplication(const QStringList &arguments)
{
    if (!answerQuickInfo(arguments))
        return std::nullopt;
    return statusWhenWritten(Success);
}

bool isCommand(const QString &word)
{
    const QList<Command> known = commands();
    return std::any_of(known.begin(), known.end(),
                       [&word](const Command &command) { return command.name == word; });
}
