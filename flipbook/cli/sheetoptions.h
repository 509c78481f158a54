#pragma once

#include "flipbook/cli/command.h"

class Reading;

/// @p command, which opens films, with the options that cut a picture into frames.
Command withSheetOptions(Command command);

/// Whether one of these options is given.
bool cutsSheets(const QCommandLineParser &line);

/// Tells @p reading what these options say; nothing if none is given, or the command has none.
/// @throw UsageError
void applySheetOptions(const QCommandLineParser &line, Reading &reading);
