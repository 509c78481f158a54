#include "flipbook/cli/zshcompletion.h"

#include "flipbook/cli/commandtable.h"
#include "flipbook/cli/completionvalue.h"

namespace
{

const char Start[] = R"(#compdef flipbook
# Completes the arguments of flipbook in zsh; printed by "flipbook completion zsh".

# A file after the equals sign of 2=FILE.
_flipbook_part_file() {
    if compset -P '*='; then
        _files
    fi
}

_flipbook() {
    local -a commands
    commands=(
)";

const char Middle[] = R"(    )
    if ((CURRENT == 2)); then
        _alternative 'commands:command:{_describe -t commands command commands}' 'files:file:_files'
        return
    fi
    local command=$words[2]
    shift words
    ((CURRENT--))
    case $command in
)";

const char End[] = R"(    *) _files ;;
    esac
}

# Found in the path of functions, or read by "source".
if [[ $funcstack[1] == _flipbook ]]; then
    _flipbook "$@"
else
    compdef _flipbook flipbook
fi)";

QString quoted(QString text)
{
    text.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QStringLiteral("'%1'").arg(text);
}

/// @p text with a backslash before each of @p special.
QString escaped(const QString &text, const QString &special)
{
    QString result;
    for (const QChar c : text) {
        if (special.contains(c))
            result += QLatin1Char('\\');
        result += c;
    }
    return result;
}

/// What completes the value of an option.
QString action(const CompletionValue &value)
{
    switch (value.kind) {
    case CompletionValue::Kind::File:
        return QStringLiteral("_files");
    case CompletionValue::Kind::PartFile:
        return QStringLiteral("_flipbook_part_file");
    case CompletionValue::Kind::Words:
        return QStringLiteral("(%1)").arg(value.words.join(QLatin1Char(' ')));
    default:
        return QStringLiteral(" ");
    }
}

QString line(const QString &argument)
{
    return QStringLiteral("            %1 \\\n").arg(quoted(argument));
}

/// An option may be given more than once, hence the star.
QString optionLine(const QString &name, const QCommandLineOption &option)
{
    const QString described =
        QStringLiteral("[%1]").arg(escaped(option.description(), QStringLiteral("\\[]")));
    const CompletionValue value(option);
    if (value.kind == CompletionValue::Kind::None)
        return line(QStringLiteral("*") + dashed(name) + described);
    const QString sign = name.size() == 1 ? QStringLiteral("+") : QStringLiteral("=");
    return line(QStringLiteral("*") + dashed(name) + sign + described + QLatin1Char(':') +
                escaped(option.valueName(), QStringLiteral("\\:")) + QLatin1Char(':') +
                action(value));
}

QString branch(const Command &command)
{
    QString text = QStringLiteral("    %1)\n        _arguments -s \\\n").arg(command.name);
    const QList<QCommandLineOption> options = optionsOf(command);
    for (const QCommandLineOption &option : options) {
        const QStringList names = option.names();
        for (const QString &name : names)
            text += optionLine(name, option);
    }
    const QStringList words = operandWords(command);
    const QString operand = words.isEmpty()
                                ? QStringLiteral("*:file:_files")
                                : QStringLiteral("1:word:(%1)").arg(words.join(QLatin1Char(' ')));
    return text + QStringLiteral("            %1\n        ;;\n").arg(quoted(operand));
}

} // namespace

QString zshCompletion()
{
    QString script = QLatin1String(Start);
    for (const Command &command : commandTable())
        script += QStringLiteral("        %1\n")
                      .arg(quoted(command.name + QLatin1Char(':') + command.summary));
    script += QLatin1String(Middle);
    for (const Command &command : commandTable())
        script += branch(command);
    return script + QLatin1String(End);
}
