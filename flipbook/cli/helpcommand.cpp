#include "flipbook/base/failure.h"
#include "flipbook/cli/commandtable.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/helptext.h"

namespace
{

void run(const QCommandLineParser &line)
{
    const QStringList words = line.positionalArguments();
    if (words.isEmpty()) {
        Console::print(overviewText());
        return;
    }
    if (words.size() > 1)
        throw UsageError{QStringLiteral("'%1' is one word too many").arg(words.at(1))};
    const Command *command = findCommand(words.first());
    if (!command)
        throw UsageError{QStringLiteral("'%1' is not a command").arg(words.first()) +
                         didYouMean(words.first(), commandNames())};
    Console::print(helpText(*command));
}

} // namespace

Command helpCommand()
{
    return {QStringLiteral("help"),
            QStringLiteral("[COMMAND]"),
            QStringLiteral("Describe a command, or list all of them."),
            {},
            run,
            Operands::Commands};
}
