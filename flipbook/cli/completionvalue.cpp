#include "flipbook/cli/completionvalue.h"

#include "flipbook/cli/commandtable.h"

#include <QtCore/QRegularExpression>

namespace
{

bool namesFile(const QString &value)
{
    static const QRegularExpression file(
        QStringLiteral("^(FILE|DOC|FOLDER|LIBRARY|[A-Z]+\\.[a-z0-9]+)"));
    return file.match(value).hasMatch();
}

/// The words of "N|forever|once" that are meant as they are: those in small letters.
QStringList literalWords(const QString &value)
{
    QStringList words;
    const QStringList alternatives = value.split(QLatin1Char('|'));
    for (const QString &word : alternatives) {
        if (word == word.toLower())
            words << word;
    }
    return words;
}

} // namespace

CompletionValue::CompletionValue(const QCommandLineOption &option)
    : kind(Kind::Anything)
{
    const QString value = option.valueName();
    if (value.isEmpty()) {
        kind = Kind::None;
    } else if (namesFile(value)) {
        kind = Kind::File;
    } else if (namesFile(value.section(QLatin1Char('='), 1))) {
        kind = Kind::PartFile;
    } else {
        words = literalWords(value);
        if (!words.isEmpty())
            kind = Kind::Words;
    }
}

QStringList operandWords(const Command &command)
{
    switch (command.operands) {
    case Operands::Commands:
        return commandNames();
    case Operands::Shells:
        return {QStringLiteral("bash"), QStringLiteral("zsh")};
    case Operands::Files:
        break;
    }
    return {};
}
