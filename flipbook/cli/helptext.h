#pragma once

#include "flipbook/cli/command.h"

/// What "flipbook --help" prints.
QString overviewText();

/// What "flipbook COMMAND --help" prints.
QString helpText(const Command &command);
