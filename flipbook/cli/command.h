#pragma once

#include "flipbook/document/openedfile.h"

#include <QtCore/QCommandLineParser>

enum ExitStatus { Success = 0, Failed = 1, WrongUsage = 2 };

/// What the arguments of a command are, apart from its options.
enum class Operands { Files, Commands, Shells };

/// One command of the command line.
struct Command {
    QString name;
    QString arguments; ///< as the help shows them, such as "FILE -o OUT.png"
    QString summary;   ///< one line
    QList<QCommandLineOption> options;
    /// Does the work. @throw UsageError, Failure
    void (*run)(const QCommandLineParser &line);
    Operands operands = Operands::Files;
    /// An option that takes all words up to the next option; see Arguments::spread(). May be empty.
    QString listOption = {};
};

Command infoCommand();
Command sheetCommand();
Command playCommand();
Command newCommand();
Command renderCommand();
Command framesCommand();
Command recordCommand();
Command editCommand();
Command spriteCommand();
Command projectCommand();
Command webCommand();
Command gifCommand();
Command webpCommand();
Command apngCommand();
Command atlasCommand();
Command helpCommand();
Command completionCommand();

/// The options that every command understands.
QList<QCommandLineOption> commonOptions();

/// The plug-in that --plugin, the environment or the installation names.
Plugin openPlugin(const QCommandLineParser &line);

/// Opens @p path, with a progress line, and passes the warnings on to the user.
OpenedFile openNamed(const Plugin &plugin, const QString &path, Reading &reading);
