#include "flipbook/cli/commandline.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/version.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/commandtable.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/helptext.h"
#include "flipbook/cli/quickinfo.h"
#include "flipbook/import/sourcefile.h"

#include <QtCore/QFileInfo>

#include <new>

namespace
{

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

/// What the parser takes for options, as the user wrote it: "-json" is four of them.
QString asWritten(const QString &option, const QStringList &arguments)
{
    if (option.size() == 1) {
        for (const QString &word : arguments) {
            const bool isLong = word.size() > 2 && word.startsWith(QLatin1Char('-')) &&
                                !word.startsWith(QLatin1String("--"));
            if (isLong && word.contains(option))
                return word;
        }
    }
    return dashed(option);
}

QString parsingError(const Command &command, const QCommandLineParser &line,
                     const QStringList &arguments)
{
    const QStringList unknown = line.unknownOptionNames();
    if (unknown.isEmpty())
        return line.errorText();
    QStringList known;
    const QList<QCommandLineOption> options = optionsOf(command);
    for (const QCommandLineOption &option : options) {
        const QStringList names = option.names();
        for (const QString &name : names) {
            if (name.size() > 1)
                known << dashed(name);
        }
    }
    const QString word = asWritten(unknown.first(), arguments);
    const QString meant = word.startsWith(QLatin1String("--")) ? word : QLatin1Char('-') + word;
    return QStringLiteral("'%1' is not an option of %2").arg(word, command.name) +
           (word.size() > 2 ? didYouMean(meant, known) : QString());
}

int runCommand(const Command &command, const QStringList &arguments)
{
    QCommandLineParser line;
    line.addOptions(optionsOf(command));
    // The parser takes the first word, the command, for the name of the program.
    if (!line.parse(Arguments::spread(arguments, command.listOption)))
        return wrongUsage(parsingError(command, line, arguments), command.name);
    Console::setVerbose(line.isSet(QStringLiteral("verbose")));
    if (line.isSet(QStringLiteral("help"))) {
        Console::print(helpText(command));
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
        Console::print(overviewText());
        return Success;
    }
    if (first == QLatin1String("--version")) {
        Console::print(programAndVersion());
        return Success;
    }
    if (namesFiles(arguments))
        return runCommand(infoCommand(), QStringList(infoCommand().name) + arguments);
    if (const Command *command = findCommand(first))
        return runCommand(*command, arguments);
    const QStringList known = commandNames()
                              << QStringLiteral("--help") << QStringLiteral("--version");
    return wrongUsage(QStringLiteral("'%1' is neither a command nor a file").arg(first) +
                          didYouMean(first, known),
                      QString());
}

/// Whether a command prints what the program knows by itself.
bool isOnlyText(const QString &command)
{
    return command == helpCommand().name || command == completionCommand().name;
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
    const QString first = arguments.value(0);
    return first == infoCommand().name || isOnlyText(first);
}

std::optional<int> runWithoutApplication(const QStringList &arguments)
{
    if (isOnlyText(arguments.value(0)))
        return runCommandLine(arguments);
    if (!answerQuickInfo(arguments))
        return std::nullopt;
    return statusWhenWritten(Success);
}

bool namesFiles(const QStringList &arguments)
{
    const QString first = arguments.value(0);
    // Standard input.
    if (first == QLatin1String("-"))
        return true;
    return !first.isEmpty() && !first.startsWith(QLatin1Char('-')) && !findCommand(first) &&
           QFileInfo::exists(plainPath(first));
}
