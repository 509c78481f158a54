#include "flipbook/cli/bashcompletion.h"

#include "flipbook/cli/commandtable.h"
#include "flipbook/cli/completionvalue.h"

namespace
{

const char Start[] =
    R"(# Completes the arguments of flipbook in bash; printed by "flipbook completion bash".

_flipbook_files() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

_flipbook_words() {
    mapfile -t COMPREPLY < <(compgen -W "$2" -- "$1")
}

_flipbook() {
    local place=$COMP_CWORD current=${COMP_WORDS[COMP_CWORD]} option
    COMPREPLY=()
    # The shell splits "--type=normal" and "2=FILE" at the equals sign.
    if [[ $current == = ]]; then
        current=
        ((++place))
    fi
    option=${COMP_WORDS[place - 1]}
    if [[ $option == = ]] && ((place > 2)); then
        option=${COMP_WORDS[place - 2]}
        [[ $option == -* ]] || option=${COMP_WORDS[place - 3]}=
    fi
)";

const char End[] = R"(
_flipbook_command() {
    if [[ $1 == -* ]]; then
        _flipbook_words "$1" '--help --version'
        return
    fi
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(
        compgen -W "$2" -- "$1"
        compgen -f -- "$1"
    )
}

complete -F _flipbook flipbook)";

/// The patterns for the names of an option, as "'new --plugin' | 'new -p'"; @p end follows each.
QString patterns(const Command &command, const QCommandLineOption &option, const QString &end)
{
    QStringList list;
    const QStringList names = option.names();
    for (const QString &name : names)
        list << QStringLiteral("'%1 %2%3'").arg(command.name, dashed(name), end);
    return list.join(QStringLiteral(" | "));
}

QString branch(const QString &patterns, const QString &action)
{
    return QStringLiteral("    %1) %2 ;;\n").arg(patterns, action);
}

/// What follows an option that takes a value.
QString branches(const Command &command, const QCommandLineOption &option)
{
    const QString files = QStringLiteral("_flipbook_files \"$current\"");
    const QString nothing = QStringLiteral(":");
    const CompletionValue value(option);
    const QString whole = patterns(command, option, QString());
    switch (value.kind) {
    case CompletionValue::Kind::None:
        return QString();
    case CompletionValue::Kind::Anything:
        return branch(whole, nothing);
    case CompletionValue::Kind::File:
        return branch(whole, files);
    case CompletionValue::Kind::PartFile:
        return branch(whole, nothing) +
               branch(patterns(command, option, QStringLiteral("=")), files);
    case CompletionValue::Kind::Words:
        break;
    }
    return branch(whole, QStringLiteral("_flipbook_words \"$current\" '%1'")
                             .arg(value.words.join(QLatin1Char(' '))));
}

/// What a command takes apart from the values of options: its options, and mostly files.
QString operands(const Command &command)
{
    QStringList options;
    const QList<QCommandLineOption> all = optionsOf(command);
    for (const QCommandLineOption &option : all) {
        const QStringList names = option.names();
        for (const QString &name : names)
            options << dashed(name);
    }
    QString action = QStringLiteral("_flipbook_files \"$current\"");
    const QStringList words = operandWords(command);
    if (!words.isEmpty())
        action =
            QStringLiteral("_flipbook_words \"$current\" '%1'").arg(words.join(QLatin1Char(' ')));
    return QStringLiteral("    '%1 '*)\n"
                          "        if [[ $current == -* ]]; then\n"
                          "            _flipbook_words \"$current\" '%2'\n"
                          "        else\n"
                          "            %3\n"
                          "        fi\n"
                          "        ;;\n")
        .arg(command.name, options.join(QLatin1Char(' ')), action);
}

} // namespace

QString bashCompletion()
{
    QString script = QLatin1String(Start);
    script += QStringLiteral("    if ((COMP_CWORD == 1)); then\n"
                             "        _flipbook_command \"$current\" '%1'\n"
                             "        return\n"
                             "    fi\n"
                             "    case \"${COMP_WORDS[1]} $option\" in\n")
                  .arg(commandNames().join(QLatin1Char(' ')));
    for (const Command &command : commandTable()) {
        const QList<QCommandLineOption> options = optionsOf(command);
        for (const QCommandLineOption &option : options)
            script += branches(command, option);
        script += operands(command);
    }
    script += branch(QStringLiteral("*"), QStringLiteral("_flipbook_files \"$current\""));
    return script + QStringLiteral("    esac\n}\n") + QLatin1String(End);
}
