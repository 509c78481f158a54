#pragma once

#include <QtCore/QStringList>

#include <optional>

/// Runs the command that @p arguments ask for (without the program's name) and returns the status
/// of the process: 0 only when everything that was asked for is written, 1 for a failure, 2 for
/// wrong usage. Needs a QApplication.
int runCommandLine(const QStringList &arguments);

/// Whether runWithoutApplication() is worth a try.
bool mayRunWithoutApplication(const QStringList &arguments);

/// Runs what can be answered without a QApplication, for which a QCoreApplication is enough. The
/// status of the process, or none if runCommandLine() has to do it; nothing is printed then.
std::optional<int> runWithoutApplication(const QStringList &arguments);

/// Whether the arguments begin with a file and name no command. Without a window they are
/// described.
bool namesFiles(const QStringList &arguments);
