#include "flipbook/base/failure.h"
#include "flipbook/cli/bashcompletion.h"
#include "flipbook/cli/commandtable.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/zshcompletion.h"

namespace
{

void run(const QCommandLineParser &line)
{
    const QStringList words = line.positionalArguments();
    if (words.isEmpty())
        throw UsageError{QStringLiteral("the name of a shell is missing: bash or zsh")};
    if (words.size() > 1)
        throw UsageError{QStringLiteral("'%1' is one word too many").arg(words.at(1))};
    if (words.first() == QLatin1String("bash"))
        Console::print(bashCompletion());
    else if (words.first() == QLatin1String("zsh"))
        Console::print(zshCompletion());
    else
        throw UsageError{QStringLiteral("'%1' is neither 'bash' nor 'zsh'").arg(words.first())};
}

} // namespace

Command completionCommand()
{
    return {QStringLiteral("completion"),
            QStringLiteral("bash|zsh"),
            QStringLiteral("Print the script by which a shell completes commands and options."),
            {},
            run,
            Operands::Shells};
}
