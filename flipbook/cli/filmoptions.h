#pragma once

#include "flipbook/cli/command.h"
#include "flipbook/export/filmselection.h"

/// The options of commands that write a film: which of its frames, and how.
namespace FilmOptions
{

/// --frames, --every, --reverse and --scale.
QList<QCommandLineOption> selection();

/// The same for all animations of a page, whose places and sizes stay.
QList<QCommandLineOption> selectionOfPage();

/// What they say. @throw UsageError
FilmSelection chosen(const QCommandLineParser &line);

} // namespace FilmOptions

/// @p command, which writes an object, with the options that select frames.
Command withFilmOptions(Command command);

/// @p command, which writes a page, with these options; they hold for each animation on it.
Command withPageFilmOptions(Command command);
