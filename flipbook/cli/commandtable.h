#pragma once

#include "flipbook/cli/command.h"

/// All commands, in the order in which the help lists them.
const QList<Command> &commandTable();

/// The command called @p name; null if there is none.
const Command *findCommand(const QString &name);

/// The names of all commands.
QStringList commandNames();

/// All options of @p command, including those that every command understands. -o is also called
/// --output.
QList<QCommandLineOption> optionsOf(const Command &command);

/// An option as the user writes it: "-o", "--json".
QString dashed(const QString &option);

/// What to add to a complaint about @p word when one of @p known is near it: "; did you mean
/// 'sheet'?". Empty otherwise.
QString didYouMean(const QString &word, const QStringList &known);
