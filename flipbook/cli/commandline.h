#pragma once

#include <QtCore/QStringList>

/// Runs the command that @p arguments ask for (without the program's name) and returns the status
/// of the process: 0 only when everything that was asked for is written, 1 for a failure, 2 for
/// wrong usage. Needs a QApplication.
int runCommandLine(const QStringList &arguments);

/// Whether @p word names a command.
bool isCommand(const QString &word);
