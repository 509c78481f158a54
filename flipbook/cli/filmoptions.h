#pragma once

#include "flipbook/cli/command.h"
#include "flipbook/export/filmselection.h"

/// The options of commands that write a film: which of its frames, and how.
namespace FilmOptions
{

/// --frames, --every, --reverse and --scale.
QList<QCommandLineOption> selection();

/// What they say. @throw UsageError
FilmSelection chosen(const QCommandLineParser &line);

} // namespace FilmOptions

/// @p command with the options that select frames.
Command withFilmOptions(Command command);
